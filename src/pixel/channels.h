// Colour rules: channels out of a pixel value and back, and the grey value. Everything that converts colours uses
// these. SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstdint>

#include "kxgraphic/types.h"
#include "pixel/formats.h"

namespace kx {

/// Three channels, 0 to 255, in the order of a palette entry and of a 24-bit pixel in memory.
struct Rgb {
  std::uint8_t b, g, r;

  friend constexpr bool operator==(const Rgb&, const Rgb&) = default;
};

/// Nearest integer, ties to even, of a value from 0 to 2^31: adding 2^52 + 2^51 leaves no bits for the fraction.
constexpr std::uint32_t roundToNearest(double value) {
  return static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(value + 0x1.8p52));
}

constexpr double blueWeight = 0.144;
constexpr double redWeight = 0.299;
constexpr double greenWeight = 0.557;

/// Brightness, 0 to 255, before rounding. Settled: the weights and the order of the sum are the library's own; ties
/// (an exact half) fall as double precision has them.
constexpr double luminance(std::uint32_t b, std::uint32_t r, std::uint32_t g) {
  // Signed, as processors convert signed integers in one instruction.
  return blueWeight * static_cast<std::int32_t>(b) + redWeight * static_cast<std::int32_t>(r) +
         greenWeight * static_cast<std::int32_t>(g);
}

/// Grey of formats 3 and 4.
constexpr std::uint32_t greyValue(std::uint32_t b, std::uint32_t r, std::uint32_t g) {
  return roundToNearest(luminance(b, r, g));
}

/// The pixel of format 0: set from half brightness on.
constexpr std::uint32_t monoValue(std::uint32_t b, std::uint32_t r, std::uint32_t g) {
  return luminance(b, r, g) >= 128.0;
}

/// Pixel value from channels of 0 to 255, 0 for unknown formats. Format 4 gives a grey level, not an index.
constexpr std::uint32_t fromChannels(std::uint32_t format, std::uint32_t r, std::uint32_t g, std::uint32_t b) {
  switch (formatCode(format)) {
    case KX_FORMAT_MONO:
      return monoValue(b, r, g);
    case KX_FORMAT_GREY:
    case KX_FORMAT_PALETTE:
      return greyValue(b, r, g);
    case KX_FORMAT_555:
      return (r & 0xF8) << 7 | (g & 0xF8) << 2 | b >> 3;
    case KX_FORMAT_565:
      return (r & 0xF8) << 8 | (g & 0xFC) << 3 | b >> 3;
    case KX_FORMAT_888:
      return (r & 0xFF) << 16 | (g & 0xFF) << 8 | (b & 0xFF);
    default:
      return 0;
  }
}

constexpr std::uint32_t fromChannels(std::uint32_t format, Rgb colour) {
  return fromChannels(format, colour.r, colour.g, colour.b);
}

/// Channels of a pixel value, all 0 for unknown formats. Settled: the low bits that a shift leaves are filled with
/// ones. Format 4 gives the index in each channel.
constexpr Rgb toChannels(std::uint32_t format, std::uint32_t value) {
  const auto rgb = [](std::uint32_t r, std::uint32_t g, std::uint32_t b) {
    return Rgb{static_cast<std::uint8_t>(b), static_cast<std::uint8_t>(g), static_cast<std::uint8_t>(r)};
  };
  switch (formatCode(format)) {
    case KX_FORMAT_MONO:
      return value != 0 ? rgb(255, 255, 255) : rgb(0, 0, 0);
    case KX_FORMAT_GREY:
    case KX_FORMAT_PALETTE:
      return rgb(value, value, value);
    case KX_FORMAT_555:
      return rgb((value & 0x7C00) >> 7 | 7, (value & 0x3E0) >> 2 | 7, (value & 0x1F) << 3 | 7);
    case KX_FORMAT_565:
      return rgb((value & 0xF800) >> 8 | 7, (value & 0x7E0) >> 3 | 3, (value & 0x1F) << 3 | 7);
    case KX_FORMAT_888:
      return rgb(value >> 16, value >> 8, value);
    default:
      return rgb(0, 0, 0);
  }
}

}  // namespace kx
