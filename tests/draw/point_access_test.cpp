// Reading and writing single pixels: every format against its layout, refusals and their order.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "bitmap/own_methods.h"
#include "kxgraphic/kxgraphic.h"

namespace {

Bitmap* make(std::uint32_t format) {
  Bitmap* bitmap = nullptr;
  EXPECT_EQ(0u, KX_createBitmap(&bitmap, 21, 3, format, 0, 0, kx::ownBitmapMethods()));
  return bitmap;
}

TEST(SinglePixels, OneBitAtATime) {
  Bitmap* bitmap = make(0);
  for (const int background : {0x00, 0xFF})
    for (std::int32_t x = 0; x < 21; ++x) {
      std::memset(bitmap->pixels, background, 16);
      const std::uint32_t colour = background == 0;
      EXPECT_EQ(1 - colour, KX_getPixel(bitmap, x, 1));
      EXPECT_EQ(0u, KX_setPixel(bitmap, x, 1, colour));
      EXPECT_EQ(colour, KX_getPixel(bitmap, x, 1));
      for (int i = 0; i < 16; ++i)
        EXPECT_EQ(i == 4 + x / 8 ? background ^ 0x80 >> x % 8 : background, bitmap->pixels[i]);
    }
  KX_deleteBitmap(bitmap);
}

TEST(SinglePixels, WholeBytesLowByteFirst) {
  const std::uint32_t colour = 0xABCDEF12;
  for (const std::uint32_t format : {3u, 4u, 5u, 6u, 7u, 0x26u})
    for (std::int32_t x = 0; x < 21; ++x) {
      Bitmap* bitmap = make(format);
      const int size = static_cast<int>(KX_getBytesPerPixel(format) >> 16), at = bitmap->pitch + x * size;
      std::vector<std::uint8_t> expected(static_cast<std::size_t>(3 * bitmap->pitch), 0x55);
      std::memset(bitmap->pixels, 0x55, expected.size());
      for (int i = 0; i < size; ++i)
        expected[static_cast<std::size_t>(at + i)] = static_cast<std::uint8_t>(colour >> 8 * i);
      EXPECT_EQ(0u, KX_setPixel(bitmap, x, 1, colour));
      EXPECT_EQ(0, std::memcmp(expected.data(), bitmap->pixels, expected.size())) << format << " " << x;
      EXPECT_EQ(colour & ((1u << 8 * size) - 1), KX_getPixel(bitmap, x, 1));
      EXPECT_EQ(0u, bitmap->lockCount);
      KX_deleteBitmap(bitmap);
    }
}

TEST(SinglePixels, AnUnknownFormatIsZeroAndCannotBeWritten) {
  Bitmap* bitmap = make(9);
  EXPECT_EQ(0u, KX_setPixel(bitmap, 20, 2, 0xFF));
  EXPECT_EQ(0u, KX_getPixel(bitmap, 20, 2));
  KX_deleteBitmap(bitmap);
}

std::uint32_t KX_CALL refusedLock(Bitmap*) { return 0x200A; }
std::uint32_t KX_CALL emptyLock(Bitmap*) { return 0; }

TEST(SinglePixels, RefusalsInOrder) {
  Bitmap* bitmap = make(0x16);
  const auto expectBoth = [&](std::uint32_t code, Bitmap* target, std::int32_t x, std::int32_t y) {
    EXPECT_EQ(code, KX_getPixel(target, x, y)) << x << " " << y;
    EXPECT_EQ(code, KX_setPixel(target, x, y, 1)) << x << " " << y;
  };
  BitmapMethods* const methods = std::exchange(bitmap->methods, nullptr);
  expectBoth(7, nullptr, -1, 0);
  for (const auto& [x, y] : {std::pair{-1, 0}, {0, -1}, {21, 0}, {0, 3}, {INT_MIN, 0}, {0, INT_MAX}})
    expectBoth(0x2005, bitmap, x, y);
  expectBoth(5, bitmap, 20, 2);
  bitmap->methods = methods;

  std::uint32_t* const rowTable = std::exchange(bitmap->rowTable, nullptr);
  expectBoth(0x2001, bitmap, 20, 2);
  EXPECT_EQ(2u, bitmap->lockCount);  // what fails after the lock leaves it raised
  std::uint8_t* const pixels = std::exchange(bitmap->pixels, nullptr);
  BitmapMethods foreign = *methods;
  bitmap->methods = &foreign;
  foreign.lock = emptyLock;
  expectBoth(0x2001, bitmap, 20, 2);
  foreign.lock = refusedLock;
  expectBoth(0x200A, bitmap, 20, 2);
  bitmap->methods = methods;
  bitmap->pixels = pixels;
  bitmap->rowTable = rowTable;
  KX_deleteBitmap(bitmap);
}

}  // namespace
