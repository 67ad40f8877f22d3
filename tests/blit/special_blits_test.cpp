// What random comparison does not reach: odd Z buffers, upside-down bitmaps, huge sizes, translations that stay.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "kxgraphic/kxgraphic.h"
#include "support/test_image.h"

namespace {

using kxtest::Random;
using kxtest::TestImage;

/// A Z buffer of one bit a pixel is read by the byte, so that its rows reach into each other.
TEST(SpecialBlits, WideStretchesGoRowByRowOverAnOddZBuffer) {
  Random random(16);
  TestImage source(random, 3, 700, 4, false), target(random, 3, 1400, 6, false), depths(random, 3, 1400, 8, false);
  Bitmap odd = *depths.record();
  odd.format = 0;
  odd.pitch = 300;
  odd.height = 37;
  std::generate_n(odd.pixels, depths.blockBytes(), [&] { return static_cast<std::uint8_t>(random()); });
  std::vector<std::uint8_t> z(odd.pixels, odd.pixels + 300 * 37);
  TestImage zmap(random, 3, 700, 4, false);
  std::vector<std::uint8_t> expected = target.memory();
  std::uint8_t* const pixels = expected.data() + target.blockStart();
  for (std::size_t y = 0; y < 6; ++y)
    for (std::size_t x = 0; x < 1400; ++x) {
      const std::size_t sy = y * (4 * 65536 / 6) / 65536;
      const std::uint8_t depth = zmap.record()->pixels[sy * 700 + x / 2];
      if (depth > z[y * 300 + x]) continue;
      z[y * 300 + x] = depth;
      pixels[y * static_cast<std::size_t>(target.record()->pitch) + x] =
          source.record()->pixels[sy * static_cast<std::size_t>(source.record()->pitch) + x / 2];
    }
  zmap.record()->pitch = 700;
  ASSERT_EQ(0u,
            KX_bltStretchZMap(target.record(), &odd, 0, 0, 1400, 6, source.record(), 0, 0, 700, 4, zmap.record(), 0));
  EXPECT_TRUE(expected == target.memory());
  EXPECT_TRUE(std::equal(z.begin(), z.end(), odd.pixels));
}

/// Rows that go upwards in memory end their block with the first row.
TEST(SpecialBlits, RunsBeyondTheEdgeStopAtTheBlockOfUpsideDownBitmaps) {
  Random random(17);
  TestImage target(random, 3, 40, 3, false);
  Bitmap upsideDown = *target.record();
  upsideDown.pixels += 2 * upsideDown.pitch;
  upsideDown.pitch = -upsideDown.pitch;
  upsideDown.flags = KX_BORROWED_PIXELS;
  // One run of 100 pixels, entered at its second.
  std::uint8_t row[] = {static_cast<std::uint8_t>(1 - 100), 0x77};
  std::uint32_t rows[] = {0};
  Bitmap source = upsideDown;
  source.format = KX_FORMAT_GREY | KX_STORAGE_PACKED;
  source.width = 100;
  source.height = 1;
  source.pixels = row;
  source.rowTable = rows;
  const std::vector<std::uint8_t> before = target.memory();
  ASSERT_EQ(0u, KX_bltCopy(&upsideDown, 10, 0, &source, 1, 0, 5, 1));
  const std::size_t first = target.blockStart() + 2 * static_cast<std::size_t>(-upsideDown.pitch) + 10;
  const std::size_t end = target.blockStart() + 3 * static_cast<std::size_t>(-upsideDown.pitch);
  for (std::size_t i = 0; i < before.size(); ++i)
    ASSERT_EQ(i >= first && i < end ? 0x77 : before[i], target.memory()[i]) << i;
}

TEST(SpecialBlits, StretchesFromBeyond32767Pixels) {
  Random random(12);
  TestImage wide(random, 3, 100000, 1, false), target(random, 3, 7, 2, false);
  ASSERT_EQ(0u, KX_bltStretch(target.record(), 0, 0, 7, 2, wide.record(), 0, 0, 100000, 1));
  const std::int64_t step = (100000LL << 16) / 7;
  for (std::int64_t x = 0; x < 7; ++x) EXPECT_EQ(wide.record()->pixels[x * step >> 16], target.record()->pixels[x]);
}

TEST(SpecialBlits, AMissingTranslationIsMadeOnceAndStays) {
  Random random(13);
  TestImage source(random, 4, 10, 1, false), target(random, 6, 10, 1, false);
  Bitmap* bitmap = source.record();
  bitmap->table16 = nullptr;
  bitmap->flags &= ~std::uint32_t{KX_BORROWED_TABLE16};
  ASSERT_EQ(0u, KX_bltCopy(target.record(), 0, 0, bitmap, 0, 0, 10, 1));
  ASSERT_NE(nullptr, bitmap->table16);
  bitmap->table16[bitmap->pixels[0]] = 0x1234;
  ASSERT_EQ(0u, KX_bltCopy(target.record(), 0, 0, bitmap, 0, 0, 10, 1));
  EXPECT_EQ(0x1234u, kxtest::pixelAt(target.record()->pixels, 6, 0));
}

TEST(SpecialBlits, FormatsWithoutPixelsDrawNothingAndReadBlack) {
  Random random(14);
  TestImage source(random, 6, 10, 2, false), target(random, 6, 10, 2, false), depths(random, 3, 10, 2, false);
  target.record()->format = 9;
  std::vector<std::uint8_t> before = target.memory();
  EXPECT_EQ(0u, KX_bltCopyZBuffer(target.record(), depths.record(), 0, 0, source.record(), 0, 0, 10, 2, 0));
  EXPECT_EQ(before, target.memory());
  EXPECT_EQ(0, depths.record()->pixels[9]);
  Bitmap same = *target.record();
  same.format = 3;  // its own rows, moved by a pixel
  EXPECT_EQ(0u, KX_bltCopy(target.record(), 0, 0, &same, 1, 0, 9, 2));
  EXPECT_EQ(before, target.memory());
  target.record()->format = 6;
  source.record()->format = 9;
  EXPECT_EQ(0u, KX_bltCopyTransparent(target.record(), 0, 0, source.record(), 0, 0, 10, 2));
  EXPECT_EQ(before, target.memory());
  EXPECT_EQ(0u, KX_bltCopy(target.record(), 0, 0, source.record(), 0, 0, 10, 2));
  for (int x = 0; x < 10; ++x) EXPECT_EQ(0u, kxtest::pixelAt(target.record()->pixels, 6, x));
}

}  // namespace
