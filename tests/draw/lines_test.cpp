// Lines: the points they pass, straight into memory and through a driver's operations; dots and stamps.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <vector>

#include "bitmap/own_methods.h"
#include "draw/model.h"

namespace {

using kxtest::Image;
using kxtest::Ink;
using kxtest::Model;
using kxtest::Random;

struct Point {
  std::int32_t x, y;
  friend bool operator==(const Point&, const Point&) = default;
};

void PrintTo(const Point& point, std::ostream* out) { *out << '(' << point.x << ", " << point.y << ')'; }

/// Every dot in order, by the definition of the walk.
std::vector<Point> dotsOf(Point from, Point to, std::int32_t spacing) {
  const std::int32_t ax = std::abs(to.x - from.x);
  const std::int32_t ay = std::abs(to.y - from.y);
  const std::int32_t n = std::max(ax, ay);
  std::int32_t ex = 0;
  std::int32_t ey = 0;
  std::vector<Point> dots;
  for (std::int32_t step = 0; step < n + 2; ++step) {
    if (step % spacing == 0) dots.push_back(from);
    ex += ax;
    ey += ay;
    if (ex > n) {
      ex -= n;
      from.x += to.x > from.x ? 1 : -1;
    }
    if (ey > n) {
      ey -= n;
      from.y += to.y > from.y ? 1 : -1;
    }
  }
  return dots;
}

struct Request {
  Point from, to;
  std::int32_t spacing;  ///< 0: a solid line
};

std::uint32_t drawLine(Bitmap* bitmap, Bitmap* zBuffer, const Request& line, const Ink& ink) {
  const auto& [x1, y1] = line.from;
  const auto& [x2, y2] = line.to;
  const std::int32_t spacing = line.spacing;
  const bool deep = ink.depths != nullptr;
  const bool blended = ink.alpha >= 0;
  if (spacing == 0) {
    if (deep && blended) return KX_drawLineAlphaZBuffer(bitmap, zBuffer, x1, y1, x2, y2, ink.colour, ink.alpha, ink.z);
    if (deep) return KX_drawLineZBuffer(bitmap, zBuffer, x1, y1, x2, y2, ink.colour, ink.z);
    if (blended) return KX_drawLineAlpha(bitmap, x1, y1, x2, y2, ink.colour, ink.alpha);
    return KX_drawLine(bitmap, x1, y1, x2, y2, ink.colour);
  }
  if (deep && blended)
    return KX_drawDottedLineAlphaZBuffer(bitmap, zBuffer, x1, y1, x2, y2, ink.colour, spacing, ink.alpha, ink.z);
  if (deep) return KX_drawDottedLineZBuffer(bitmap, zBuffer, x1, y1, x2, y2, ink.colour, spacing, ink.z);
  if (blended) return KX_drawDottedLineAlpha(bitmap, x1, y1, x2, y2, ink.colour, spacing, ink.alpha);
  return KX_drawDottedLine(bitmap, x1, y1, x2, y2, ink.colour, spacing);
}

/// A driver whose point operations are counted and passed on, and can fail.
struct Driver {
  static inline std::vector<Point> points;
  static inline int locks = 0;
  static inline std::size_t failAt = 0;  ///< number of the point, from 1, that is answered with 99

  static std::uint32_t note(std::int32_t x, std::int32_t y) {
    points.push_back({x, y});
    return points.size() == failAt ? 99 : 0;
  }

  static std::uint32_t KX_CALL lock(Bitmap* bitmap) {
    ++locks;
    return KX_lock(bitmap);
  }

  static std::uint32_t KX_CALL setPixel(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour) {
    const std::uint32_t code = note(x, y);
    return code != 0 ? code : KX_setPixel(bitmap, x, y, colour);
  }
  static std::uint32_t KX_CALL setPixelAlpha(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour,
                                             std::int32_t alpha) {
    note(x, y);
    return KX_setPixelAlpha(bitmap, x, y, colour, alpha);
  }
  static std::uint32_t KX_CALL setPixelZBuffer(Bitmap* bitmap, Bitmap* zBuffer, std::int32_t x, std::int32_t y,
                                               std::uint32_t colour, std::int32_t z) {
    note(x, y);
    return KX_setPixelZBuffer(bitmap, zBuffer, x, y, colour, z);
  }
  static std::uint32_t KX_CALL setPixelAlphaZBuffer(Bitmap* bitmap, Bitmap* zBuffer, std::int32_t x, std::int32_t y,
                                                    std::uint32_t colour, std::int32_t alpha, std::int32_t z) {
    note(x, y);
    return KX_setPixelAlphaZBuffer(bitmap, zBuffer, x, y, colour, alpha, z);
  }

