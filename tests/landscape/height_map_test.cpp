// Making, smoothing, stretching and measuring height maps against plain forms of their rules.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "landscape/random.h"
#include "landscape/reference.h"
#include "landscape/round_area.h"
#include "pixel/cpu.h"
#include "support/allocation_sweep.h"

namespace {

using kxtest::Heights;
using kxtest::LandscapeOwner;
using kxtest::Rect;

constexpr std::uint32_t badParameter = 7;
constexpr std::uint32_t outside = 8197;

/// The subdivision with its own random numbers.
struct SubdivisionReference {
  Heights map;
  std::uint32_t state;
  int roughness, lowest, highest;

  int next() {
    state = state * 1103515245U + 12345U;
    return static_cast<int>(state >> 16 & 32767U);
  }

  void place(int x, int y, int mean) {
    if (map.at(x, y) == 0) map.at(x, y) = std::clamp(mean + next() % (2 * roughness + 1) - roughness, lowest, highest);
  }

  void divide(int x, int y, int w, int h) {
    if (w <= 2 || h <= 2) return;
    const int mx = w / 2, my = h / 2, r = x + w - 1, b = y + h - 1;
    const int tl = map.at(x, y), tr = map.at(r, y), bl = map.at(x, b), br = map.at(r, b);
    place(x + mx, y, (tl + tr) / 2);
    place(x, y + my, (tl + bl) / 2);
    place(x + mx, b, (bl + br) / 2);
    place(r, y + my, (tr + br) / 2);
    place(x + mx, y + my, (tl + tr + bl + br) / 4);
    divide(x, y, mx + 1, my + 1);
    divide(x + mx, y, w - mx, my + 1);
    divide(x, y + my, mx + 1, h - my);
    divide(x + mx, y + my, w - mx, h - my);
  }
};

TEST(LandscapeRandom, AllObjectsShareOneKnownSequence) {
  kx::LandscapeRandom first, second;
  first.seed(1);
  EXPECT_EQ(16838u, first.next());
  EXPECT_EQ(5758u, second.next());
  EXPECT_DOUBLE_EQ(10113 / 32767.0, first.nextUnit());
  EXPECT_EQ(17515u, second.next());
}

TEST(HeightMap, SubdivisionFollowsTheSeed) {
  std::mt19937 random(1);
  for (int round = 0; round < 100; ++round) {
    const int width = 1 + static_cast<int>(random() % 70);
    const int height = 1 + static_cast<int>(random() % 70);
    const LandscapeOwner landscape = kxtest::randomLandscape(random, width, height, 0);
    const auto seed = static_cast<std::uint32_t>(random() | 1);
    const int lowest = static_cast<int>(random() % 255);
    const int highest = lowest + 1 + static_cast<int>(random() % static_cast<unsigned>(255 - lowest));
    const int roughness = 1 + static_cast<int>(random() % 60);
    const std::uint32_t corners[4] = {static_cast<std::uint32_t>(random()), static_cast<std::uint32_t>(random()), 0,
                                      static_cast<std::uint32_t>(random())};
    const bool given = random() % 2 == 0;
    ASSERT_EQ(0u, LS_createHeightMap(landscape.get(), seed, given ? corners : nullptr, roughness, lowest, highest));

    SubdivisionReference wanted{Heights(*landscape), seed, roughness, lowest, highest};
    std::fill(wanted.map.cells.begin(), wanted.map.cells.end(), 0);
    const int cornerX[4] = {0, width - 1, 0, width - 1};
    const int cornerY[4] = {0, 0, height - 1, height - 1};
    for (int i = 0; i < 4; ++i) {
      int& corner = wanted.map.at(cornerX[i], cornerY[i]);
      if (corner == 0)
        corner = given ? static_cast<int>(corners[i] & 255) : lowest + wanted.next() % (highest - lowest + 1);
    }
    wanted.divide(0, 0, width, height);
    ASSERT_EQ(wanted.map, Heights(*landscape)) << width << " x " << height;
  }
}

TEST(HeightMap, Refusals) {
  std::mt19937 random(2);
  const LandscapeOwner landscape = kxtest::randomLandscape(random, 9, 7, 0);
  Landscape* map = landscape.get();
  const Heights before(*map);
  std::uint32_t a = 0, b = 0, c = 0;
  const std::pair<std::uint32_t, std::uint32_t> table[] = {
      {badParameter, LS_clearHeightMap(nullptr)},
      {badParameter, LS_createHeightMap(map, 1, nullptr, 1, -1, 5)},
      {badParameter, LS_createHeightMap(map, 1, nullptr, 1, 0, 256)},
      {badParameter, LS_createHeightMap(map, 1, nullptr, 1, 5, 5)},
      {badParameter, LS_createHeightMap(map, 1, nullptr, 0, 0, 5)},
      {badParameter, LS_gradeHeightMap(map, 256, 0, 0, 0, 1, 1)},
      {badParameter, LS_gradeHeightMap(map, 0, -1, 0, 0, 1, 1)},
      {badParameter, LS_gradeHeightMapRound(map, 1, -1, 0, 1, 2, 1, 256)},
      {outside, LS_gradeHeightMapRound(map, 1, -1, 0, 1, 2, 1, 255)},
      {outside, LS_softenHeightMapRound(map, 1, 9, 0, 3, 2, 1)},
      {outside, LS_softenHeightMapRound(map, 1, 0, 7, 1, 2, 1)},
      {badParameter, LS_softenHeightMapRound(map, 1, 0, 0, 3, 2, 1)},
      {badParameter, LS_softenHeightMapRound(map, 1, 0, 0, 1, 2, -1)},
      {badParameter, LS_softenHeightMapRound(map, 1, 0, 0, -2, 0, 1)},
      {2, LS_softenHeightMapRound(map, 1, 0, 0, 1, INT_MAX, 1)},
      {badParameter, LS_getAverageHeight(map, &a, nullptr, &c, 0, 0, 1, 1)},
      {badParameter, LS_findHillValley(map, nullptr, &b, 1, 0, 0, 1, 1)},
      // Rectangles off the map are empty, whatever their numbers.
      {0, LS_softenHeightMap(map, INT_MAX, INT_MIN, INT_MAX, INT_MAX)},
      {0, LS_gradeHeightMap(map, 1, 1, INT_MIN, 0, INT_MAX, 5)},
      {0, LS_findHillValley(map, &a, &b, 1, INT_MAX, 0, 5, 5)},
  };
  for (const auto& [wanted, code] : table) EXPECT_EQ(wanted, code) << &wanted - &table[0].first;
  EXPECT_EQ(before, Heights(*map));
}

TEST(HeightMap, OriginMovesTheLowestUnlessTheHighestWouldLeave) {
  std::mt19937 random(3);
  struct Case {
    std::vector<std::uint8_t> map;
    std::uint32_t origin;
    std::vector<std::uint8_t> wanted;
  };
  const Case table[] = {
      {{100, 20, 250}, 10, {90, 10, 240}},
      {{0, 250, 3}, 10, {0, 250, 3}},
      {{9, 0, 250}, 0x7FFFFFFF, {9, 0, 250}},
      {{9, 0, 250}, 0x80000000, {9, 0, 250}},
      {{9, 0, 250}, 0xFFFFFFFF, {9, 0, 250}},
      {{5, 5, 5}, 7, {7, 7, 7}},
      // The first value is the highest and goes unseen, so that the move wraps.
      {{200, 20, 20}, 100, {24, 100, 100}},
      // No height counts for the highest here, so that any origin up to 255 and the lowest together will do.
      {{30, 20, 10}, 265, {29, 19, 9}},
      {{30, 20, 10}, 266, {30, 20, 10}},
  };
  for (const Case& row : table) {
    const LandscapeOwner landscape = kxtest::randomLandscape(random, 3, 1, 0);
    std::copy(row.map.begin(), row.map.end(), landscape->heightMap);
    EXPECT_EQ(0u, LS_setHeightMapOrigin(landscape.get(), row.origin));
    EXPECT_EQ(row.wanted, std::vector<std::uint8_t>(landscape->heightMap, landscape->heightMap + 3)) << row.origin;
  }
}

Rect randomRect(std::mt19937& random) {
  const auto number = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)) - 5; };
  return {number(40), number(40), number(90), number(90)};
}

