// One colour blended into many pixels: all channels of a pixel in one product.
// Internal linkage, as the types of the formats have it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/blend_rules.h"

namespace kx {

namespace {

/// The same as blendAlpha<Format>(colour, pixel, alpha). Channels lie in lanes of a wide word, each 16 bits further
/// from the one before than in the pixel. A lane holds x + 1 for the sum x of both weighted channels, up to 65026, and
/// floor(x / 255) is (x + 1 + ((x + 1) >> 8)) >> 8.
template <typename Format>
class ColourBlend {
public:
  ColourBlend(std::uint32_t colour, std::uint32_t alpha)
      : alpha_(alpha), offset_(spread(colour) * (255 - alpha) + lanes(1)) {}

  std::uint32_t operator()(std::uint32_t pixel) const {
    const std::uint64_t sum = spread(pixel) * alpha_ + offset_;
    const std::uint64_t quotient = (sum + (sum >> 8 & lanes(0xFF))) >> 8;
    std::uint64_t joined = 0;
    unsigned lift = 0;
    for (const Channel& c : Format::channels) {
      joined |= quotient >> lift & c.mask << c.shift;
      lift += laneLift;
    }
    return static_cast<std::uint32_t>(joined);
  }

private:
  static constexpr unsigned laneLift = 16;

  /// `value` in each lane.
  static constexpr std::uint64_t lanes(std::uint64_t value) {
    std::uint64_t all = 0;
    unsigned lift = 0;
    for (const Channel& c : Format::channels) {
      all |= value << (c.shift + lift);
      lift += laneLift;
    }
    return all;
  }

  static constexpr std::uint64_t spread(std::uint64_t pixel) {
    std::uint64_t all = 0;
    unsigned lift = 0;
    for (const Channel& c : Format::channels) {
      all |= (pixel & c.mask << c.shift) << lift;
      lift += laneLift;
    }
    return all;
  }

  std::uint32_t alpha_;
  std::uint64_t offset_;
};

}  // namespace

}  // namespace kx
