// Large height maps and water: maps of 4096 x 4096 cells, and a frame drawn through waves.
// SPDX-License-Identifier: MIT
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "own_bitmaps.h"
#include "random.h"
#include "rows.h"

namespace {

using namespace kxbench;

constexpr std::int32_t mapSide = 4096;
constexpr std::int64_t mapCells = std::int64_t{mapSide} * mapSide;

using Waves = std::vector<std::int16_t>;

Waves makeWaves(std::size_t cells, int height) {
  Random random(0x3A7E);
  Waves waves(cells);
  for (std::int16_t& wave : waves) wave = static_cast<std::int16_t>(random.below(2 * height) - height);
  return waves;
}

/// Two maps that change their roles.
std::function<void()> waveSteps(std::uint8_t mode) {
  auto maps = std::make_shared<std::pair<Waves, Waves>>(makeWaves(mapCells, 9000), makeWaves(mapCells, 9000));
  return [=] {
    require(KX_calculateWaterMap(maps->first.data(), mapSide * 2, maps->second.data(), mapSide * 2, mapSide, mapSide,
                                 mode, 5),
            "wave step");
    maps->first.swap(maps->second);
  };
}

std::function<void()> softening() {
  static Device3D device{};
  Landscape* landscape = nullptr;
  require(LS_createLandscape(&landscape, &device, mapSide, mapSide, 0), "landscape");
  require(LS_createHeightMap(landscape, 5, nullptr, 9, 0, 255), "height map");
  return [landscape] { require(LS_softenHeightMap(landscape, 0, 0, -1, -1), "soften"); };
}

/// A frame in blocks of `cellSize` pixels; shadeShift 0: not shaded.
std::function<void()> refraction(std::int32_t cellSize, std::int32_t shadeShift) {
  struct Scene {
    Picture target = makePicture(KX_FORMAT_555, 2), image = makePicture(KX_FORMAT_555, 1);
    Waves water = makeWaves(std::size_t{frameWidth + 2} * (frameHeight + 2), 100);
  };
  auto scene = std::make_shared<Scene>();
  return [=] {
    constexpr std::int8_t tint[3] = {-3, 2, 5};
    const auto pixels = [](Picture& picture) { return reinterpret_cast<std::uint16_t*>(picture.pixels()); };
    require(KX_drawWaterBitmap(pixels(scene->target), 0, 0, scene->target.pitch(), scene->water.data(),
                               (frameWidth + 2) * 2, cellSize, 1, 0, frameWidth / cellSize, frameHeight / cellSize,
                               pixels(scene->image), 0, 0, frameWidth, frameHeight, scene->image.pitch(), 5, shadeShift,
                               tint),
            "refraction");
  };
}

const Group own([](std::vector<Row>& rows) {
  const auto add = [&](const char* name, std::int64_t items, std::int64_t bytes,
                       const std::function<std::function<void()>()>& prepare) {
    rows.push_back({name, "kx", items, bytes, [prepare, call = std::make_shared<std::function<void()>>()] {
                      if (!*call) *call = prepare();
                      (*call)();
                    }});
  };
  add("o.wave4", mapCells, 2 * mapCells, [] { return waveSteps(0); });
  add("o.wave8", mapCells, 2 * mapCells, [] { return waveSteps(1); });
  add("o.soften", mapCells, mapCells, softening);
  constexpr std::int64_t pixels = std::int64_t{frameWidth} * frameHeight;
  for (const std::int32_t cellSize : {1, 4, 8}) {
    const std::string size = std::to_string(cellSize);
    add(("o.refract" + size).c_str(), pixels, 2 * pixels, [=] { return refraction(cellSize, 0); });
    add(("o.shade" + size).c_str(), pixels, 2 * pixels, [=] { return refraction(cellSize, 3); });
  }
});

}  // namespace
