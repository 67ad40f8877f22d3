// 09 Camera and triangles: two linked rings, textured and shaded, drawn from back to front. This one and the next use
// the C++ layer, kxgraphic.hpp. SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <vector>
#include <kxgraphic/kxgraphic.hpp>
#include <kxgraphic/picture.h>

namespace {
using kx::check;  // throws what is not 0
constexpr int width = 320, height = 200, textureSize = 64;
constexpr kx::Format format = kx::Format::rgb565;

struct Cell {
  Texture* texture;
  std::array<VertexFloat, 4> corners;
  float depth;
};

/// Points of a circle: each is the one before, turned by the same angle. The last one is the first.
std::vector<std::array<float, 2>> circle(int count, double cosine, double sine) {
  std::vector<std::array<float, 2>> points;
  double x = 1, y = 0;
  for (int i = 0; i <= count; ++i) {
    points.push_back({static_cast<float>(x), static_cast<float>(y)});
    x = std::exchange(y, x * sine + y * cosine) * -sine + x * cosine;
  }
  return points;
}

void paint(Bitmap* level, std::array<unsigned, 3> base, std::array<unsigned, 3> band) {
  for (int y = 0; y < textureSize; ++y)
    for (int x = 0; x < textureSize; ++x) {
      const auto& colour = (x + y) % 32 < 12 || (x % 16 / 4 == 2 && y % 16 / 4 == 2) ? band : base;
      const auto grain = static_cast<unsigned>((x * 7 + y * 13) % 5 * 4);
      check(KX_setPixel(level, x, y, kx::colour(format, colour[0] + grain, colour[1] + grain, colour[2] + grain)));
    }
}

/// A ring around the y axis (upright: the z axis) as cells on the screen.
void addRing(std::vector<Cell>& cells, Camera* camera, Texture* texture, float centreX, bool upright) {
  const auto large = circle(64, 0.99518472667219693, 0.098017140329560604);
  const auto small = circle(24, 0.96592582628906831, 0.25881904510252074);
  const auto corner = [&](std::size_t i, std::size_t j) {
    const auto [a, b] = large[i];
    const auto [c, d] = small[j];
    std::array<float, 3> normal{a * c, d, b * c};
    std::array<float, 3> point{a * (1 + 0.3F * c), 0.3F * d, b * (1 + 0.3F * c)};
    if (upright) std::swap(normal[1], normal[2]), std::swap(point[1], point[2]);
    point[0] += centreX;
    check(KX_cameraTransformAndProject(camera, point.data()));
    const float light = std::max(0.0F, normal[0] * -0.45F + normal[1] * 0.75F + normal[2] * -0.48F);
    const auto shade = static_cast<std::uint8_t>(static_cast<int>(light * light * 150 + light * 60) - 100);
    return VertexFloat{point[0], point[1], point[2], 0, 0, shade * 0x010101U};
  };
  for (std::size_t i = 0; i + 1 < large.size(); ++i)
    for (std::size_t j = 0; j + 1 < small.size(); ++j) {
      Cell cell{texture, {corner(i, j), corner(i + 1, j), corner(i + 1, j + 1), corner(i, j + 1)}, 0};
      for (std::size_t k = 0; k < 4; ++k) {
        cell.corners[k].u = static_cast<float>(i % 4 * 16 + (k == 1 || k == 2 ? 15 : 0));
        cell.corners[k].v = static_cast<float>(j % 4 * 16 + (k >= 2 ? 15 : 0));
        cell.depth += cell.corners[k].z;
      }
      cells.push_back(cell);
    }
}
}  // namespace

int main() {
  kx::Bitmap picture;
  kx::Device device;
  kx::Camera camera;
  kx::Texture gold, blue;  // declared last: they go before their device
  check(picture.create(width, height, format));
  check(device.create(picture));
  check(camera.create(device));
  check(gold.create(device, textureSize, textureSize, format));
  check(blue.create(device, textureSize, textureSize, format));
  paint(gold->levels[0], {190, 130, 50}, {225, 190, 110});
  paint(blue->levels[0], {50, 90, 170}, {120, 175, 215});
  for (unsigned y = 0; y < height; ++y)
    check(KX_fillRect(picture, 0, static_cast<int>(y), width, 1, kx::colour(picture, 16 + y / 4, 20 + y / 3, 44 + y)));
  const float eye[6] = {0.15F, 1.75F, -3.3F}, turn[6] = {-0.47F, 0, 0};
  check(KX_cameraSetPosition(camera, eye));
  check(KX_cameraSetRotation(camera, turn));
  check(KX_cameraSetParameter(camera, 2, 2.48F, 1.55F, width, height));
  std::vector<Cell> cells;
  addRing(cells, camera, gold, -0.55F, false);
  addRing(cells, camera, blue, 0.55F, true);
  std::stable_sort(cells.begin(), cells.end(), [](const Cell& a, const Cell& b) { return a.depth > b.depth; });
  const kx::Rendering rendering(device);
  for (const auto& [texture, corners, depth] : cells)
    for (const std::size_t k : {1U, 2U}) {
      const VertexFloat triangle[3] = {corners[0], corners[k], corners[k + 1]};
      check(KX_drawTexturedTriangleGouraudShade(device, texture, triangle, 0));
    }
  check(kxSaveBmp(picture, "09_camera.bmp"));
}
