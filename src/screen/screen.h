// What the screen's files share: handle checks and the meaning of the mode flags.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "frame/checks.h"
#include "kxgraphic/screen.h"

namespace kx {

/// IllegalParameter or UnsupportedVersion for a handle that is no screen.
inline Result checkScreen(const Screen* screen) {
  KX_TRY(checkWritable(screen));
  return screen->version == currentVersion ? Result::Ok : Result::UnsupportedVersion;
}

/// Restores through the screen's own table. A table without that slot, as KX_getScreenInterface leaves it when there is
/// no driver, means the library's own function.
Result restoreThroughTable(Screen* screen);

/// The kind of a flags word: none, windowed (1), full screen (2), or 3 to 7, which are one of the two without a change
/// of the display mode.
constexpr std::uint32_t kindOf(std::uint32_t flags) { return flags & KX_MODE_KIND_MASK; }

/// True when the buffers are those of the whole display.
constexpr bool coversDisplay(std::uint32_t flags) { return (flags & KX_MODE_FULL_SCREEN) != 0; }

/// True when the display itself is switched.
constexpr bool changesDisplayMode(std::uint32_t flags) { return kindOf(flags) == KX_MODE_FULL_SCREEN; }

constexpr std::int32_t bufferCountOf(std::uint32_t flags) {
  switch (flags & KX_MODE_BUFFERS_MASK) {
    case KX_MODE_TWO_BUFFERS:
      return 2;
    case KX_MODE_THREE_BUFFERS:
      return 3;
    default:
      return 1;
  }
}

}  // namespace kx
