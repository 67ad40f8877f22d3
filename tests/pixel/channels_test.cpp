// The colour rules, against their definitions over whole domains.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "pixel/channels.h"

namespace {

TEST(Channels, GreyAndMonoEqualTheDoublePrecisionRuleForEveryColour) {
  for (unsigned b = 0; b < 256; ++b)
    for (unsigned r = 0; r < 256; ++r)
      for (unsigned g = 0; g < 256; ++g) {
        const double weighted = 0.144 * b + 0.299 * r + 0.557 * g;
        ASSERT_EQ(std::nearbyint(weighted), kx::greyValue(b, r, g)) << b << " " << r << " " << g;
        ASSERT_EQ(weighted >= 128.0, kx::monoValue(b, r, g) != 0) << b << " " << r << " " << g;
      }
}

TEST(Channels, AValueSurvivesItsChannels) {
  for (const std::uint32_t format : {3u, 4u, 5u, 6u}) {
    const std::uint32_t values = format < 5 ? 0x100 : format == 5 ? 0x8000 : 0x10000;
    for (std::uint32_t value = 0; value < values; ++value)
      ASSERT_EQ(value, kx::fromChannels(format, kx::toChannels(format, value))) << format;
  }
  for (std::uint32_t value = 0; value < 0x1000000; value += 0x10305)
    ASSERT_EQ(value, kx::fromChannels(7, kx::toChannels(7, value)));
}

TEST(Channels, FreedBitsAreOnes) {
  EXPECT_EQ((kx::Rgb{7, 7, 7}), kx::toChannels(5, 0));
  EXPECT_EQ((kx::Rgb{7, 3, 7}), kx::toChannels(6, 0));
  EXPECT_EQ((kx::Rgb{255, 255, 255}), kx::toChannels(5, 0x7FFF));
  EXPECT_EQ((kx::Rgb{255, 255, 255}), kx::toChannels(6, 0xFFFF));
  EXPECT_EQ((kx::Rgb{255, 255, 255}), kx::toChannels(0, 0x80));
  EXPECT_EQ((kx::Rgb{0x56, 0x34, 0x12}), kx::toChannels(7, 0xFF123456));
  for (const std::uint32_t format : {1u, 2u, 8u, 15u}) {
    EXPECT_EQ((kx::Rgb{0, 0, 0}), kx::toChannels(format, 0xFFFFFF));
    EXPECT_EQ(0u, kx::fromChannels(format, 255, 255, 255));
  }
}

}  // namespace
