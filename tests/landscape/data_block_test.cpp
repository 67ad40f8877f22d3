// The saved block: its bytes, the way back, and blocks that lie.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include "landscape/reference.h"
#include "support/allocation_sweep.h"
#include "support/test_heap.h"

namespace {

using kxtest::LandscapeOwner;

Device3D device{};
constexpr std::uint32_t badParameter = 7;
constexpr std::uint32_t badHeader = 4101;
constexpr std::uint32_t textureMissing = 8206;
constexpr std::uint32_t tooManyTextures = 8211;

using Block = std::vector<std::uint8_t>;

void put32(Block& block, std::size_t at, std::uint32_t value) { std::memcpy(block.data() + at, &value, 4); }

/// References whose handles can be written to, as texture handles must be.
std::vector<TextureRef> references(std::size_t count) {
  static std::uint32_t objects[64];
  std::vector<TextureRef> list(count);
  for (std::size_t i = 0; i < count; ++i) {
    list[i].handle = reinterpret_cast<std::uintptr_t>(&objects[i]);
    std::snprintf(list[i].name, sizeof list[i].name, "texture %zu", i);
    list[i].value = static_cast<std::uint32_t>(1000 + i);
  }
  return list;
}

Block saved(const Landscape& landscape, const std::vector<TextureRef>& list) {
  void* data = nullptr;
  std::uint32_t size = 0;
  EXPECT_EQ(0u, LS_convertToData(&landscape, &data, &size, list.data(), static_cast<std::int32_t>(list.size())));
  const auto* bytes = static_cast<const std::uint8_t*>(data);
  Block block(bytes, bytes + size);
  mmgr_free(data);
  return block;
}

TEST(LandscapeBlock, OneCellByteForByte) {
  std::mt19937 random(1);
  const LandscapeOwner landscape = kxtest::randomLandscape(random, 1, 1, 0);
  const std::uint32_t position[6] = {1, 2, 3, 4, 5, 0x80000006};
  ASSERT_EQ(0u, LS_setPosition(landscape.get(), position));
  landscape->heightMap[0] = 0x11;
  landscape->lightMap[0] = 0x22;
  landscape->textureMap[0] = 0x4433;
  Block wanted(72);
  put32(wanted, 0, 72);
  for (std::size_t i = 0; i < 6; ++i) put32(wanted, 4 + 4 * i, position[i]);
  for (std::size_t i = 0; i < 3; ++i) put32(wanted, 28 + 4 * i, 0x3F800000);
  put32(wanted, 52, 1);
  put32(wanted, 56, 1);
  std::copy_n("\x11\x22\x33\x44", 4, wanted.begin() + 68);
  EXPECT_EQ(wanted, saved(*landscape, {}));

  const LandscapeOwner coloured = kxtest::randomLandscape(random, 1, 1, 1);
  EXPECT_EQ(74u, saved(*coloured, {}).size());
}

TEST(LandscapeBlock, ComesBackAsItWas) {
  std::mt19937 random(2);
  for (int round = 0; round < 60; ++round) {
    const auto flag = static_cast<std::uint32_t>(random() % 3);
    const std::size_t count = random() % 5;
    const LandscapeOwner landscape =
        kxtest::randomLandscape(random, 1 + static_cast<int>(random() % 9), 1 + static_cast<int>(random() % 9), flag);
    ASSERT_EQ(0u, LS_setTextureCount(landscape.get(), static_cast<std::int32_t>(count)));
    // The caller's list may hold more than the landscape uses, in any order.
    std::vector<TextureRef> list = references(8);
    for (std::size_t i = 0; i < count; ++i)
      ASSERT_EQ(0u, LS_setTextures(landscape.get(), static_cast<std::int32_t>(i), &list[i].handle, 1,
                                   static_cast<std::uint32_t>(random()), static_cast<std::uint8_t>(random())));
    std::shuffle(list.begin(), list.end(), random);
    const Block block = saved(*landscape, list);
    const auto size = static_cast<std::uint32_t>(block.size());

    TextureRef* read = kxtest::garbagePointer<TextureRef>();
    std::int32_t readCount = -1;
    ASSERT_EQ(0u, LS_getTextureListFromData(block.data(), size, &read, &readCount));
    ASSERT_EQ(static_cast<std::int32_t>(count), readCount);
    EXPECT_EQ(count == 0, read == nullptr);
    std::vector<TextureRef> resolved(read, read + count);
    if (read != nullptr) mmgr_free(read);
    for (TextureRef& reference : resolved) {
      EXPECT_EQ(0u, reference.handle);
      const auto found = std::find_if(list.begin(), list.end(), [&](const TextureRef& candidate) {
        return std::memcmp(candidate.name, reference.name, 64) == 0 && candidate.value == reference.value;
      });
      ASSERT_NE(list.end(), found);
      reference.handle = found->handle;
    }
    Landscape* restored = nullptr;
    ASSERT_EQ(0u, LS_createFromData(&restored, &device, block.data(), size, resolved.data(), readCount));
    const LandscapeOwner owner(restored);
    EXPECT_EQ(block, saved(*restored, list));
  }
}

TEST(LandscapeBlock, RefusalsAndTheirOrder) {
  std::mt19937 random(3);
  const LandscapeOwner landscape = kxtest::randomLandscape(random, 3, 2, 1);
  ASSERT_EQ(0u, LS_setTextureCount(landscape.get(), 2));
  std::vector<TextureRef> list = references(2);
  const std::uintptr_t handles[2] = {list[0].handle, list[1].handle};
  ASSERT_EQ(0u, LS_setTextures(landscape.get(), 0, handles, 2, 0, 0));
  const Block block = saved(*landscape, list);
  const auto size = static_cast<std::uint32_t>(block.size());

  void* data = nullptr;
  std::uint32_t outSize = 0;
  EXPECT_EQ(badParameter, LS_convertToData(landscape.get(), &data, nullptr, nullptr, 0));
  EXPECT_EQ(badParameter, LS_convertToData(landscape.get(), &data, &outSize, nullptr, -1));
  EXPECT_EQ(badParameter, LS_convertToData(landscape.get(), &data, &outSize, nullptr, 1));
  EXPECT_EQ(textureMissing, LS_convertToData(landscape.get(), &data, &outSize, list.data(), 1));
  EXPECT_EQ(nullptr, data);

  Landscape* out = nullptr;
  TextureRef* read = nullptr;
  std::int32_t count = 0;
  for (const std::uint32_t wrong : {size - 1, size + 1, 0u, 3u, 67u}) {
    EXPECT_EQ(badHeader, LS_createFromData(&out, &device, block.data(), wrong, list.data(), 2)) << wrong;
    EXPECT_EQ(badHeader, LS_getTextureListFromData(block.data(), wrong, &read, &count)) << wrong;
  }
  EXPECT_EQ(badHeader, LS_createFromData(&out, nullptr, block.data(), size - 1, list.data(), 2));
  EXPECT_EQ(badParameter, LS_createFromData(&out, &device, block.data(), size, list.data(), 1));
  EXPECT_EQ(badParameter, LS_createFromData(&out, nullptr, block.data(), size, list.data(), 2));
  EXPECT_EQ(badParameter, LS_getTextureListFromData(block.data(), size, &read, nullptr));
  list[1].handle = 0;
  EXPECT_EQ(textureMissing, LS_createFromData(&out, &device, block.data(), size, list.data(), 2));
  EXPECT_EQ(nullptr, out);

  // 32768 textures in a block that adds up.
  Block crowded(72 + 73 * 32768);
  put32(crowded, 0, static_cast<std::uint32_t>(crowded.size()));
  put32(crowded, 52, 1);
  put32(crowded, 56, 1);
  put32(crowded, 64, 32768);
  EXPECT_EQ(tooManyTextures,
            LS_getTextureListFromData(crowded.data(), static_cast<std::uint32_t>(crowded.size()), &read, &count));
}

TEST(LandscapeBlock, FailedAllocationsLeaveNothing) {
  std::mt19937 random(4);
  const LandscapeOwner landscape = kxtest::randomLandscape(random, 3, 2, 1);
  ASSERT_EQ(0u, LS_setTextureCount(landscape.get(), 1));
  const std::vector<TextureRef> list = references(1);
  ASSERT_EQ(0u, LS_setTextures(landscape.get(), 0, &list[0].handle, 1, 0, 0));
  const Block block = saved(*landscape, list);
  const auto size = static_cast<std::uint32_t>(block.size());
  void* data = nullptr;
  std::uint32_t outSize = 0;
  kxtest::sweepAllocations({.call = [&] { return LS_convertToData(landscape.get(), &data, &outSize, list.data(), 1); },
                            .release = [&] { mmgr_free(data); }});
  TextureRef* read = nullptr;
  std::int32_t count = 0;
  kxtest::sweepAllocations({.call = [&] { return LS_getTextureListFromData(block.data(), size, &read, &count); },
                            .release = [&] { mmgr_free(read); }});
  Landscape* out = nullptr;
  kxtest::sweepAllocations(
      {.call = [&] { return LS_createFromData(&out, &device, block.data(), size, list.data(), 1); },
       .release = [&] { LandscapeOwner(out).reset(); },
       .untouched = {kxtest::bytesOf(out)}});
}

TEST(LandscapeBlock, SpoiltBlocksAreReadWithinTheirBytes) {
  std::mt19937 random(5);
  const LandscapeOwner landscape = kxtest::randomLandscape(random, 3, 3, 0);
  const Block good = saved(*landscape, {});
  static constexpr std::uint32_t extremes[] = {0, 1, 2, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0x40000000, 0x10000};
  for (int round = 0; round < 4000; ++round) {
    Block spoilt = good;
    spoilt.resize(random() % (good.size() + 40));
    for (unsigned i = random() % 4; i > 0 && spoilt.size() >= 68; --i)
      put32(spoilt, 52 + 4 * (random() % 4),
            random() % 2 == 0 ? extremes[random() % std::size(extremes)] : static_cast<std::uint32_t>(random() % 5));
    if (spoilt.size() >= 4 && random() % 4 != 0) put32(spoilt, 0, static_cast<std::uint32_t>(spoilt.size()));
    // A copy of its own, so that a sanitizer sees a byte too far.
    const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[spoilt.size() + 1]);
    std::copy(spoilt.begin(), spoilt.end(), bytes.get());
    TextureRef* read = nullptr;
    std::int32_t count = 0;
    const auto size = static_cast<std::uint32_t>(spoilt.size());
    const std::uint32_t listed = LS_getTextureListFromData(bytes.get(), size, &read, &count);
    std::vector<TextureRef> list = references(static_cast<std::size_t>(std::max(0, std::min(count, 64))));
    if (read != nullptr) mmgr_free(read);
    Landscape* out = nullptr;
    const std::uint32_t created =
        LS_createFromData(&out, &device, bytes.get(), size, list.data(), static_cast<std::int32_t>(list.size()));
    EXPECT_TRUE(listed == 0 || listed == badHeader || listed == tooManyTextures) << listed;
    EXPECT_EQ(listed == 0, created == 0) << created;
    if (created == 0) LandscapeOwner(out).reset();
  }
}

}  // namespace
