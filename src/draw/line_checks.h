// The tests of a line's arguments.
// SPDX-License-Identifier: MIT
#pragma once

#include "bitmap/view.h"
#include "draw/line_stepper.h"
#include "draw/target.h"

namespace kx {

/// Bitmaps, ends, weight, depth, spacing, in this order.
inline Result checkLine(const Bitmap* target, const Line& line, const Blend& blend) {
  KX_TRY(checkBitmaps(target, blend));
  if (!contains(*target, line.from.x, line.from.y, 1, 1) || !contains(*target, line.to.x, line.to.y, 1, 1))
    return Result::CoordinateOutOfRange;
  KX_TRY(checkAlpha(blend));
  KX_TRY(checkDepth(blend));
  return line.spacing < 1 ? Result::IllegalParameter : Result::Ok;
}

/// CoordinateOutOfRange unless `covers(Point)` holds for every dot; asked only when the Z buffer does not hold the
/// whole target anyway.
template <typename Covers>
Result checkDepthAlong(const Bitmap& target, const Line& line, const Blend& blend, Covers covers) {
  if (depthCovers(blend, 0, 0, target.width, target.height)) return Result::Ok;
  return walkLine(line, PointCursor(line), [&](const PointCursor& cursor) {
    return covers(cursor.point()) ? Result::Ok : Result::CoordinateOutOfRange;
  });
}

}  // namespace kx
