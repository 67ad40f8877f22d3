// The inner loops of smoothing, of the wave step and of shaded water, chosen once for the processor.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/cpu.h"

namespace kx {

struct LandscapeKernels {
  /// Weights 1 3 1 down each column: sums[i] = above[i] + 3 row[i] + below[i].
  void (*sumColumns)(std::uint16_t* sums, const std::uint8_t* above, const std::uint8_t* row, const std::uint8_t* below,
                     std::size_t count);

  /// Weights 1 3 1 along the row of sums, divided by 25; sums[0] belongs to the cell left of out[0].
  void (*smoothSums)(std::uint8_t* out, const std::uint16_t* sums, std::size_t count);

  /// One step of `count` cells of 16 bits from left to right. `current` is the first cell's in the current map, whose
  /// rows are `pitch` bytes apart; rows may have any alignment, and the maps may overlap.
  using WaveRow = void (*)(std::uint8_t* target, const std::uint8_t* current, std::ptrdiff_t pitch, std::size_t count,
                           int damping);
  WaveRow waveFourNeighbours;
  WaveRow waveEightNeighbours;

  /// Shades pixels of 5-5-5, each by its own shade: the channels in their places, blue first, get the shade, red the
  /// low 16 bits of 32 times the shade, and then their tint. Rows do not overlap unless the count is 1.
  void (*shadePixels)(std::uint8_t* to, const std::uint8_t* from, const std::int16_t* shades, std::size_t count,
                      const std::int16_t (&tint)[3]);
};

extern const LandscapeKernels landscapeKernelsPortable;
extern const LandscapeKernels landscapeKernelsAvx2;
extern const KernelTable<LandscapeKernels> landscapeKernels;

}  // namespace kx
