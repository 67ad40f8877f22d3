// Making, copying, locking and deleting bitmaps: layout, refusals and their order, ownership, memory.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "bitmap/own_methods.h"
#include "kxgraphic/kxgraphic.h"
#include "support/allocation_sweep.h"
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

}  // namespace
