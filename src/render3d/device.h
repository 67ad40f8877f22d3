// What devices, textures and triangles share: the rule of the render target.
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/checks.h"
#include "frame/result.h"
#include "kxgraphic/types.h"

namespace kx {

/// Low bits of Screen.modeFlags: the kind of the mode in force, 0 for none.
constexpr std::uint8_t screenKindMask = 0x07;

/// The present back buffer of a screen. ModeNotSet when there is none.
inline Result backBuffer(Bitmap** target, const Screen* screen) {
  if ((screen->modeFlags & screenKindMask) == 0 || screen->back == nullptr) return Result::ModeNotSet;
  *target = screen->back;
  return Result::Ok;
}

/// The bitmap that a device draws into now. ModeNotSet for a screen without a mode, IllegalParameter for a device with
/// neither bitmap nor screen.
inline Result renderTarget(Bitmap** target, const Device3D* device) {
  if (device->screen != nullptr) return backBuffer(target, device->screen);
  if (device->target == nullptr) return Result::IllegalParameter;
  *target = device->target;
  return Result::Ok;
}

}  // namespace kx
