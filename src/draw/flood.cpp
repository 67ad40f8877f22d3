// Flood fill. Spans wait on the heap for their neighbours to be looked at; the pixels are those of the plain recursion
// over spans, whose result does not depend on the order of its visits:
// a run of matching pixels is painted whole when it is entered, and a pixel opens its run only while it matches and
// does not have the fill colour, so that no run is entered twice.
// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstring>

#include "bitmap/packed.h"
#include "bitmap/view.h"
#include "draw/flood_rules.h"
#include "draw/target.h"
#include "frame/heap.h"
#include "kxgraphic/draw.h"

namespace kx {

namespace {

/// Columns first to last of a row.
struct Span {
  std::int32_t y, first, last;
};

/// A painted span whose neighbours are still to be looked at, and the span it was entered from, which needs no second
/// look.
struct PendingSpan {
  Span span;
  Span origin;
};

/// The spans that wait, the latest on top.
class SpanStack {
public:
  Result push(const PendingSpan& pending) {
    if (count_ == capacity_) KX_TRY(grow());
    spans_[count_++] = pending;
    return Result::Ok;
  }

  bool pop(PendingSpan& pending) {
    if (count_ == 0) return false;
    pending = spans_[--count_];
    return true;
  }

private:
  Result grow() {
    const std::size_t capacity = capacity_ == 0 ? 256 : 2 * capacity_;
    HeapArray<PendingSpan> larger = makeHeapArray<PendingSpan>(capacity);
    if (!larger) return Result::OutOfMemory;
    if (count_ != 0) std::memcpy(larger.get(), spans_.get(), count_ * sizeof(PendingSpan));
    spans_ = std::move(larger);
    capacity_ = capacity;
    return Result::Ok;
  }

  HeapArray<PendingSpan> spans_;
  std::size_t count_ = 0;
  std::size_t capacity_ = 0;
};

template <typename Pixels, typename Match>
class FloodFill {
public:
  FloodFill(const Bitmap& bitmap, const Match& matches, std::uint32_t colour)
      : bitmap_(bitmap), matches_(matches), colour_(colour) {}

  Result fillFrom(std::int32_t x, std::int32_t y) {
    const Span seed = paintSpan(x, y);
    KX_TRY(openFrom(seed, y + 1, seed.first, seed.last));
    KX_TRY(openFrom(seed, y - 1, seed.first, seed.last));
    PendingSpan pending;
    while (waiting_.pop(pending)) {
      const auto& [span, origin] = pending;
      KX_TRY(openFrom(span, 2 * span.y - origin.y, span.first, span.last));
      KX_TRY(openFrom(span, origin.y, span.first, origin.first - 1));
      KX_TRY(openFrom(span, origin.y, origin.last + 1, span.last));
    }
    return Result::Ok;
  }

private:
  /// Paints the run of matching pixels through (x, y).
  /// Settled: a run that reaches column 1 takes column 0, whatever stands there.
  Span paintSpan(std::int32_t x, std::int32_t y) {
    std::uint8_t* const row = rowAddress(bitmap_, y);
    std::int32_t first = x;
    while (first > 0 && (first == 1 || matches_(Pixels::load(row, first - 1)))) --first;
    Pixels::store(row, first, colour_);
    return {y, first, paintRight<Pixels>(row, first + 1, bitmap_.width, colour_, matches_) - 1};
  }

  bool isOpen(std::uint32_t value) const { return value != colour_ && matches_(value); }

  /// Enters every open run of row y that meets the columns `first` to `last`, neighbours of `origin`.
  Result openFrom(const Span& origin, std::int32_t y, std::int32_t first, std::int32_t last) {
    if (y < 0 || y >= bitmap_.height) return Result::Ok;
    const std::uint8_t* const row = rowAddress(bitmap_, y);
    for (std::int32_t x = first; x <= last; ++x) {
      if (!isOpen(Pixels::load(row, x))) continue;
      const Span opened = paintSpan(x, y);
      KX_TRY(waiting_.push({opened, origin}));
      x = opened.last;
    }
    return Result::Ok;
  }

  const Bitmap& bitmap_;
  Match matches_;
  std::uint32_t colour_;
  SpanStack waiting_;
};

template <typename Pixels>
Result fillPixels(const Bitmap& bitmap, std::int32_t x, std::int32_t y, std::int32_t tolerance, std::uint32_t colour) {
  const std::uint32_t seed = Pixels::load(rowAddress(bitmap, y), x);
  if (tolerance == 0) return FloodFill<Pixels, ExactMatch>(bitmap, {seed}, colour).fillFrom(x, y);
  const ToleranceMatch matches(bitmap.format, seed, static_cast<std::uint32_t>(tolerance));
  return FloodFill<Pixels, ToleranceMatch>(bitmap, matches, colour).fillFrom(x, y);
}

Result fillPlain(const Bitmap& bitmap, std::int32_t x, std::int32_t y, std::int32_t tolerance, std::uint32_t colour) {
  switch (formatCode(bitmap.format)) {
    case KX_FORMAT_MONO:
      return fillPixels<BitPixels>(bitmap, x, y, tolerance, colour & 1);
    case KX_FORMAT_GREY:
    case KX_FORMAT_PALETTE:
      return fillPixels<BytePixels<1>>(bitmap, x, y, tolerance, colour & 0xFF);
    case KX_FORMAT_555:
    case KX_FORMAT_565:
      return fillPixels<BytePixels<2>>(bitmap, x, y, tolerance, colour & 0xFFFF);
    case KX_FORMAT_888:
      return fillPixels<BytePixels<3>>(bitmap, x, y, tolerance, colour & 0xFFFFFF);
    default:
      return Result::Ok;
  }
}

Result floodFill(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::int32_t tolerance, std::uint32_t colour) {
  KX_TRY(checkWritable(bitmap));
  if (!contains(*bitmap, x, y, 1, 1)) return Result::CoordinateOutOfRange;
  if (tolerance < 0 || tolerance > 255) return Result::IllegalParameter;
  KX_TRY(checkMethods(bitmap));
  KX_TRY(lockForDrawing(bitmap));
  if (hasRunLengthRows(bitmap->format)) {
    KX_TRY(drawOnUnpacked(bitmap, [=](Bitmap* plain) { return floodFill(plain, x, y, tolerance, colour); }));
  } else {
    KX_TRY(fillPlain(*bitmap, x, y, tolerance, colour));
  }
  unlockAfterDrawing(bitmap);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_floodFill(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::int32_t tolerance,
                                   std::uint32_t colour) {
  return kx::toCode(kx::floodFill(bitmap, x, y, tolerance, colour));
}
