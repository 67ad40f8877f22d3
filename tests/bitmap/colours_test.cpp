// Colours through the interface: the nearest entry at every instruction level, palettes of bitmaps, alpha planes.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

#include "bitmap/own_methods.h"
#include "kxgraphic/kxgraphic.h"
#include "pixel/channels.h"
#include "pixel/cpu.h"
#include "support/random.h"

namespace {

using Palette = std::array<std::uint8_t, 768>;

std::uint32_t plainNearest(const Palette& palette, int b, int g, int r) {
  std::uint32_t nearest = 0;
  int least = INT32_MAX;
  for (std::uint32_t i = 0; i < 256; ++i) {
    const int distance =
        std::abs(b - palette[3 * i]) + std::abs(g - palette[3 * i + 1]) + std::abs(r - palette[3 * i + 2]);
    if (distance <= least) least = distance, nearest = i;
  }
  return nearest;
}

/// Random entries; in later kinds only some bits of them, so that many are equal or all are far away.
Palette randomPalette(kxtest::Random& random, int kind) {
  constexpr std::uint8_t kept[] = {0xFF, 0xC0, 0x80, 0x01, 0x00};
  Palette palette;
  random.fill(palette);
  for (auto& channel : palette) channel = static_cast<std::uint8_t>(channel & kept[kind]);
  return palette;
}

class NearestColour : public testing::TestWithParam<kx::CpuLevel> {
protected:
  void SetUp() override {
    if (GetParam() > kx::detectedCpuLevel()) GTEST_SKIP() << "not on this processor";
    kx::limitCpuLevel(GetParam());
  }
  void TearDown() override { kx::limitCpuLevel(kx::CpuLevel::Avx512); }
};

TEST_P(NearestColour, EqualsThePlainLoop) {
  kxtest::Random random(0x5EA2C);
  for (int kind = 0; kind < 5; ++kind)
    for (int round = 0; round < 20; ++round) {
      const Palette palette = randomPalette(random, kind);
      for (int i = 0; i < 200; ++i) {
        const std::uint32_t value = i == 0 ? 0 : i == 1 ? 0xFFFFFF : random.next();
        const kx::Rgb colour = kx::toChannels(7, value);
        ASSERT_EQ(plainNearest(palette, colour.b, colour.g, colour.r), KX_findNearestColor(7, value, palette.data()))
            << kind << " " << value;
      }
    }
}

TEST_P(NearestColour, TheLastOfEqualsWinsAtEveryDistanceAndPlace) {
  for (const int level : {0, 84, 85, 86, 169, 170, 171, 254, 255}) {
    Palette palette;
    palette.fill(static_cast<std::uint8_t>(level));
    EXPECT_EQ(255u, KX_findNearestColor(7, 0, palette.data()));
    EXPECT_EQ(255u, KX_findNearestColor(7, 0xFFFFFF, palette.data()));
  }
  for (std::uint32_t first = 0; first < 256; first += 5)
    for (std::uint32_t second = 0; second < 256; ++second) {
      Palette palette;
      palette.fill(255);
      palette[3 * first] = palette[3 * second + 2] = 254;
      ASSERT_EQ(std::max(first, second), KX_findNearestColor(7, 0, palette.data()));
    }
}

INSTANTIATE_TEST_SUITE_P(Levels, NearestColour,
                         testing::Values(kx::CpuLevel::Portable, kx::CpuLevel::Sse2, kx::CpuLevel::Avx2));

TEST(Colours, NearestTakesTheChannelsOfItsFormat) {
  kxtest::Random random(0xF0);
  const Palette palette = randomPalette(random, 0);
  for (std::uint32_t format = 0; format < 16; ++format)
    for (int i = 0; i < 100; ++i) {
      const std::uint32_t value = random.next();
      EXPECT_EQ(plainNearest(palette, static_cast<int>(KX_toBlue(format, value)),
                             static_cast<int>(KX_toGreen(format, value)), static_cast<int>(KX_toRed(format, value))),
                KX_findNearestColor(format, value, palette.data()));
    }
}

TEST(Colours, ToRgbOfEveryFormat) {
  EXPECT_EQ(0xFFFFu, KX_toRGB(6, 255, 255, 255));
  EXPECT_EQ(0x7FFFu, KX_toRGB(0x15, 255, 255, 255));
  EXPECT_EQ(0x123456u, KX_toRGB(7, 0x512, 0xF34, 0x156));
  EXPECT_EQ(1u, KX_toRGB(0, 200, 200, 200));
  EXPECT_EQ(0u, KX_toRGB(0, 50, 50, 50));
  EXPECT_EQ(76u, KX_toRGB(3, 255, 0, 0));
  EXPECT_EQ(142u, KX_toRGB(4, 0, 255, 0));
  EXPECT_EQ(0x12u, KX_toRed(7, 0x123456));
  EXPECT_EQ(7u, KX_toRed(5, 0));
  EXPECT_EQ(3u, KX_toGreen(6, 0));
}

/// The rule of the palette, pixel by pixel.
void plainCalculate(Palette& palette, Bitmap* bitmap) {
  std::uint32_t count = 0;
  for (std::int32_t y = 0; y < bitmap->height; ++y)
    for (std::int32_t x = 0; x < bitmap->width; ++x) {
      const std::uint32_t value = KX_getPixel(bitmap, x, y);
      const std::uint32_t channels[] = {KX_toBlue(bitmap->format, value), KX_toGreen(bitmap->format, value),
                                        KX_toRed(bitmap->format, value)};
      const bool pull = count >= 256;
      const std::uint32_t entry = pull ? plainNearest(palette, static_cast<int>(channels[0]),
                                                      static_cast<int>(channels[1]), static_cast<int>(channels[2]))
                                       : count;
      for (std::uint32_t c = 0; c < 3; ++c) {
        std::uint8_t& stored = palette[3 * entry + c];
        stored = static_cast<std::uint8_t>(pull ? (stored + channels[c]) >> 1 : channels[c]);
      }
      ++count;
    }
}

int foreignReads = 0;
std::uint32_t KX_CALL foreignGetPixel(Bitmap* bitmap, std::int32_t x, std::int32_t y) {
  ++foreignReads;
  return ~KX_getPixel(bitmap, x, y);
}

TEST(CalculatePalette, FollowsTheRuleInEveryColourFormatAndSize) {
  kxtest::Random random(0xBA1);
  for (const std::uint32_t format : {5u, 6u, 7u})
    for (const auto& [width, height] : {std::pair{1, 1}, {2, 2}, {16, 16}, {257, 1}, {61, 40}}) {
      Bitmap* bitmap = nullptr;
      ASSERT_EQ(0u, KX_createBitmap(&bitmap, width, height, format, 0, 0, kx::ownBitmapMethods()));
      for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x)
          KX_setPixel(bitmap, x, y, KX_toRGB(format, random.byte(), random.byte() & 0x60, random.below(3) * 100));
      Palette expected, actual;
      expected.fill(0xEE);
      actual.fill(0xEE);
      plainCalculate(expected, bitmap);
      EXPECT_EQ(0u, KX_calculatePalette(actual.data(), bitmap));
      EXPECT_EQ(expected, actual) << format << " " << width;
      EXPECT_EQ(0u, bitmap->lockCount);
      KX_deleteBitmap(bitmap);
    }
}