TEST(HeightMap, RectanglesAreSmoothedStretchedAndMeasuredAsThePlainRules) {
  std::mt19937 random(4);
  for (int round = 0; round < 400; ++round) {
    kx::limitCpuLevel(round % 2 == 0 ? kx::CpuLevel::Portable : kx::CpuLevel::Avx512);
    const LandscapeOwner landscape =
        kxtest::randomLandscape(random, 1 + static_cast<int>(random() % 80), 1 + static_cast<int>(random() % 20), 0);
    Landscape* map = landscape.get();
    if (round % 8 == 0) std::fill_n(map->heightMap, map->width * map->height, static_cast<std::uint8_t>(255));
    const Rect asked = randomRect(random);
    Heights wanted(*map);
    const Rect rect = cutRect(wanted, asked);
    const bool empty = rect.w < 1 || rect.h < 1;
    kxtest::softenReference(wanted, rect, [](int, int) { return true; });
    ASSERT_EQ(0u, LS_softenHeightMap(map, asked.x, asked.y, asked.w, asked.h));
    ASSERT_EQ(wanted, Heights(*map));

    // Rows are counted from the top of the map here.
    int average = 0, lowest = empty ? 0 : INT_MAX, highest = 0;
    int hillX = 0, hillY = 0, hill = 0, valleyX = 0, valleyY = 0, valley = INT_MAX;
    for (int j = 0; j < rect.h && !empty; ++j) {
      int sum = 0;
      for (int i = rect.x; i < rect.x + rect.w; ++i) {
        const int height = wanted.at(i, j);
        sum += height;
        lowest = std::min(lowest, height);
        highest = std::max(highest, height);
        if (height > hill) hill = height, hillX = i, hillY = rect.y + j;
        if (height < valley && height != 0) valley = height, valleyX = i, valleyY = rect.y + j;
      }
      average += sum / rect.w;
    }
    if (!empty) average /= rect.h;
    std::uint32_t out[3] = {};
    ASSERT_EQ(0u, LS_getAverageHeight(map, &out[0], &out[1], &out[2], asked.x, asked.y, asked.w, asked.h));
    ASSERT_EQ((std::vector<int>{average, lowest, highest}), std::vector<int>(out, out + 3));
    ASSERT_EQ(0u, LS_findHillValley(map, &out[0], &out[1], 1, asked.x, asked.y, asked.w, asked.h));
    ASSERT_EQ((std::vector<int>{hillX, hillY}), std::vector<int>(out, out + 2));
    ASSERT_EQ(0u, LS_findHillValley(map, &out[0], &out[1], 0, asked.x, asked.y, asked.w, asked.h));
    ASSERT_EQ((std::vector<int>{valleyX, valleyY}), std::vector<int>(out, out + 2));

    const int base = static_cast<int>(random() % 256), range = static_cast<int>(random() % 256);
    for (int j = 0; j < rect.h && !empty && lowest != highest; ++j)
      for (int i = rect.x; i < rect.x + rect.w; ++i)
        wanted.at(i, j) = std::clamp((wanted.at(i, j) - average) * range / (highest - lowest) + base, 0, 255);
    ASSERT_EQ(0u, LS_gradeHeightMap(map, base, range, asked.x, asked.y, asked.w, asked.h));
    ASSERT_EQ(wanted, Heights(*map));
  }
  kx::limitCpuLevel(kx::CpuLevel::Avx512);
}

