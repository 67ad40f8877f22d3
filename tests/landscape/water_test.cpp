// Waves and refraction against plain forms of their rules.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>
#include <vector>

#include "kxgraphic/landscape.h"
#include "pixel/cpu.h"

namespace {

constexpr std::uint32_t badParameter = 7;
constexpr std::uint32_t badFormat = 8192;
constexpr std::uint32_t outside = 8197;

/// 16-bit numbers in rows; extremes come up often.
struct Map {
  int width, height;
  std::vector<std::int16_t> cells;

  Map(std::mt19937& random, int w, int h)
      : width(w), height(h), cells(static_cast<std::size_t>(w) * static_cast<std::size_t>(h)) {
    static constexpr std::int16_t extremes[] = {-32768, 32767, 0, -1, 1};
    const bool wild = random() % 2 == 0;
    for (std::int16_t& cell : cells)
      cell = wild && random() % 3 == 0 ? extremes[random() % 5] : static_cast<std::int16_t>(random());
  }

  std::int16_t& at(int x, int y) { return cells[static_cast<std::size_t>(y * width + x)]; }
  [[nodiscard]] int pitch() const { return width * 2; }
};

TEST(Water, StepIsThePlainOneAtEveryWidth) {
  std::mt19937 random(1);
  for (int round = 0; round < 300; ++round) {
    kx::limitCpuLevel(round % 2 == 0 ? kx::CpuLevel::Portable : kx::CpuLevel::Avx512);
    const int width = 1 + static_cast<int>(random() % 70);
    const int height = 1 + static_cast<int>(random() % 8);
    const int mode = static_cast<int>(random() % 3);
    const int damping = 1 + static_cast<int>(random() % 15);
    Map current(random, width, height);
    Map target(random, width, height);
    // Maps that share memory: each cell sees what the cells before it have written.
    const bool shared = round % 10 == 0;
    Map& written = shared ? current : target;
    Map wanted = written;
    for (int y = 1; y < height - 1; ++y)
      for (int x = 1; x < width - 1 && mode < 2; ++x) {
        Map& c = shared ? wanted : current;
        int sum = c.at(x, y - 1) + c.at(x, y + 1) + c.at(x + 1, y) + c.at(x - 1, y);
        if (mode == 1) sum += c.at(x - 1, y - 1) + c.at(x + 1, y - 1) + c.at(x - 1, y + 1) + c.at(x + 1, y + 1);
        const int n = (sum >> (mode == 0 ? 1 : 2)) - wanted.at(x, y);
        wanted.at(x, y) = static_cast<std::int16_t>(n - (n >> damping));
      }
    ASSERT_EQ(0u, KX_calculateWaterMap(written.cells.data(), written.pitch(), current.cells.data(), current.pitch(),
                                       width, height, static_cast<std::uint8_t>(mode), damping));
    ASSERT_EQ(wanted.cells, written.cells) << width << " x " << height << ", mode " << mode;
  }
  kx::limitCpuLevel(kx::CpuLevel::Avx512);
}

TEST(Water, StepRefusals) {
  std::int16_t map[9] = {};
  const std::pair<std::uint32_t, std::uint32_t> table[] = {
      {badParameter, KX_calculateWaterMap(nullptr, 6, map, 6, 3, 3, 0, 4)},
      {badParameter, KX_calculateWaterMap(map, 6, nullptr, 6, 3, 3, 0, 4)},
      {badParameter, KX_calculateWaterMap(map, 0, map, 6, 3, 3, 0, 4)},
      {badParameter, KX_calculateWaterMap(map, 6, map, 0, 3, 3, 0, 4)},
      {badParameter, KX_calculateWaterMap(map, 6, map, 6, 0, 3, 0, 4)},
      {badParameter, KX_calculateWaterMap(map, 6, map, 6, 3, -1, 0, 4)},
      {badParameter, KX_calculateWaterMap(map, 6, map, 6, 3, 3, 2, 0)},
      {badParameter, KX_calculateWaterMap(map, 6, map, 6, 3, 3, 0, 16)},
      {0, KX_calculateWaterMap(map, 6, map, 6, 2, INT_MAX, 0, 4)},
  };
  for (const auto& [wanted, code] : table) EXPECT_EQ(wanted, code) << &wanted - &table[0].first;
}

int saturated(int value) { return std::clamp(value, -32768, 32767); }

TEST(Water, RefractionIsThePlainOne) {
  std::mt19937 random(2);
  for (int round = 0; round < 400; ++round) {
    kx::limitCpuLevel(round % 2 == 0 ? kx::CpuLevel::Portable : kx::CpuLevel::Avx512);
    const auto number = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
    const int cell = round % 50 == 0 ? 500 + number(50) : 1 + number(9);
    const int cellsX = 1 + number(round % 10 == 0 ? 1200 / cell : 6), cellsY = 1 + number(6);
    const int mapX = 1 + number(3), mapY = number(3), destX = number(4), destY = number(4);
    const int imageX = number(6), imageY = number(6), shift = number(3) == 0 ? 0 : 1 + number(16);
    Map water(random, mapX + cellsX + 1, mapY + cellsY + 1);
    if (round % 3 != 0)
      for (std::int16_t& height : water.cells) height = static_cast<std::int16_t>(height >> 9);
    Map image(random, cell + number(30), cell + number(30));
    Map dest(random, destX + cellsX * cell, destY + cellsY * cell);
    // An image that is drawn into: each pixel sees those before it, but rows without shading move as a whole.
    const bool shared = round % 5 == 1;
    if (shared) image = dest;
    Map wanted = dest;
    const std::int8_t tint[3] = {static_cast<std::int8_t>(random()), static_cast<std::int8_t>(random()),
                                 static_cast<std::int8_t>(random())};
    for (int j = 0; j < cellsY; ++j)
      for (int i = 0; i < cellsX; ++i) {
        const int x = mapX + i, y = mapY + j, h = water.at(x, y);
        const int dx = static_cast<std::int16_t>(h - water.at(x + 1, y)) >> 3;
        const int dy = static_cast<std::int16_t>(h - water.at(x, y + 1)) >> 3;
        const int fromX = std::clamp(saturated(imageX + i * cell + dx), 0, image.width - cell);
        const int fromY = std::clamp(saturated(imageY + j * cell + dy), 0, image.height - cell);
        const int shade = shift == 0 ? 0 : static_cast<std::int16_t>(((h - water.at(x - 1, y + 1)) >> (shift - 1)) * 4);
        for (int b = 0; b < cell; ++b) {
          if (shift == 0 && shared) image = wanted;
          Map& seen = shift != 0 && shared ? wanted : image;
          for (int a = 0; a < cell; ++a) {
            const int pixel = static_cast<std::uint16_t>(seen.at(fromX + a, fromY + b));
            int out = pixel;
            if (shift != 0) {
              const int shades[3] = {shade, shade, static_cast<std::int16_t>(shade * 32)};
              const int tints[3] = {tint[0] * -4, tint[1] * -4, tint[2] * -128};
              out = 0;
              for (int lane = 0; lane < 3; ++lane) {
                const int mask = 31 << (5 * lane);
                const int lit = saturated(saturated((pixel & mask) + shades[lane]) + tints[lane]);
                out |= std::clamp(lit, 0, mask) & mask;
              }
            }
            wanted.at(destX + i * cell + a, destY + j * cell + b) = static_cast<std::int16_t>(out);
          }
        }
      }
    ASSERT_EQ(0u, KX_drawWaterBitmap(reinterpret_cast<std::uint16_t*>(dest.cells.data()), destX, destY, dest.pitch(),
                                     water.cells.data(), water.pitch(), cell, mapX, mapY, cellsX, cellsY,
                                     reinterpret_cast<const std::uint16_t*>((shared ? dest : image).cells.data()),
                                     imageX, imageY, image.width, image.height, image.pitch(),
                                     static_cast<std::uint8_t>(5 + random() % 2), shift, shift == 0 ? nullptr : tint));
    ASSERT_EQ(wanted.cells, dest.cells) << round << ", cells of " << cell;
  }
  kx::limitCpuLevel(kx::CpuLevel::Avx512);
}

TEST(Water, RefractionRefusesInItsOrder) {
  // Each row spoils one argument more than the row below it: the first test that fails gives the code.
  struct Arguments {
    std::uint32_t code;
    int destPitch = 2, mapX = 0, shadeShift = 0, destX = 0, cellSize = 1, format = 5;
  };
  const Arguments table[] = {
      {.code = badParameter, .destPitch = 0, .mapX = -1, .shadeShift = 17, .destX = -1, .cellSize = 0, .format = 4},
      {.code = outside, .mapX = -1, .shadeShift = 17, .destX = -1, .cellSize = 0, .format = 4},
      {.code = badParameter, .shadeShift = 17, .destX = -1, .cellSize = 0, .format = 4},
      {.code = outside, .destX = -1, .cellSize = 0, .format = 4},
      {.code = badParameter, .cellSize = 0, .format = 4},
      {.code = badFormat, .format = 4},
      {.code = badParameter, .shadeShift = 1},
      {.code = 0},
      // No block fits into the image: nothing is drawn.
      {.code = 0, .cellSize = INT_MAX},
  };
  std::uint16_t pixel = 0x1234;
  const std::uint16_t image = 0x4321;
  const std::int16_t water[4] = {};
  for (const Arguments& a : table)
    EXPECT_EQ(a.code, KX_drawWaterBitmap(&pixel, a.destX, 0, a.destPitch, water, 4, a.cellSize, a.mapX, 0, 1, 1, &image,
                                         0, 0, 1, 1, 2, static_cast<std::uint8_t>(a.format), a.shadeShift, nullptr))
        << &a - table;
  EXPECT_EQ(0x4321, pixel);
}

}  // namespace
