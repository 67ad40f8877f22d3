// What random comparison does not reach: shared memory, empty and huge sizes, translations that are made and stay.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "kxgraphic/kxgraphic.h"
#include "support/blit_call.h"
#include "support/test_image.h"

namespace {

using kxtest::BlitCall;
using kxtest::Depth;
using kxtest::Random;
using kxtest::Rule;
using kxtest::TestImage;

/// A blit inside one bitmap, which serves as Z buffer and maps too, one pixel after the other.
void naive(std::vector<std::uint8_t>& m, std::int64_t pitch, const BlitCall& c, std::int64_t bytes) {
  for (std::int64_t y = 0; y < c.dh; ++y)
    for (std::int64_t x = 0; x < c.dw; ++x) {
      const auto at = [&](std::int64_t column, std::int64_t row) {
        return static_cast<std::size_t>(row * pitch + column);
      };
      const std::int64_t sx = c.sx + (c.stretch ? x * (c.sw * 65536LL / c.dw) / 65536 : x);
      const std::int64_t sy = c.sy + (c.stretch ? y * (c.sh * 65536LL / c.dh) / 65536 : y);
      std::vector<std::uint8_t> s(3), zero(3);
      std::memcpy(s.data(), &m[at(sx * bytes, sy)], static_cast<std::size_t>(bytes));
      if (c.transparent() && s == zero) continue;
      if (c.depth == Depth::ZBuffer) {
        std::uint8_t& depth = m[at(c.dx + x, c.dy + y)];
        if (c.z > depth) continue;
        depth = static_cast<std::uint8_t>(c.z);
      }
      std::uint8_t* d = &m[at((c.dx + x) * bytes, c.dy + y)];
      for (std::int64_t i = 0; i < bytes; ++i) {
        if (c.constantAlpha())
          d[i] = static_cast<std::uint8_t>(((255 - c.alpha) * s[static_cast<std::size_t>(i)] + c.alpha * d[i]) / 255);
        else
          d[i] = s[static_cast<std::size_t>(i)];
      }
    }
}

/// A plain copy of whole rows goes by words of four bytes, then by the bytes that remain.
void naiveWords(std::vector<std::uint8_t>& m, std::int64_t pitch, const BlitCall& c, std::int64_t bytes) {
  for (std::int64_t y = 0; y < c.dh; ++y) {
    std::uint8_t* d = m.data() + (c.dy + y) * pitch + c.dx * bytes;
    const std::uint8_t* s = m.data() + (c.sy + y) * pitch + c.sx * bytes;
    for (std::int64_t i = 0; i < c.dw * bytes;) {
      const std::int64_t step = c.dw * bytes - i >= 4 ? 4 : 1;
      std::uint8_t word[4];
      std::memcpy(word, s + i, static_cast<std::size_t>(step));
      std::memcpy(d + i, word, static_cast<std::size_t>(step));
      i += step;
    }
  }
}

TEST(SpecialBlits, SharedMemoryKeepsTheOrderOfAPlainLoop) {
  Random random(11);
  for (int run = 0; run < 600; ++run) {
    const std::uint32_t format = random() % 2 == 0 ? 3 : 7;
    TestImage image(random, format, 60, 12, false);
    Bitmap* bitmap = image.record();
    BlitCall call;
    call.stretch = random() % 2 != 0;
    call.rule = static_cast<Rule>(random() % 4);
    call.depth = random() % 3 == 0 ? Depth::ZBuffer : Depth::None;
    call.dst = call.src = call.zbuffer = bitmap;
    // As a Z buffer it has to say that it is of format 3.
    if (format != 3) call.depth = Depth::None;
    call.dw = kxtest::between(random, 1, 50);
    call.dh = kxtest::between(random, 1, 8);
    call.sw = call.stretch ? kxtest::between(random, 1, 50) : call.dw;
    call.sh = call.stretch ? kxtest::between(random, 1, 8) : call.dh;
    call.dx = kxtest::between(random, 0, 10);
    call.sx = kxtest::between(random, 0, 10);
    call.dy = kxtest::between(random, 0, 4);
    call.sy = kxtest::between(random, 0, 4);
    call.alpha = call.z = kxtest::between(random, 0, 255);
    std::vector<std::uint8_t> expected(image.memory().begin() + static_cast<std::ptrdiff_t>(image.blockStart()),
                                       image.memory().end());
    const bool words = !call.stretch && call.rule == Rule::Copy && call.depth == Depth::None;
    (words ? naiveWords : naive)(expected, bitmap->pitch, call, format == 3 ? 1 : 3);
    ASSERT_EQ(0u, kxtest::callBlit(call));
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), bitmap->pixels)) << "run " << run;
  }
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
  target.record()->format = 6;
  source.record()->format = 9;
  EXPECT_EQ(0u, KX_bltCopyTransparent(target.record(), 0, 0, source.record(), 0, 0, 10, 2));
  EXPECT_EQ(before, target.memory());
  EXPECT_EQ(0u, KX_bltCopy(target.record(), 0, 0, source.record(), 0, 0, 10, 2));
  for (int x = 0; x < 10; ++x) EXPECT_EQ(0u, kxtest::pixelAt(target.record()->pixels, 6, x));
}

}  // namespace
