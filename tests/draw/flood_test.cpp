// Flood fill against the plain recursion over spans.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "draw/model.h"
#include "support/test_heap.h"

namespace {

using kxtest::Image;
using kxtest::Model;
using kxtest::Random;

/// The definition, recursion and all.
class RecursiveFill {
public:
  RecursiveFill(Model& model, std::int32_t x, std::int32_t y, int tolerance, std::uint32_t colour)
      : model_(model), seed_(model.at(x, y)), tolerance_(tolerance), colour_(colour) {
    fill(x, y);
  }

private:
  bool matches(std::int32_t x, std::int32_t y) {
    const std::uint32_t value = model_.at(x, y);
    if (tolerance_ == 0) return value == seed_;
    const auto ours = kxtest::channelsOf(model_.format, value);
    const auto wanted = kxtest::channelsOf(model_.format, seed_);
    for (std::size_t i = 0; i < ours.size(); ++i)
      if (std::abs(ours[i] - wanted[i]) > tolerance_) return false;
    return true;
  }

  void fill(std::int32_t x, std::int32_t y) {
    std::int32_t left = x;
    while (left > 0) {
      if (left - 1 > 0 && !matches(left - 1, y)) break;
      --left;  // column 0 is not tested
    }
    std::int32_t right = left;
    model_.at(right, y) = colour_;
    while (right + 1 < model_.width && matches(right + 1, y)) model_.at(++right, y) = colour_;
    for (std::int32_t i = left; i <= right; ++i)
      for (const std::int32_t row : {y + 1, y - 1})
        if (row >= 0 && row < model_.height && model_.at(i, row) != colour_ && matches(i, row)) fill(i, row);
  }

  Model& model_;
  std::uint32_t seed_;
  int tolerance_;
  std::uint32_t colour_;
};

TEST(FloodFill, SamePixelsAsTheRecursion) {
  Random random(0x3A2E);
  for (const std::uint32_t format : kxtest::drawingFormats)
    for (int round = 0; round < 400; ++round) {
      Model model{format, random.between(1, round % 2 != 0 ? 12 : 50), random.between(1, 12)};
      // Few kinds make large regions; with noise and a tolerance many values are alike, the fill colour among them.
      const std::uint32_t kinds = random.below(5) + (round % 4 == 0 ? 0 : 1);
      model.fillWithNoise(random, kinds);
      const std::int32_t x = random.between(0, model.width - 1);
      const std::int32_t y = random.between(0, model.height - 1);
      const int tolerance = random.below(2) == 0 ? 0 : random.byte();
      const std::uint32_t colour = random.below(3) == 0
                                       ? model.values[random.below(static_cast<std::uint32_t>(model.values.size()))]
                                       : random.next() & kxtest::valueMask(format);
      const Image image(model);
      RecursiveFill(model, x, y, tolerance, colour);
      ASSERT_EQ(0u, KX_floodFill(image, x, y, tolerance, colour));
      ASSERT_EQ(model.values, image.values())
          << "format " << format << " round " << round << " tolerance " << tolerance << " colour " << colour;
    }
}

TEST(FloodFill, ColumnZeroIsTakenUntested) {
  Model model{3, 6, 1};
  model.values = {9, 1, 1, 1, 9, 1};
  const Image image(model);
  EXPECT_EQ(0u, KX_floodFill(image, 2, 0, 0, 7));
  EXPECT_EQ((std::vector<std::uint32_t>{7, 7, 7, 7, 9, 1}), image.values());
}

/// Fills a comb-like spiral of a large image and a large plain one: no depth of recursion, and the heap is given back.
TEST(FloodFill, LargeImages) {
  constexpr std::int32_t size = 4096;
  Model small{3, 1, 1};
  const Image tool(small);
  Bitmap* image = nullptr;
  ASSERT_EQ(0u, KX_createBitmap(&image, size, size, 3, 0, 0, tool->methods));
  const std::size_t blocks = kxtest::liveBlocks();
  const std::size_t area = static_cast<std::size_t>(size) * size;
  std::memset(image->pixels, 5, area);
  EXPECT_EQ(0u, KX_floodFill(image, 2000, 3000, 0, 6));
  EXPECT_EQ(std::vector<std::uint8_t>(area, 6), std::vector<std::uint8_t>(image->pixels, image->pixels + area));
  // Every other pixel is wall in every other row: each open pixel waits on its own.
  for (std::size_t y = 1; y < size; y += 2)
    for (std::size_t x = 1; x < size; x += 2) image->pixels[y * size + x] = 1;
  EXPECT_EQ(0u, KX_floodFill(image, 0, 0, 3, 9));
  EXPECT_EQ(area - area / 4, static_cast<std::size_t>(std::count(image->pixels, image->pixels + area, 9)));
  EXPECT_EQ(blocks, kxtest::liveBlocks());
  KX_deleteBitmap(image);
}

TEST(FloodFill, HeapExhausted) {
  Model model{3, 400, 3};
  for (std::int32_t x = 0; x < 400; ++x) {
    model.at(x, 1) = 1;
    model.at(x, 0) = model.at(x, 2) = static_cast<std::uint32_t>(x % 2);
  }
  std::vector<std::size_t> painted;
  for (const unsigned failure : {1u, 2u, 0u}) {
    const Image image(model);
    kxtest::failAllocation(failure);
    EXPECT_EQ(failure != 0 ? 2u : 0u, KX_floodFill(image, 200, 1, 0, 7));
    kxtest::failAllocation(0);
    const std::vector<std::uint32_t> values = image.values();
    painted.push_back(static_cast<std::size_t>(std::count(values.begin(), values.end(), 7u)));
  }
  // What has been painted stays.
  EXPECT_LE(400u, painted[0]);
  EXPECT_LT(painted[0], painted[1]);
  EXPECT_LT(painted[1], painted[2]);
}

}  // namespace
