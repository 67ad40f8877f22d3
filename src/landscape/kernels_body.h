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

/// What shading does to one channel. The bounds stand in for saturation at 16 bits: within them no sum leaves that
/// range, and beyond them they give what saturation would. All numbers have 16 bits, so that vectors hold many.
struct ShadedChannel {
  std::int16_t mask;       ///< of the channel in its place
  std::int16_t shade;      ///< added first
  std::int16_t tint;       ///< added second
  std::int16_t cap;        ///< upper bound before the first sum
  std::int16_t low, high;  ///< bounds before the second

  ShadedChannel(std::int16_t channel, std::int32_t first, std::int16_t second)
      : mask(channel),
        shade(static_cast<std::int16_t>(first)),
        tint(second),
        cap(static_cast<std::int16_t>(32767 - (shade > 0 ? shade : 0))),
        low(static_cast<std::int16_t>(-32768 - (tint < 0 ? tint : 0))),
        high(static_cast<std::int16_t>(32767 - (tint > 0 ? tint : 0))) {}

  [[nodiscard]] std::int16_t of(std::uint32_t pixel) const {
    auto value = static_cast<std::int16_t>(static_cast<std::int16_t>(pixel) & mask);
    value = value < cap ? value : cap;
    value = static_cast<std::int16_t>(value + shade);
    value = value > low ? value : low;
    value = value < high ? value : high;
    value = static_cast<std::int16_t>(value + tint);
    value = value > 0 ? value : std::int16_t{0};
    value = value < mask ? value : mask;
    return static_cast<std::int16_t>(value & mask);
  }
};

void shadeBlock(std::uint8_t* to, std::ptrdiff_t toPitch, const std::uint8_t* from, std::ptrdiff_t fromPitch,
                std::size_t size, std::int32_t shade, const std::int16_t (&tint)[3]) {
  const ShadedChannel blue(0x001F, shade, tint[0]), green(0x03E0, shade, tint[1]), red(0x7C00, shade * 32, tint[2]);
  for (std::size_t row = 0; row < size; ++row, to += toPitch, from += fromPitch)
    for (std::size_t i = 0; i < size; ++i) {
      const std::uint32_t pixel = load16(from + 2 * i);
      store16(to + 2 * i, static_cast<std::uint16_t>(blue.of(pixel) | green.of(pixel) | red.of(pixel)));
    }
}

constexpr LandscapeKernels kernelsOfThisFile = {sumColumns, smoothSums, waveRow<false>, waveRow<true>, shadeBlock};

}  // namespace

}  // namespace kx
