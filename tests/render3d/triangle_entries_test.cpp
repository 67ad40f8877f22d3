// The triangle functions around the drawing: refusals and their order, locks, screens, placeholders.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "render3d/reference_triangle.h"
#include "render3d/scene.h"
#include "render3d/stub_bitmaps.h"
#include "render3d/texel_check.h"

namespace {

using namespace kxtest;

class TriangleEntries : public testing::Test {
protected:
  TriangleEntries() {
    scene.target.record.methods = &stub.methods;
    scene.level.record.methods = &stub.methods;
  }

  std::uint32_t draw() { return KX_drawTexturedTriangleGouraudShade(&scene.device, &scene.texture, vertices, 1); }
  std::uint32_t drawAlpha(std::int32_t alpha) {
    return KX_drawTexturedTriangleGouraudShadeAlpha(&scene.device, &scene.texture, alpha, vertices, 1);
  }

  Random random{8};
  StubBitmaps stub;
  Scene scene{KX_FORMAT_565, 30, 20, 8, 8, random};
  VertexInt vertices[3] = {{5, 5, 0, 0, 0, 0}, {20, 6, 0, 7, 0, 0}, {8, 15, 0, 0, 7, 0}};
};

TEST_F(TriangleEntries, RefuseBadArguments) {
  const auto before = scene.target.bytes;
  EXPECT_EQ(7u, KX_drawTexturedTriangleGouraudShade(nullptr, &scene.texture, vertices, 1));
  EXPECT_EQ(7u, KX_drawTexturedTriangleGouraudShade(&scene.device, nullptr, vertices, 1));
  EXPECT_EQ(7u, KX_drawTexturedTriangleGouraudShade(&scene.device, &scene.texture, nullptr, 1));
  EXPECT_EQ(7u, KX_drawTexturedTriangleGouraudShadeAlpha(&scene.device, &scene.texture, 256, nullptr, 1));
  for (const std::int32_t alpha : {-1, 256, INT32_MIN, INT32_MAX}) EXPECT_EQ(0x2006u, drawAlpha(alpha));
  scene.device.target = nullptr;
  EXPECT_EQ(7u, draw());
  scene.device.target = &scene.target.record;
  scene.texture.levels[0] = nullptr;
  EXPECT_EQ(7u, draw());
  EXPECT_EQ("", stub.log);
  EXPECT_TRUE(before == scene.target.bytes);
}

TEST_F(TriangleEntries, LockTargetAndTexture) {
  EXPECT_EQ(0u, draw());
  EXPECT_EQ("lluu", stub.log);
  struct Case {
    char letter;
    int call;
    const char* log;
    std::uint32_t targetLocks, levelLocks;
  };
  // A failed unlock of the texture does not keep the target locked.
  constexpr Case cases[] = {{'l', 1, "l", 0, 0}, {'l', 2, "ll", 1, 0}, {'u', 1, "lluu", 0, 1}, {'u', 2, "lluu", 1, 0}};
  for (const Case& c : cases) {
    stub.log.clear();
    stub.fail(c.letter, c.call, 0x4711);
    EXPECT_EQ(0x4711u, drawAlpha(3));
    EXPECT_EQ(c.log, stub.log);
    EXPECT_EQ(c.targetLocks, scene.target.record.lockCount);
    EXPECT_EQ(c.levelLocks, scene.level.record.lockCount);
    scene.target.record.lockCount = scene.level.record.lockCount = 0;
  }
}

TEST_F(TriangleEntries, LockNothingWhenNothingIsToBeDrawn) {
  const auto expectNothing = [&](const char* what) {
    const auto before = scene.target.bytes;
    EXPECT_EQ(0u, draw()) << what;
    EXPECT_EQ("", stub.log) << what;
    EXPECT_TRUE(before == scene.target.bytes) << what;
  };
  const auto rows = [&](std::int32_t a, std::int32_t b, std::int32_t c) {
    vertices[0].y = a;
    vertices[1].y = b;
    vertices[2].y = c;
  };
  rows(7, 7, 7);
  expectNothing("one row");
  rows(20, 25, 30);
  expectNothing("below the clip");
  rows(-9, -5, -2);
  expectNothing("above the clip");
  rows(-9, -5, -1);
  EXPECT_EQ(0u, draw());
  EXPECT_EQ("lluu", stub.log) << "a triangle that ends just above the clip is locked, though nothing is drawn";
  stub.log.clear();
  rows(3, 3, 9);
  vertices[1].x = vertices[0].x;
  expectNothing("flat top of one column");
}

TEST_F(TriangleEntries, AlphaZeroIsTheVariantWithout) {
  const auto before = scene.target.bytes;
  EXPECT_EQ(0u, draw());
  const auto drawn = scene.target.bytes;
  EXPECT_FALSE(before == drawn);
  std::copy(before.begin(), before.end(), scene.target.bytes.begin());
  EXPECT_EQ(0u, drawAlpha(0));
  EXPECT_TRUE(drawn == scene.target.bytes);
}

/// The back buffer of a screen may be smaller than the clip rectangle of a device on it.
TEST_F(TriangleEntries, OnAScreenStayInsideThePresentBackBuffer) {
  GuardedImage small(KX_FORMAT_555, 13, 9, random);
  Screen screen = {};
  screen.modeFlags = 1;
  screen.front = &scene.target.record;
  screen.back = &small.record;
  scene.device.target = nullptr;
  scene.device.screen = &screen;
  auto expected = small.bytes;
  const Bitmap expectedImage = small.over(expected);
  drawReference({.clipLeft = 0,
                 .clipTop = 0,
                 .clipRight = 12,
                 .clipBottom = 8,
                 .target = &expectedImage,
                 .texture = &scene.texture,
                 .alpha = -1},
                vertices);
  EXPECT_EQ(0u, draw());
  EXPECT_TRUE(expected == small.bytes);

  scene.device.clipLeft = 20;
  EXPECT_EQ(0u, draw()) << "no column of the clip rectangle is left";
  EXPECT_TRUE(expected == small.bytes);
  screen.modeFlags = 0;
  EXPECT_EQ(0x4003u, draw());
  screen.modeFlags = 1;
  small.record.format = KX_FORMAT_GREY;
  EXPECT_EQ(0x2000u, draw());
}

int faultyVertex = -1;

TEST_F(TriangleEntries, DebugBuildsNameAVertexOutsideTheTexture) {
  const kx::TexelFault kept = kx::texelFault;
  kx::texelFault = [](int vertex, const VertexInt&, const Bitmap&) { faultyVertex = vertex; };
  EXPECT_EQ(0u, draw());
  EXPECT_EQ(-1, faultyVertex);
  vertices[1].u = 8;
  EXPECT_EQ(0u, draw());
  EXPECT_EQ(-1, faultyVertex) << "a corner on the far edge is no fault";
  vertices[1].u = 9;
  EXPECT_EQ(0u, draw());
#ifdef NDEBUG
  EXPECT_EQ(-1, faultyVertex);
#else
  EXPECT_EQ(1, faultyVertex);
#endif
  kx::texelFault = kept;
}

template <typename... Arguments>
std::uint32_t callWithNothing(std::uint32_t(KX_CALL* function)(Arguments...)) {
  return function(Arguments{}...);
}

TEST(TrianglePlaceholders, Answer6) {
  int count = 0;
#define KX_METHOD(slot, result, parameters)
#define KX_PLACEHOLDER(slot, result, parameters)       \
  EXPECT_EQ(6u, callWithNothing(&KX_##slot)) << #slot; \
  ++count;
#include "kxgraphic/exports/triangles.inc"
#undef KX_METHOD
#undef KX_PLACEHOLDER
  EXPECT_EQ(22, count);
}

}  // namespace
