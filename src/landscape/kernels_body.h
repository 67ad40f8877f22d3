// The row functions in plain C++, which compilers turn into vector code. One file per instruction set includes them;
// the anonymous namespace keeps what is made for one processor from serving another. SPDX-License-Identifier: MIT
#pragma once

#include "landscape/kernels.h"
#include "pixel/memory.h"

namespace kx {

namespace {

void sumColumns(std::uint16_t* sums, const std::uint8_t* above, const std::uint8_t* row, const std::uint8_t* below,
                std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) sums[i] = static_cast<std::uint16_t>(above[i] + 3 * row[i] + below[i]);
}

void smoothSums(std::uint8_t* out, const std::uint16_t* sums, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const auto sum = static_cast<std::uint16_t>(sums[i] + 3 * sums[i + 1] + sums[i + 2]);
    // sum / 25, exact for all sums that occur (up to 25 x 255).
    out[i] = static_cast<std::uint8_t>(static_cast<std::uint16_t>((std::uint32_t{sum} * 5243U) >> 16) >> 1);
  }
}

int wave(const std::uint8_t* cell) { return static_cast<std::int16_t>(load16(cell)); }

template <bool EightNeighbours>
void waveRow(std::uint8_t* target, const std::uint8_t* current, std::ptrdiff_t pitch, std::size_t count, int damping) {
  const std::uint8_t* above = current - pitch;
  const std::uint8_t* below = current + pitch;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t at = i * 2;
    int sum = wave(above + at) + wave(below + at) + wave(current + at + 2) + wave(current + at - 2);
    if constexpr (EightNeighbours)
      sum += wave(above + at - 2) + wave(above + at + 2) + wave(below + at - 2) + wave(below + at + 2);
    const int height = (sum >> (EightNeighbours ? 2 : 1)) - wave(target + at);
    store16(target + at, static_cast<std::uint32_t>(height - (height >> damping)));
  }
}

constexpr LandscapeKernels kernelsOfThisFile = {sumColumns, smoothSums, waveRow<false>, waveRow<true>};

}  // namespace

}  // namespace kx
