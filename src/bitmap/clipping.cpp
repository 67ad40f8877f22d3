// Clipping of copy rectangles, stretch rectangles and lines. Sums and products are wide, so that no coordinate
// overflows. SPDX-License-Identifier: MIT
#include "kxgraphic/bitmap.h"

#include <cstdint>

namespace kx {

namespace {

using Wide = std::int64_t;

/// One direction of a rectangle. `scale` is its size before any cut, in proportion to the other rectangle's.
struct Span {
  Wide position;
  Wide size;
  Wide scale;
};

/// Cuts what lies before `low`, and the same share of the other span. False when nothing is left.
bool cutStart(Span& span, Span& other, Wide low, Wide high) {
  if (span.position >= low) return span.position <= high;
  const Wide cut = low - span.position;
  if (cut >= span.size) return false;
  const Wide share = cut * other.scale / span.scale;
  span.position = low;
  span.size -= cut;
  other.position += share;
  other.size -= share;
  return other.size >= 1;
}

/// Cuts what lies beyond `high`, and the same share of the other span. False when nothing is left.
bool cutEnd(Span& span, Span& other, Wide high) {
  const Wide kept = high - span.position + 1;
  if (span.size <= kept) return true;
  if (kept < 1) return false;
  other.size -= (span.size - kept) * other.scale / span.scale;
  span.size = kept;
  return other.size >= 1;
}

/// Clips one direction of a pair of rectangles, the destination first.
bool clipSpans(Span& src, Wide srcLow, Wide srcHigh, Span& dst, Wide dstLow, Wide dstHigh) {
  return src.size >= 1 && dst.size >= 1 && cutStart(dst, src, dstLow, dstHigh) && cutEnd(dst, src, dstHigh) &&
         cutStart(src, dst, srcLow, srcHigh) && cutEnd(src, dst, srcHigh);
}

std::int32_t narrow(Wide value) { return static_cast<std::int32_t>(value); }

/// a * b / c, truncated. Magnitudes below 2^32, so that the product needs all 64 bits.
Wide multiplyDivide(Wide a, Wide b, Wide c) {
  const auto magnitude = [](Wide value) { return static_cast<std::uint64_t>(value < 0 ? -value : value); };
  const auto quotient = static_cast<Wide>(magnitude(a) * magnitude(b) / magnitude(c));
  return ((a < 0) != (b < 0)) != (c < 0) ? -quotient : quotient;
}

struct Point {
  Wide along;   ///< the coordinate being clipped
  Wide across;  ///< the one that follows the slope
};

/// Clips a line in one direction with the slope it had at first. False when it lies outside.
bool clipLineDirection(Point& first, Point& second, Wide low, Wide high, Wide alongDelta, Wide acrossDelta) {
  Point& lower = second.along < first.along ? second : first;
  Point& upper = second.along < first.along ? first : second;
  if (lower.along > high || upper.along < low) return false;
  if (lower.along < low) {
    lower.across += multiplyDivide(low - lower.along, acrossDelta, alongDelta);
    lower.along = low;
  }
  if (upper.along > high) {
    upper.across -= multiplyDivide(upper.along - high, acrossDelta, alongDelta);
    upper.along = high;
  }
  return true;
}

}  // namespace

}  // namespace kx

// The outputs are written only when something is left.
std::int32_t KX_CALL KX_clipTwoRects(std::int32_t srcLeft, std::int32_t srcTop, std::int32_t srcRight,
                                     std::int32_t srcBottom, std::int32_t* srcX, std::int32_t* srcY,
                                     std::int32_t* width, std::int32_t* height, std::int32_t dstLeft,
                                     std::int32_t dstTop, std::int32_t dstRight, std::int32_t dstBottom,
                                     std::int32_t* dstX, std::int32_t* dstY) {
  using namespace kx;
  Span srcColumns{*srcX, *width, 1};
  Span srcRows{*srcY, *height, 1};
  Span dstColumns{*dstX, *width, 1};
  Span dstRows{*dstY, *height, 1};
  if (!clipSpans(srcColumns, srcLeft, srcRight, dstColumns, dstLeft, dstRight) ||
      !clipSpans(srcRows, srcTop, srcBottom, dstRows, dstTop, dstBottom))
    return 0;
  *srcX = narrow(srcColumns.position);
  *srcY = narrow(srcRows.position);
  *width = narrow(dstColumns.size);
  *height = narrow(dstRows.size);
  *dstX = narrow(dstColumns.position);
  *dstY = narrow(dstRows.position);
  return 1;
}

std::int32_t KX_CALL KX_clipStretchRect(std::int32_t srcLeft, std::int32_t srcTop, std::int32_t srcRight,
                                        std::int32_t srcBottom, std::int32_t* srcX, std::int32_t* srcY,
                                        std::int32_t* srcWidth, std::int32_t* srcHeight, std::int32_t dstLeft,
                                        std::int32_t dstTop, std::int32_t dstRight, std::int32_t dstBottom,
                                        std::int32_t* dstX, std::int32_t* dstY, std::int32_t* dstWidth,
                                        std::int32_t* dstHeight) {
  using namespace kx;
  Span srcColumns{*srcX, *srcWidth, *srcWidth};
  Span srcRows{*srcY, *srcHeight, *srcHeight};
  Span dstColumns{*dstX, *dstWidth, *dstWidth};
  Span dstRows{*dstY, *dstHeight, *dstHeight};
  if (!clipSpans(srcColumns, srcLeft, srcRight, dstColumns, dstLeft, dstRight) ||
      !clipSpans(srcRows, srcTop, srcBottom, dstRows, dstTop, dstBottom))
    return 0;
  *srcX = narrow(srcColumns.position);
  *srcY = narrow(srcRows.position);
  *srcWidth = narrow(srcColumns.size);
  *srcHeight = narrow(srcRows.size);
  *dstX = narrow(dstColumns.position);
  *dstY = narrow(dstRows.position);
  *dstWidth = narrow(dstColumns.size);
  *dstHeight = narrow(dstRows.size);
  return 1;
}

// Settled: no second horizontal pass follows the vertical one, so a line past a corner may come back outside.
std::int32_t KX_CALL KX_clipLine(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
                                 std::int32_t* x1, std::int32_t* y1, std::int32_t* x2, std::int32_t* y2) {
  using namespace kx;
  Point first{*x1, *y1};
  Point second{*x2, *y2};
  const Wide dx = second.along - first.along;
  const Wide dy = second.across - first.across;
  if (!clipLineDirection(first, second, left, right, dx, dy)) return 0;
  first = {first.across, first.along};
  second = {second.across, second.along};
  if (!clipLineDirection(first, second, top, bottom, dy, dx)) return 0;
  *x1 = narrow(first.across);
  *y1 = narrow(first.along);
  *x2 = narrow(second.across);
  *y2 = narrow(second.along);
  return 1;
}
