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

/// One channel in its place with its shade and its tint. The bounds stand in for saturation at 16 bits: within them no
/// sum leaves that range, and beyond them they give what saturation would. All numbers have 16 bits, so that vectors
/// hold many.
template <std::int16_t Mask>
[[gnu::always_inline]] inline std::int16_t shadedChannel(std::int16_t pixel, std::int16_t shade, std::int16_t tint) {
  const auto cap = static_cast<std::int16_t>(32767 - (shade > 0 ? shade : 0));
  const auto low = static_cast<std::int16_t>(-32768 - (tint < 0 ? tint : 0));
  const auto high = static_cast<std::int16_t>(32767 - (tint > 0 ? tint : 0));
  auto value = static_cast<std::int16_t>(pixel & Mask);
  value = value < cap ? value : cap;
  value = static_cast<std::int16_t>(value + shade);
  value = value > low ? value : low;
  value = value < high ? value : high;
  value = static_cast<std::int16_t>(value + tint);
  value = value > 0 ? value : std::int16_t{0};
  value = value < Mask ? value : Mask;
  return static_cast<std::int16_t>(value & Mask);
}

void shadePixels(std::uint8_t* __restrict to, const std::uint8_t* __restrict from, const std::int16_t* shades,
                 std::size_t count, const std::int16_t (&tint)[3]) {
  const std::int16_t blue = tint[0], green = tint[1], red = tint[2];
  for (std::size_t i = 0; i < count; ++i) {
    const auto pixel = static_cast<std::int16_t>(load16(from + 2 * i));
    const std::int16_t shade = shades[i];
    const int out = shadedChannel<0x001F>(pixel, shade, blue) | shadedChannel<0x03E0>(pixel, shade, green) |
                    shadedChannel<0x7C00>(pixel, static_cast<std::int16_t>(shade * 32), red);
    store16(to + 2 * i, static_cast<std::uint16_t>(out));
  }
}

constexpr LandscapeKernels kernelsOfThisFile = {sumColumns, smoothSums, waveRow<false>, waveRow<true>, shadePixels};

}  // namespace

}  // namespace kx