  static BitmapMethods table() {
    points.clear();
    locks = 0;
    failAt = 0;
    BitmapMethods methods = *kx::ownBitmapMethods();
    methods.setPixel = setPixel;
    methods.setPixelAlpha = setPixelAlpha;
    methods.setPixelZBuffer = setPixelZBuffer;
    methods.setPixelAlphaZBuffer = setPixelAlphaZBuffer;
    return methods;
  }
};

TEST(Lines, EveryVariantFormatAndDriver) {
  Random random(0x11E5);
  for (const std::uint32_t format : kxtest::drawingFormats)
    for (int round = 0; round < 120; ++round) {
      const bool driven = round % 3 == 0;
      BitmapMethods methods = Driver::table();
      Model model{format, random.between(1, 24), random.between(1, 24)};
      Model depths{3, model.width, model.height};
      model.fillWithNoise(random);
      depths.fillWithNoise(random);
      const Image image(model, driven ? &methods : nullptr);
      const Image zBuffer(depths);
      const auto anyPoint = [&] {
        return Point{random.between(0, model.width - 1), random.between(0, model.height - 1)};
      };
      const Request line{anyPoint(), anyPoint(), round % 2 == 0 ? 0 : random.between(1, 5)};
      Ink ink{.colour = random.next() & kxtest::valueMask(format)};
      if (kxtest::canBlend(format) && round % 4 >= 2) ink.alpha = random.byte();
      if (round % 8 >= 4) ink.depths = &depths;
      ink.z = random.byte();
      const std::vector<Point> dots = dotsOf(line.from, line.to, std::max(line.spacing, 1));
      for (const Point& dot : dots) kxtest::plot(model, dot.x, dot.y, ink);
      ASSERT_EQ(0u, drawLine(image, zBuffer, line, ink)) << "format " << format << " round " << round;
      ASSERT_EQ(model.values, image.values()) << "format " << format << " round " << round;
      ASSERT_EQ(depths.values, zBuffer.values());
      ASSERT_EQ(0u, image->lockCount + zBuffer->lockCount);
      // A packed target is drawn by way of a bitmap of the library's own.
      ASSERT_EQ(driven && (format & 0x30) == 0 ? dots : std::vector<Point>{}, Driver::points);
    }
}

TEST(Lines, StartPointIsHandledTwice) {
  BitmapMethods methods = Driver::table();
  Model model{7, 8, 4};
  const Image image(model, &methods);
  EXPECT_EQ(0u, KX_drawLine(image, 0, 0, 3, 1, 0xABCDEF));
  EXPECT_EQ((std::vector<Point>{{0, 0}, {0, 0}, {1, 0}, {2, 0}, {3, 1}}), Driver::points);
  Driver::points.clear();
  EXPECT_EQ(0u, KX_drawLine(image, 5, 2, 5, 2, 1));
  EXPECT_EQ((std::vector<Point>{{5, 2}, {5, 2}}), Driver::points);
  Driver::points.clear();
  EXPECT_EQ(0u, KX_drawDottedLine(image, 0, 3, 6, 3, 1, 3));
  EXPECT_EQ((std::vector<Point>{{0, 3}, {2, 3}, {5, 3}}), Driver::points);
}

TEST(Lines, FailingPointEndsTheLineAndLeavesItLocked) {
  BitmapMethods methods = Driver::table();
  Model model{6, 8, 4};
  const Image image(model, &methods);
  Driver::failAt = 3;
  EXPECT_EQ(99u, KX_drawLine(image, 0, 0, 7, 3, 0xFFFF));
  EXPECT_EQ(3u, Driver::points.size());
  EXPECT_EQ(1u, image->lockCount);
}

/// Where the driver has locks only, each point still takes its own; and the saturating count of a bitmap that is locked
/// to the limit comes out as if each point had taken it.
TEST(Lines, LocksAreThoseOfThePoints) {
  BitmapMethods methods = Driver::table();
  methods = *kx::ownBitmapMethods();
  methods.lock = Driver::lock;
  Model model{3, 9, 9};
  const Image image(model, &methods);
  Driver::locks = 0;
  EXPECT_EQ(0u, KX_drawLine(image, 0, 0, 4, 2, 1));
  EXPECT_EQ(1 + 6, Driver::locks);

  const auto countAfterLine = [&](BitmapMethods* table) {
    const Image target(model, table);
    target->lockCount = 0xFFFFFFFE;
    EXPECT_EQ(0u, KX_drawLine(target, 0, 0, 4, 2, 1));
    return target->lockCount;
  };
  EXPECT_EQ(countAfterLine(&methods), countAfterLine(nullptr));
}

/// Copy blits of a driver that note where they were asked to stamp, and with what.
struct Stamps {
  static inline std::vector<std::array<std::int32_t, 9>> calls;  ///< variant, dx, dy, sx, sy, w, h, alpha, z

