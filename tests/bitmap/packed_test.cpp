// Packed bitmaps: unpacking and packing, ownership of the blocks, foreign row streams, single pixels.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <vector>

#include "bitmap/own_methods.h"
#include "bitmap/packed.h"
#include "frame/heap.h"
#include "kxgraphic/kxgraphic.h"
#include "pixel/access.h"
#include "support/allocation_sweep.h"
#include "support/random.h"
#include "support/test_heap.h"

namespace {

using kx::Result;

Bitmap* make(std::int32_t width, std::int32_t height, std::uint32_t format) {
  Bitmap* bitmap = nullptr;
  EXPECT_EQ(0u, KX_createBitmap(&bitmap, width, height, format, 1, 2, kx::ownBitmapMethods()));
  return bitmap;
}

/// The bytes of a plain bitmap's rows, without what lies between them.
std::vector<std::uint8_t> rowsOf(const Bitmap& plain) {
  std::vector<std::uint8_t> rows;
  const std::size_t bytes = static_cast<std::size_t>(plain.width) * kx::bytesPerPixel(plain.format);
  for (std::int32_t y = 0; y < plain.height; ++y)
    std::copy_n(plain.pixels + plain.pitch * y, bytes, std::back_inserter(rows));
  return rows;
}

/// Pictures that the row code packs in different ways.
void paint(Bitmap& plain, std::uint32_t seed) {
  kxtest::Random random(seed);
  const std::uint32_t streaks = 1 + seed % 5;  // 1: noise
  std::uint32_t value = 0;
  for (std::int32_t y = 0; y < plain.height; ++y)
    for (std::int32_t x = 0; x < plain.width; ++x) {
      // Of bytes, one alone and two alike by turns grow most.
      if (streaks == 5 ? x % 3 != 2 : random.below(streaks * streaks) == 0) value = random.next();
      kx::writePixel(plain.pixels + plain.pitch * y, plain.format, x, value);
    }
}

TEST(Packed, UnpackingUndoesPackingAtEveryWidth) {
  for (const std::uint32_t format : {3u, 4u, 5u, 6u, 7u})
    for (std::int32_t width = 1; width <= 300; ++width) {
      Bitmap* target = make(width, 3, format | 0x10);
      Bitmap* plain = nullptr;
      ASSERT_EQ(Result::Ok, kx::unpack(&plain, target));
      EXPECT_EQ(1u, plain->lockCount);
      EXPECT_EQ(format, plain->format);
      EXPECT_EQ(kx::ownBitmapMethods(), plain->methods);
      const std::vector<std::uint8_t> black = rowsOf(*plain);
      ASSERT_EQ(static_cast<std::ptrdiff_t>(black.size()), std::count(black.begin(), black.end(), 0));
      paint(*plain, static_cast<std::uint32_t>(width));
      const std::vector<std::uint8_t> expected = rowsOf(*plain);
      ASSERT_EQ(Result::Ok, kx::pack(target, plain));

      Bitmap* again = nullptr;
      ASSERT_EQ(Result::Ok, kx::unpack(&again, target));
      ASSERT_EQ(expected, rowsOf(*again)) << format << " " << width;
      kx::discardUnpacked(again);
      std::uint32_t size = 0;
      EXPECT_EQ(0u, KX_getBitmapSize(target, &size));
      EXPECT_EQ(target->rowTable[2] + kx::packedRowLength(*target, 2), size);
      ASSERT_EQ(kx::readPixel(expected.data(), format, width - 1), KX_getPixel(target, width - 1, 0));
      KX_deleteBitmap(target);
    }
}

TEST(Packed, ARowCodeThatGoesBeyondTheWidthStaysInItsRow) {
  // Two runs of 128 where 130 pixels are wanted, then a literal packet of 128 with fillers before it.
  std::vector<std::uint8_t> block = {0x81, 5, 0x81, 6, 0x80, 0x80, 127};
  for (int i = 0; i < 128; ++i) block.push_back(static_cast<std::uint8_t>(i));
  block.insert(block.end(), {0x80, 1, 200, 201});
  // A block of exactly this size, so that reads beyond it are seen.
  const auto pixels = std::make_unique<std::uint8_t[]>(block.size());
  std::copy(block.begin(), block.end(), pixels.get());
  std::uint32_t rowTable[] = {4, 0};
  Bitmap source{};
  source.width = 130, source.height = 2, source.format = 0x13, source.pixels = pixels.get(), source.rowTable = rowTable;
  Bitmap* bitmap = nullptr;
  ASSERT_EQ(0u, KX_createFromData(&bitmap, &source, 1, kx::ownBitmapMethods()));

  Bitmap* plain = nullptr;
  ASSERT_EQ(Result::Ok, kx::unpack(&plain, bitmap));
  EXPECT_EQ(127, plain->pixels[127]);
  EXPECT_EQ(201, plain->pixels[129]);
  EXPECT_EQ(5, plain->pixels[plain->pitch + 127]);
  EXPECT_EQ(6, plain->pixels[plain->pitch + 129]);
  kx::discardUnpacked(plain);

  std::vector<std::uint8_t> row(static_cast<std::size_t>(kx::packedRowBytes(*bitmap)));
  const kx::DecodedRow decoded = kx::decodePackedRow(*bitmap, 1, row.data());
  EXPECT_EQ(256u, decoded.pixels);
  EXPECT_EQ(4u, decoded.packedBytes);
  EXPECT_EQ(4u, kx::packedRowLength(*bitmap, 1));
  EXPECT_EQ(block.size() - 4, kx::packedRowLength(*bitmap, 0));
  EXPECT_EQ(201u, KX_getPixel(bitmap, 129, 0));
  std::uint32_t size = 0;
  EXPECT_EQ(0u, KX_getBitmapSize(bitmap, &size));
  EXPECT_EQ(4u, size);

  // Packing leaves the borrowed blocks alone and gives the bitmap its own.
  EXPECT_EQ(0u, KX_setPixel(bitmap, 0, 1, 77));
  EXPECT_EQ(0u, bitmap->flags);
  EXPECT_TRUE(std::equal(block.begin(), block.end(), pixels.get()));
  EXPECT_EQ(4u, rowTable[0]);
  EXPECT_EQ(77u, KX_getPixel(bitmap, 0, 1));
  EXPECT_EQ(201u, KX_getPixel(bitmap, 129, 0));
  KX_deleteBitmap(bitmap);
}

TEST(Packed, UnpackingCarriesPaletteAndExtras) {
  Bitmap* packed = make(9, 2, 0x14);
  std::memset(packed->palette, 0x77, 768);
  Bitmap* plain = nullptr;
  ASSERT_EQ(Result::Ok, kx::unpack(&plain, packed));
  EXPECT_EQ(0, std::memcmp(plain->palette, packed->palette, 768));
  EXPECT_EQ(1u, plain->extra1);
  EXPECT_EQ(2u, plain->extra2);
  kx::discardUnpacked(plain);
  KX_deleteBitmap(packed);
}

TEST(Packed, WhatCannotBeUnpacked) {
  Bitmap* plain = nullptr;
  EXPECT_EQ(Result::IllegalParameter, kx::unpack(&plain, nullptr));
  std::uint8_t pixels[4] = {};
  std::uint32_t rowTable[1] = {};
  Bitmap source{};
  source.width = source.height = 1, source.format = 0x13, source.pixels = pixels;
  EXPECT_EQ(Result::BitmapDestroyed, kx::unpack(&plain, &source));
  source.rowTable = rowTable, source.format = 0x10;
  EXPECT_EQ(Result::PackerTypeNotSupported, kx::unpack(&plain, &source));
  source.format = 0x13, source.width = 0;
  EXPECT_EQ(Result::IllegalParameter, kx::unpack(&plain, &source));
  EXPECT_EQ(nullptr, plain);
}

TEST(Packed, AFailedPackKeepsTheImageAndReleasesTheCopy) {
  Bitmap* bitmap = nullptr;
  std::vector<std::uint8_t> image;
  kxtest::sweepAllocations({.call = [&] { return KX_setPixel(bitmap, 3, 1, 0x1234); },
                            .prepare =
                                [&] {
                                  bitmap = make(40, 3, 0x16);
                                  EXPECT_EQ(0u, KX_setPixel(bitmap, 5, 2, 0x4321));
                                },
                            .cleanup = [&] { KX_deleteBitmap(bitmap); },
                            .checkFailure =
                                [&] {
                                  EXPECT_EQ(1u, bitmap->lockCount);
                                  EXPECT_EQ(0u, KX_getPixel(bitmap, 3, 1));
                                  EXPECT_EQ(0x4321u, KX_getPixel(bitmap, 5, 2));
                                }});
}

std::uint32_t KX_CALL refusedDelete(Bitmap*) { return 0x1234; }

TEST(Packed, ADeleteThatFailsIsReportedAndTheImageKept) {
  Bitmap* target = make(40, 3, 0x16);
  Bitmap* plain = nullptr;
  ASSERT_EQ(Result::Ok, kx::unpack(&plain, target));
  BitmapMethods stubborn = *kx::ownBitmapMethods();
  stubborn.deleteBitmap = refusedDelete;
  plain->methods = &stubborn;
  std::memset(plain->pixels, 1, 80);
  const std::size_t live = kxtest::liveBlocks();
  EXPECT_EQ(0x1234u, kx::toCode(kx::pack(target, plain)));
  EXPECT_EQ(live, kxtest::liveBlocks());
  EXPECT_EQ(0u, plain->lockCount);
  EXPECT_EQ(0u, KX_getPixel(target, 0, 0));
  KX_deleteBitmap(plain);
  KX_deleteBitmap(target);
}

TEST(Packed, APaletteOfAPackedBitmapEqualsThePlainOnes) {
  for (const std::uint32_t format : {5u, 6u, 7u}) {
    Bitmap* packed = make(60, 9, format | 0x10);
    Bitmap* plain = nullptr;
    ASSERT_EQ(Result::Ok, kx::unpack(&plain, packed));
    paint(*plain, 3 + format);
    Bitmap* copy = nullptr;
    ASSERT_EQ(0u, KX_cloneBitmap(&copy, plain, kx::ownBitmapMethods()));
    ASSERT_EQ(Result::Ok, kx::pack(packed, plain));
    std::uint8_t expected[768], actual[768];
    EXPECT_EQ(0u, KX_calculatePalette(expected, copy));
    EXPECT_EQ(0u, KX_calculatePalette(actual, packed));
    EXPECT_EQ(0, std::memcmp(expected, actual, 768));
    EXPECT_EQ(0u, packed->lockCount);
    kxtest::sweepAllocations({.call = [&] { return KX_calculatePalette(actual, packed); }});
    KX_deleteBitmap(copy);
    KX_deleteBitmap(packed);
  }
}

}  // namespace
