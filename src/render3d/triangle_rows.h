// Walking a triangle down its rows, for the kernels of every instruction set, which supply what fills one span. All
// code has internal linkage. SPDX-License-Identifier: MIT
#pragma once

#include "render3d/triangle_kernels.h"

namespace kx {

namespace {

/// Five bits of a channel.
constexpr std::int32_t channelMask = 0x1F;

/// Bits by which a shade value is shifted right to count channel steps. Fractions of a step would be masked off after
/// the sum anyway.
constexpr int redStepBits = 26;
constexpr int greenStepBits = 21;
constexpr int blueStepBits = 16;

/// A run of pixels in one row.
struct TriangleSpan {
  std::uint8_t* pixels;
  std::int32_t count;  ///< above 0
  Lanes at;            ///< values of the first pixel
  Lanes step;          ///< from pixel to pixel
};

inline std::int32_t lesser(std::int32_t a, std::int32_t b) { return a < b ? a : b; }
inline std::int32_t greater(std::int32_t a, std::int32_t b) { return a > b ? a : b; }

/// Goes on to the next row. Settled: the row below the middle corner's starts at that corner itself.
inline void nextRow(Edge& edge, const Edge& lower) {
  if (--edge.rows == 0) {
    edge = lower;
    return;
  }
  edge.at += edge.step;
}

/// The part of a row between both edges that lies inside the clip columns; false when there is none. The steps are
/// those of the whole span. Settled: its length counts whole pixels from edge to edge, so that it ends one pixel before
/// the right edge's where that edge lies less far in its pixel than the left one.
inline bool makeSpan(TriangleSpan& span, const TriangleJob& job, const Lanes& left, const Lanes& right,
                     std::int32_t y) {
  const std::int32_t first = left[laneX] >> 16;
  const auto length = static_cast<std::int32_t>((std::int64_t{right[laneX]} - left[laneX]) >> 16) + 1;
  const std::int32_t begin = greater(first, job.clipLeft);
  const std::int32_t end = lesser(first + length - 1, job.clipRight);
  if (begin > end) return false;
  divideLanes(span.step, left, right, length);
  span.at = left;
  // The sum lies in range though the product may not.
  using Unsigned [[gnu::vector_size(sizeof(Lanes))]] = std::uint32_t;
  if (const std::int32_t skipped = begin - first; skipped != 0)
    span.at = reinterpret_cast<Lanes>(reinterpret_cast<Unsigned>(left) +
                                      reinterpret_cast<Unsigned>(span.step) * static_cast<std::uint32_t>(skipped));
  span.count = end - begin + 1;
  span.pixels = job.pixels + y * job.pitch + static_cast<std::ptrdiff_t>(begin) * 2;
  return true;
}

/// Filler: made from the job, and called with each span.
template <typename Filler>
void drawRows(const TriangleJob& job) {
  const Filler fill(job);
  const Triangle& triangle = job.triangle;
  Edge left = triangle.left;
  Edge right = triangle.right;
  TriangleSpan span;
  const std::int32_t end = triangle.top + triangle.rows;
  for (std::int32_t y = triangle.top; y < end; ++y) {
    if (y >= job.clipTop && makeSpan(span, job, left.at, right.at, y)) fill(span);
    nextRow(left, triangle.lower);
    nextRow(right, triangle.lower);
  }
}

/// The kernels of one instruction set from its Filler<GreenShift, Blended, Limited>, where GreenShift is 1 for 5-6-5:
/// green and red lie one bit above their places in 5-5-5.
template <template <int, bool, bool> class Filler>
constexpr TriangleKernels makeTriangleKernels() {
  return {{{{drawRows<Filler<0, false, false>>, drawRows<Filler<0, false, true>>},
            {drawRows<Filler<0, true, false>>, drawRows<Filler<0, true, true>>}},
           {{drawRows<Filler<1, false, false>>, drawRows<Filler<1, false, true>>},
            {drawRows<Filler<1, true, false>>, drawRows<Filler<1, true, true>>}}}};
}

}  // namespace

}  // namespace kx
