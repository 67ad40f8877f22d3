// Palettes of bitmaps and their translations.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "bitmap/own_methods.h"
#include "bitmap/palette.h"
#include "frame/heap.h"
#include "kxgraphic/kxgraphic.h"
#include "support/allocation_sweep.h"
#include "support/random.h"
#include "support/test_heap.h"

namespace {

class Palettes : public testing::Test {
protected:
  Palettes() {
    kxtest::Random random(0x9A1);
    random.fill(colours_);
    EXPECT_EQ(0u, KX_createBitmap(&bitmap_, 4, 4, 4, 0, 0, kx::ownBitmapMethods()));
    std::memset(bitmap_->palette, 0, 768);
  }
  ~Palettes() override {
    KX_deleteBitmap(bitmap_);
    EXPECT_EQ(before_, kxtest::liveBlocks());
  }

  /// What a translation holds for entry i, with so many bits of green in the 16-bit one.
  std::uint32_t translated(std::uint32_t format, std::size_t i, int greenBits) const {
    const std::uint32_t b = colours_[3 * i], g = colours_[3 * i + 1], r = colours_[3 * i + 2];
    if (format == 3) return static_cast<std::uint32_t>(std::nearbyint(0.144 * b + 0.299 * r + 0.557 * g));
    return b >> 3 | (g >> (8 - greenBits)) << 5 | (r >> 3) << (format == 5 ? 10 : 11);
  }

  template <typename Pixel>
  void expectTable(const Pixel* table, std::uint32_t format, int greenBits) {
    ASSERT_NE(nullptr, table);
    for (std::size_t i = 0; i < 256; ++i) ASSERT_EQ(translated(format, i, greenBits), table[i]) << format << " " << i;
  }

