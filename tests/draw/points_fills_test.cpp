// Points, filled rectangles and moved rectangles against one pixel at a time.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "draw/model.h"
#include "pixel/cpu.h"

namespace {

using kxtest::Image;
using kxtest::Ink;
using kxtest::Model;
using kxtest::Random;

struct Area {
  std::int32_t x, y, w, h;
};

Area randomArea(Random& random, const Model& model) {
  const std::int32_t w = random.between(1, model.width);
  const std::int32_t h = random.between(1, model.height);
  return {random.between(0, model.width - w), random.between(0, model.height - h), w, h};
}

Ink randomInk(Random& random, const Model& target, Model& depths) {
  Ink ink{.colour = random.next() & kxtest::valueMask(target.format)};
  if (kxtest::canBlend(target.format) && random.below(2) != 0)
    ink.alpha = random.below(4) != 0 ? random.byte() : static_cast<int>(255 * random.below(2));
  if (random.below(2) != 0) {
    ink.depths = &depths;
    ink.z = random.byte();
  }
  return ink;
}

std::uint32_t drawPoint(Bitmap* bitmap, Bitmap* zBuffer, std::int32_t x, std::int32_t y, const Ink& ink) {
  if (ink.depths != nullptr && ink.alpha >= 0)
    return KX_setPixelAlphaZBuffer(bitmap, zBuffer, x, y, ink.colour, ink.alpha, ink.z);
  if (ink.depths != nullptr) return KX_setPixelZBuffer(bitmap, zBuffer, x, y, ink.colour, ink.z);
  if (ink.alpha >= 0) return KX_setPixelAlpha(bitmap, x, y, ink.colour, ink.alpha);
  return KX_setPixel(bitmap, x, y, ink.colour);
}

std::uint32_t fillArea(Bitmap* bitmap, Bitmap* zBuffer, const Area& area, const Ink& ink) {
  const auto& [x, y, w, h] = area;
  if (ink.depths != nullptr && ink.alpha >= 0)
    return KX_fillRectAlphaZBuffer(bitmap, zBuffer, x, y, w, h, ink.colour, ink.alpha, ink.z);
  if (ink.depths != nullptr) return KX_fillRectZBuffer(bitmap, zBuffer, x, y, w, h, ink.colour, ink.z);
  if (ink.alpha >= 0) return KX_fillRectAlpha(bitmap, x, y, w, h, ink.colour, ink.alpha);
  return KX_fillRect(bitmap, x, y, w, h, ink.colour);
}

/// Rounds of `draw(model, bitmap, depthModel, zBuffer, random)` on noise in every format.
template <typename Draw>
void compareInAllFormats(std::uint32_t seed, int rounds, std::int32_t widest, Draw draw) {
  Random random(seed);
  for (const std::uint32_t format : kxtest::drawingFormats)
    for (int round = 0; round < rounds; ++round) {
      Model model{format, random.between(1, widest), random.between(1, 7)};
      Model depths{3, model.width, model.height};
      model.fillWithNoise(random, random.below(3) * 2);
      depths.fillWithNoise(random);
      const Image image(model);
      const Image zBuffer(depths);
      draw(model, image, depths, zBuffer, random);
      ASSERT_EQ(model.values, image.values()) << "format " << format << " round " << round;
      ASSERT_EQ(depths.values, zBuffer.values()) << "format " << format << " round " << round;
      ASSERT_EQ(0u, image->lockCount + zBuffer->lockCount);
    }
}

TEST(Points, EveryVariantAndFormat) {
  compareInAllFormats(0x901, 30, 20, [](Model& model, Bitmap* image, Model& depths, Bitmap* zBuffer, Random& random) {
    for (int i = 0; i < 10; ++i) {
      const Ink ink = randomInk(random, model, depths);
      const std::int32_t x = random.between(0, model.width - 1);
      const std::int32_t y = random.between(0, model.height - 1);
      kxtest::plot(model, x, y, ink);
      ASSERT_EQ(0u, drawPoint(image, zBuffer, x, y, ink));
      ASSERT_EQ(model.at(x, y), KX_getPixel(image, x, y));
    }
  });
}

TEST(Fills, EveryVariantAndFormat) {
  for (const kx::CpuLevel level : {kx::CpuLevel::Portable, kx::CpuLevel::Avx512}) {
    kx::limitCpuLevel(level);
    compareInAllFormats(0x8EC7, 40, 300,
                        [](Model& model, Bitmap* image, Model& depths, Bitmap* zBuffer, Random& random) {
                          const Ink ink = randomInk(random, model, depths);
                          const Area area = randomArea(random, model);
                          for (std::int32_t y = area.y; y < area.y + area.h; ++y)
                            for (std::int32_t x = area.x; x < area.x + area.w; ++x) kxtest::plot(model, x, y, ink);
                          ASSERT_EQ(0u, fillArea(image, zBuffer, area, ink));
                        });
  }
}

/// A Z buffer in the very bytes that are drawn on, shifted: each pixel is finished before the next is tested, whichever
/// way the target's rows go.
TEST(Fills, DepthsInTheTargetItself) {
  for (const bool upwards : {false, true}) {
    Model model{3, 64, 5};
    Random random(0x5A);
    model.fillWithNoise(random, 3);
    const Image image(model);
    // The three rows in the middle, so that there is memory on both sides of them. The one that is drawn on is their
    // middle, from either end.
    Bitmap target = *image;
    target.height = 3;
    target.pixels += target.pitch;
    Bitmap depths = target;
    depths.pixels -= 1;
    if (upwards) {
      target.pixels += 2 * target.pitch;
      target.pitch = -target.pitch;
    }
    const std::uint8_t* const bytes = image->pixels;
    std::vector<std::uint8_t> expected(bytes, bytes + 64 * 5);
    for (std::size_t i = 64 * 2 + 5; i < 64 * 2 + 45; ++i) {
      if (100 > expected[i - 1]) continue;
      expected[i - 1] = 100;
      expected[i] = 200;
    }
    EXPECT_EQ(0u, KX_fillRectZBuffer(&target, &depths, 5, 1, 40, 1, 200, 100));
    EXPECT_EQ(expected, std::vector<std::uint8_t>(bytes, bytes + 64 * 5)) << (upwards ? "upwards" : "downwards");
  }
}

TEST(MoveRect, OverlappingAndNot) {
  compareInAllFormats(0x30E, 40, 40, [](Model& model, Bitmap* image, Model&, Bitmap*, Random& random) {
    const Area from = randomArea(random, model);
    const std::int32_t dx = random.between(0, model.width - from.w);
    const std::int32_t dy = random.between(0, model.height - from.h);
    const std::uint32_t code = KX_moveRect(image, dx, dy, from.x, from.y, from.w, from.h);
    ASSERT_EQ((model.format & 15) == 0 ? 0x2000u : 0u, code);
    if (code != 0) return;
    Model before = model;
    for (std::int32_t y = 0; y < from.h; ++y)
      for (std::int32_t x = 0; x < from.w; ++x) model.at(dx + x, dy + y) = before.at(from.x + x, from.y + y);
  });
}

}  // namespace