TEST(CalculatePalette, ReadsThroughAForeignGetPixel) {
  BitmapMethods foreign = *kx::ownBitmapMethods();
  foreign.getPixel = foreignGetPixel;
  Bitmap* bitmap = nullptr;
  ASSERT_EQ(0u, KX_createBitmap(&bitmap, 2, 1, 7, 0, 0, &foreign));
  KX_setPixel(bitmap, 0, 0, 0x000000);
  KX_setPixel(bitmap, 1, 0, 0xFF00FE);
  Palette palette{};
  foreignReads = 0;
  EXPECT_EQ(0u, KX_calculatePalette(palette.data(), bitmap));
  EXPECT_EQ(2, foreignReads);
  EXPECT_EQ((std::array<std::uint8_t, 7>{255, 255, 255, 1, 255, 0, 0}),
            (std::array{palette[0], palette[1], palette[2], palette[3], palette[4], palette[5], palette[6]}));
  KX_deleteBitmap(bitmap);
}

TEST(CalculatePalette, FixedPalettesOfTheOtherFormats) {
  for (const std::uint32_t format : {0u, 1u, 3u, 4u, 0x13u}) {
    Bitmap* bitmap = nullptr;
    ASSERT_EQ(0u, KX_createBitmap(&bitmap, 4, 4, format, 0, 0, kx::ownBitmapMethods()));
    kxtest::Random random(0x4);
    if (bitmap->palette != nullptr) std::generate_n(bitmap->palette, 768, [&] { return random.byte(); });
    Palette palette;
    palette.fill(0xEE);
    EXPECT_EQ(0u, KX_calculatePalette(palette.data(), bitmap));
    for (std::uint32_t i = 0; i < 768; ++i) {
      const std::uint32_t expected = format == 0   ? (i < 384 ? 0 : 255)
                                     : format == 1 ? 0xEE
                                     : format == 4 ? bitmap->palette[i]
                                                   : i / 3;
      ASSERT_EQ(expected, palette[i]) << format << " " << i;
    }
    KX_deleteBitmap(bitmap);
  }
}

