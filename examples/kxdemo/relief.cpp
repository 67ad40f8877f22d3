// The sheet of height maps: from the fractal to an island, as shaded reliefs.
// SPDX-License-Identifier: MIT
#include "device.h"
#include "scene.h"
#include "terrain.h"

namespace demo {

namespace {

constexpr int mapSize = 257;

/// The relief seen from above, in colour or in grey.
Image relief(const Terrain& terrain, bool coloured) {
  Image image = makeImage(terrain->width, terrain->height, KX_FORMAT_888);
  for (int y = 0; y < terrain->height; ++y)
    for (int x = 0; x < terrain->width; ++x) {
      const int height = heightAt(terrain, x, y);
      Rgb ground{static_cast<unsigned>(height), static_cast<unsigned>(height), static_cast<unsigned>(height)};
      double light = 1;
      if (coloured) {
        ground = groundColour(groundAt(height));
        light = height <= seaLevel ? 0.45 + height * 0.008 : lightAt(terrain, x, y) * 1.25;
      }
      const auto channel = [&](unsigned value) { return static_cast<unsigned>(std::min(255.0, value * light)); };
      KX_CHECK(KX_setPixel(image.get(), x, y,
                           KX_toRGB(KX_FORMAT_888, channel(ground.red), channel(ground.green), channel(ground.blue))));
    }
  return image;
}

void mark(const Panels& panels, std::uint32_t x, std::uint32_t y, std::uint32_t colour) {
  const int left = panels.x + static_cast<int>(x) * Panels::width / mapSize;
  const int top = panels.y + static_cast<int>(y) * Panels::height / mapSize;
  KX_CHECK(KX_fillRect(panels.target(), std::max(left - 4, panels.x), std::max(top - 1, panels.y), 9, 3, colour));
  KX_CHECK(KX_fillRect(panels.target(), std::max(left - 1, panels.x), std::max(top - 4, panels.y), 3, 9, colour));
}

}  // namespace

Image drawRelief(const Material&) {
  const Stage stage(64, 64, KX_FORMAT_565);
  const Terrain terrain = makeTerrain(stage.device(), mapSize);
  Panels panels(6, 3, KX_FORMAT_888, "A generated island");

  panels.next("Midpoint subdivision from seed 1998\nLS_createHeightMap");
  KX_CHECK(LS_createHeightMap(terrain.get(), 1998, nullptr, 70, 1, 255));
  panels.cover(relief(terrain, false));

  panels.next("Smoothed four times\nLS_softenHeightMap");
  for (int i = 0; i < 4; ++i) KX_CHECK(LS_softenHeightMap(terrain.get(), 0, 0, -1, -1));
  panels.cover(relief(terrain, false));

  panels.next("Stretched over the full range\nLS_gradeHeightMap");
  KX_CHECK(LS_gradeHeightMap(terrain.get(), 128, 255, 0, 0, -1, -1));
  panels.cover(relief(terrain, false));

  panels.next("The rim sunk into the sea, coloured by height\nLandscape.heightMap");
  sinkRim(terrain);
  panels.cover(relief(terrain, true));

  panels.next("Round areas: one smoothed flat, one made rugged\nLS_softenHeightMapRound, LS_gradeHeightMapRound");
  for (int i = 0; i < 24; ++i) KX_CHECK(LS_softenHeightMapRound(terrain.get(), 7, 95, 120, 30, 45, 6));
  KX_CHECK(LS_gradeHeightMapRound(terrain.get(), 5, 170, 140, 25, 40, 6, 255));
  panels.cover(relief(terrain, true));

  std::uint32_t hillX = 0;
  std::uint32_t hillY = 0;
  std::uint32_t average = 0;
  std::uint32_t lowest = 0;
  std::uint32_t highest = 0;
  KX_CHECK(LS_findHillValley(terrain.get(), &hillX, &hillY, 1, 0, 0, -1, -1));
  KX_CHECK(LS_getAverageHeight(terrain.get(), &average, &lowest, &highest, 0, 0, -1, -1));
  void* block = nullptr;
  std::uint32_t size = 0;
  KX_CHECK(LS_convertToData(terrain.get(), &block, &size, nullptr, 0));
  mmgr_free(block);
  const Image whole = relief(terrain, true);
  panels.next("Highest cell marked; average " + std::to_string(average) + ", highest " + std::to_string(highest) +
              ", saved in " + std::to_string(size) +
              " bytes\nLS_findHillValley, LS_getAverageHeight, LS_convertToData");
  panels.cover(whole);
  mark(panels, hillX, hillY, panels.colour(235, 50, 40));
  return panels.take();
}

}  // namespace demo
