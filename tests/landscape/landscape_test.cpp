// The landscape record: refusals, failed allocations, copies, the texture table and resizing.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>
#include <limits>

#include "landscape/reference.h"
#include "support/allocation_sweep.h"
#include "support/test_heap.h"

namespace {

using kxtest::LandscapeOwner;

Device3D device{};
constexpr std::uint32_t badParameter = 7;
constexpr std::uint32_t badSize = 12;
constexpr std::uint32_t tooManyTextures = 8211;

struct Refusal {
  const char* what;
  std::uint32_t code;
  std::function<std::uint32_t(Landscape* good)> call;
};

TEST(Landscape, RefusesWithTheCodeOfTheFirstFault) {
  std::mt19937 random(1);
  const LandscapeOwner good = kxtest::randomLandscape(random, 4, 3, 0);
  Landscape* out = kxtest::garbagePointer<Landscape>();
  static const float flatScale[6] = {1, 0, 1, 0, 0, 0};
  static const float badScale[6] = {-1, 1, 1, 0, 0, 0};
  static const std::uintptr_t handles[2] = {1, 2};
  ASSERT_EQ(0u, LS_setTextureCount(good.get(), 3));
  const Refusal table[] = {
      {"no output", badParameter, [](Landscape*) { return LS_createLandscape(nullptr, &device, 0, 0, 0); }},
      {"no device", badParameter, [&](Landscape*) { return LS_createLandscape(&out, nullptr, 0, 0, 0); }},
      {"no width", badSize, [&](Landscape*) { return LS_createLandscape(&out, &device, 0, 5, 0); }},
      {"negative height", badSize, [&](Landscape*) { return LS_createLandscape(&out, &device, 5, -1, 0); }},
      {"too large", 2, [&](Landscape*) { return LS_createLandscape(&out, &device, INT_MAX, INT_MAX, 0); }},
      {"delete null", badParameter, [](Landscape*) { return LS_deleteLandscape(nullptr); }},
      {"clone null", badParameter, [&](Landscape*) { return LS_cloneLandscape(&out, nullptr); }},
      {"scale 0", badParameter, [](Landscape* good_) { return LS_setScale(good_, flatScale); }},
      {"scale -1", badParameter, [](Landscape* good_) { return LS_setScale(good_, badScale); }},
      {"32768 textures", tooManyTextures, [](Landscape* good_) { return LS_setTextureCount(good_, 32768); }},
      {"no textures to set", badParameter, [](Landscape* good_) { return LS_setTextures(good_, 0, handles, 0, 0, 0); }},
      {"before the first", badParameter, [](Landscape* good_) { return LS_setTextures(good_, -1, handles, 1, 0, 0); }},
      {"past the last", badParameter, [](Landscape* good_) { return LS_setTextures(good_, 2, handles, 2, 0, 0); }},
      {"first + count overflows", badParameter,
       [](Landscape* good_) { return LS_setTextures(good_, INT_MAX, handles, INT_MAX, 0, 0); }},
      {"border 0", badParameter, [](Landscape* good_) { return LS_expandLandscape(good_, 0); }},
      {"border too large", 2, [](Landscape* good_) { return LS_expandLandscape(good_, INT_MAX); }},
  };
  for (const Refusal& refusal : table) EXPECT_EQ(refusal.code, refusal.call(good.get())) << refusal.what;
  EXPECT_EQ(kxtest::garbagePointer<Landscape>(), out);
  EXPECT_EQ(1.0f, good->scale[0]);
  EXPECT_EQ(3, good->textureCount);
}

TEST(Landscape, StartsWithItsDefaults) {
  Landscape* made = nullptr;
  ASSERT_EQ(0u, LS_createLandscape(&made, &device, 5, 3, 1));
  const LandscapeOwner owner(made);
  EXPECT_EQ(&device, made->device);
  EXPECT_EQ((std::vector<float>{1, 1, 1, 0, 0, 0}), std::vector<float>(made->scale, made->scale + 6));
  EXPECT_EQ(0, std::count_if(made->lightMap, made->lightMap + 45, [](int light) { return light != 0; }));
  EXPECT_EQ(nullptr, made->textureHandles);
  const float notANumber[6] = {std::numeric_limits<float>::quiet_NaN(), 2, 3, 4, 5, 6};
  EXPECT_EQ(0u, LS_setScale(made, notANumber));
  EXPECT_EQ(6.0f, made->scale[5]);
}

TEST(Landscape, SurvivesEveryFailedAllocation) {
  std::mt19937 random(2);
  const LandscapeOwner source = kxtest::randomLandscape(random, 6, 5, 1);
  ASSERT_EQ(0u, LS_setTextureCount(source.get(), 4));
  Landscape* out = kxtest::garbagePointer<Landscape>();
  const auto release = [&] {
    LandscapeOwner(out).reset();
    out = kxtest::garbagePointer<Landscape>();
  };
  EXPECT_EQ(4u, kxtest::sweepAllocations({.call = [&] { return LS_createLandscape(&out, &device, 6, 5, 0); },
                                          .release = release,
                                          .untouched = {kxtest::bytesOf(out)}}));
  EXPECT_EQ(7u, kxtest::sweepAllocations({.call = [&] { return LS_cloneLandscape(&out, source.get()); },
                                          .release = release,
                                          .untouched = {kxtest::bytesOf(out)}}));
  const auto untouched = kxtest::bytesOf(*source);
  EXPECT_EQ(3u, kxtest::sweepAllocations({.call = [&] { return LS_setTextureCount(source.get(), 9); },
                                          .release = [&] { LS_setTextureCount(source.get(), 4); },
                                          .untouched = {untouched}}));
  EXPECT_EQ(3u, kxtest::sweepAllocations(
                    {.call = [&] { return LS_expandLandscape(source.get(), 2); }, .untouched = {untouched}}));
  EXPECT_EQ(3u, kxtest::sweepAllocations(
                    {.call = [&] { return LS_minimizeLandscape(source.get()); }, .untouched = {untouched}}));
}

TEST(Landscape, CloneHasTheMapsAndTexturesOnly) {
  std::mt19937 random(3);
  for (const std::uint32_t flag : {0u, 1u, 2u}) {
    const LandscapeOwner source = kxtest::randomLandscape(random, 7, 4, flag);
    ASSERT_EQ(0u, LS_setTextureCount(source.get(), 2));
    const std::uintptr_t handles[2] = {0x1234, 0x5678};
    ASSERT_EQ(0u, LS_setTextures(source.get(), 0, handles, 2, 99, 7));
    source->drawingState[1] = 5;
    Landscape* copy = nullptr;
    ASSERT_EQ(0u, LS_cloneLandscape(&copy, source.get()));
    const LandscapeOwner owner(copy);
    EXPECT_TRUE(std::equal(source->heightMap, source->heightMap + 28, copy->heightMap));
    EXPECT_TRUE(std::equal(source->textureMap, source->textureMap + 28, copy->textureMap));
    EXPECT_TRUE(std::equal(source->lightMap, source->lightMap + (flag == 1 ? 84 : 28), copy->lightMap));
    EXPECT_EQ(0x5678u, copy->textureHandles[1]);
    EXPECT_EQ(99u, copy->textureParameters[0]);
    EXPECT_EQ(7u, copy->textureFlags[1]);
    EXPECT_EQ(0u, copy->drawingState[1]);
  }
}

TEST(Landscape, TextureTableKeepsItsFirstEntries) {
  std::mt19937 random(4);
  const LandscapeOwner landscape = kxtest::randomLandscape(random, 2, 2, 0);
  ASSERT_EQ(0u, LS_setTextureCount(landscape.get(), 3));
  const std::uintptr_t handles[3] = {10, 11, 12};
  ASSERT_EQ(0u, LS_setTextures(landscape.get(), 0, handles, 3, 1, 2));
  ASSERT_EQ(0u, LS_setTextureCount(landscape.get(), 32767));
  EXPECT_EQ(12u, landscape->textureHandles[2]);
  ASSERT_EQ(0u, LS_setTextureCount(landscape.get(), 2));
  EXPECT_EQ(11u, landscape->textureHandles[1]);
  ASSERT_EQ(0u, LS_setTextureCount(landscape.get(), -5));
  EXPECT_EQ(0, landscape->textureCount);
  EXPECT_EQ(nullptr, landscape->textureFlags);
}

TEST(Landscape, GrowingAndCroppingMoveEveryCell) {
  std::mt19937 random(5);
  for (int round = 0; round < 200; ++round) {
    const auto flag = static_cast<std::uint32_t>(random() % 3);
    const unsigned lightBytes = flag != 0 ? 3 : 1;
    const int width = 1 + static_cast<int>(random() % 12);
    const int height = 1 + static_cast<int>(random() % 12);
    const LandscapeOwner landscape = kxtest::randomLandscape(random, width, height, flag);
    // Few textured cells, so that most maps can be cropped.
    for (int i = 0; i < width * height; ++i)
      if (random() % 8 != 0) landscape->textureMap[i] = 0;
    Landscape* copied = nullptr;
    ASSERT_EQ(0u, LS_cloneLandscape(&copied, landscape.get()));
    const LandscapeOwner old(copied);
    std::copy_n(landscape->lightMap, static_cast<unsigned>(width * height) * lightBytes, old->lightMap);
    landscape->drawingState[3] = 1;

    int left = width, top = height, right = -1, bottom = -1;
    for (int y = 0; y + 1 < height; ++y)
      for (int x = 0; x + 1 < width; ++x)
        if (old->textureMap[y * width + x] != 0) {
          left = std::min(left, x);
          right = std::max(right, x);
          top = std::min(top, y);
          bottom = std::max(bottom, y);
        }
    const int border = 1 + static_cast<int>(random() % 3);
    const bool grow = random() % 2 == 0;
    const bool crop = !grow && left < right && top < bottom;
    ASSERT_EQ(0u, grow ? LS_expandLandscape(landscape.get(), border) : LS_minimizeLandscape(landscape.get()));

    const int fromX = grow ? -border : crop ? left : 0;
    const int fromY = grow ? -border : crop ? top : 0;
    ASSERT_EQ(grow ? width + 2 * border : crop ? right - left + 2 : width, landscape->width);
    ASSERT_EQ(grow ? height + 2 * border : crop ? bottom - top + 2 : height, landscape->height);
    EXPECT_EQ(grow || crop ? 0u : 1u, landscape->drawingState[3]);
    for (int y = 0; y < landscape->height; ++y)
      for (int x = 0; x < landscape->width; ++x) {
        const int oldX = x + fromX;
        const int oldY = y + fromY;
        const bool onOld = oldX >= 0 && oldY >= 0 && oldX < width && oldY < height;
        const int cell = y * landscape->width + x;
        const int oldCell = oldY * width + oldX;
        ASSERT_EQ(onOld ? old->heightMap[oldCell] : 0, landscape->heightMap[cell]);
        ASSERT_EQ(onOld ? old->textureMap[oldCell] : 0, landscape->textureMap[cell]);
        for (unsigned i = 0; i < lightBytes; ++i)
          ASSERT_EQ(onOld ? old->lightMap[static_cast<unsigned>(oldCell) * lightBytes + i] : 0,
                    landscape->lightMap[static_cast<unsigned>(cell) * lightBytes + i]);
      }
  }
}

}  // namespace
