// The one walk along a line. It moves a cursor - a point, or addresses of pixels - and hands every dot to a function,
// so that solid, dotted and pattern lines, drawn by a driver or directly, pass the same points in the same order.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

#include "frame/result.h"
#include "kxgraphic/types.h"

namespace kx {

struct Point {
  std::int32_t x, y;
};

/// A line between two points inside a bitmap.
struct Line {
  Point from, to;
  std::int32_t spacing = 1;  ///< steps from dot to dot; 1 for solid lines

  [[nodiscard]] std::int32_t stepX() const { return (to.x > from.x) - (to.x < from.x); }
  [[nodiscard]] std::int32_t stepY() const { return (to.y > from.y) - (to.y < from.y); }
};

/// Cursor of a walk that wants coordinates.
class PointCursor {
public:
  explicit PointCursor(const Line& line) : point_(line.from), stepX_(line.stepX()), stepY_(line.stepY()) {}

  [[nodiscard]] Point point() const { return point_; }

  void moveX(bool moves) { point_.x += moves ? stepX_ : 0; }
  void moveY(bool moves) { point_.y += moves ? stepY_ : 0; }

private:
  Point point_;
  std::int32_t stepX_, stepY_;
};

/// Takes `cursor` along the line and calls `dot(cursor)` on every dot, until one is not Ok.
/// Settled: the error sums start at 0 and are compared before they exceed the length, so that the first step repeats
/// the start point: a solid line of n + 1 points has n + 2 dots.
template <typename Cursor, typename Dot>
Result walkLine(const Line& line, Cursor cursor, Dot dot) {
  const auto distance = [](std::int32_t a, std::int32_t b) {
    return static_cast<std::uint32_t>(a > b ? a - b : b - a);  // both ends lie inside a bitmap
  };
  const std::uint32_t lengthX = distance(line.from.x, line.to.x);
  const std::uint32_t lengthY = distance(line.from.y, line.to.y);
  const std::uint32_t length = std::max(lengthX, lengthY);
  std::uint32_t errorX = 0;
  std::uint32_t errorY = 0;
  std::int32_t countdown = 0;
  for (std::uint32_t step = 0; step < length + 2; ++step) {
    if (countdown == 0) {
      KX_TRY(dot(cursor));
      countdown = line.spacing;
    }
    --countdown;
    errorX += lengthX;
    errorY += lengthY;
    const bool movesX = errorX > length;
    const bool movesY = errorY > length;
    errorX -= movesX ? length : 0;
    errorY -= movesY ? length : 0;
    cursor.moveX(movesX);
    cursor.moveY(movesY);
  }
  return Result::Ok;
}

}  // namespace kx
