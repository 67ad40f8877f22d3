// The art and the levels of the game: tiles with rounded shores, a boat of slices, palms, rocks, sharks, glass floats;
// and the lagoon itself, its ground a landscape, its water a ripple map. SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <deque>
#include <random>
#include <vector>

#include "device.h"
#include "paint.h"
#include "ripples.h"
#include "terrain.h"

namespace lagoon {

using demo::Image;
using demo::lighter;
using demo::Pictures;
using demo::place;
using demo::Point;
using demo::sprites;
using demo::Tone;

constexpr std::uint32_t format = KX_FORMAT_555;
constexpr int directions = 32, variants = 4;

inline std::uint32_t pixelOf(Tone tone) { return demo::pixelOf(format, tone); }

/// What covers the ground from a height (0 to 255) on; each layer lies over the ones before.
struct Layer {
  int from;
  Tone tone, edge;
  int roughness;
};
constexpr std::array<Layer, 8> layers{{
    {0, {22, 66, 140}, {22, 66, 140}, 8},
    {52, {28, 92, 164}, {25, 80, 152}, 8},
    {70, {38, 124, 184}, {32, 108, 174}, 8},
    {86, {66, 166, 196}, {52, 146, 190}, 10},
    {98, {120, 206, 200}, {92, 186, 198}, 12},
    {108, {232, 210, 150}, {250, 244, 214}, 22},
    {124, {104, 168, 72}, {70, 128, 54}, 30},
    {168, {58, 122, 60}, {36, 88, 46}, 44},
}};
constexpr std::size_t sand = 5, grass = 6;
constexpr int tileSize = 16;

/// How far a pixel of a tile lies inside a layer, whose border is at 0.5. The bits of `corners` tell which corners
/// belong to it: top left, top right, bottom left, bottom right.
inline double insideness(unsigned corners, int x, int y) {
  const auto row = [&](unsigned pair) { return std::lerp(pair & 1, pair >> 1 & 1, (x + 0.5) / tileSize); };
  return std::lerp(row(corners), row(corners >> 2), (y + 0.5) / tileSize);
}

/// For each layer, each shape of the corners and each variant.
inline Pictures paintTiles() {
  constexpr int count = static_cast<int>(layers.size()) * 16 * variants;
  return sprites(count, tileSize, tileSize, format, [](int index, int x, int y) {
    const Layer& layer = layers[static_cast<std::size_t>(index / variants / 16)];
    const unsigned corners = static_cast<unsigned>(index) / variants % 16;
    const int variant = index % variants;
    const double inside = insideness(corners, x, y);
    if (inside <= 0.5) return 0U;
    const int light = (demo::grain(x + variant * 16, y + layer.from) - 128) * layer.roughness / 256;
    // Caustics on the sea floor: they go on in the next tile.
    const double wave = std::sin((x * 2 + y) * 2 * std::numbers::pi / tileSize) +
                        std::sin((y * 2 - x + variant * 4) * 2 * std::numbers::pi / tileSize);
    const int glint = layer.from < layers[sand].from && wave > 1.5 ? 14 : 0;
    return pixelOf(lighter(inside < 0.62 ? layer.edge : layer.tone, light + glint));
  });
}

inline Pictures paintBoats() {
  constexpr Tone white{250, 246, 236};
  return demo::turned(directions, 36, 12, format, [&](int height, double ahead, double side) {
    const double across = std::abs(side);
    const double half = 5 + height * 0.25 - ahead * ahead / (ahead > 0 ? 30 : 110);
    const bool hull = ahead > -10 && ahead < 13 + height * 0.25 && across < half;
    const bool cabin = ahead > -6 && ahead < 3 && across < 3.6;
    const bool roof = ahead > -7 && ahead < 4 && across < 4.4;
    const bool funnel = ahead > -4.5 && ahead < -1.5 && across < 1.6;
    if (height < 3) return hull ? Tone{196 - height * 6, 48, 44} : Tone{};
    if (height < 5) return !hull ? Tone{} : height == 3 || across > half - 1.2 ? white : Tone{206, 164, 104};
    if (height < 8) return !cabin ? Tone{} : height == 6 ? Tone{90, 150, 190} : white;
    if (height == 8) return roof ? Tone{44, 96, 150} : Tone{};
    return !funnel ? Tone{} : height > 10 ? Tone{50, 44, 52} : Tone{224, 176, 60};
  });
}

inline Pictures paintFins() {
  return demo::turned(directions, 32, 9, format, [](int height, double ahead, double side) {
    const bool fin = ahead > -4 + height * 0.1 && ahead < 4.5 - height * 0.85 && std::abs(side) < 1.3 - height * 0.06;
    return fin ? lighter({86, 100, 122}, height * 7) : Tone{};
  });
}

/// What of a shark is under water.
inline Pictures paintSharks() {
  return demo::turned(directions, 32, 1, format, [](int, double ahead, double side) {
    const double across = std::abs(side);
    const bool body = std::abs(ahead) < 13 && across < 3.8 * (1 - ahead * ahead / 180);
    const bool tail = ahead < -10 && ahead > -15 && across < (-9 - ahead) * 0.9;
    const bool fins = ahead > 0 && ahead < 5 && across < 8 - ahead * 1.1;
    return body || tail || fins ? Tone{20, 40, 76} : Tone{};
  });
}

inline Pictures paintFloats() {
  constexpr std::array<Tone, variants> glass{{{90, 210, 120}, {250, 170, 60}, {240, 100, 120}, {150, 140, 250}}};
  constexpr int size = 13;
  return sprites(variants, size, size, format, [&](int variant, int x, int y) {
    const Tone tone = glass[static_cast<std::size_t>(variant)];
    const double dx = place(x, size);
    const double dy = place(y, size);
    if (dx * dx + dy * dy > 1) return 0U;
    if (y > size - 4) return pixelOf(lighter(tone, -90));  // the part in the water
    if (std::hypot(dx + 0.35, dy + 0.4) < 0.26) return pixelOf({255, 255, 250});
    if (std::abs(dx + dy * 0.4) < 0.14 || std::abs(dy - 0.1) < 0.12) return pixelOf({214, 196, 150});  // its net
    return pixelOf(lighter(tone, static_cast<int>((-dx * 0.5 - dy * 0.7 + (1 - dx * dx - dy * dy) * 0.5) * 70)));
  });
}

constexpr int tilesX = 64, tilesY = 48, tileCount = tilesX * tilesY;
constexpr int worldWidth = tilesX * tileSize, worldHeight = tilesY * tileSize;
/// Pixels of a water cell each way.
constexpr int cellSize = 2;
constexpr int waterWidth = worldWidth / cellSize, waterHeight = worldHeight / cellSize;

/// Places and speeds are in 256ths of a pixel, headings in 256ths of a turn.
constexpr int one = 256;
inline Point nose(int heading) { return demo::pointing(heading, one); }

/// Its top left corner in pixels, and the other way round.
constexpr Point cornerOf(int tile) { return Point{tile % tilesX, tile / tilesX} * tileSize; }
constexpr int tileOf(Point pixel) { return pixel.y / tileSize * tilesX + pixel.x / tileSize; }

constexpr Point middleOf(int tile) { return (cornerOf(tile) + Point{tileSize, tileSize} / 2) * one; }

struct Body {
  Point at, speed;
  int kind = 0;  ///< which of the variants
  int heading = 0;
  int timer = 0;  ///< steps: how long a shark is stunned, the boat cannot be hurt, a stone flies

