// The functions of the nearest-entry search, of which each instruction set has its own. Included by kernel files, so it
// holds no code.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kx {

/// The entries of a palette by channel, as the search reads them.
struct PalettePlanes {
  std::uint8_t b[256], g[256], r[256];
};

struct NearestKernels {
  /// Takes a palette of 768 bytes apart.
  void (*split)(PalettePlanes* planes, const std::uint8_t* palette);

  /// Index of the entry with the least sum of the channels' distances; the last of equals.
  std::uint32_t (*find)(const PalettePlanes* planes, std::uint8_t b, std::uint8_t g, std::uint8_t r);
};

NearestKernels nearestKernelsSse2();
NearestKernels nearestKernelsAvx2();

}  // namespace kx
