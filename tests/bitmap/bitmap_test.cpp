// Making, copying, locking and deleting bitmaps: layout, refusals and their order, ownership, memory.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>
#include <vector>

#include "bitmap/own_methods.h"
#include "frame/heap.h"
#include "kxgraphic/kxgraphic.h"
#include "pixel/access.h"
#include "support/allocation_sweep.h"
#include "support/random.h"
#include "support/test_heap.h"

namespace {

BitmapMethods* methods() { return kx::ownBitmapMethods(); }

BitmapMethods newerMethods() {
  BitmapMethods table = *methods();
  table.version = 0x10001;
  return table;
}

Bitmap* make(std::int32_t width, std::int32_t height, std::uint32_t format) {
  Bitmap* bitmap = nullptr;
  EXPECT_EQ(0u, KX_createBitmap(&bitmap, width, height, format, 7, 9, methods()));
  return bitmap;
}

TEST(Bitmap, BytesPerPixelOfEveryCode) {
  const std::uint32_t expected[16] = {0x2000, 0, 0, 0x10000, 0x10000, 0x20000, 0x20000, 0x30000};
  for (std::uint32_t code = 0; code < 16; ++code)
    for (const std::uint32_t flags : {0u, 0x10u, 0x30u, 0xFFFFFFC0u})
      EXPECT_EQ(expected[code], KX_getBytesPerPixel(code | flags)) << code;
}

TEST(Bitmap, PlainLayout) {
  const struct {
    std::int32_t width;
    std::uint32_t format;
    std::int32_t pitch;
  } cases[] = {{13, 0, 4}, {33, 0, 8}, {1, 3, 4}, {5, 4, 8}, {3, 5, 8}, {2, 6, 4}, {5, 7, 16}, {4, 1, 0}, {4, 0x25, 8}};
  for (const auto& c : cases) {
    Bitmap* bitmap = make(c.width, 3, c.format);
    EXPECT_EQ(c.pitch, bitmap->pitch) << c.format;
    EXPECT_EQ(methods(), bitmap->methods);
    EXPECT_EQ(0x10000u, bitmap->version);
    EXPECT_EQ(c.width, bitmap->width);
    EXPECT_EQ(3, bitmap->height);
    EXPECT_EQ(c.format, bitmap->format);
    EXPECT_EQ(7u, bitmap->extra1);
    EXPECT_EQ(9u, bitmap->extra2);
    EXPECT_EQ(0u, bitmap->lockCount | bitmap->flags);
    EXPECT_EQ(nullptr, bitmap->rowTable);
    EXPECT_EQ((c.format & 15) == 4, bitmap->palette != nullptr);
    std::memset(bitmap->pixels, 0xA5, 4 * static_cast<std::size_t>(c.pitch));  // the spare row is there
    std::uint32_t size = 0xEEEEEEEE;
    EXPECT_EQ(c.format == 0x25 ? 0x2001u : 0u, KX_getBitmapSize(bitmap, &size));
    EXPECT_EQ(c.format == 0x25 ? 0xEEEEEEEE : 3u * static_cast<unsigned>(c.pitch), size);
    EXPECT_EQ(0u, KX_deleteBitmap(bitmap));
  }
}

TEST(Bitmap, PackedLayoutIsBlackRuns) {
  const struct {
    std::int32_t width;
    std::uint32_t format;
    std::uint32_t rowBytes;
  } cases[] = {{200, 0x13, 8}, {128, 0x13, 4}, {1, 0x17, 8}, {129, 0x16, 12}, {300, 0x87 | 0x10, 16}};
  for (const auto& c : cases) {
    Bitmap* bitmap = make(c.width, 4, c.format);
    EXPECT_EQ(0, bitmap->pitch);
    const std::uint32_t stride = (KX_getBytesPerPixel(c.format) >> 16) + 1;
    const std::uint32_t runs = (static_cast<std::uint32_t>(c.width) + 127) / 128;
    for (std::uint32_t y = 0; y < 4; ++y) {
      ASSERT_EQ(y * c.rowBytes, bitmap->rowTable[y]);
      for (std::uint32_t i = 0; i < c.rowBytes; ++i)
        EXPECT_EQ(i % stride == 0 && i / stride < runs ? 0x81 : 0, bitmap->pixels[y * c.rowBytes + i]) << c.width;
    }
    std::uint32_t size = 0;
    EXPECT_EQ(0u, KX_getBitmapSize(bitmap, &size));
    EXPECT_EQ(3 * c.rowBytes + runs * stride, size);
    EXPECT_EQ(0u, KX_getPixel(bitmap, c.width - 1, 3));
    EXPECT_EQ(0u, bitmap->lockCount);
    EXPECT_EQ(0u, KX_deleteBitmap(bitmap));
  }
}

TEST(Bitmap, CreationRefusesInOrder) {
  BitmapMethods newer = newerMethods();
  Bitmap* out = nullptr;
  const struct {
    std::uint32_t code;
    Bitmap** result;
    std::int32_t width, height;
    std::uint32_t format;
    BitmapMethods* table;
  } cases[] = {
      {7, &out, 4, 4, 6, nullptr},
      {7, nullptr, 4, 4, 6, methods()},
      {7, &out, 0, 4, 6, methods()},
      {7, &out, 4, 0, 6, methods()},
      {7, &out, -1, 4, 6, methods()},
      {7, &out, 4, INT32_MIN, 6, methods()},
      {4, &out, 4, 4, 6, &newer},
      {7, nullptr, 4, 4, 6, &newer},
      {7, &out, 0, 4, 6, &newer},
      {4, &out, 4, 4, 0x10, &newer},
      {2, &out, INT32_MAX, 1, 7, methods()},
      {2, &out, 65536, 32768, 3, methods()},
      {2, &out, INT32_MAX, INT32_MAX, 0, methods()},
      {2, &out, INT32_MAX, INT32_MAX, 0x17, methods()},
  };
  const std::size_t before = kxtest::liveBlocks();
  for (const auto& c : cases) {
    EXPECT_EQ(c.code, KX_createBitmap(c.result, c.width, c.height, c.format, 0, 0, c.table)) << &c - cases;
    EXPECT_EQ(nullptr, out);
    EXPECT_EQ(before, kxtest::liveBlocks());
  }
}

TEST(Bitmap, LockCountsSaturate) {
  Bitmap* bitmap = make(4, 4, 6);
  EXPECT_EQ(0u, KX_unlock(bitmap));
  EXPECT_EQ(0u, bitmap->lockCount);
  EXPECT_EQ(0u, KX_lock(bitmap));
  EXPECT_EQ(0u, KX_lock(bitmap));
  EXPECT_EQ(2u, bitmap->lockCount);
  bitmap->lockCount = 0xFFFFFFFF;
  EXPECT_EQ(0u, KX_lock(bitmap));
  EXPECT_EQ(0xFFFFFFFFu, bitmap->lockCount);
  EXPECT_EQ(0u, KX_unlock(bitmap));
  EXPECT_EQ(0xFFFFFFFEu, bitmap->lockCount);
  EXPECT_EQ(7u, KX_lock(nullptr));
  EXPECT_EQ(7u, KX_unlock(nullptr));
  std::uint8_t* const pixels = std::exchange(bitmap->pixels, nullptr);
  EXPECT_EQ(0x2001u, KX_lock(bitmap));
  EXPECT_EQ(0u, KX_unlock(bitmap));
  bitmap->pixels = pixels;
  KX_deleteBitmap(bitmap);
}

TEST(Bitmap, DeletionChecksEveryOwnedBlockBeforeItFreesAny) {
  Bitmap* bitmap = make(4, 4, 0x14);
  const std::size_t live = kxtest::liveBlocks();
  auto* const bad = reinterpret_cast<std::uint8_t*>(std::uintptr_t{16});
  const auto refused = [&](auto& block, std::uint32_t flag, std::uint32_t code) {
    const auto kept = std::exchange(block, reinterpret_cast<std::remove_reference_t<decltype(block)>>(bad));
    EXPECT_EQ(code, KX_deleteBitmap(bitmap)) << flag;
    EXPECT_EQ(live, kxtest::liveBlocks());
    block = kept;
  };
  refused(bitmap->table8, 0x20, 0x2002);
  refused(bitmap->table16, 0x10, 0x2002);
  refused(bitmap->table15, 0x08, 0x2002);
  refused(bitmap->palette, 0x04, 0x2002);
  refused(bitmap->rowTable, 0x02, 0x2001);
  refused(bitmap->pixels, 0x01, 0x2001);
  std::uint8_t* const palette = std::exchange(bitmap->palette, bad);
  refused(bitmap->pixels, 0x01, 0x2001);  // pixels come before palettes
  bitmap->flags = KX_BORROWED_PALETTE;    // what belongs to others is not looked at
  EXPECT_EQ(0u, KX_deleteBitmap(bitmap));
  EXPECT_EQ(live - 3, kxtest::liveBlocks());
  mmgr_free(palette);
  EXPECT_EQ(7u, KX_deleteBitmap(nullptr));
}

TEST(CreateFromData, BorrowsOrTakesOver) {
  for (const std::uint8_t borrow : {std::uint8_t{1}, std::uint8_t{0}})
    for (const std::uint32_t format : {0u, 4u, 6u, 0x14u, 0x17u}) {
      const std::size_t before = kxtest::liveBlocks();
      Bitmap* source = make(13, 5, format | 0x80);
      source->reserved21 = 21;
      source->reserved22 = 22;
      source->lockCount = 3;
      Bitmap* bitmap = nullptr;
      ASSERT_EQ(0u, KX_createFromData(&bitmap, source, borrow, methods()));
      Bitmap expected = *source;
      expected.lockCount = 0;
      if (format == 0x14) expected.pitch = 16;  // packed rows have none, so one is computed
      if (format == 0x17) expected.pitch = 40;
      if (borrow != 0) expected.flags = 1u | (format > 15 ? 2u : 0u) | ((format & 15) == 4 ? 4u : 0u);
      // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison,cert-exp42-c,cert-flp37-c): both come from zeroed memory
      EXPECT_EQ(0, std::memcmp(&expected, bitmap, sizeof expected)) << format;
      if (borrow != 0) {
        EXPECT_EQ(0u, KX_deleteBitmap(source));
      } else {
        mmgr_free(source);
      }
      EXPECT_EQ(0u, KX_deleteBitmap(bitmap));
      EXPECT_EQ(before, kxtest::liveBlocks());
    }
}

TEST(CreateFromData, AMissingPaletteBecomesTheBitmapsOwn) {
  std::uint8_t pixels[16];
  Bitmap source{};
  source.width = 3, source.height = 4, source.format = 4, source.pixels = pixels;
  Bitmap* bitmap = kxtest::garbagePointer<Bitmap>();
  kxtest::sweepAllocations({.call = [&] { return KX_createFromData(&bitmap, &source, 1, methods()); },
                            .release =
                                [&] {
                                  EXPECT_EQ(4, bitmap->pitch);
                                  EXPECT_EQ(1u, bitmap->flags);
                                  KX_deleteBitmap(bitmap);
                                },
                            .untouched = {kxtest::bytesOf(bitmap)}});
}

TEST(CreateFromData, RefusesInOrder) {
  BitmapMethods newer = newerMethods();
  Bitmap source{};
  Bitmap* out = nullptr;
  EXPECT_EQ(7u, KX_createFromData(&out, &source, 1, nullptr));
  EXPECT_EQ(7u, KX_createFromData(nullptr, &source, 1, &newer));
  EXPECT_EQ(7u, KX_createFromData(&out, nullptr, 1, &newer));
  EXPECT_EQ(4u, KX_createFromData(&out, &source, 1, &newer));
  EXPECT_EQ(7u, KX_cloneBitmap(&out, &source, nullptr));
  EXPECT_EQ(7u, KX_cloneBitmap(nullptr, &source, &newer));
  EXPECT_EQ(7u, KX_cloneBitmap(&out, nullptr, &newer));
  EXPECT_EQ(4u, KX_cloneBitmap(&out, &source, &newer));
  EXPECT_EQ(nullptr, out);
}

std::vector<std::uint32_t> pixelsOf(Bitmap* bitmap) {
  std::vector<std::uint32_t> values;
  for (std::int32_t y = 0; y < bitmap->height; ++y)
    for (std::int32_t x = 0; x < bitmap->width; ++x) values.push_back(KX_getPixel(bitmap, x, y));
  return values;
}

/// Random pixels in streaks, so that packed rows have runs and literals.
void paint(Bitmap* bitmap, std::uint32_t seed) {
  kxtest::Random random(seed);
  std::uint32_t value = 0;
  for (std::int32_t y = 0; y < bitmap->height; ++y)
    for (std::int32_t x = 0; x < bitmap->width; ++x) {
      if (random.below(3) == 0) value = (bitmap->format & 15) == 0 ? random.below(2) : random.next();
      kx::writePixel(bitmap->pixels + bitmap->pitch * y, bitmap->format, x, value);
    }
}

TEST(Clone, IsIndependentAndEqual) {
  const BitmapMethods other = *methods();
  for (const std::uint32_t format : {0u, 3u, 4u, 5u, 7u, 0x13u, 0x14u, 0x16u, 0x17u}) {
    Bitmap* source = make(150, 6, format | 0x40);
    if (source->palette != nullptr) std::memset(source->palette, 0x5A, 768);
    if (format < 16) paint(source, 1 + format);
    EXPECT_EQ(0u, KX_lock(source));
    Bitmap* clone = nullptr;
    ASSERT_EQ(0u, KX_cloneBitmap(&clone, source, const_cast<BitmapMethods*>(&other)));
    EXPECT_EQ(1u, source->lockCount);
    EXPECT_EQ(0u, clone->lockCount | clone->flags);
    EXPECT_EQ(&other, clone->methods);
    EXPECT_EQ(source->format, clone->format);
    EXPECT_EQ(source->extra2, clone->extra2);
    const std::vector<std::uint32_t> expected = pixelsOf(source);
    KX_deleteBitmap(source);
    EXPECT_EQ(expected, pixelsOf(clone)) << format;
    if (clone->palette != nullptr) {
      EXPECT_EQ(0x5A, clone->palette[767]);
    }
    KX_deleteBitmap(clone);
  }
}

TEST(Clone, CopiesUpToTheGreatestEndOfAnyRow) {
  Bitmap* source = make(300, 3, 0x15);
  std::swap(source->rowTable[0], source->rowTable[2]);  // as after mirroring
  source->pixels[source->rowTable[0] + 1] = 0x34;
  Bitmap* clone = nullptr;
  ASSERT_EQ(0u, KX_cloneBitmap(&clone, source, methods()));
  std::uint32_t size = 0;
  EXPECT_EQ(0u, KX_getBitmapSize(source, &size));
  EXPECT_EQ(9u, size);  // of the last row alone
  KX_deleteBitmap(source);
  EXPECT_EQ(0x34u, KX_getPixel(clone, 127, 0));
  EXPECT_EQ(0u, KX_getPixel(clone, 128, 0));
  KX_deleteBitmap(clone);
}

TEST(Clone, FailuresAfterTheRecordLeakAndLeaveTheSourceLocked) {
  struct Case {
    std::uint32_t code;
    std::uint32_t format;
    std::size_t leaked;
    std::uint32_t locks;
    void (*spoil)(Bitmap& source);
  };
  const Case cases[] = {
      {0x2001, 6, 1, 0, [](Bitmap& source) { source.pixels = nullptr; }},  // its lock refuses
      {0x2001, 0x16, 1, 1, [](Bitmap& source) { source.rowTable = nullptr; }},
      {0x2001, 0x26, 1, 1, [](Bitmap&) {}},
      {0x2002, 4, 3, 1, [](Bitmap& source) { source.palette = nullptr; }},
      {0x2002, 0x14, 4, 1, [](Bitmap& source) { source.palette = nullptr; }},
      {2, 7, 1, 1, [](Bitmap& source) { source.height = INT32_MAX; }},
      {2, 7, 1, 1, [](Bitmap& source) { source.pitch = INT32_MIN; }},
      {2, 0x13, 1, 1, [](Bitmap& source) { source.height = -5; }},
  };
  for (const Case& c : cases) {
    Bitmap* source = make(5, 5, c.format);
    Bitmap spoilt = *source;
    c.spoil(spoilt);
    const std::size_t before = kxtest::liveBlocks(), mark = kxtest::allocationMark();
    Bitmap* clone = nullptr;
    EXPECT_EQ(c.code, KX_cloneBitmap(&clone, &spoilt, methods())) << &c - cases;
    EXPECT_EQ(nullptr, clone);
    EXPECT_EQ(c.locks, spoilt.lockCount) << &c - cases;
    EXPECT_EQ(before + c.leaked, kxtest::liveBlocks()) << &c - cases;
    kxtest::freeBlocksSince(mark);
    KX_deleteBitmap(source);
  }
}

TEST(Bitmap, APackedFormatWithoutWholeBytesLeaksItsRecord) {
  for (const std::uint32_t format : {0x10u, 0x11u, 0x1Fu}) {
    const std::size_t before = kxtest::liveBlocks(), mark = kxtest::allocationMark();
    Bitmap* bitmap = nullptr;
    EXPECT_EQ(8u, KX_createBitmap(&bitmap, 4, 4, format, 0, 0, methods()));
    EXPECT_EQ(nullptr, bitmap);
    EXPECT_EQ(before + 1, kxtest::liveBlocks());
    kxtest::freeBlocksSince(mark);
  }
}

TEST(Bitmap, EveryAllocationOfCreationAndCloneMayFail) {
  for (const std::uint32_t format : {0u, 4u, 7u, 0x13u, 0x14u, 0x17u}) {
    Bitmap* bitmap = kxtest::garbagePointer<Bitmap>();
    const unsigned made =
        kxtest::sweepAllocations({.call = [&] { return KX_createBitmap(&bitmap, 20, 4, format, 0, 0, methods()); },
                                  .release = [&] { KX_deleteBitmap(bitmap); },
                                  .untouched = {kxtest::bytesOf(bitmap)}});
    EXPECT_EQ(2u + (format > 15) + ((format & 15) == 4), made);

    Bitmap* source = make(20, 4, format);
    bitmap = kxtest::garbagePointer<Bitmap>();
    kxtest::sweepAllocations({.call = [&] { return KX_cloneBitmap(&bitmap, source, methods()); },
                              .release = [&] { KX_deleteBitmap(bitmap); },
                              .untouched = {kxtest::bytesOf(bitmap)},
                              .prepare = [&] { source->lockCount = 0; },
                              .checkFailure = [&] { EXPECT_LE(source->lockCount, 1u); },
                              .leaked = [](unsigned k) { return std::size_t{k - 1}; }});
    KX_deleteBitmap(source);
  }
}

TEST(BitmapSize, WithoutMemoryForTheRowItSucceedsAndWritesNothing) {
  Bitmap* bitmap = make(20, 4, 0x16);
  std::uint32_t size = 0xEEEEEEEE;
  kxtest::failAllocation(1);
  EXPECT_EQ(0u, KX_getBitmapSize(bitmap, &size));
  kxtest::failAllocation(0);
  EXPECT_EQ(0xEEEEEEEEu, size);
  EXPECT_EQ(7u, KX_getBitmapSize(nullptr, &size));
  EXPECT_EQ(0u, KX_getBitmapSize(bitmap, nullptr));
  std::uint32_t* const table = std::exchange(bitmap->rowTable, nullptr);
  EXPECT_EQ(0x2001u, KX_getBitmapSize(bitmap, &size));
  bitmap->rowTable = table;
  KX_deleteBitmap(bitmap);
}

}  // namespace