  enum { Transparent = 1, Alpha = 2, Depth = 4 };

  static std::uint32_t note(std::int32_t variant, std::array<std::int32_t, 6> area, std::int32_t alpha = 0,
                            std::int32_t z = 0) {
    calls.push_back({variant, area[0], area[1], area[2], area[3], area[4], area[5], alpha, z});
    return 0;
  }

  template <std::int32_t Variant>
  static std::uint32_t KX_CALL blit(Bitmap*, std::int32_t dx, std::int32_t dy, Bitmap*, std::int32_t sx,
                                    std::int32_t sy, std::int32_t w, std::int32_t h) {
    return note(Variant, {dx, dy, sx, sy, w, h});
  }
  template <std::int32_t Variant>
  static std::uint32_t KX_CALL blitAlpha(Bitmap*, std::int32_t dx, std::int32_t dy, Bitmap*, std::int32_t sx,
                                         std::int32_t sy, std::int32_t w, std::int32_t h, std::int32_t alpha) {
    return note(Variant | Alpha, {dx, dy, sx, sy, w, h}, alpha);
  }
  template <std::int32_t Variant>
  static std::uint32_t KX_CALL blitDepth(Bitmap*, Bitmap*, std::int32_t dx, std::int32_t dy, Bitmap*, std::int32_t sx,
                                         std::int32_t sy, std::int32_t w, std::int32_t h, std::int32_t z) {
    return note(Variant | Depth, {dx, dy, sx, sy, w, h}, 0, z);
  }
  template <std::int32_t Variant>
  static std::uint32_t KX_CALL blitAlphaDepth(Bitmap*, Bitmap*, std::int32_t dx, std::int32_t dy, Bitmap*,
                                              std::int32_t sx, std::int32_t sy, std::int32_t w, std::int32_t h,
                                              std::int32_t alpha, std::int32_t z) {
    return note(Variant | Alpha | Depth, {dx, dy, sx, sy, w, h}, alpha, z);
  }

