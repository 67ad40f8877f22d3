// Triangles compared with the plain reference: random shapes, formats, clip rectangles, both kinds of vertex, both
// variants, every instruction set.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <sstream>
#include <string>

#include "pixel/cpu.h"
#include "render3d/reference_triangle.h"
#include "render3d/scene.h"
#include "render3d/texel_check.h"

namespace {

using namespace kxtest;

constexpr kx::CpuLevel allLevels[] = {kx::CpuLevel::Portable, kx::CpuLevel::Sse2, kx::CpuLevel::Avx2,
                                      kx::CpuLevel::Avx512};

/// Tests of coordinates outside the texture must not stop in debug builds.
class Triangles : public testing::Test {
protected:
  void SetUp() override {
    kept_ = kx::texelFault;
    kx::texelFault = [](int, const VertexInt&, const Bitmap&) {};
  }
  void TearDown() override {
    kx::texelFault = kept_;
    kx::limitCpuLevel(kx::CpuLevel::Avx512);
  }

  /// Draws at every level over the same background and compares the target with its guards.
  template <typename Vertex>
  void compare(Scene& scene, const Vertex (&vertices)[3], int alpha) {
    const std::vector<std::uint8_t> before = scene.target.bytes;
    std::vector<std::uint8_t> expected = before;
    const Bitmap expectedImage = scene.target.over(expected);
    drawReference({.clipLeft = scene.device.clipLeft,
                   .clipTop = scene.device.clipTop,
                   .clipRight = scene.device.clipRight,
                   .clipBottom = scene.device.clipBottom,
                   .target = &expectedImage,
                   .texture = &scene.texture,
                   .alpha = alpha},
                  vertices);
    const std::uint8_t integers = std::is_same_v<Vertex, VertexInt>;
    for (const kx::CpuLevel level : allLevels) {
      kx::limitCpuLevel(level);
      std::copy(before.begin(), before.end(), scene.target.bytes.begin());
      const std::uint32_t code =
          alpha < 0
              ? KX_drawTexturedTriangleGouraudShade(&scene.device, &scene.texture, vertices, integers)
              : KX_drawTexturedTriangleGouraudShadeAlpha(&scene.device, &scene.texture, alpha, vertices, integers);
      ASSERT_EQ(0u, code);
      ASSERT_TRUE(expected == scene.target.bytes) << "level " << static_cast<int>(level) << " " << describe(vertices);
      ASSERT_EQ(0u, scene.target.record.lockCount + scene.level.record.lockCount);
    }
  }