TEST(HeightMap, RoundAreasLieBetweenTheirRadiiAndTakeTheSameRules) {
  std::mt19937 random(5);
  for (int round = 0; round < 120; ++round) {
    const LandscapeOwner landscape =
        kxtest::randomLandscape(random, 2 + static_cast<int>(random() % 60), 2 + static_cast<int>(random() % 60), 0);
    Landscape* map = landscape.get();
    const auto number = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    const int inner = number(15);
    const kx::RoundArea area{static_cast<std::uint32_t>(random() | 1), number(map->width), number(map->height), inner,
                             std::max(1, inner + number(10)),          number(8)};
    kx::AreaMask mask;
    ASSERT_EQ(kx::Result::Ok, kx::makeAreaMask(&mask, *map, area));
    const auto inside = [&](int x, int y) { return mask[static_cast<std::size_t>(y * map->width + x)] != 0; };
    for (int y = 0; y < map->height; ++y)
      for (int x = 0; x < map->width; ++x) {
        const double distance = std::hypot(x - area.centreX, y - area.centreY);
        // Coordinates of the outline are cut to whole cells, each at most one cell off.
        ASSERT_TRUE(distance >= area.innerRadius - 2.5 || inside(x, y)) << round << ": " << x << ", " << y;
        ASSERT_TRUE(distance <= area.outerRadius + 1.5 || !inside(x, y)) << round << ": " << x << ", " << y;
      }

    Heights wanted(*map);
    kxtest::softenReference(wanted, {0, 0, map->width, map->height}, inside);
    ASSERT_EQ(0u, LS_softenHeightMapRound(map, area.seed, area.centreX, area.centreY, area.innerRadius,
                                          area.outerRadius, area.roughness));
    ASSERT_EQ(wanted, Heights(*map));

    int average = 0, lowest = INT_MAX, highest = 0;
    for (int y = 0; y < map->height; ++y) {
      int sum = 0;
      for (int x = 0; x < map->width; ++x)
        if (inside(x, y)) {
          sum += wanted.at(x, y);
          lowest = std::min(lowest, wanted.at(x, y));
          highest = std::max(highest, wanted.at(x, y));
        }
      average += sum / map->width;
    }
    average /= map->height;
    const int range = number(256);
    for (int y = 0; y < map->height; ++y)
      for (int x = 0; x < map->width; ++x)
        if (inside(x, y) && lowest != highest)
          wanted.at(x, y) = std::clamp((wanted.at(x, y) - average) * range / (highest - lowest) + average, 0, 255);
    ASSERT_EQ(0u, LS_gradeHeightMapRound(map, area.seed, area.centreX, area.centreY, area.innerRadius, area.outerRadius,
                                         area.roughness, range));
    ASSERT_EQ(wanted, Heights(*map));
  }
}

