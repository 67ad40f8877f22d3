// The layer for C++20: owners, result codes as error codes, rows and blocks as spans.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <numeric>

#include "kxgraphic/kxgraphic.hpp"

namespace {

static_assert(sizeof(kx::Bitmap) == sizeof(void*) && sizeof(kx::Landscape) == sizeof(void*));
static_assert(std::is_nothrow_move_constructible_v<kx::Bitmap> && !std::is_copy_constructible_v<kx::Bitmap>);
static_assert(std::is_convertible_v<kx::Bitmap, Bitmap*> && !std::is_convertible_v<Bitmap*, kx::Bitmap>);

int deleted = 0;
std::uint32_t KX_CALL countedDelete(Bitmap* bitmap) {
  ++deleted;
  return KX_deleteBitmap(bitmap);
}
std::uint32_t KX_CALL refusedLock(Bitmap*) { return KX_ERROR_LockFailed; }

/// The library's table with one function of the test's.
struct CountingTable {
  BitmapMethods methods = *kx::bitmapMethods();
  CountingTable() {
    methods.deleteBitmap = countedDelete;
    deleted = 0;
  }
};

TEST(CppLayer, AnOwnerDeletesOnceThroughTheObjectsTable) {
  CountingTable table;
  {
    kx::Bitmap first;
    EXPECT_EQ(nullptr, first.get());
    ASSERT_FALSE(first.create(3, 2, kx::Format::grey, &table.methods));
    kx::Bitmap second = std::move(first);
    EXPECT_EQ(nullptr, first.get());  // NOLINT(bugprone-use-after-move): empty is promised
    ASSERT_FALSE(first.create(3, 2, kx::Format::grey, &table.methods));
    second = std::move(first);
    EXPECT_EQ(1, deleted);
    // NOLINTNEXTLINE(bugprone-use-after-move): filled again
    ASSERT_EQ(0u, KX_cloneBitmap(first.put(), second, &table.methods));
    EXPECT_EQ(3, first->width);
    Bitmap* plain = first.release();
    first.reset(plain);
    first.reset();
    EXPECT_EQ(2, deleted);
  }
  EXPECT_EQ(3, deleted);
}

TEST(CppLayer, CodesAreErrorCodes) {
  kx::Bitmap bitmap;
  const std::error_code failure = bitmap.create(0, 5, kx::Format::rgb565);
  EXPECT_EQ(failure, KX_ERROR_IllegalParameter);
  EXPECT_NE(failure, KX_ERROR_OutOfMemory);
  EXPECT_EQ(nullptr, bitmap.get());
  EXPECT_EQ(kx::category(), failure.category());
  EXPECT_EQ("Funktionsparameter ung\u00FCltig", failure.message());
  EXPECT_FALSE(kx::error(0));
  EXPECT_TRUE(failure == std::errc::invalid_argument && failure != std::errc::not_enough_memory);
  EXPECT_EQ(kx::error(KX_ERROR_OutOfMemory), std::errc::not_enough_memory);
  EXPECT_EQ(kx::error(KX_ERROR_FunctionNotSupported), std::errc::function_not_supported);
  EXPECT_EQ(kx::error(KX_ERROR_LockFailed).default_error_condition().category(), kx::category());
  EXPECT_NO_THROW(kx::check(0u));
  try {
    kx::check(KX_deleteBitmap(nullptr));
    FAIL() << "nothing thrown";
  } catch (const std::system_error& thrown) {
    EXPECT_EQ(thrown.code(), KX_ERROR_IllegalParameter);
    EXPECT_NE(nullptr, std::strstr(thrown.what(), "KX_IllegalParameter_Exception"));
  }
  EXPECT_THROW(kx::check(std::make_error_code(std::errc::timed_out)), std::system_error);
}

template <typename Pixel>
void expectRows(kx::Format format, std::size_t length, Pixel value, std::uint32_t stored) {
  kx::Bitmap bitmap;
  ASSERT_FALSE(bitmap.create(13, 3, format));
  {
    const kx::Pixels pixels(bitmap);
    EXPECT_EQ(1u, bitmap->lockCount);
    EXPECT_EQ(static_cast<std::size_t>(bitmap->pitch) * 3, pixels.bytes().size());
    std::ranges::fill(pixels.bytes(), std::uint8_t{0});
    const std::span<Pixel> row = pixels.row<Pixel>(1);
    ASSERT_EQ(length, row.size());
    row.back() = value;
  }
  EXPECT_EQ(0u, bitmap->lockCount);
  EXPECT_EQ(stored, KX_getPixel(bitmap, 12, 1));
  EXPECT_EQ(0u, KX_getPixel(bitmap, 11, 1));
  EXPECT_EQ(format, kx::formatOf(bitmap));
}

TEST(CppLayer, RowsAreSpansOfPixels) {
  expectRows<std::uint8_t>(kx::Format::mono, 2, 0x08, 1);
  expectRows<std::uint8_t>(kx::Format::grey, 13, 200, 200);
  expectRows<std::uint8_t>(kx::Format::palette, 13, 200, 200);
  expectRows<std::uint16_t>(kx::Format::rgb555, 13, 0x7FFF, 0x7FFF);
  expectRows<std::uint16_t>(kx::Format::rgb565, 13, 0xFFFF, 0xFFFF);
  expectRows<kx::Bgr>(kx::Format::bgr888, 13, {1, 2, 3}, 0x030201);
}

TEST(CppLayer, TablesAreFilledOnceWithTheLibrarysFunctions) {
  EXPECT_EQ(kx::bitmapMethods(), kx::bitmapMethods());
  EXPECT_EQ(0x10000u, kx::bitmapMethods()->version);
  EXPECT_EQ(0x10000u, kx::deviceMethods()->version);
  EXPECT_EQ(0x10000u, kx::screenMethods()->version);
  kx::Bitmap bitmap;
  ASSERT_FALSE(bitmap.create(4, 4, kx::Format::grey));
  EXPECT_EQ(0u, kx::bitmapMethods()->fillRect(bitmap, 0, 0, 4, 4, 9));
  EXPECT_EQ(9u, KX_getPixel(bitmap, 3, 3));
  EXPECT_EQ(nullptr, kx::screenMethods()->flip);
}

TEST(CppLayer, PackedRowsAndPalettesAreSpansToo) {
  kx::Bitmap packed;
  ASSERT_FALSE(packed.create(300, 2, kx::Format::palette | kx::Format::packed));
  std::uint32_t size = 0;
  ASSERT_EQ(0u, KX_getBitmapSize(packed, &size));
  EXPECT_EQ(size, kx::Pixels(packed).bytes().size());
  EXPECT_GT(size, 0u);
  EXPECT_TRUE(kx::isPacked(kx::formatOf(packed)) && !kx::isPacked(kx::Format::palette));
  EXPECT_EQ(256u, kx::paletteOf(packed).size());
  std::array<kx::Bgr, 256> grey{};
  for (std::size_t i = 0; i < 256; ++i) grey[i].red = static_cast<std::uint8_t>(i);
  ASSERT_EQ(0u, KX_setPalette(packed, &grey[0].blue));
  EXPECT_TRUE(std::ranges::equal(grey, kx::paletteOf(packed)));
}

TEST(CppLayer, ALockThatFailsShowsNothing) {
  CountingTable table;
  kx::Bitmap bitmap;
  ASSERT_FALSE(bitmap.create(3, 2, kx::Format::grey, &table.methods));
  table.methods.lock = refusedLock;
  const kx::Pixels pixels(bitmap);
  EXPECT_EQ(pixels.failure(), KX_ERROR_LockFailed);
  EXPECT_TRUE(pixels.row(0).empty());
  EXPECT_TRUE(pixels.bytes().empty());
}

TEST(CppLayer, ADeviceOwnsWhatStandsOnIt) {
  kx::Bitmap target;
  ASSERT_FALSE(target.create(32, 32, kx::Format::rgb565));
  kx::Device device;
  EXPECT_EQ(device.create(static_cast<Bitmap*>(nullptr)), KX_ERROR_IllegalParameter);
  ASSERT_FALSE(device.create(target, true));
  EXPECT_NE(nullptr, device->zBuffer);
  kx::Texture texture;
  ASSERT_FALSE(texture.create(device, 16, 16, kx::Format::rgb565, 2));
  EXPECT_EQ(8, texture->levels[1]->width);
  kx::Camera camera;
  ASSERT_FALSE(camera.create(device));
  {
    const kx::Rendering rendering(device);
    EXPECT_FALSE(rendering.failure());
    EXPECT_EQ(1, device->renderingDepth);
  }
  EXPECT_EQ(0, device->renderingDepth);
  kx::Screen screen;
  ASSERT_FALSE(screen.create());
  EXPECT_EQ(kx::Device().create(screen), KX_ERROR_ModeNotSet);
}

TEST(CppLayer, ALandscapeIsSavedToABlockAndLoaded) {
  kx::Bitmap target;
  ASSERT_FALSE(target.create(8, 8, kx::Format::rgb565));
  kx::Device device;
  ASSERT_FALSE(device.create(target));
  for (const bool textured : {false, true}) {
    kx::Landscape landscape;
    ASSERT_FALSE(landscape.create(device, 7, 5));
    std::fill_n(landscape->textureMap, 7 * 5, std::uint16_t{0x1234});
    for (int y = 0; y < 5; ++y) {
      const std::span<std::uint8_t> row = landscape.heights(y);
      std::iota(row.begin(), row.end(), static_cast<std::uint8_t>(y * 20));
    }
    TextureRef grass{reinterpret_cast<std::uintptr_t>(target.get()), "grass", 9};
    const std::span<const TextureRef> textures(&grass, textured ? 1 : 0);
    if (textured) {
      ASSERT_EQ(0u, LS_setTextureCount(landscape, 1));
      ASSERT_EQ(0u, LS_setTextures(landscape, 0, &grass.handle, 1, 3, 4));
      kx::Block<std::byte> none;
      EXPECT_EQ(landscape.save(none), KX_ERROR_TextureNotFound);
      EXPECT_EQ(0u, none.size());
    }
    kx::Block<std::byte> block;
    ASSERT_FALSE(landscape.save(block, textures));

    kx::Block<TextureRef> found;
    ASSERT_FALSE(kx::Landscape::texturesOf(block, found));
    ASSERT_EQ(textures.size(), found.size());
    for (TextureRef& texture : found) {
      EXPECT_STREQ("grass", texture.name);
      texture.handle = grass.handle;
    }
    kx::Landscape loaded;
    ASSERT_FALSE(loaded.load(device, block, found));
    EXPECT_TRUE(std::ranges::equal(landscape.heights(4), loaded.heights(4)));
    kx::Block<std::byte> again;
    ASSERT_FALSE(loaded.save(again, found));
    EXPECT_EQ(kx::crc(block.span()), kx::crc(again.span()));
    EXPECT_EQ(loaded.load(device, block.span().first(50), found), KX_ERROR_FileHeaderDestroyed);
    EXPECT_EQ(nullptr, loaded.get());
  }
}

}  // namespace