TEST(CalculatePalette, WhatIsRefusedAndStaysLocked) {
  Bitmap* bitmap = nullptr;
  ASSERT_EQ(0u, KX_createBitmap(&bitmap, 4, 4, 4, 0, 0, kx::ownBitmapMethods()));
  Palette palette{};
  EXPECT_EQ(7u, KX_calculatePalette(nullptr, bitmap));
  EXPECT_EQ(7u, KX_calculatePalette(palette.data(), nullptr));
  EXPECT_EQ(0u, bitmap->lockCount);
  std::uint8_t* const stored = std::exchange(bitmap->palette, nullptr);
  EXPECT_EQ(0x2002u, KX_calculatePalette(palette.data(), bitmap));
  EXPECT_EQ(1u, bitmap->lockCount);
  std::uint8_t* const pixels = std::exchange(bitmap->pixels, nullptr);
  EXPECT_EQ(0x2001u, KX_calculatePalette(palette.data(), bitmap));  // its own lock refuses already
  EXPECT_EQ(1u, bitmap->lockCount);
  bitmap->palette = stored;
  bitmap->pixels = pixels;
  KX_deleteBitmap(bitmap);
}

TEST(AlphaPlanes, SplitAndJoinEveryWidth) {
  kxtest::Random random(0x32);
  constexpr std::int32_t height = 3, wide = 4 * 40 + 5, narrow = 3 * 40 + 7, thin = 40 + 3;
  std::vector<std::uint8_t> pixels(wide * height);
  random.fill(pixels);
  for (std::int32_t width = 1; width <= 40; ++width) {
    std::vector<std::uint8_t> colours(narrow * height, 0xEE), alphas(thin * height, 0xEE), joined(wide * height, 0xEE);
    ASSERT_EQ(0u, KX_convert32RGBA(colours.data(), narrow, alphas.data(), thin, pixels.data(), width, height, wide));
    ASSERT_EQ(0u, KX_convertTo32RGBA(joined.data(), wide, colours.data(), narrow, alphas.data(), thin, width, height));
    for (std::int32_t y = 0; y < height; ++y) {
      for (std::int32_t i = 0; i < wide; ++i)
        ASSERT_EQ(i < 4 * width ? pixels[static_cast<std::size_t>(wide * y + i)] : 0xEE,
                  joined[static_cast<std::size_t>(wide * y + i)]);
      for (std::int32_t i = 0; i < narrow; ++i)
        ASSERT_EQ(i < 3 * width ? pixels[static_cast<std::size_t>(wide * y + i / 3 * 4 + i % 3)] : 0xEE,
                  colours[static_cast<std::size_t>(narrow * y + i)]);
      for (std::int32_t i = 0; i < thin; ++i)
        ASSERT_EQ(i < width ? pixels[static_cast<std::size_t>(wide * y + 4 * i + 3)] : 0xEE,
                  alphas[static_cast<std::size_t>(thin * y + i)]);
    }
  }
}

TEST(AlphaPlanes, BadArgumentsAreRefusedAndNothingIsWritten) {
  for (int spoilt = 0; spoilt < 8; ++spoilt) {
    std::uint8_t a[16], b[16], c[16];
    std::fill_n(a, 16, 0xEE), std::fill_n(b, 16, 0xEE), std::fill_n(c, 16, 0xEE);
    std::int32_t sizes[] = {4, 4, 4, 1, 1};
    if (spoilt < 5) sizes[spoilt] = spoilt % 2 == 0 ? 0 : -1;
    std::uint8_t* blocks[] = {a, b, c};
    if (spoilt >= 5) blocks[spoilt - 5] = nullptr;
    EXPECT_EQ(7u, KX_convert32RGBA(blocks[0], sizes[0], blocks[1], sizes[1], blocks[2], sizes[3], sizes[4], sizes[2]));
    EXPECT_EQ(7u,
              KX_convertTo32RGBA(blocks[0], sizes[0], blocks[1], sizes[1], blocks[2], sizes[2], sizes[3], sizes[4]));
    for (const std::uint8_t* block : {a, b, c}) EXPECT_EQ(16, std::count(block, block + 16, 0xEE));
  }
}

}  // namespace