  template <typename Vertex>
  static std::string describe(const Vertex (&vertices)[3]) {
    std::ostringstream text;
    for (const Vertex& v : vertices) text << '(' << v.x << ", " << v.y << ", " << v.u << ", " << v.v << ") ";
    return text.str();
  }

private:
  kx::TexelFault kept_ = nullptr;
};

void randomClip(Scene& scene, Random& random) {
  scene.device.clipLeft = random.between(0, scene.target.record.width - 1);
  scene.device.clipRight = random.between(scene.device.clipLeft, scene.target.record.width - 1);
  scene.device.clipTop = random.between(0, scene.target.record.height - 1);
  scene.device.clipBottom = random.between(scene.device.clipTop, scene.target.record.height - 1);
}

int randomAlpha(Random& random) {
  constexpr int extremes[] = {-1, -1, 0, 1, 128, 255};
  const int pick = random.between(0, 9);
  return pick < 6 ? extremes[pick] : random.between(0, 255);
}

TEST_F(Triangles, WithIntegerVerticesAreThoseOfTheReference) {
  Random random(1);
  for (int round = 0; round < 2500; ++round) {
    Scene scene(round & 1 ? KX_FORMAT_565 : KX_FORMAT_555, random.between(1, 90), random.between(1, 60),
                2 << random.between(0, 5), random.between(2, 40), random);
    if (random.between(0, 2) == 0) randomClip(scene, random);
    const int beyond = random.between(0, 1) * 100;
    VertexInt vertices[3];
    for (VertexInt& v : vertices)
      v = {random.between(-beyond, scene.target.record.width - 1 + beyond),
           random.between(-beyond, scene.target.record.height - 1 + beyond),
           random.between(-9, 9),
           random.between(0, scene.level.record.width - 1),
           random.between(0, scene.level.record.height - 1),
           random.next()};
    if (random.between(0, 7) == 0) vertices[1].y = vertices[0].y;
    if (random.between(0, 7) == 0) vertices[2].y = vertices[1].y;
    if (random.between(0, 7) == 0) vertices[2].x = vertices[0].x;
    ASSERT_NO_FATAL_FAILURE(compare(scene, vertices, randomAlpha(random))) << "round " << round;
  }
}

TEST_F(Triangles, WithFloatVerticesRoundInsideAndCutAcrossTheClip) {
  Random random(2);
  for (int round = 0; round < 1500; ++round) {
    Scene scene(round & 1 ? KX_FORMAT_565 : KX_FORMAT_555, 70, 40, 16, 16, random);
    if (random.between(0, 2) == 0) randomClip(scene, random);
    // Halves often, to see which way they go.
    const auto field = [&](float low, float high) {
      const float value = low + static_cast<float>(random.between(0, 4096)) / 4096.0f * (high - low);
      return random.between(0, 1) ? value : std::floor(value) + 0.5f;
    };
    const float beyond = static_cast<float>(random.between(0, 1) * 40);
    VertexFloat vertices[3];
    for (VertexFloat& v : vertices)
      v = {field(-beyond, 69 + beyond), field(-beyond, 39 + beyond), 0.0f, field(0, 14), field(0, 14), random.next()};
    ASSERT_NO_FATAL_FAILURE(compare(scene, vertices, randomAlpha(random))) << "round " << round;
  }
}

TEST_F(Triangles, WithHostileVerticesStayInsideTargetAndTexture) {
  constexpr std::int32_t extremes[] = {INT32_MIN, INT32_MIN + 1, -65536, -32768, -32767, -1,      0,        1,
                                       15,        32767,         32768,  40000,  65536,  1 << 30, INT32_MAX};
  constexpr float strange[] = {-3e38f,
                               -40000.0f,
                               -32767.5f,
                               -0.5f,
                               -0.0f,
                               0.5f,
                               1.5f,
                               32767.4f,
                               32768.0f,
                               4e9f,
                               3e38f,
                               1e-40f,
                               std::numeric_limits<float>::infinity(),
                               -std::numeric_limits<float>::infinity(),
                               std::numeric_limits<float>::quiet_NaN(),
                               std::numeric_limits<float>::signaling_NaN()};
  Random random(3);
  const auto pick = [&](const auto& values) {
    return values[static_cast<std::size_t>(random.between(0, static_cast<int>(std::size(values)) - 1))];
  };
  const auto coordinate = [&](std::int32_t near) {
    return random.between(0, 1) ? random.between(-2, near) : pick(extremes);
  };
  const auto floatCoordinate = [&](std::int32_t near) {
    return random.between(0, 1) ? static_cast<float>(random.between(-4, 2 * near)) * 0.5f : pick(strange);
  };
  for (int round = 0; round < 250; ++round) {
    Scene scene(round & 1 ? KX_FORMAT_565 : KX_FORMAT_555, 33, 21, 16, 8, random);
    const int alpha = randomAlpha(random);
    VertexInt integers[3];
    for (VertexInt& v : integers) v = {coordinate(33), coordinate(21), 0, coordinate(17), coordinate(9), random.next()};
    ASSERT_NO_FATAL_FAILURE(compare(scene, integers, alpha)) << "round " << round;
    VertexFloat floats[3];
    for (VertexFloat& v : floats)
      v = {floatCoordinate(33), floatCoordinate(21), 0.0f, floatCoordinate(17), floatCoordinate(9), random.next()};
    ASSERT_NO_FATAL_FAILURE(compare(scene, floats, alpha)) << "round " << round;
  }
}

TEST_F(Triangles, LongSpansWithTheSteepestShades) {
  Random random(4);
  for (const std::uint32_t format : {KX_FORMAT_555, KX_FORMAT_565}) {
    Scene scene(format, 700, 9, 64, 64, random);
    const VertexInt vertices[3] = {
        {0, 0, 0, 0, 63, 0x00808080}, {699, 2, 0, 63, 0, 0x007F7F7F}, {350, 8, 0, 1, 1, 0x00807FF8}};
    for (const int alpha : {-1, 0, 77, 255}) ASSERT_NO_FATAL_FAILURE(compare(scene, vertices, alpha));
  }
}

/// The target is its own texture: pixels drawn first are texels read later.
TEST_F(Triangles, ThatReadWhatTheyDrawGoPixelByPixel) {
  Random random(5);
  Scene scene(KX_FORMAT_565, 64, 32, 64, 32, random);
  scene.texture.levels[0] = &scene.target.record;
  const std::vector<std::uint8_t> before = scene.target.bytes;
  const VertexInt vertices[3] = {{3, 1, 0, 0, 0, 0x00101010}, {60, 4, 0, 58, 2, 0}, {20, 30, 0, 15, 30, 0}};
  std::vector<std::uint8_t> expected = before;
  Bitmap expectedImage = scene.target.over(expected);
  Texture expectedTexture = scene.texture;
  expectedTexture.levels[0] = &expectedImage;
  drawReference({.clipLeft = 0,
                 .clipTop = 0,
                 .clipRight = 63,
                 .clipBottom = 31,
                 .target = &expectedImage,
                 .texture = &expectedTexture,
                 .alpha = 40},
                vertices);
  ASSERT_EQ(0u, KX_drawTexturedTriangleGouraudShadeAlpha(&scene.device, &scene.texture, 40, vertices, 1));
  EXPECT_TRUE(expected == scene.target.bytes);
}

/// Pixels of single rows, where the numbers can be followed by hand.
TEST_F(Triangles, ShadesAndRows) {
  Random random(6);
  Scene scene(KX_FORMAT_565, 32, 32, 4, 4, random);
  const auto fillTexture = [&](std::uint16_t texel) {
    for (int i = 0; i < 16; ++i) {
      scene.level.record.pixels[2 * i] = static_cast<std::uint8_t>(texel);
      scene.level.record.pixels[2 * i + 1] = static_cast<std::uint8_t>(texel >> 8);
    }
  };
  const auto pixel = [&](int x, int y) {
    const std::uint8_t* p = scene.target.record.pixels + y * scene.target.record.pitch + 2 * x;
    return p[0] | p[1] << 8;
  };
  const auto draw = [&](std::uint16_t texel, std::uint32_t shade) {
    fillTexture(texel);
    std::fill_n(scene.target.record.pixels, 32 * scene.target.record.pitch, std::uint8_t{0});
    const VertexInt vertices[3] = {{4, 10, 0, 0, 0, shade}, {20, 10, 0, 0, 0, shade}, {4, 20, 0, 0, 0, shade}};
    EXPECT_EQ(0u, KX_drawTexturedTriangleGouraudShade(&scene.device, &scene.texture, vertices, 1));
    return pixel(4, 10);
  };
  EXPECT_EQ(0x8411, draw(0x8430, 0)) << "unshaded texels lose the lowest green bit and gain bit 0";
  EXPECT_EQ(0x0001, draw(0x0000, 0x00F8F8F8)) << "black stays black but is drawn";
  EXPECT_EQ((31 << 11) | (20 << 6) | 15, draw((20 << 11) | (5 << 6) | 0, 0x007F7F7F)) << "plus 15 steps, clamped";
  EXPECT_EQ((9 << 11) | (0 << 6) | 1, draw((10 << 11) | (0 << 6) | 1, 0x00F8F8F8)) << "minus one step";
  EXPECT_EQ((10 << 11) | (3 << 6) | 7, draw((10 << 11) | (3 << 6) | 7, 0xFF070707)) << "low bits count for nothing";
  EXPECT_NE(0, pixel(4, 20)) << "rows are inclusive at both ends";
  EXPECT_EQ(0, pixel(4, 9) | pixel(4, 21));
}

}  // namespace