  [[nodiscard]] Point pixel() const { return at / one; }
  [[nodiscard]] int tile() const { return tileOf(pixel()); }
};

inline bool isNear(const Body& a, const Body& b, int pixels) {
  const Point between = (a.at - b.at) / one;
  return dot(between, between) < pixels * pixels;
}

/// The place of a level: ground, water, and what stands there.
class World {
public:
  explicit World(int level) : random_(static_cast<unsigned>(level)) {
    makeHeights(static_cast<std::uint32_t>(level) * 31 + 5);
    for (int y = 0; y < waterHeight; ++y)
      for (int x = 0; x < waterWidth; ++x)
        wet_[static_cast<std::size_t>(y * waterWidth + x)] = isLand({x * cellSize, y * cellSize}) ? 0 : -1;
    for (int y = 2; y < tilesY - 2; ++y)
      for (int x = 2; x < tilesX - 2; ++x) {
        const Point at = Point{x * tileSize + below(9) - 4, y * tileSize + below(9)} * one;
        const int height = grid(x, y);
        if (height >= layers[grass].from + 4 && below(4) == 0) palms.push_back({at, {}, below(variants)});
        if (height < layers[sand].from && height > layers[sand].from - 22 && below(14) == 0)
          rocks.push_back({at, {}, below(variants)});
      }
  }

