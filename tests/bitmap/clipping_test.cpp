// Clipping, against the steps written out plainly.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

#include "kxgraphic/bitmap.h"
#include "support/random.h"

namespace {

using std::int32_t;

struct Rect {
  int32_t left, top, right, bottom;
};

struct Pair {
  int32_t srcX, srcY, srcW, srcH, dstX, dstY, dstW, dstH;
  friend bool operator==(const Pair&, const Pair&) = default;
};

bool plainTwoRects(const Rect& src, const Rect& dst, Pair& p) {
  int32_t &w = p.dstW, &h = p.dstH;
  if (p.dstX < dst.left) {
    const int32_t d = dst.left - p.dstX;
    p.srcX += d, w -= d, p.dstX = dst.left;
    if (w < 1) return false;
  }
  if (p.dstY < dst.top) {
    const int32_t d = dst.top - p.dstY;
    p.srcY += d, h -= d, p.dstY = dst.top;
    if (h < 1) return false;
  }
  if (p.dstX + w - 1 > dst.right) w = dst.right - p.dstX + 1;
  if (p.dstY + h - 1 > dst.bottom) h = dst.bottom - p.dstY + 1;
  if (h < 1 || w < 1) return false;
  if (p.srcX < src.left) {
    const int32_t d = src.left - p.srcX;
    p.dstX += d, w -= d, p.srcX = src.left;
    if (w < 1) return false;
  }
  if (p.srcY < src.top) {
    const int32_t d = src.top - p.srcY;
    p.dstY += d, h -= d, p.srcY = src.top;
    if (h < 1) return false;
  }
  if (p.srcX + w - 1 > src.right) w = src.right - p.srcX + 1;
  if (p.srcY + h - 1 > src.bottom) h = src.bottom - p.srcY + 1;
  p.srcW = w, p.srcH = h;
  return h > 0 && w > 0;
}

bool plainStretch(const Rect& src, const Rect& dst, Pair& p) {
  const Pair first = p;
  if (p.srcW < 1 || p.srcH < 1 || p.dstW < 1 || p.dstH < 1) return false;
  if (p.dstX < dst.left) {
    const int32_t d = dst.left - p.dstX, e = d * first.srcW / first.dstW;
    p.dstW -= d, p.dstX = dst.left, p.srcX += e, p.srcW -= e;
    if (p.dstW < 1 || p.srcW < 1) return false;
  } else if (p.dstX > dst.right) {
    return false;
  }
  if (p.dstY < dst.top) {
    const int32_t d = dst.top - p.dstY, e = d * first.srcH / first.dstH;
    p.dstH -= d, p.dstY = dst.top, p.srcY += e, p.srcH -= e;
    if (p.dstH < 1 || p.srcH < 1) return false;
  } else if (p.dstY > dst.bottom) {
    return false;
  }
  if (p.dstX + p.dstW - 1 > dst.right) {
    const int32_t c = p.dstW - (dst.right - p.dstX + 1);
    p.dstW = dst.right - p.dstX + 1, p.srcW -= c * first.srcW / first.dstW;
    if (p.dstW < 1 || p.srcW < 1) return false;
  }
  if (p.dstY + p.dstH - 1 > dst.bottom) {
    const int32_t c = p.dstH - (dst.bottom - p.dstY + 1);
    p.dstH = dst.bottom - p.dstY + 1, p.srcH -= c * first.srcH / first.dstH;
    if (p.dstH < 1 || p.srcH < 1) return false;
  }
  if (p.srcX < src.left) {
    const int32_t d = src.left - p.srcX, e = d * first.dstW / first.srcW;
    p.srcW -= d, p.srcX = src.left, p.dstX += e, p.dstW -= e;
    if (p.dstW < 1 || p.srcW < 1) return false;
  } else if (p.srcX > src.right) {
    return false;
  }
  if (p.srcY < src.top) {
    const int32_t d = src.top - p.srcY, e = d * first.dstH / first.srcH;
    p.srcH -= d, p.srcY = src.top, p.dstY += e, p.dstH -= e;
    if (p.dstH < 1 || p.srcH < 1) return false;
  } else if (p.srcY > src.bottom) {
    return false;
  }
  if (p.srcX + p.srcW - 1 > src.right) {
    const int32_t c = p.srcW - (src.right - p.srcX + 1);
    p.srcW = src.right - p.srcX + 1, p.dstW -= c * first.dstW / first.srcW;
    if (p.dstW < 1 || p.srcW < 1) return false;
  }
  if (p.srcY + p.srcH - 1 > src.bottom) {
    const int32_t c = p.srcH - (src.bottom - p.srcY + 1);
    p.srcH = src.bottom - p.srcY + 1, p.dstH -= c * first.dstH / first.srcH;
    if (p.dstH < 1 || p.srcH < 1) return false;
  }
  return true;
}

struct Line {
  int32_t x1, y1, x2, y2;
  friend bool operator==(const Line&, const Line&) = default;
};

bool plainLine(const Rect& r, Line& l) {
  const int32_t dx = l.x2 - l.x1, dy = l.y2 - l.y1;
  if (l.x2 < l.x1) {
    if (l.x2 > r.right || l.x1 < r.left) return false;
    if (l.x2 < r.left) l.y2 += (r.left - l.x2) * dy / dx, l.x2 = r.left;
    if (l.x1 > r.right) l.y1 -= (l.x1 - r.right) * dy / dx, l.x1 = r.right;
  } else {
    if (l.x1 > r.right || l.x2 < r.left) return false;
    if (l.x1 < r.left) l.y1 += (r.left - l.x1) * dy / dx, l.x1 = r.left;
    if (l.x2 > r.right) l.y2 -= (l.x2 - r.right) * dy / dx, l.x2 = r.right;
  }
  if (l.y2 < l.y1) {
    if (l.y2 > r.bottom || l.y1 < r.top) return false;
    if (l.y2 < r.top) l.x2 += (r.top - l.y2) * dx / dy, l.y2 = r.top;
    if (l.y1 > r.bottom) l.x1 -= (l.y1 - r.bottom) * dx / dy, l.y1 = r.bottom;
  } else {
    if (l.y1 > r.bottom || l.y2 < r.top) return false;
    if (l.y1 < r.top) l.x1 += (r.top - l.y1) * dx / dy, l.y1 = r.top;
    if (l.y2 > r.bottom) l.x2 -= (l.y2 - r.bottom) * dx / dy, l.y2 = r.bottom;
  }
  return true;
}

int32_t clipTwoRects(const Rect& src, const Rect& dst, Pair& p) {
  const int32_t left = KX_clipTwoRects(src.left, src.top, src.right, src.bottom, &p.srcX, &p.srcY, &p.dstW, &p.dstH,
                                       dst.left, dst.top, dst.right, dst.bottom, &p.dstX, &p.dstY);
  p.srcW = p.dstW, p.srcH = p.dstH;
  return left;
}

int32_t clipStretch(const Rect& src, const Rect& dst, Pair& p) {
  return KX_clipStretchRect(src.left, src.top, src.right, src.bottom, &p.srcX, &p.srcY, &p.srcW, &p.srcH, dst.left,
                            dst.top, dst.right, dst.bottom, &p.dstX, &p.dstY, &p.dstW, &p.dstH);
}

int32_t clipLine(const Rect& r, Line& l) {
  return KX_clipLine(r.left, r.top, r.right, r.bottom, &l.x1, &l.y1, &l.x2, &l.y2);
}

/// Mostly proper rectangles near the origin, some of them empty or turned round.
Rect randomRect(kxtest::Random& random) {
  const int32_t left = random.between(-30, 30), top = random.between(-30, 30);
  return {left, top, left + random.between(-3, 60), top + random.between(-3, 60)};
}

TEST(Clipping, RectanglesFollowTheSteps) {
  kxtest::Random random(0xC11F);
  int drawn = 0;
  for (int i = 0; i < 200000; ++i) {
    const Rect src = randomRect(random), dst = randomRect(random);
    Pair p{random.between(-50, 50), random.between(-50, 50), random.between(-1, 80), random.between(-1, 80),
           random.between(-50, 50), random.between(-50, 50), random.between(-1, 80), random.between(-1, 80)};
    Pair expected = p, actual = p;
    bool any = plainStretch(src, dst, expected);
    ASSERT_EQ(any, clipStretch(src, dst, actual)) << i;
    if (any) {
      ASSERT_EQ(expected, actual) << i;
    }
    drawn += any;

    expected = actual = p;
    any = plainTwoRects(src, dst, expected);
    ASSERT_EQ(any, clipTwoRects(src, dst, actual)) << i;
    if (any) {
      ASSERT_EQ(expected, actual) << i;
    }
    drawn += any;
  }
  EXPECT_GT(drawn, 10000);
}

TEST(Clipping, LinesFollowTheSteps) {
  kxtest::Random random(0x11E5);
  int drawn = 0;
  for (int i = 0; i < 200000; ++i) {
    const Rect r = randomRect(random);
    const auto coordinate = [&] { return random.between(-60, 60); };
    Line line{coordinate(), coordinate(), coordinate(), coordinate()};
    if (random.below(8) == 0) line.x2 = line.x1;
    if (random.below(8) == 0) line.y2 = line.y1;
    Line expected = line, actual = line;
    const bool any = plainLine(r, expected);
    ASSERT_EQ(any, clipLine(r, actual)) << i;
    if (any) {
      ASSERT_EQ(expected, actual) << i;
    }
    drawn += any;
  }
  EXPECT_GT(drawn, 20000);
}

TEST(Clipping, LargestNumbersDoNotOverflow) {
  const Rect screen{0, 0, 639, 479};
  Pair p{INT_MIN, INT_MIN, INT_MAX, INT_MAX, 0, 0, INT_MAX, INT_MAX};
  EXPECT_EQ(0, clipTwoRects(screen, screen, p));
  p = {0, 0, INT_MAX, INT_MAX, 5, 6, INT_MAX, INT_MAX};
  EXPECT_EQ(1, clipTwoRects(screen, screen, p));
  EXPECT_EQ((Pair{0, 0, 635, 474, 5, 6, 635, 474}), p);

  // Twice the source's size, so the source is cut to the half of what shows.
  p = {0, 0, INT_MAX / 2, INT_MAX / 2, 0, 0, INT_MAX - 1, INT_MAX - 1};
  EXPECT_EQ(1, clipStretch({0, 0, INT_MAX, INT_MAX}, screen, p));
  EXPECT_EQ((Pair{0, 0, 320, 240, 0, 0, 640, 480}), p);
  p = {INT_MIN, INT_MIN, INT_MAX, 1, INT_MIN, INT_MIN, 1, INT_MAX};
  EXPECT_EQ(0, clipStretch({INT_MAX, INT_MAX, INT_MIN, INT_MIN}, {INT_MAX, INT_MIN, INT_MIN, INT_MAX}, p));

  Line line{INT_MIN, INT_MIN, INT_MAX, INT_MAX};
  EXPECT_EQ(1, clipLine(screen, line));
  EXPECT_EQ((Line{0, 0, 479, 479}), line);
  line = {INT_MAX, INT_MIN, INT_MIN, INT_MAX};
  EXPECT_EQ(1, clipLine({INT_MIN, INT_MIN, INT_MAX, INT_MAX}, line));
  EXPECT_EQ((Line{INT_MAX, INT_MIN, INT_MIN, INT_MAX}), line);
  kxtest::Random random(0xBE57);
  const int32_t extremes[] = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
  const auto extreme = [&] { return extremes[random.below(7)]; };
  for (int i = 0; i < 100000; ++i) {  // the sanitizers watch
    const Rect a{extreme(), extreme(), extreme(), extreme()}, b{extreme(), extreme(), extreme(), extreme()};
    p = {extreme(), extreme(), extreme(), extreme(), extreme(), extreme(), extreme(), extreme()};
    Pair same = p;
    clipStretch(a, b, p);
    clipTwoRects(a, b, same);
    line = {extreme(), extreme(), extreme(), extreme()};
    clipLine(a, line);
  }
}

}  // namespace
