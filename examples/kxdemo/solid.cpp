// A textured, lit, turning solid over a blitted background.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "art.h"
#include "device.h"
#include "scene.h"

namespace demo {

namespace {

using Vector = std::array<float, 3>;

Vector turned(Vector v, double a, double b) {
  const double x = v[0] * std::cos(a) + v[2] * std::sin(a);
  const double z = v[2] * std::cos(a) - v[0] * std::sin(a);
  const double y = v[1] * std::cos(b) - z * std::sin(b);
  return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z * std::cos(b) + v[1] * std::sin(b))};
}

/// A torus: rings of quadrangles, each two triangles.
class Solid final : public Scene {
public:
  explicit Solid(const Material& material)
      : stage_(frameWidth, frameHeight, material.format),
        background_(material.covering(frameWidth, frameHeight)),
        texture_(stage_.texture(makeStone(textureSize, material.format))) {
    stage_.look({0, 0, -4.2F}, 0, 0);
  }

  void draw(Bitmap* target, const Frame& frame) override {
    Bitmap* canvas = stage_.frame();
    KX_CHECK(KX_bltCopy(canvas, 0, 0, background_.get(), 0, 0, frameWidth, frameHeight));
    // Stone that turns to glass and back.
    alpha_ = std::max(0, static_cast<int>(170 * std::sin(frame.seconds * 0.7)));
    for (int ring = 0; ring <= rings; ++ring)
      for (int side = 0; side <= sides; ++side) place(ring, side, frame.seconds);

    // Far faces first: the library's triangles draw over what is there.
    std::array<Face, rings * sides> faces{};
    std::size_t seen = 0;
    for (int ring = 0; ring < rings; ++ring)
      for (int side = 0; side < sides; ++side) {
        const Corner& a = corner(ring, side);
        const Corner& c = corner(ring + 1, side + 1);
        faces[seen++] = {a.vertex.z + c.vertex.z, ring, side};
      }
    std::sort(faces.begin(), faces.end(), [](const Face& a, const Face& b) { return a.depth > b.depth; });
    KX_CHECK(KX_beginRendering(stage_.device()));
    for (const Face& face : faces) {
      const VertexFloat& a = corner(face.ring, face.side).vertex;
      const VertexFloat& b = corner(face.ring + 1, face.side).vertex;
      const VertexFloat& c = corner(face.ring + 1, face.side + 1).vertex;
      const VertexFloat& d = corner(face.ring, face.side + 1).vertex;
      drawTriangle(a, b, c);
      drawTriangle(a, c, d);
    }
    KX_CHECK(KX_endRendering(stage_.device()));
    KX_CHECK(KX_bltCopy(target, 0, 0, canvas, 0, 0, frameWidth, frameHeight));
  }

private:
  static constexpr int rings = 40;
  static constexpr int sides = 20;
  static constexpr int textureSize = 64;

  struct Corner {
    VertexFloat vertex;
  };
  struct Face {
    float depth;
    int ring, side;
  };

  Corner& corner(int ring, int side) { return corners_[static_cast<std::size_t>(ring * (sides + 1) + side)]; }

  void place(int ring, int side, double seconds) {
    const double around = ring * 2 * std::numbers::pi / rings;
    const double along = side * 2 * std::numbers::pi / sides;
    const Vector centre{static_cast<float>(std::cos(around)), 0, static_cast<float>(std::sin(around))};
    const Vector normal{static_cast<float>(std::cos(around) * std::cos(along)), static_cast<float>(std::sin(along)),
                        static_cast<float>(std::sin(around) * std::cos(along))};
    constexpr float thickness = 0.45F;
    const Vector point =
        turned({centre[0] + normal[0] * thickness, normal[1] * thickness, centre[2] + normal[2] * thickness},
               seconds * 0.8, seconds * 0.55 + 0.9);
    const Vector facing = turned(normal, seconds * 0.8, seconds * 0.55 + 0.9);
    VertexFloat& vertex = corner(ring, side).vertex;
    if (!stage_.project(point, vertex)) return;
    // The texture runs back and forth, so that no seam shows.
    const auto wave = [](int step, int period) {
      const int folded = step % (2 * period);
      return static_cast<float>(folded < period ? folded : 2 * period - folded) / static_cast<float>(period);
    };
    vertex.u = wave(ring, 5) * (textureSize - 1);
    vertex.v = wave(side, 5) * (textureSize - 1);
    const double light = facing[0] * -0.5 + facing[1] * 0.6 + facing[2] * -0.62;
    const auto shade = static_cast<unsigned>(static_cast<int>(std::clamp(light * 150 - 40, -120.0, 100.0))) & 0xFF;
    vertex.shade = shade | shade << 8 | shade << 16;
  }

  void drawTriangle(const VertexFloat& a, const VertexFloat& b, const VertexFloat& c) const {
    const VertexFloat vertices[3] = {a, b, c};
    if (alpha_ > 0)
      KX_CHECK(KX_drawTexturedTriangleGouraudShadeAlpha(stage_.device(), texture_.get(), alpha_, vertices, 0));
    else
      KX_CHECK(KX_drawTexturedTriangleGouraudShade(stage_.device(), texture_.get(), vertices, 0));
  }

  Stage stage_;
  Image background_;
  std::unique_ptr<Texture, TextureDelete> texture_;
  int alpha_ = 0;
  std::array<Corner, (rings + 1) * (sides + 1)> corners_{};
};

}  // namespace

std::unique_ptr<Scene> makeSolid(const Material& material) { return std::make_unique<Solid>(material); }

}  // namespace demo