  std::size_t before_ = kxtest::liveBlocks();
  std::uint8_t colours_[768];
  Bitmap* bitmap_ = nullptr;
};

TEST_F(Palettes, SettingRefreshesTheTablesThatExist) {
  ASSERT_EQ(kx::Result::Ok, kx::refreshTable(bitmap_, 6));
  EXPECT_EQ(nullptr, bitmap_->table15);
  EXPECT_EQ(0u, KX_setPalette(bitmap_, colours_));
  EXPECT_EQ(0, std::memcmp(colours_, bitmap_->palette, 768));
  expectTable(bitmap_->table16, 6, 5);
  EXPECT_EQ(nullptr, bitmap_->table15);
  EXPECT_EQ(nullptr, bitmap_->table8);
  ASSERT_EQ(kx::Result::Ok, kx::refreshTable(bitmap_, 5));
  ASSERT_EQ(kx::Result::Ok, kx::refreshTable(bitmap_, 3));
  expectTable(bitmap_->table15, 5, 5);
  expectTable(bitmap_->table8, 3, 0);
  EXPECT_EQ(0u, KX_setPalette(bitmap_, bitmap_->palette));
}

TEST_F(Palettes, ARefreshWithoutMemoryLeavesTheBitmapWithoutTheTable) {
  for (const std::uint32_t format : {3u, 5u, 6u}) ASSERT_EQ(kx::Result::Ok, kx::refreshTable(bitmap_, format));
  kxtest::failAllocation(2);
  EXPECT_EQ(2u, KX_setPalette(bitmap_, colours_));
  kxtest::failAllocation(0);
  expectTable(bitmap_->table15, 5, 5);
  EXPECT_EQ(nullptr, bitmap_->table16);
  EXPECT_NE(nullptr, bitmap_->table8);
}

TEST_F(Palettes, ReferencesAreRewrittenInPlaceAndNeverFreed) {
  for (const std::uint32_t format : {3u, 5u, 6u}) ASSERT_EQ(kx::Result::Ok, kx::refreshTable(bitmap_, format));
  std::uint8_t palette[768], table8[256];
  std::uint16_t table15[256], table16[256];
  EXPECT_EQ(0u, KX_setPaletteReference(bitmap_, palette, table15, table16, table8));
  EXPECT_EQ(before_ + 2, kxtest::liveBlocks());
  EXPECT_EQ(0x3Cu, bitmap_->flags);
  EXPECT_EQ(0u, KX_setPalette(bitmap_, colours_));
  EXPECT_EQ(0, std::memcmp(colours_, palette, 768));
  expectTable(table15, 5, 5);
  expectTable(table16, 6, 5);
  expectTable(table8, 3, 0);

  EXPECT_EQ(0u, KX_setPaletteReference(bitmap_, palette, nullptr, table16, nullptr));
  EXPECT_EQ(0x14u, bitmap_->flags);
  EXPECT_EQ(kx::Result::Ok, kx::refreshTable(bitmap_, 5));  // of its own again
  EXPECT_NE(table15, bitmap_->table15);
  EXPECT_EQ(before_ + 3, kxtest::liveBlocks());
}

TEST_F(Palettes, ABlockGivenAgainBecomesTheCallers) {
  ASSERT_EQ(kx::Result::Ok, kx::refreshTable(bitmap_, 5));
  ASSERT_EQ(kx::Result::Ok, kx::refreshTable(bitmap_, 6));
  std::uint8_t* const palette = bitmap_->palette;
  std::uint16_t* const table15 = bitmap_->table15;
  EXPECT_EQ(0u, KX_setPaletteReference(bitmap_, palette, nullptr, table15, nullptr));
  EXPECT_EQ(before_ + 4, kxtest::liveBlocks());  // only the old 16-bit table is gone
  EXPECT_EQ(table15, bitmap_->table16);
  mmgr_free(palette);
  mmgr_free(table15);
}

TEST_F(Palettes, CachedPalettesKeepSixBitsOfGreen) {
  for (const std::uint32_t format : {0x13u, 5u, 6u}) {
    void* table = kxtest::garbagePointer<void>();
    kxtest::sweepAllocations({.call = [&] { return KX_createCachedPalette(&table, colours_, format); },
                              .release =
                                  [&] {
                                    if (format == 0x13)
                                      expectTable(static_cast<std::uint8_t*>(table), 3, 0);
                                    else
                                      expectTable(static_cast<std::uint16_t*>(table), format, format == 5 ? 5 : 6);
                                    mmgr_free(table);
                                  },
                              .untouched = {kxtest::bytesOf(table)}});
  }
}

TEST_F(Palettes, RefusalsInOrder) {
  Bitmap* grey = nullptr;
  ASSERT_EQ(0u, KX_createBitmap(&grey, 4, 4, 3, 0, 0, kx::ownBitmapMethods()));
  Bitmap broken = *bitmap_;
  broken.palette = nullptr;
  std::uint16_t words[256];
  std::uint8_t bytes[256];
  auto* const badWords = reinterpret_cast<std::uint16_t*>(std::uintptr_t{2});
  auto* const badBytes = reinterpret_cast<std::uint8_t*>(std::uintptr_t{2});
  void* result = nullptr;
  const std::uint32_t answers[][2] = {
      {7, KX_setPalette(nullptr, colours_)},
      {7, KX_setPalette(grey, nullptr)},
      {0x2000, KX_setPalette(grey, colours_)},
      {0x2002, KX_setPalette(&broken, colours_)},
      {7, KX_setPaletteReference(nullptr, colours_, nullptr, nullptr, nullptr)},
      {7, KX_setPaletteReference(grey, nullptr, nullptr, nullptr, nullptr)},
      {7, KX_setPaletteReference(grey, colours_, badWords, words, bytes)},
      {7, KX_setPaletteReference(grey, colours_, words, badWords, bytes)},
      {7, KX_setPaletteReference(grey, colours_, words, words, badBytes)},
      {0x2000, KX_setPaletteReference(grey, colours_, words, words, bytes)},
      {0x2002, KX_setPaletteReference(&broken, colours_, words, words, bytes)},
      {7, KX_createCachedPalette(nullptr, colours_, 5)},
      {7, KX_createCachedPalette(&result, nullptr, 5)},
      {7, KX_createCachedPalette(&result, colours_, 4)},
      {7, KX_createCachedPalette(&result, colours_, 7)},
      {7, kx::toCode(kx::refreshTable(nullptr, 5))},
      {7, kx::toCode(kx::refreshTable(grey, 7))},
      {0x2000, kx::toCode(kx::refreshTable(grey, 5))},
      {0x2002, kx::toCode(kx::refreshTable(&broken, 5))},
  };
  for (const auto& [expected, actual] : answers) EXPECT_EQ(expected, actual);
  EXPECT_EQ(nullptr, result);
  EXPECT_EQ(0u, grey->flags | broken.flags);
  KX_deleteBitmap(grey);
}

}  // namespace
