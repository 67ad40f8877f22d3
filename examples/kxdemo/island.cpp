// A flight over the island: the landscape's cells as textured, shaded triangles, far ones first.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <vector>

#include "device.h"
#include "scene.h"
#include "terrain.h"

namespace demo {

namespace {

constexpr int mapSize = 81;
constexpr int textureSize = 32;
/// Row of the frame where sky and sea meet, a little above the far rim of the island.
constexpr int horizon = 120;
constexpr float heightScale = 0.09F;

/// A texture of one ground with some grain.
Image makeGround(Ground ground, std::uint32_t format) {
  Image image = makeImage(textureSize, textureSize, format);
  const Rgb base = groundColour(ground);
  for (int y = 0; y < textureSize; ++y)
    for (int x = 0; x < textureSize; ++x) {
      const int grain = ground == Ground::Sea ? static_cast<int>(8 * std::sin(x * 0.4 + y * 0.2))
                                              : (x * 73 + y * 151 + x * y * 31) % 29 - 14;
      const auto channel = [&](unsigned value) {
        return static_cast<unsigned>(std::clamp(static_cast<int>(value) + grain, 0, 255));
      };
      KX_CHECK(KX_setPixel(image.get(), x, y,
                           colour(image.get(), channel(base.red), channel(base.green), channel(base.blue))));
    }
  return image;
}

class Island final : public Scene {
public:
  explicit Island(const Material& material)
      : stage_(frameWidth, frameHeight, material.format), terrain_(makeTerrain(stage_.device(), mapSize)) {
    makeHills(terrain_, 1998);
    sinkRim(terrain_);
    // The texture table of the landscape names what the cells show.
    KX_CHECK(LS_setTextureCount(terrain_.get(), grounds));
    for (int i = 0; i < grounds; ++i) {
      textures_.push_back(stage_.texture(makeGround(static_cast<Ground>(i), material.format)));
      const auto handle = reinterpret_cast<std::uintptr_t>(textures_.back().get());
      KX_CHECK(LS_setTextures(terrain_.get(), i, &handle, 1, 0, 0));
    }
    for (int y = 0; y < mapSize; ++y)
      for (int x = 0; x < mapSize; ++x)
        terrain_->textureMap[y * mapSize + x] =
            static_cast<std::uint16_t>(1 + static_cast<int>(groundAt(heightAt(terrain_, x, y))));
    corners_.resize(mapSize * mapSize);
    cells_.reserve(corners_.size());
  }

  void draw(Bitmap* target, const Frame& frame) override {
    Bitmap* canvas = stage_.frame();
    for (int y = 0; y < horizon; y += 4)
      KX_CHECK(
          KX_fillRect(canvas, 0, y, frameWidth, 4,
                      colour(canvas, static_cast<unsigned>(110 + y / 3), static_cast<unsigned>(150 + y / 4), 235)));
    const Rgb sea = groundColour(Ground::Sea);
    KX_CHECK(KX_fillRect(canvas, 0, horizon, frameWidth, frameHeight - horizon,
                         colour(canvas, sea.red - 10, sea.green - 20, sea.blue - 30)));
    const double angle = frame.seconds * 0.25 + 0.6;
    const double middle = mapSize / 2.0;
    const std::array<float, 3> eye{static_cast<float>(middle + 52 * std::cos(angle)), 26,
                                   static_cast<float>(middle + 52 * std::sin(angle))};
    stage_.look(eye, static_cast<float>(std::atan2(std::cos(angle), -std::sin(angle))), -0.42F);
    place(eye);
    KX_CHECK(KX_beginRendering(stage_.device()));
    for (const Cell& cell : cells_) drawCell(cell.x, cell.y);
    KX_CHECK(KX_endRendering(stage_.device()));
    KX_CHECK(KX_bltCopy(target, 0, 0, canvas, 0, 0, frameWidth, frameHeight));
  }

private:
  static constexpr int grounds = 5;

  struct Corner {
    VertexFloat vertex{};
    bool visible = false;
  };
  struct Cell {
    float distance;
    int x, y;
  };

  /// A cell before the eye that touches the frame.
  static bool seen(const Corner& a, const Corner& b, const Corner& c, const Corner& d) {
    if (!a.visible || !b.visible || !c.visible || !d.visible) return false;
    const auto [left, right] = std::minmax({a.vertex.x, b.vertex.x, c.vertex.x, d.vertex.x});
    const auto [top, bottom] = std::minmax({a.vertex.y, b.vertex.y, c.vertex.y, d.vertex.y});
    return right >= 0 && left < frameWidth && bottom >= 0 && top < frameHeight;
  }

  Corner& corner(int x, int y) { return corners_[static_cast<std::size_t>(y * mapSize + x)]; }

  /// Projects all corners and sorts the cells that lie before the eye, far ones first.
  void place(const std::array<float, 3>& eye) {
    for (int y = 0; y < mapSize; ++y)
      for (int x = 0; x < mapSize; ++x) {
        Corner& place = corner(x, y);
        const auto height = static_cast<float>(std::max(seaLevel, heightAt(terrain_, x, y)));
        place.visible =
            stage_.project({static_cast<float>(x), height * heightScale, static_cast<float>(y)}, place.vertex) &&
            place.vertex.z > 1;
        const auto shade = static_cast<unsigned>(static_cast<int>(lightAt(terrain_, x, y) * 200 - 120)) & 0xFF;
        place.vertex.shade = shade | shade << 8 | shade << 16;
      }
    cells_.clear();
    for (int y = 0; y + 1 < mapSize; ++y)
      for (int x = 0; x + 1 < mapSize; ++x)
        if (seen(corner(x, y), corner(x + 1, y), corner(x, y + 1), corner(x + 1, y + 1)))
          cells_.push_back({std::hypot(static_cast<float>(x) - eye[0], static_cast<float>(y) - eye[2]), x, y});
    std::sort(cells_.begin(), cells_.end(), [](const Cell& a, const Cell& b) { return a.distance > b.distance; });
  }

  void drawCell(int x, int y) {
    const int texture = terrain_->textureMap[y * mapSize + x] - 1;
    VertexFloat a = corner(x, y).vertex;
    VertexFloat b = corner(x + 1, y).vertex;
    VertexFloat c = corner(x + 1, y + 1).vertex;
    VertexFloat d = corner(x, y + 1).vertex;
    constexpr float edge = textureSize - 1;
    a.u = a.v = b.v = d.u = 0;
    b.u = c.u = c.v = d.v = edge;
    drawTriangle(texture, a, b, c);
    drawTriangle(texture, a, c, d);
  }

  void drawTriangle(int texture, const VertexFloat& a, const VertexFloat& b, const VertexFloat& c) const {
    // Slopes that face away are hidden behind those that do not.
    if ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) >= 0) return;
    const VertexFloat vertices[3] = {a, b, c};
    auto* handle = reinterpret_cast<Texture*>(terrain_->textureHandles[texture]);
    KX_CHECK(KX_drawTexturedTriangleGouraudShade(stage_.device(), handle, vertices, 0));
  }

  Stage stage_;
  Terrain terrain_;
  std::vector<std::unique_ptr<Texture, TextureDelete>> textures_;
  std::vector<Corner> corners_;
  std::vector<Cell> cells_;
};

}  // namespace

std::unique_ptr<Scene> makeIsland(const Material& material) { return std::make_unique<Island>(material); }

}  // namespace demo
