// Which pixels a flood fill takes, and how it goes through a row of each pixel size.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

#include "draw/colour_formats.h"
#include "pixel/access.h"

namespace kx {

namespace {

/// Pixels of whole bytes.
template <std::size_t Bytes>
struct BytePixels {
  static constexpr std::size_t bytes = Bytes;
  static std::uint32_t load(const std::uint8_t* row, std::int32_t x) { return loadPixel<Bytes>(row + offset(x)); }
  static void store(std::uint8_t* row, std::int32_t x, std::uint32_t value) {
    storePixel<Bytes>(row + offset(x), value);
  }
  static std::ptrdiff_t offset(std::int32_t x) { return static_cast<std::ptrdiff_t>(x) * static_cast<int>(Bytes); }
};

struct BitPixels {
  static constexpr std::size_t bytes = 0;
  static std::uint32_t load(const std::uint8_t* row, std::int32_t x) { return readPixel(row, KX_FORMAT_MONO, x); }
  static void store(std::uint8_t* row, std::int32_t x, std::uint32_t value) {
    writePixel(row, KX_FORMAT_MONO, x, value);
  }
};

/// Tolerance 0: the seed's value and no other.
struct ExactMatch {
  std::uint32_t seed;
  bool operator()(std::uint32_t value) const { return value == seed; }
};

/// Each channel within the tolerance of the seed's. As every channel is widened to eight bits in the same way, bounds
/// on the fields of the pixel value say the same.
class ToleranceMatch {
public:
  /// `tolerance` in units of channels of eight bits.
  ToleranceMatch(std::uint32_t format, std::uint32_t seed, std::uint32_t tolerance) {
    const FormatInfo& info = formatInfo(format);
    if (info.redMask == 0) {
      const bool isMono = formatCode(format) == KX_FORMAT_MONO;
      fields_[0] = bounds(isMono ? 1 : 0xFF, seed, tolerance);
    } else {
      fields_[0] = bounds(info.redMask, seed, tolerance);
      fields_[1] = bounds(info.greenMask, seed, tolerance);
      fields_[2] = bounds(info.blueMask, seed, tolerance);
    }
  }

  bool operator()(std::uint32_t value) const {
    for (const Field& field : fields_)
      if ((value & field.mask) < field.low || (value & field.mask) > field.high) return false;
    return true;
  }

private:
  struct Field {
    std::uint32_t mask = 0, low = 0, high = 0;
  };

  static Field bounds(std::uint32_t mask, std::uint32_t seed, std::uint32_t tolerance) {
    const std::uint32_t unit = mask & (0 - mask);
    const std::uint32_t greatest = mask / unit;
    // What one step of the field is worth in eight bits: 1, 4, 8, and 255 for a single bit.
    const std::uint32_t worth = greatest == 1 ? 255 : 256 / (greatest + 1);
    const std::uint32_t reach = tolerance / worth;
    const std::uint32_t level = (seed & mask) / unit;
    return {mask, (level - std::min(level, reach)) * unit, std::min(level + reach, greatest) * unit};
  }

  Field fields_[3];
};

/// Paints from x to the right as long as pixels match, at most to the last column. Returns the first column that was
/// not painted.
template <typename Pixels, typename Match>
std::int32_t paintRight(std::uint8_t* row, std::int32_t x, std::int32_t width, std::uint32_t colour,
                        const Match& matches) {
  for (; x < width && matches(Pixels::load(row, x)); ++x) Pixels::store(row, x, colour);
  return x;
}

/// The same for one value, in words of eight bytes that hold `lanes` pixels each.
template <typename Pixels>
requires(Pixels::bytes != 0) std::int32_t
    paintRight(std::uint8_t* row, std::int32_t x, std::int32_t width, std::uint32_t colour, const ExactMatch& matches) {
  constexpr int wordBytes = 8;
  constexpr int pixelBits = 8 * static_cast<int>(Pixels::bytes);
  constexpr int lanes = 64 / pixelBits;
  constexpr std::uint64_t used = ~std::uint64_t{0} >> (64 - lanes * pixelBits);
  const auto spread = [](std::uint32_t value) {
    std::uint64_t word = 0;
    for (int lane = 0; lane < lanes; ++lane) word = word << pixelBits | (value & (used >> (lanes - 1) * pixelBits));
    return word;
  };
  const std::uint64_t seeds = spread(matches.seed);
  const std::uint64_t colours = spread(colour);
  for (; std::int64_t{width - x} * static_cast<int>(Pixels::bytes) >= wordBytes; x += lanes) {
    std::uint8_t* const at = row + Pixels::offset(x);
    std::uint64_t word;
    std::memcpy(&word, at, wordBytes);
    const std::uint64_t difference = (word ^ seeds) & used;
    if (difference == 0) {
      std::memcpy(at, &colours, lanes * Pixels::bytes);
      continue;
    }
    const int equal = std::countr_zero(difference) / pixelBits;
    const std::uint64_t kept = ~std::uint64_t{0} << equal * pixelBits;
    word = (word & kept) | (colours & ~kept);
    std::memcpy(at, &word, wordBytes);
    return x + equal;
  }
  for (; x < width && matches(Pixels::load(row, x)); ++x) Pixels::store(row, x, colour);
  return x;
}

}  // namespace

}  // namespace kx
