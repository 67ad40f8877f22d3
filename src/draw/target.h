// What every drawing function tests and locks before it draws.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "bitmap/locks.h"
#include "frame/checks.h"
#include "frame/result.h"
#include "kxgraphic/types.h"
#include "pixel/formats.h"

namespace kx {

/// How a drawing function goes beyond writing its colour: with a weight, a depth test, or both.
struct Blend {
  bool hasAlpha = false;
  bool hasDepth = false;
  std::int32_t alpha = 0;  ///< weight of the target, 0 to 255
  std::int32_t z = 0;      ///< depth, 0 to 255; smaller is nearer
  Bitmap* zBuffer = nullptr;

  static Blend weighted(std::int32_t alpha) { return {.hasAlpha = true, .alpha = alpha}; }
  static Blend deep(Bitmap* zBuffer, std::int32_t z) { return {.hasDepth = true, .z = z, .zBuffer = zBuffer}; }
  static Blend weightedDeep(Bitmap* zBuffer, std::int32_t alpha, std::int32_t z) {
    return {.hasAlpha = true, .hasDepth = true, .alpha = alpha, .z = z, .zBuffer = zBuffer};
  }
};

inline Result checkBitmaps(const Bitmap* target, const Blend& blend) {
  KX_TRY(checkWritable(target));
  return blend.hasDepth ? checkWritable(blend.zBuffer) : Result::Ok;
}

inline Result checkAlpha(const Blend& blend) {
  return blend.alpha < 0 || blend.alpha > 255 ? Result::AlphaValueOutOfRange : Result::Ok;
}

inline Result checkDepth(const Blend& blend) {
  return blend.z < 0 || blend.z > 255 ? Result::ZValueOutOfRange : Result::Ok;
}

/// Only intensities and colours can be blended; Z buffers are plain rows of bytes.
inline Result checkFormats(const Bitmap& target, const Blend& blend) {
  const std::uint32_t format = formatCode(target.format);
  const bool canBlend = format == KX_FORMAT_GREY || formatInfo(format).redMask != 0;
  if (blend.hasAlpha && !canBlend) return Result::FunctionNotSupported;
  if (blend.hasDepth && (hasPackedRows(blend.zBuffer->format) || formatCode(blend.zBuffer->format) != KX_FORMAT_GREY))
    return Result::IllegalZBufferFormat;
  return Result::Ok;
}

/// True when the Z buffer's pixel block holds the depth of every pixel of the rectangle, or when there is none.
inline bool depthCovers(const Blend& blend, std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h) {
  if (!blend.hasDepth) return true;
  const std::int64_t pitch = blend.zBuffer->pitch;
  const std::int64_t lastRow = std::int64_t{y} + h - 1;
  return pitch > 0 && lastRow * pitch + x + w <= pitch * blend.zBuffer->height;
}

/// The tables that the locks go through.
inline Result checkMethods(const Bitmap* target, const Blend& blend = {}) {
  if (isBadWritePointer(target->methods)) return Result::MethodTableDestroyed;
  if (blend.hasDepth && isBadWritePointer(blend.zBuffer->methods)) return Result::MethodTableDestroyed;
  return Result::Ok;
}

/// Locks the target, then the Z buffer, each with its pixel memory, once their tables have been tested.
/// Settled: a failure leaves raised what was raised before it.
inline Result lockForDrawing(Bitmap* target, const Blend& blend = {}) {
  KX_TRY(lockTestedPixels(target));
  return blend.hasDepth ? lockTestedPixels(blend.zBuffer) : Result::Ok;
}

/// Unlocks in the same order. What the unlocking says is of no consequence once all is drawn.
inline void unlockAfterDrawing(Bitmap* target, const Blend& blend = {}) {
  static_cast<void>(unlock(target));
  if (blend.hasDepth) static_cast<void>(unlock(blend.zBuffer));
}

}  // namespace kx