  static BitmapMethods table() {
    calls.clear();
    BitmapMethods methods = *kx::ownBitmapMethods();
    methods.bltCopy = blit<0>;
    methods.bltCopyTransparent = blit<Transparent>;
    methods.bltCopyAlpha = blitAlpha<0>;
    methods.bltCopyTransparentAlpha = blitAlpha<Transparent>;
    methods.bltCopyZBuffer = blitDepth<0>;
    methods.bltCopyTransparentZBuffer = blitDepth<Transparent>;
    methods.bltCopyAlphaZBuffer = blitAlphaDepth<0>;
    methods.bltCopyTransparentAlphaZBuffer = blitAlphaDepth<Transparent>;
    return methods;
  }
};

std::uint32_t drawPattern(Bitmap* bitmap, Bitmap* zBuffer, const Request& line, Bitmap* pattern, int variant,
                          std::int32_t alpha, std::int32_t z) {
  const auto& [x1, y1] = line.from;
  const auto& [x2, y2] = line.to;
  const std::int32_t s = line.spacing;
  switch (variant) {
    case 0:
      return KX_drawPatternLine(bitmap, x1, y1, x2, y2, s, pattern);
    case Stamps::Transparent:
      return KX_drawPatternLineTransparent(bitmap, x1, y1, x2, y2, s, pattern);
    case Stamps::Alpha:
      return KX_drawPatternLineAlpha(bitmap, x1, y1, x2, y2, s, pattern, alpha);
    case Stamps::Transparent | Stamps::Alpha:
      return KX_drawPatternLineTransparentAlpha(bitmap, x1, y1, x2, y2, s, pattern, alpha);
    case Stamps::Depth:
      return KX_drawPatternLineZBuffer(bitmap, zBuffer, x1, y1, x2, y2, s, pattern, z);
    case Stamps::Transparent | Stamps::Depth:
      return KX_drawPatternLineTransparentZBuffer(bitmap, zBuffer, x1, y1, x2, y2, s, pattern, z);
    case Stamps::Alpha | Stamps::Depth:
      return KX_drawPatternLineAlphaZBuffer(bitmap, zBuffer, x1, y1, x2, y2, s, pattern, alpha, z);
    default:
      return KX_drawPatternLineTransparentAlphaZBuffer(bitmap, zBuffer, x1, y1, x2, y2, s, pattern, alpha, z);
  }
}

TEST(PatternLines, StampsAreCentredCutAndBlitted) {
  Random random(0x57A);
  for (int round = 0; round < 400; ++round) {
    BitmapMethods methods = Stamps::table();
    Model model{6, random.between(1, 20), random.between(1, 20)};
    Model depths{3, model.width, model.height};
    Model stamp{6, random.between(1, 12), random.between(1, 12)};
    const Image image(model, &methods);
    const Image zBuffer(depths);
    const Image pattern(stamp);
    const auto anyPoint = [&] {
      return Point{random.between(0, model.width - 1), random.between(0, model.height - 1)};
    };
    const Request line{anyPoint(), anyPoint(), random.between(1, 6)};
    const int variant = round % 8;
    const std::int32_t alpha = (variant & Stamps::Alpha) != 0 ? random.byte() : 0;
    const std::int32_t z = (variant & Stamps::Depth) != 0 ? random.byte() : 0;
    std::vector<std::array<std::int32_t, 9>> expected;
    for (const Point& dot : dotsOf(line.from, line.to, line.spacing)) {
      const std::int32_t left = dot.x - stamp.width / 2;
      const std::int32_t top = dot.y - stamp.height / 2;
      const std::int32_t dx = std::max(left, 0);
      const std::int32_t dy = std::max(top, 0);
      const std::int32_t w = std::min(left + stamp.width, model.width) - dx;
      const std::int32_t h = std::min(top + stamp.height, model.height) - dy;
      expected.push_back({variant, dx, dy, dx - left, dy - top, w, h, alpha, z});
    }
    ASSERT_EQ(0u, drawPattern(image, zBuffer, line, pattern, variant, alpha, z));
    ASSERT_EQ(expected, Stamps::calls) << "round " << round;
    ASSERT_EQ(0u, image->lockCount + pattern->lockCount + zBuffer->lockCount);
  }
}

TEST(PatternLines, DrawWhatTheBlitsDraw) {
  Random random(0xB17);
  for (int round = 0; round < 60; ++round) {
    const std::uint32_t storage = round % 2 != 0 ? 0x10 : 0;
    Model model{6 | storage, 24, 15};
    Model depths{3, 24, 15};
    Model stamp{6, random.between(1, 9), random.between(1, 9)};
    model.fillWithNoise(random);
    depths.fillWithNoise(random);
    stamp.fillWithNoise(random);
    for (auto& value : stamp.values) value *= random.below(2);
    const Image image(model);
    const Image zBuffer(depths);
    const Image pattern(stamp);
    const int alpha = random.byte();
    const int z = random.byte();
    for (const Point& dot : dotsOf({2, 1}, {20, 14}, 3))
      for (std::int32_t y = 0; y < stamp.height; ++y)
        for (std::int32_t x = 0; x < stamp.width; ++x) {
          const Point at{dot.x - stamp.width / 2 + x, dot.y - stamp.height / 2 + y};
          if (at.x < 0 || at.y < 0 || at.x >= model.width || at.y >= model.height || stamp.at(x, y) == 0) continue;
          kxtest::plot(model, at.x, at.y, {.colour = stamp.at(x, y), .alpha = alpha, .depths = &depths, .z = z});
        }
    ASSERT_EQ(0u, KX_drawPatternLineTransparentAlphaZBuffer(image, zBuffer, 2, 1, 20, 14, 3, pattern, alpha, z));
    ASSERT_EQ(model.values, image.values()) << "round " << round;
    ASSERT_EQ(depths.values, zBuffer.values());
    ASSERT_EQ(0u, image->lockCount + pattern->lockCount + zBuffer->lockCount);
  }
}

}  // namespace
