// SPDX-License-Identifier: MIT
#include "terrain.h"

#include <algorithm>
#include <cmath>

namespace demo {

Terrain makeTerrain(Device3D* device, int size) {
  Landscape* landscape = nullptr;
  KX_CHECK(LS_createLandscape(&landscape, device, size, size, 0));
  Terrain terrain(landscape);
  KX_CHECK(LS_clearHeightMap(landscape));
  return terrain;
}

void makeHills(const Terrain& terrain, std::uint32_t seed) {
  KX_CHECK(LS_createHeightMap(terrain.get(), seed, nullptr, 70, 1, 255));
  for (int i = 0; i < 4; ++i) KX_CHECK(LS_softenHeightMap(terrain.get(), 0, 0, -1, -1));
  KX_CHECK(LS_gradeHeightMap(terrain.get(), 128, 255, 0, 0, -1, -1));
}

void sinkRim(const Terrain& terrain) {
  const int width = terrain->width;
  const int height = terrain->height;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const double distance = std::hypot(2.0 * x / width - 1, 2.0 * y / height - 1);
      const double factor = std::clamp(1.25 - distance * distance * 1.35, 0.0, 1.0);
      std::uint8_t& cell = terrain->heightMap[y * width + x];
      cell = static_cast<std::uint8_t>(cell * factor);
    }
}

int heightAt(const Terrain& terrain, int x, int y) {
  if (x < 0 || y < 0 || x >= terrain->width || y >= terrain->height) return 0;
  return terrain->heightMap[y * terrain->width + x];
}

double lightAt(const Terrain& terrain, int x, int y) {
  if (heightAt(terrain, x, y) <= seaLevel) return 0.62;
  const int slope =
      heightAt(terrain, x, y) - heightAt(terrain, x - 1, y) + heightAt(terrain, x, y) - heightAt(terrain, x, y - 1);
  return std::clamp(0.6 + slope * 0.03, 0.1, 1.0);
}

Ground groundAt(int height) {
  if (height <= seaLevel) return Ground::Sea;
  if (height < seaLevel + 14) return Ground::Sand;
  if (height < 140) return Ground::Grass;
  return height < 195 ? Ground::Rock : Ground::Snow;
}

Rgb groundColour(Ground ground) {
  constexpr Rgb colours[] = {{40, 90, 165}, {215, 195, 130}, {85, 150, 60}, {130, 120, 110}, {240, 244, 250}};
  return colours[static_cast<int>(ground)];
}

}  // namespace demo
