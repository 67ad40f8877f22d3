// Operations on whole images against the rules written out, in every format, storage and instruction set.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>

#include "draw/model.h"
#include "pixel/cpu.h"
#include "pixel/image_rules.h"
#include "support/test_heap.h"

namespace {

using kxtest::Image;
using kxtest::Model;
using kxtest::Random;

struct Colour {
  int r, g, b;
};

/// Eight-bit channels as the image operations widen them: the low bits are ones, three of them for every field.
Colour widen(std::uint32_t format, std::uint32_t value) {
  const int v = static_cast<int>(value);
  switch (format & 15) {
    case 5:
      return {(v >> 10 & 31) << 3 | 7, (v >> 5 & 31) << 3 | 7, (v & 31) << 3 | 7};
    case 6:
      return {(v >> 11 & 31) << 3 | 7, (v >> 5 & 63) << 2 | 7, (v & 31) << 3 | 7};
    case 7:
      return {v >> 16 & 255, v >> 8 & 255, v & 255};
    default:
      return {v, v, v};
  }
}

std::uint32_t narrow(std::uint32_t format, Colour c) {
  switch (format & 15) {
    case 5:
      return static_cast<std::uint32_t>(c.r >> 3 << 10 | c.g >> 3 << 5 | c.b >> 3);
    case 6:
      return static_cast<std::uint32_t>(c.r >> 3 << 11 | c.g >> 2 << 5 | c.b >> 3);
    case 7:
      return static_cast<std::uint32_t>(c.r << 16 | c.g << 8 | c.b);
    default:
      return static_cast<std::uint32_t>(c.r);
  }
}

int lightnessOf(Colour c) { return (std::max({c.r, c.g, c.b}) + std::min({c.r, c.g, c.b})) / 2; }

std::uint32_t grey(std::uint32_t format, std::uint32_t value) {
  const Colour c = widen(format, value);
  volatile double sum = 0.299 * c.r;
  sum = sum + 0.557 * c.g;
  sum = sum + 0.144 * c.b;
  const int y = static_cast<int>(std::nearbyint(sum));
  return narrow(format, {y, y, y});
}

struct Brightness {
  int brightness, contrast, pivot;
  bool transparent;
};

std::uint32_t brighten(std::uint32_t format, std::uint32_t value, const Brightness& rule) {
  const Colour c = widen(format, value);
  const int v = lightnessOf(c);
  const int contrast = v > rule.pivot ? rule.contrast : v < rule.pivot ? -rule.contrast : 0;
  const int factor = std::max(0, 256 + rule.brightness + contrast);
  const auto scale = [factor](int channel) { return std::min(255, channel * factor / 256); };
  const std::uint32_t scaled = factor == 256 ? value : narrow(format, {scale(c.r), scale(c.g), scale(c.b)});
  if (!rule.transparent) return scaled;
  return value == 0 ? 0 : std::max(scaled, 1u);
}

int luminance(Model& model) {
  int sum = 0;
  for (std::int32_t y = 0; y < model.height; ++y) {
    int row = 0;
    for (std::int32_t x = 0; x < model.width; ++x) row += lightnessOf(widen(model.format, model.at(x, y)));
    sum += row / model.width;
  }
  return sum / model.height;
}

std::uint32_t invert(std::uint32_t format, std::uint32_t value) {
  const Colour c = widen(format, value);
  return narrow(format, {255 - c.r, 255 - c.g, 255 - c.b});
}

/// What each operation makes of a model. An operation on colours takes the palette in format 4.
struct Operation {
  const char* name;
  std::function<std::uint32_t(Bitmap*)> call;
  std::function<void(Model&)> expected;
};

Model paletteOf(const Bitmap* bitmap) {
  Model palette{7, 256, 1};
  for (std::size_t i = 0; i < 256; ++i) {
    const std::uint8_t* entry = bitmap->palette + 3 * i;
    palette.values[i] = static_cast<std::uint32_t>(entry[0] | entry[1] << 8 | entry[2] << 16);
  }
  return palette;
}

void changeAll(Model& model, const std::function<std::uint32_t(std::uint32_t)>& change) {
  for (auto& value : model.values) value = change(value);
}

/// The operation on colours number `kind`, with random arguments.
Operation colourOperation(int kind, Random& random) {
  if (kind == 0)
    return {"grey", KX_grayScale, [](Model& model) {
              if ((model.format & 15) != 3) changeAll(model, [&](std::uint32_t v) { return grey(model.format, v); });
            }};
  if (kind == 1)
    return {"invert", KX_invertBitmap,
            [](Model& model) { changeAll(model, [&](std::uint32_t v) { return invert(model.format, v); }); }};
  Brightness rule{random.between(-256, 256), random.between(-256, 256), random.between(0, 260), kind == 3};
  if (random.below(4) == 0) rule.pivot = -1;
  if (random.below(4) == 0) rule.brightness = rule.contrast = 0;
  return {"brightness",
          [=](Bitmap* bitmap) {
            return (rule.transparent ? KX_changeBrightnessContrastTransparent : KX_changeBrightnessContrast)(
                bitmap, rule.brightness, rule.contrast, rule.pivot);
          },
          [=](Model& model) {
            Brightness found = rule;
            if (found.pivot < 0) found.pivot = luminance(model);
            changeAll(model, [&](std::uint32_t v) { return brighten(model.format, v, found); });
          }};
}

class ImageOperations : public testing::TestWithParam<kx::CpuLevel> {
protected:
  void SetUp() override { kx::limitCpuLevel(GetParam()); }
  void TearDown() override { kx::limitCpuLevel(kx::CpuLevel::Avx512); }
};

INSTANTIATE_TEST_SUITE_P(Levels, ImageOperations, testing::Values(kx::CpuLevel::Portable, kx::CpuLevel::Avx512));

TEST_P(ImageOperations, Colours) {
  Random random(0x6A1);
  for (const std::uint32_t format : kxtest::drawingFormats)
    for (int round = 0; round < 80; ++round) {
      Model model{format, random.between(1, 140), random.between(1, 4)};
      model.fillWithNoise(random, random.below(4));
      const Image image(model);
      if (image->palette != nullptr)
        for (int i = 0; i < 768; ++i) image->palette[i] = static_cast<std::uint8_t>(random.byte() & random.byte());
      const Operation operation = colourOperation(round % 4, random);
      const bool hasColours = (format & 15) != 0 && (format & 15) != 4;
      if (hasColours) operation.expected(model);
      Model palette{7, 1, 1};
      if (image->palette != nullptr) {
        palette = paletteOf(image);
        operation.expected(palette);
      }
      ASSERT_EQ(0u, operation.call(image));
      ASSERT_EQ(model.values, image.values()) << operation.name << " format " << format << " round " << round;
      if (image->palette != nullptr) {
        ASSERT_EQ(palette.values, paletteOf(image).values) << operation.name;
      }
      ASSERT_EQ(0u, image->lockCount);
    }
}

TEST_P(ImageOperations, MirrorsAndLuminance) {
  Random random(0x3117);
  for (const std::uint32_t format : kxtest::drawingFormats)
    for (int round = 0; round < 60; ++round) {
      Model model{format, random.between(1, 200), random.between(1, 7)};
      model.fillWithNoise(random, round % 3 == 0 ? 2 : 0);
      const Image image(model);
      Model before = model;
      for (std::int32_t y = 0; y < model.height; ++y)
        for (std::int32_t x = 0; x < model.width; ++x)
          model.at(x, y) = round % 2 == 0 ? before.at(x, model.height - 1 - y) : before.at(model.width - 1 - x, y);
      ASSERT_EQ(0u, (round % 2 == 0 ? KX_mirrorBitmapX : KX_mirrorBitmapY)(image));
      ASSERT_EQ(model.values, image.values()) << "format " << format << " round " << round;
      if ((format & 15) == 4) continue;
      const int expected = (format & 15) == 0 ? 128 : luminance(model);
      ASSERT_EQ(static_cast<std::uint32_t>(expected), KX_getAverageLuminance(image)) << format;
    }
}

/// The rule of integers, with double precision for its ties, is the rule of double precision - for every colour.
TEST(ImageResults, GreyOfEveryColour) {
  for (std::uint32_t r = 0; r < 256; ++r)
    for (std::uint32_t g = 0; g < 256; ++g) {
      const double redAndGreen = 0.299 * r + 0.557 * g;
      for (std::uint32_t b = 0; b < 256; ++b) {
        const auto expected = static_cast<std::uint32_t>(std::lrint(redAndGreen + 0.144 * b));
        ASSERT_EQ(expected, kx::imageGrey({r, g, b})) << r << ' ' << g << ' ' << b;
      }
    }
}

/// Vector kernels against the rules for every colour, so that each tie is met.
TEST_P(ImageOperations, GreyOfEveryColour) {
  std::vector<std::uint8_t> row(3 * 65536);
  const auto kernel = kx::imageKernels().grey[static_cast<std::size_t>(kx::ImageFormat::Bgr24)];
  for (std::uint32_t r = 0; r < 256; ++r) {
    for (std::uint32_t i = 0; i < 65536; ++i) {
      row[3 * i] = static_cast<std::uint8_t>(i);
      row[3 * i + 1] = static_cast<std::uint8_t>(i >> 8);
      row[3 * i + 2] = static_cast<std::uint8_t>(r);
    }
    kernel(row.data(), 65536);
    for (std::uint32_t i = 0; i < 65536; ++i) {
      const std::uint32_t expected = kx::imageGrey({r, i >> 8, i & 255});
      if (row[3 * i] != expected || row[3 * i + 1] != expected || row[3 * i + 2] != expected)
        FAIL() << r << ' ' << (i >> 8) << ' ' << (i & 255) << " gives " << int{row[3 * i]} << " not " << expected;
    }
  }
}

TEST(ImageResults, KnownValues) {
  Model red{7, 1, 1};
  red.values = {0xFF0000};
  const Image image(red);
  EXPECT_EQ(0u, KX_grayScale(image));
  EXPECT_EQ(0x4C4C4Cu, KX_getPixel(image, 0, 0));
  EXPECT_EQ(0u, KX_changeBrightnessContrast(image, -256, 0, 10));
  EXPECT_EQ(0u, KX_getPixel(image, 0, 0));
  EXPECT_EQ(0u, KX_setPixel(image, 0, 0, 0x102030));
  EXPECT_EQ(0u, KX_changeBrightnessContrastTransparent(image, -256, 0, 10));
  EXPECT_EQ(1u, KX_getPixel(image, 0, 0));
}

TEST(ImageResults, SharedPalettesAreRefused) {
  Model model{4, 3, 3};
  const Image image(model);
  std::fill_n(image->palette, 768, std::uint8_t{0x5A});
  const Model before = paletteOf(image);
  const std::function<std::uint32_t(Bitmap*)> calls[] = {
      KX_grayScale, KX_invertBitmap, KX_getAverageLuminance,
      [](Bitmap* bitmap) { return KX_changeBrightnessContrast(bitmap, 5, 5, -1); },
      [](Bitmap* bitmap) { return KX_changeBrightnessContrastTransparent(bitmap, 5, 5, 9); }};
  for (const std::uint32_t shared : {0x04u, 0x08u, 0x10u, 0x20u})
    for (const auto& call : calls) {
      image->flags |= shared;
      EXPECT_EQ(6u, call(image)) << shared;
      EXPECT_EQ(0u, image->lockCount);
      image->flags &= ~shared;
    }
  EXPECT_EQ(before.values, paletteOf(image).values);
}

TEST(ImageResults, TranslationsFollowThePalette) {
  Model model{4, 3, 3};
  const Image image(model);
  std::uint8_t palette[768] = {};
  std::memset(palette + 3, 0x80, 3);
  image->table8 = nullptr;
  void* table = nullptr;
  ASSERT_EQ(0u, KX_createCachedPalette(&table, palette, 3));
  image->table8 = static_cast<std::uint8_t*>(table);
  ASSERT_EQ(0u, KX_setPalette(image, palette));
  EXPECT_EQ(0x80u, image->table8[1]);
  EXPECT_EQ(0u, KX_invertBitmap(image));
  EXPECT_EQ(0x7Fu, image->table8[1]);
  EXPECT_EQ(0xFFu, image->table8[0]);
}

TEST(ImageResults, AllocationFailureLeavesTheImage) {
  Random random(0xA110C);
  Model plain{7, 20, 6};
  Model packed{0x17, 20, 6};
  plain.fillWithNoise(random);
  packed.values = plain.values;
  const auto failsCleanly = [](Model& model, const std::function<std::uint32_t(Bitmap*)>& call) {
    for (unsigned countdown = 1;; ++countdown) {
      const Image image(model);
      const std::size_t blocks = kxtest::liveBlocks();
      kxtest::failAllocation(countdown);
      const std::uint32_t code = call(image);
      const bool failed = kxtest::allocationFailed();
      kxtest::failAllocation(0);
      EXPECT_EQ(blocks, kxtest::liveBlocks());
      if (!failed) return static_cast<int>(countdown) - 1;
      EXPECT_EQ(2u, code);
      EXPECT_EQ(model.values, image.values());
    }
  };
  EXPECT_EQ(1, failsCleanly(plain, KX_mirrorBitmapX));
  EXPECT_EQ(0, failsCleanly(packed, KX_mirrorBitmapX));
  EXPECT_LT(1, failsCleanly(packed, KX_mirrorBitmapY));
  EXPECT_LT(1, failsCleanly(packed, KX_grayScale));
  EXPECT_LT(0, failsCleanly(packed, KX_getAverageLuminance));
  EXPECT_LT(1, failsCleanly(packed, [](Bitmap* bitmap) { return KX_changeBrightnessContrast(bitmap, 9, 9, -1); }));
}

}  // namespace
