// Cameras: one small world, seen through six of them.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <vector>

#include "device.h"
#include "panels.h"

namespace demo {

namespace {

using Vector = std::array<float, 3>;

/// Blocks of stone on a chequered floor. Units are floor tiles; the middle is 0.
class Cameras final : public PanelScene {
public:
  explicit Cameras(const Material& material) : PanelScene(material), stage_(width, height, material.format) {
    constexpr std::array<Rgb, kinds> colours{{{226, 92, 70}, {80, 140, 235}, {240, 196, 70}, {96, 190, 110}}};
    for (const Rgb& tint : colours) skins_.push_back(stage_.texture(makeSkin(material.format, tint)));
    tiles_[0] = stage_.texture(makeSkin(material.format, {104, 116, 140}));
    tiles_[1] = stage_.texture(makeSkin(material.format, {62, 70, 92}));
    const std::array<float, 6> heights{1.2F, 2.2F, 0.8F, 1.6F, 2.8F, 1.0F};
    for (int i = 0; i < blocks; ++i) {
      const double angle = i * 2 * pi / blocks;
      blocks_[static_cast<std::size_t>(i)] = {static_cast<float>(2.6 * std::cos(angle)),
                                              static_cast<float>(2.6 * std::sin(angle)),
                                              heights[static_cast<std::size_t>(i)], i % kinds};
    }
    std::uint32_t state = 77;
    for (Vector& star : stars_)
      for (float& part : star) {
        state = state * 1664525U + 1013904223U;
        part = static_cast<float>(state >> 8) / 16777216.0F * 2 - 1;
      }
  }

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;
    const auto swing = static_cast<float>(std::sin(t));
    Camera* camera = stage_.camera();

    const float distance = 1.7F + 0.65F * swing;
    char text[64];
    static_cast<void>(std::snprintf(text, sizeof text, "From wide to narrow: distance %.1f", distance));
    show(text, "KX_cameraSetParameter", [&](Bitmap* field) {
      lens(distance);
      stage_.look({0, 2.9F, -9.4F}, 0, -0.2F);
      world(field);
    });

    show("Moved from place to place", "KX_cameraSetPosition, KX_cameraMove", [&](Bitmap* field) {
      lens(1.2F);
      stage_.look({0, 2.9F, -9.4F}, 0, -0.2F);
      const float offset[3] = {2.5F * swing, 0.9F + 0.9F * static_cast<float>(std::cos(t * 1.4)), 0};
      KX_CHECK(KX_cameraMove(camera, offset));
      world(field);
    });

    show("Turned about its place", "KX_cameraRotate, KX_cameraSetRotation", [&](Bitmap* field) {
      lens(1.2F);
      stage_.look({0, 2.9F, -9.4F}, 0, -0.2F);
      // Angles that are added take effect when they are set.
      const float more[3] = {0.06F * static_cast<float>(std::cos(t)), 0.4F * swing, 0.16F * swing};
      KX_CHECK(KX_cameraRotate(camera, more));
      KX_CHECK(KX_cameraSetRotation(camera, std::array<float, 6>(std::to_array(camera->rotation)).data()));
      world(field);
    });

    show("Around the blocks, closer and back", "KX_cameraZoom", [&](Bitmap* field) {
      const double angle = t * 0.6;
      lens(1.5F);
      // So does the distance.
      KX_CHECK(KX_cameraZoom(camera, 1.1F + 0.4F * swing));
      lens(camera->parameters[0]);
      stage_.look({static_cast<float>(9 * std::sin(angle)), 3.4F, static_cast<float>(-9 * std::cos(angle))},
                  static_cast<float>(angle), -0.3F);
      world(field);
    });

    show("Triangles end at a rectangle", "KX_setClipRect, KX_clear3DDevice", [&](Bitmap* field) {
      const int x = 30 + static_cast<int>(std::lround(26 * std::sin(t * 0.9)));
      const int y = 34 + static_cast<int>(std::lround(26 * std::cos(t * 0.7)));
      lens(1.2F);
      stage_.look({0, 2.9F, -9.4F}, 0.2F * swing, -0.2F);
      KX_CHECK(KX_setClipRect(stage_.device(), x, y, x + 139, y + 113));
      world(field);
      KX_CHECK(KX_setClipRect(stage_.device(), 0, 0, width - 1, height - 1));
    });

    show("A thousand stars, each a point", "KX_cameraTransformAndProject", [&](Bitmap* field) { fly(field, t); });
  }

private:
  static constexpr double pi = 3.14159265358979;
  static constexpr int kinds = 4;
  static constexpr int blocks = 6;
  static constexpr int skinSize = 32;
  static constexpr int reach = 4;  ///< floor tiles from the middle to the rim
  static constexpr float nearest = 0.2F;

  struct Block {
    float x, z, height;
    int kind;
  };
  struct Face {
    float depth;
    const Texture* skin;
    std::array<VertexFloat, 4> corners;
  };

  /// Plaster with a darker rim.
  static Image makeSkin(std::uint32_t format, Rgb tint) {
    Image image = makeImage(skinSize, skinSize, format);
    for (int y = 0; y < skinSize; ++y)
      for (int x = 0; x < skinSize; ++x) {
        const bool rim = std::min({x, y, skinSize - 1 - x, skinSize - 1 - y}) < 2;
        const auto channel = [&](unsigned value) {
          return std::min(255U,
                          value * (rim ? 60U : 92U + static_cast<unsigned>((x * 37 + y * 59 + x * y * 13) % 12)) / 100);
        };
        KX_CHECK(KX_setPixel(image.get(), x, y,
                             demo::colour(image.get(), channel(tint.red), channel(tint.green), channel(tint.blue))));
      }
    return image;
  }

