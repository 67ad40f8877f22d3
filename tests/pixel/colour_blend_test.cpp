// Blending one colour at once per pixel, against the rule channel by channel.
// SPDX-License-Identifier: MIT
#include "pixel/colour_blend.h"

#include <gtest/gtest.h>

namespace {

/// Every weight with every value of a channel in the pixel; neighbours differ, so that no channel may spill.
template <typename Format>
void expectTheRule() {
  constexpr std::uint32_t everyChannel = 0x01FCF901;  // times a value: something else in each channel
  for (std::uint32_t alpha = 0; alpha < 256; ++alpha)
    for (std::uint32_t s = 0; s < 256; s += 5)
      for (std::uint32_t d = 0; d < 256; ++d) {
        const std::uint32_t colour = s * 0x010101 ^ s << 13;
        const std::uint32_t pixel = d * everyChannel & (Format::bytes == 3 ? 0xFFFFFF : (1u << 8 * Format::bytes) - 1);
        const std::uint32_t expected = kx::blendAlpha<Format>(colour, pixel, alpha);
        if (kx::ColourBlend<Format>(colour, alpha)(pixel) != expected)
          FAIL() << std::hex << colour << " over " << pixel << " at " << alpha;
      }
}

TEST(ColourBlend, IsTheRuleOfConstantAlpha) {
  expectTheRule<kx::Grey8>();
  expectTheRule<kx::Rgb555>();
  expectTheRule<kx::Rgb565>();
  expectTheRule<kx::Bgr24>();
}

}  // namespace