  /// Height of the ground at the top left corner of a tile.
  [[nodiscard]] int grid(int x, int y) const { return heights_[static_cast<std::size_t>(y * (tilesX + 1) + x)]; }

  /// Which corners of a tile belong to a layer.
  [[nodiscard]] unsigned corners(std::size_t layer, int tile) const {
    unsigned bits = 0;
    for (int i = 0; i < 4; ++i)
      if (grid(tile % tilesX + i % 2, tile / tilesX + i / 2) >= layers[layer].from) bits |= 1U << i;
    return bits;
  }

  /// Of a pixel: exactly what the tiles show. Beyond the rim there is land.
  [[nodiscard]] bool isLand(Point at) const {
    if (at.x < 0 || at.y < 0 || at.x >= worldWidth || at.y >= worldHeight) return true;
    return insideness(corners(sand, tileOf(at)), at.x % tileSize, at.y % tileSize) > 0.5;
  }

  [[nodiscard]] const demo::Ripples& water() const { return water_; }
  [[nodiscard]] int wave(Point at) const { return water_.at(at / cellSize); }
  [[nodiscard]] Point slope(Point at) const { return water_.slope(at / cellSize); }
  void splash(Point at, int radius, int depth) { water_.splash(at / cellSize, radius, depth); }

  /// A step of the waves. They end at the shore, which throws them back.
  void flow() {
    water_.step();
    water_.mask(wet_);
  }

  /// Steps over open water from every tile to the nearest goal; `noWay` where there is none.
  [[nodiscard]] std::vector<int> waysTo(std::deque<int> goals) const {
    std::vector<int> ways(tileCount, noWay);
    int* const steps = ways.data();
    for (const int goal : goals) steps[goal] = 0;
    for (; !goals.empty(); goals.pop_front())
      for (const int step : {-1, 1, -tilesX, tilesX})
        if (const int next = goals.front() + step;
            next >= 0 && next < tileCount && steps[next] == noWay && corners(sand, next) == 0) {
          steps[next] = steps[goals.front()] + 1;
          goals.push_back(next);
        }
    return ways;
  }

  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }

  static constexpr int noWay = tileCount;
  std::vector<Body> palms, rocks;

private:
  /// The library makes the terrain; its rim rises to a ring of land, its middle sinks to a lagoon.
  void makeHeights(std::uint32_t seed) {
    const demo::Stage stage(4, 4, format);
    const demo::Terrain land = demo::makeTerrain(stage.device(), tilesX + 1);
    demo::makeHills(land, seed);
    for (int y = 0; y <= tilesY; ++y)
      for (int x = 0; x <= tilesX; ++x) {
        int& height = heights_[static_cast<std::size_t>(y * (tilesX + 1) + x)];
        height = demo::heightAt(land, x, y) - 40;
        const int rim = std::min({x, tilesX - x, y, tilesY - y});
        const int middle = std::max(std::abs(x - tilesX / 2), std::abs(y - tilesY / 2));
        if (rim < 6) height = std::max(height, (rim < 2 ? 130 : 104) - rim * 10 + height / 3);
        if (middle < 4) height = std::min(height, 40 + middle * 12);
      }
  }

  std::minstd_rand random_;
  std::array<int, (tilesX + 1) * (tilesY + 1)> heights_{};
  std::vector<std::int16_t> wet_ = std::vector<std::int16_t>(waterWidth * waterHeight);
  demo::Ripples water_{waterWidth, waterHeight};
};

}  // namespace lagoon
