// SPDX-License-Identifier: MIT
#include "landscape/round_area.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

#include "bitmap/own_methods.h"
#include "bitmap/view.h"
#include "kxgraphic/bitmap.h"
#include "landscape/map_access.h"
#include "landscape/random.h"

namespace kx {

namespace {

struct Point {
  std::int32_t x, y;
};

/// The 32-bit register that decides the signs of the outline's steps.
class SignRegister {
public:
  explicit SignRegister(std::uint32_t seed) : state_(seed != 0 ? seed : 1) {}

  /// -1.0 or 1.0.
  double next() {
    const std::uint32_t top = ((state_ >> 7) ^ state_) & 1U;
    state_ = state_ >> 1 | top << 31;
    return state_ % 2147483647U % 2 != 0 ? -1.0 : 1.0;
  }

private:
  std::uint32_t state_;
};

constexpr double unitOf32Bits = 1.0 / 4294967296.0;
constexpr double fullTurn = 6.2831853;

/// Cut to a whole cell. Far beyond any map places are limited, so that products of two distances fit 64 bits.
std::int32_t toCell(double place) {
  constexpr double farthest = 1 << 30;
  return static_cast<std::int32_t>(std::clamp(place, -farthest, farthest));
}

/// The outline's points in order, at most `capacity`; the count of them.
std::size_t walkOutline(Point* points, std::size_t capacity, const RoundArea& area, double angleStep) {
  std::mt19937 source(effectiveSeed(area.seed));
  const auto unit = [&source] { return static_cast<double>(source()) * unitOf32Bits; };
  SignRegister sign(area.seed);
  const double inner = area.innerRadius;
  const double outer = area.outerRadius;

  double radius = inner + (outer - inner) * unit();
  const auto drawChange = [&] {
    const double size = unit() * area.roughness * 0.5;
    return size * sign.next();
  };
  double change = drawChange();
  std::size_t count = 0;
  for (double angle = 0; angle < fullTurn && count < capacity; angle += angleStep) {
    points[count++] = {toCell(area.centreX + radius * std::cos(angle)),
                       toCell(area.centreY + radius * std::sin(angle))};
    radius = std::clamp(radius + change, inner, outer);
    if (source() % 101 > 60) change = drawChange();
  }
  return count;
}

/// Marks in the drawn shape: a cell of the outline, and a cell from which on the row changes between outside and
/// inside.
constexpr std::uint8_t outlineMark = 1;
constexpr std::uint8_t crossingMark = 2;

bool onMap(const Bitmap& shape, std::int64_t x, std::int64_t y) {
  return x >= 0 && y >= 0 && x < shape.width && y < shape.height;
}

std::uint8_t& cellOf(Bitmap& shape, std::int64_t x, std::int64_t y) {
  return *pixelAddress(shape, static_cast<std::int32_t>(x), static_cast<std::int32_t>(y));
}

/// One side of the outline: its cells, and where it crosses the rows of the map.
void drawSide(Bitmap& shape, Point from, Point to) {
  const std::int64_t dx = std::int64_t{to.x} - from.x;
  const std::int64_t dy = std::int64_t{to.y} - from.y;
  const std::int64_t steps = std::max<std::int64_t>(1, std::max(std::abs(dx), std::abs(dy)));
  // Along the longer way every step is one cell, so that the steps off the map need not be walked.
  const bool wide = std::abs(dx) >= std::abs(dy);
  const bool forward = (wide ? dx : dy) >= 0;
  const std::int64_t start = wide ? from.x : from.y;
  const std::int64_t end = (wide ? shape.width : shape.height) - std::int64_t{1};
  const std::int64_t first = std::max<std::int64_t>(0, forward ? -start : start - end);
  const std::int64_t last = std::min(steps, forward ? end - start : start);
  for (std::int64_t i = first; i <= last; ++i) {
    const std::int64_t x = from.x + dx * i / steps;
    const std::int64_t y = from.y + dy * i / steps;
    if (onMap(shape, x, y)) cellOf(shape, x, y) |= outlineMark;
  }

  // The upper end belongs to the side, the lower end to the next one, so that each crossing counts once.
  if (dy < 0) std::swap(from, to);
  for (std::int64_t y = std::max(0, from.y); y < std::min(shape.height, to.y); ++y) {
    const double x = from.x + (static_cast<double>(to.x) - from.x) * static_cast<double>(y - from.y) /
                                  (static_cast<double>(to.y) - from.y);
    const auto cell = static_cast<std::int64_t>(std::max(0.0, std::ceil(x)));
    if (cell < shape.width) cellOf(shape, cell, y) ^= crossingMark;
  }
}

/// Turns the marks of a row into mask values, the outline included.
void readRow(std::uint16_t* mask, const std::uint8_t* marks, std::int32_t width) {
  bool inside = false;
  for (std::int32_t x = 0; x < width; ++x) {
    if ((marks[x] & crossingMark) != 0) inside = !inside;
    mask[x] = inside || (marks[x] & outlineMark) != 0;
  }
}

Result drawArea(Bitmap& shape, const RoundArea& area) {
  const double angleStep = std::asin(1 / (3.0 * area.outerRadius));
  const auto capacity = static_cast<std::uint64_t>(fullTurn / angleStep) + 2;
  const HeapArray<Point> points = makeHeapArray<Point>(capacity);
  if (!points) return Result::OutOfMemory;
  const std::size_t count = walkOutline(points.get(), static_cast<std::size_t>(capacity), area, angleStep);
  for (std::size_t i = 0; i < count; ++i) drawSide(shape, points[i], points[i + 1 == count ? 0 : i + 1]);
  return Result::Ok;
}

}  // namespace

Result makeAreaMask(AreaMask* result, const Landscape& landscape, const RoundArea& area) {
  const std::uint64_t cells = cellCount(landscape);
  AreaMask mask = makeHeapArray<std::uint16_t>(cells);
  if (!mask) return Result::OutOfMemory;
  if (area.centreX < 0 || area.centreX >= landscape.width || area.centreY < 0 || area.centreY >= landscape.height)
    return Result::CoordinateOutOfRange;
  if (area.outerRadius < area.innerRadius || area.roughness < 0 || area.outerRadius < 1)
    return Result::IllegalParameter;

  Bitmap* shape = nullptr;
  if (KX_createBitmap(&shape, landscape.width, landscape.height, KX_FORMAT_GREY, 0, 0, ownBitmapMethods()) != 0)
    return Result::OutOfMemory;
  std::memset(shape->pixels, 0, static_cast<std::size_t>(shape->pitch) * static_cast<std::size_t>(shape->height));
  const Result drawn = drawArea(*shape, area);
  for (std::int32_t y = 0; y < landscape.height; ++y)
    readRow(mask.get() + cellIndex(landscape, 0, y), rowAddress(*shape, y), landscape.width);
  KX_TRY(fromCode(KX_deleteBitmap(shape)));
  KX_TRY(drawn);
  *result = std::move(mask);
  return Result::Ok;
}

}  // namespace kx
