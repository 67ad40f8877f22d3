// One colour blended into many pixels: two products do for the three channels of a pixel.
// Internal linkage, as the types of the formats have it.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <iterator>

#include "pixel/blend_rules.h"

namespace kx {

namespace {

/// The same as blendAlpha<Format>(colour, pixel, alpha). The first and the third channel lie in lanes of 16 bits of one
/// word, the second has a word of its own. A lane holds x + 1 for the sum x of both weighted channels, up to 65026, and
/// floor(x / 255) is (x + 1 + ((x + 1) >> 8)) >> 8.
template <typename Format>
class ColourBlend {
public:
  ColourBlend(std::uint32_t colour, std::uint32_t alpha)
      : alpha_(alpha),
        outer_(outer(colour) * (255 - alpha) + outerOne),
        middle_(middle(colour) * (255 - alpha) + middleOne) {}

  std::uint32_t operator()(std::uint32_t pixel) const {
    const std::uint32_t ends = quotient(outer(pixel) * alpha_ + outer_, 0xFF * outerOne);
    if constexpr (!hasThree) return ends & Format::channels[0].mask;
    const std::uint32_t between = quotient(middle(pixel) * alpha_ + middle_, 0xFF * middleOne);
    return (ends & first) | (ends >> lift & third) | (between & second);
  }

private:
  static constexpr bool hasThree = std::size(Format::channels) == 3;

  /// The bits of a channel in the pixel; 0 for one that the format lacks.
  static constexpr std::uint32_t bitsOf(std::size_t channel) {
    if (channel >= std::size(Format::channels)) return 0;
    return Format::channels[channel].mask << Format::channels[channel].shift;
  }
  static constexpr unsigned shiftOf(std::size_t channel) {
    return channel < std::size(Format::channels) ? Format::channels[channel].shift : 0;
  }

  static constexpr std::uint32_t first = bitsOf(0), second = bitsOf(1), third = bitsOf(2);
  static constexpr unsigned lift = hasThree ? 16 - shiftOf(2) : 0;
  static constexpr std::uint32_t outerOne = hasThree ? 0x10001 : 1, middleOne = 1u << shiftOf(1);

  static constexpr std::uint32_t outer(std::uint32_t pixel) { return (pixel & first) | (pixel & third) << lift; }
  static constexpr std::uint32_t middle(std::uint32_t pixel) { return pixel & second; }

  /// Every lane by 255; what falls below a lane stays to be masked.
  static constexpr std::uint32_t quotient(std::uint32_t sums, std::uint32_t lanes) {
    return (sums + (sums >> 8 & lanes)) >> 8;
  }

  std::uint32_t alpha_, outer_, middle_;
};

}  // namespace

}  // namespace kx
