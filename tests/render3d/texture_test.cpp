// Textures: the table of sizes and levels, refusals in their order, what failures leave behind.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "render3d/scene.h"
#include "render3d/stub_bitmaps.h"
#include "support/allocation_sweep.h"
#include "support/test_heap.h"

namespace {

using namespace kxtest;

class Textures : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_EQ(0u, KX_createBitmap(&target, 8, 8, KX_FORMAT_555, 5, 6, &stub.methods));
    ASSERT_EQ(0u, KX_create3DDevice(&device, target, 0, 0, 0, deviceMethods()));
  }
  void TearDown() override {
    EXPECT_EQ(0u, KX_delete3DDevice(device));
    EXPECT_EQ(0u, KX_deleteBitmap(target));
  }

  std::uint32_t create(std::int32_t width, std::int32_t height, std::uint32_t format, std::int32_t levels) {
    return KX_createTexture(&texture, device, width, height, format, levels);
  }

  StubBitmaps stub;
  Bitmap* target = nullptr;
  Device3D* device = nullptr;
  Texture* texture = nullptr;
};

TEST_F(Textures, AreRefusedInTheOrderOfTheChecks) {
  struct Case {
    std::int32_t width, height;
    std::uint32_t format;
    std::int32_t levels;
    std::uint32_t code;
  };
  // Each case has the faults of the later ones too, as far as they can stand together.
  constexpr Case cases[] = {
      {1, 8, 0x16, 0, 7},   {8, 1, 0x16, 0, 7}, {INT32_MIN, 8, 0x16, 0, 7}, {3, 8, 0x16, 0, 8}, {3, 8, 0x25, 0, 8},
      {3, 8, 6, 0, 0x2000}, {3, 8, 5, 0, 7},    {3, 8, 5, 10, 7},           {3, 8, 5, 9, 0xC},  {2048, 8, 5, 9, 0xC},
      {1023, 8, 5, 1, 0xC},
  };
  for (const Case& c : cases) EXPECT_EQ(c.code, create(c.width, c.height, c.format, c.levels)) << c.width;
  EXPECT_EQ("", stub.log);
  EXPECT_EQ(7u, KX_createTexture(nullptr, device, 8, 8, 5, 1));
  EXPECT_EQ(7u, KX_createTexture(&texture, nullptr, 8, 8, 5, 1));
  EXPECT_EQ(7u, KX_deleteTexture(nullptr));
  EXPECT_EQ(nullptr, texture);
}

TEST_F(Textures, HaveLevelsDownToFourByFour) {
  struct Case {
    std::int32_t width, height, levels;
    bool accepted;
  };
  constexpr Case cases[] = {{2, 2, 1, false},      {4, 4, 1, true},    {4, 4, 2, false},     {8, 6, 1, true},
                            {8, 6, 2, false},      {2, 64, 1, false},  {256, 256, 7, true},  {256, 256, 8, false},
                            {1024, 1024, 9, true}, {1024, 5, 1, true}, {1024, 1023, 8, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.width << " x " << c.height << ", " << c.levels);
    const std::size_t blocks = liveBlocks();
    const std::size_t mark = allocationMark();
    texture = nullptr;
    stub.log.clear();
    ASSERT_EQ(c.accepted ? 0u : 0xCu, create(c.width, c.height, KX_FORMAT_555 | 0x40, c.levels));
    if (!c.accepted) {
      EXPECT_EQ(nullptr, texture);
      EXPECT_EQ(blocks + 1 + 2 * stub.log.size(), liveBlocks()) << "record and levels are left";
      freeBlocksSince(mark);
      continue;
    }
    EXPECT_EQ(device, texture->device);
    EXPECT_EQ(c.levels, texture->levelCount);
    int code = 2;
    while (1 << (code - 1) < c.width) ++code;
    for (int level = 0; level < 9; ++level) {
      if (level >= c.levels) {
        EXPECT_EQ(nullptr, texture->levels[level]);
        continue;
      }
      const Bitmap& bitmap = *texture->levels[level];
      EXPECT_EQ(c.width >> level, bitmap.width);
      EXPECT_EQ(c.height >> level, bitmap.height);
      EXPECT_EQ(KX_FORMAT_555 | 0x240u, bitmap.format);
      EXPECT_EQ(5u, bitmap.extra1);
      EXPECT_EQ(6u, bitmap.extra2);
      EXPECT_EQ(code - level, texture->widthCodes[level]);
    }
    EXPECT_EQ(0u, KX_deleteTexture(texture));
    EXPECT_EQ(blocks, liveBlocks());
  }
}

TEST_F(Textures, PassOnFailuresOfTheirLevels) {
  stub.fail('c', 2, 0x99);
  const std::size_t blocks = liveBlocks();
  const std::size_t mark = allocationMark();
  EXPECT_EQ(0x99u, create(16, 16, KX_FORMAT_555, 3));
  EXPECT_EQ("cc", stub.log);
  EXPECT_EQ(nullptr, texture);
  freeBlocksSince(mark);

  ASSERT_EQ(0u, create(16, 16, KX_FORMAT_555, 3));
  stub.log.clear();
  stub.fail('d', 2, 0x98);
  EXPECT_EQ(0x98u, KX_deleteTexture(texture)) << "and the record is kept";
  EXPECT_EQ("dd", stub.log);
  EXPECT_EQ(0u, KX_deleteTexture(texture));
  EXPECT_EQ("dddd", stub.log);
  EXPECT_EQ(blocks, liveBlocks());
}

TEST_F(Textures, RunOutOfMemory) {
  texture = garbagePointer<Texture>();
  sweepAllocations({.call = [&] { return create(16, 16, KX_FORMAT_555, 2); },
                    .release = [&] { KX_deleteTexture(texture); },
                    .untouched = {bytesOf(texture)},
                    // The record, and the two blocks of the first level once it is whole.
                    .leaked = [](unsigned k) { return std::size_t{k == 1   ? 0u
                                                                  : k <= 3 ? 1u
                                                                           : 3u}; }});
}

}  // namespace