  void lens(float distance) const {
    constexpr float wide = width;
    constexpr float high = height;
    KX_CHECK(KX_cameraSetParameter(stage_.camera(), distance, wide / high, 1, wide, high));
  }

  /// A quadrangle whose corners follow one another; it is left out when one lies behind the camera.
  void add(const Texture* skin, const std::array<Vector, 4>& points, int light) {
    Face face{0, skin, {}};
    constexpr float edge = skinSize - 1;
    for (std::size_t i = 0; i < points.size(); ++i) {
      VertexFloat& corner = face.corners[i];
      if (!stage_.project(points[i], corner) || corner.z < nearest) return;
      corner.u = i == 1 || i == 2 ? edge : 0;
      corner.v = i >= 2 ? edge : 0;
      const auto shade = static_cast<unsigned>(light) & 0xFF;
      corner.shade = shade | shade << 8 | shade << 16;
      face.depth += corner.z;
    }
    faces_.push_back(face);
  }

  void addBlock(const Block& block) {
    constexpr float half = 0.62F;
    const float left = block.x - half, right = block.x + half, front = block.z - half, back = block.z + half;
    const Texture* skin = skins_[static_cast<std::size_t>(block.kind)].get();
    const float top = block.height;
    add(skin, {{{left, top, front}, {right, top, front}, {right, 0, front}, {left, 0, front}}}, 0);
    add(skin, {{{right, top, back}, {left, top, back}, {left, 0, back}, {right, 0, back}}}, -46);
    add(skin, {{{left, top, back}, {left, top, front}, {left, 0, front}, {left, 0, back}}}, -20);
    add(skin, {{{right, top, front}, {right, top, back}, {right, 0, back}, {right, 0, front}}}, -34);
    add(skin, {{{left, top, back}, {right, top, back}, {right, top, front}, {left, top, front}}}, 26);
  }

  void world(Bitmap* field) {
    KX_CHECK(KX_clear3DDevice(stage_.device(), demo::colour(field, 176, 206, 236)));
    for (int y = 0; y < 96; y += 4) {
      const auto light = static_cast<unsigned>(y * 3 / 4);
      KX_CHECK(KX_fillRect(stage_.frame(), 0, y, width, 4, demo::colour(field, 96 + light, 140 + light, 222)));
    }
    KX_CHECK(KX_beginRendering(stage_.device()));
    for (int z = -reach; z < reach; ++z)
      for (int x = -reach; x < reach; ++x) {
        const auto left = static_cast<float>(x), front = static_cast<float>(z);
        add(tiles_[static_cast<std::size_t>(x + z) % 2].get(),
            {{{left, 0, front + 1}, {left + 1, 0, front + 1}, {left + 1, 0, front}, {left, 0, front}}}, 0);
      }
    drawFaces();
    for (const Block& block : blocks_) addBlock(block);
    drawFaces();
    KX_CHECK(KX_endRendering(stage_.device()));
    cover(field, stage_.frame());
  }

  /// Far ones first; those that face away are hidden behind the others of their block.
  void drawFaces() {
    std::stable_sort(faces_.begin(), faces_.end(), [](const Face& a, const Face& b) { return a.depth > b.depth; });
    for (const Face& face : faces_) {
      const auto& [a, b, c, d] = face.corners;
      if ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) <= 0) continue;
      const VertexFloat first[3] = {a, b, c};
      const VertexFloat second[3] = {a, c, d};
      auto* skin = const_cast<Texture*>(face.skin);
      KX_CHECK(KX_drawTexturedTriangleGouraudShade(stage_.device(), skin, first, 0));
      KX_CHECK(KX_drawTexturedTriangleGouraudShade(stage_.device(), skin, second, 0));
    }
    faces_.clear();
  }

  void fly(Bitmap* field, double t) const {
    KX_CHECK(KX_fillRect(field, 0, 0, width, height, colour(8, 10, 22)));
    lens(1);
    stage_.look({0, 0, 0}, 0, 0);
    constexpr double deep = 8;
    for (const Vector& star : stars_) {
      const double away = std::fmod((star[2] + 1) * deep / 2 - t * 1.1 + 8000, deep);
      Vector point{star[0] * 4, star[1] * 4, static_cast<float>(away)};
      if (away < nearest) continue;
      KX_CHECK(KX_cameraTransformAndProject(stage_.camera(), point.data()));
      const int x = static_cast<int>(std::clamp(point[0], -9.0F, 999.0F));
      const int y = static_cast<int>(std::clamp(point[1], -9.0F, 999.0F));
      const int size = away < 1.6 ? 3 : away < 3.2 ? 2 : 1;
      if (x < 0 || y < 0 || x + size > width || y + size > height) continue;
      const auto light = static_cast<unsigned>(255 - 215 * away / deep);
      KX_CHECK(KX_fillRect(field, x, y, size, size, colour(light, light, std::min(255U, light + 26))));
    }
  }

  Stage stage_;
  std::vector<std::unique_ptr<Texture, TextureDelete>> skins_;
  std::array<std::unique_ptr<Texture, TextureDelete>, 2> tiles_;
  std::array<Block, blocks> blocks_{};
  std::array<Vector, 1000> stars_{};
  std::vector<Face> faces_;
};

}  // namespace

std::unique_ptr<Scene> makeCameras(const Material& material) { return std::make_unique<Cameras>(material); }

}  // namespace demo