/// Radii and changes of the radius far beyond the map: sides of up to 2^31 cells, none of which may be walked off the
/// map. An area that wide holds the whole map or a half of it, as the shape turns inside out.
TEST(HeightMap, RoundAreasOfAnyRadiusEndSoonAndStayOnTheMap) {
  std::mt19937 random(7);
  const LandscapeOwner landscape = kxtest::randomLandscape(random, 40, 30, 0);
  Landscape* map = landscape.get();
  constexpr int inner[] = {INT_MIN, INT_MIN + 1, -1000000, -1, 0, 1};
  constexpr int outer[] = {1, 2, 50, 300};
  constexpr int rough[] = {0, 1, 70000, INT_MAX};
  for (const int rMin : inner)
    for (const int rMax : outer)
      for (const int roughness : rough)
        for (const std::uint32_t seed : {1u, 77u, 0xFFFFFFFFu})
          ASSERT_EQ(0u, LS_softenHeightMapRound(map, seed, 39, 0, rMin, rMax, roughness)) << rMin << ' ' << rMax;

  const kx::RoundArea wide{5, 20, 15, 300, 20000, INT_MAX};
  kx::AreaMask mask;
  ASSERT_EQ(kx::Result::Ok, kx::makeAreaMask(&mask, *map, wide));
  EXPECT_EQ(0, std::count(mask.get(), mask.get() + 40 * 30, 0)) << "a ring round the map holds all of it";
}

TEST(HeightMap, FailedAllocationsLeaveTheMap) {
  std::mt19937 random(6);
  const LandscapeOwner landscape = kxtest::randomLandscape(random, 12, 9, 0);
  Landscape* map = landscape.get();
  const std::span<const std::byte> heights(reinterpret_cast<const std::byte*>(map->heightMap), 108);
  EXPECT_EQ(2u, kxtest::sweepAllocations(
                    {.call = [&] { return LS_softenHeightMap(map, 0, 0, 12, 9); }, .untouched = {heights}}));
  kxtest::sweepAllocations({.call = [&] { return LS_softenHeightMapRound(map, 3, 5, 5, 2, 4, 2); }});
  kxtest::sweepAllocations({.call = [&] { return LS_gradeHeightMapRound(map, 3, 5, 5, 2, 4, 2, 100); }});
}

}  // namespace
