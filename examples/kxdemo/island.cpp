// A flight over the island: the landscape's cells as textured, shaded triangles, far ones first.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <vector>

#include "device.h"
#include "paint.h"
#include "scene.h"
#include "terrain.h"

namespace demo {

namespace {

constexpr int mapSize = 81;
/// The ground is painted in patches, each a texture for some cells each way, with a margin for what is rounded at the
/// edges of triangles.
constexpr int patchCells = 20;
constexpr int texelsACell = 6;
constexpr int margin = 4;
constexpr int patchSize = patchCells * texelsACell + 2 * margin;
constexpr int patches = (mapSize - 1) / patchCells;
/// Row of the frame where sky and sea meet, a little above the far rim of the island.
constexpr int horizon = 120;
constexpr float heightScale = 0.09F;

/// Height between the cells' corners, with some grain, so that grounds meet in ragged lines.
double heightBetween(const Terrain& terrain, int texelX, int texelY) {
  const int x = texelX / texelsACell, y = texelY / texelsACell;
  const double across = texelX % texelsACell / double{texelsACell};
  const double down = texelY % texelsACell / double{texelsACell};
  const double upper = std::lerp(heightAt(terrain, x, y), heightAt(terrain, x + 1, y), across);
  const double lower = std::lerp(heightAt(terrain, x, y + 1), heightAt(terrain, x + 1, y + 1), across);
  const double height = std::lerp(upper, lower, down);
  return height <= seaLevel ? height : std::max(seaLevel + 1.0, height + (grain(texelX / 2, texelY / 2) - 128) / 20.0);
}

/// The ground of a patch; shallow water is lighter.
Image paintPatch(const Terrain& terrain, int patchX, int patchY, std::uint32_t format) {
  return painted(patchSize, patchSize, format, [&](int x, int y) {
    const auto texel = [](int patch, int at) { return std::max(0, patch * patchCells * texelsACell + at - margin); };
    const int texelX = texel(patchX, x), texelY = texel(patchY, y);
    const double height = heightBetween(terrain, texelX, texelY);
    const Rgb base = groundColour(groundAt(static_cast<int>(height)));
    const Tone tone{static_cast<int>(base.red), static_cast<int>(base.green), static_cast<int>(base.blue)};
    if (height > seaLevel) return pixelOf(format, lighter(tone, grain(texelX, texelY) / 10 - 13));
    const int shallow = static_cast<int>(std::max(0.0, 14 - (seaLevel - height)) * 4);
    const int swell = static_cast<int>(5 * std::sin(texelX * 0.4 + texelY * 0.2));
    return pixelOf(format,
                   {tone.red + shallow + swell, tone.green + shallow * 3 / 2 + swell, tone.blue + shallow / 2 + swell});
  });
}

class Island final : public Scene {
public:
  explicit Island(const Material& material)
      : stage_(frameWidth, frameHeight, material.format),
        terrain_(makeTerrain(stage_.device(), mapSize)),
        palms_(palms(4, material.format)) {
    // Scaled rows are quicker found in plain storage.
    for (Image& palm : palms_) palm = converted(palm, material.format);
    makeHills(terrain_, 1998);
    sinkRim(terrain_);
    // The texture table of the landscape holds the patches; its map tells which one covers a cell.
    KX_CHECK(LS_setTextureCount(terrain_.get(), patches * patches));
    for (int i = 0; i < patches * patches; ++i) {
      textures_.push_back(stage_.texture(paintPatch(terrain_, i % patches, i / patches, material.format)));
      const auto handle = reinterpret_cast<std::uintptr_t>(textures_.back().get());
      KX_CHECK(LS_setTextures(terrain_.get(), i, &handle, 1, 0, 0));
    }
    for (int y = 0; y + 1 < mapSize; ++y)
      for (int x = 0; x + 1 < mapSize; ++x)
        terrain_->textureMap[y * mapSize + x] =
            static_cast<std::uint16_t>(1 + y / patchCells * patches + x / patchCells);
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
    const auto left = static_cast<float>(x % patchCells * texelsACell + margin);
    const auto top = static_cast<float>(y % patchCells * texelsACell + margin);
    constexpr float edge = texelsACell;
    a.u = d.u = left;
    a.v = b.v = top;
    b.u = c.u = left + edge;
    c.v = d.v = top + edge;
    drawTriangle(texture, a, b, c);
    drawTriangle(texture, a, c, d);
    if (isWood(x, y)) drawPalm(x, y, corner(x, y).vertex);
  }

  /// Some low meadows bear a palm.
  [[nodiscard]] bool isWood(int x, int y) const {
    const int height = heightAt(terrain_, x, y);
    return height > seaLevel + 14 && height < seaLevel + 50 && grain(x * 3, y * 5) < 90;
  }

  /// A palm with its foot at a place of the frame, sized by its distance. Cells nearer than its own are drawn after it.
  void drawPalm(int x, int y, const VertexFloat& foot) const {
    const Image& palm = palms_[static_cast<std::size_t>(grain(y, x)) % palms_.size()];
    int high = static_cast<int>(1800 / foot.z);
    int wide = high * palm->width / palm->height;
    int left = 0, top = 0, width = palm->width, height = palm->height;
    int atX = static_cast<int>(foot.x) - wide / 2, atY = static_cast<int>(foot.y) - high;
    if (high > 3 && KX_clipStretchRect(0, 0, width - 1, height - 1, &left, &top, &width, &height, 0, 0, frameWidth - 1,
                                       frameHeight - 1, &atX, &atY, &wide, &high) != 0)
      KX_CHECK(KX_bltStretchTransparent(stage_.frame(), atX, atY, wide, high, palm.get(), left, top, width, height));
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
  Pictures palms_;
  std::vector<std::unique_ptr<Texture, TextureDelete>> textures_;
  std::vector<Corner> corners_;
  std::vector<Cell> cells_;
};

}  // namespace

std::unique_ptr<Scene> makeIsland(const Material& material) { return std::make_unique<Island>(material); }

}  // namespace demo
