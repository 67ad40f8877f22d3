// SPDX-License-Identifier: MIT
#include "blit/overlap.h"

#include <algorithm>
#include <iterator>

#include "bitmap/view.h"

namespace kx {

namespace {

/// Addresses from `begin` to before `end`.
struct Range {
  std::uintptr_t begin = 0, end = 0;
};

bool meet(const Range& a, const Range& b) { return a.begin < b.end && b.begin < a.end; }

/// The most by which a run goes past the right edge, in pixels.
constexpr std::int64_t longestOverrun = 128;

Range rangeOf(const void* first, std::int64_t size) {
  const auto begin = reinterpret_cast<std::uintptr_t>(first);
  return {begin, begin + static_cast<std::uintptr_t>(size)};
}

/// A rectangle of rows, from its first byte to its last, whichever way the rows go.
Range rowsRange(const Plane& plane, std::int64_t rowBytes, std::int64_t height) {
  if (plane.start == nullptr) return {};
  const std::int64_t down = (height - 1) * plane.pitch;
  return rangeOf(plane.row(down < 0 ? height - 1 : 0), std::max(down, -down) + rowBytes);
}

Range packedRange(const BlitPlan& plan, const BlitRequest& r) {
  const auto [least, greatest] = std::minmax_element(plan.packedRows, plan.packedRows + r.from.h);
  // A pixel takes at most a header and its own bytes.
  const std::int64_t longestRow =
      (std::int64_t{r.from.x} + r.from.w + longestOverrun) * static_cast<std::int64_t>(plan.sourceBytes + 1);
  return rangeOf(plan.source.start + *least, std::int64_t{*greatest} - *least + longestRow);
}

Range sourceRange(const BlitPlan& plan, const BlitRequest& r) {
  switch (plan.fetch) {
    case Fetch::Rows:
      return rowsRange(plan.source, std::int64_t{r.from.w} * static_cast<std::int64_t>(plan.sourceBytes), r.from.h);
    case Fetch::Bits:
      return rowsRange(plan.source, (std::int64_t{r.from.x} + r.from.w + 7) / 8, r.from.h);
    case Fetch::Packed:
      return packedRange(plan, r);
    default:
      return {};
  }
}

}  // namespace

bool sharesMemory(const BlitPlan& plan, const BlitRequest& r) {
  const std::int64_t overrun = plan.overruns ? longestOverrun : 0;
  const std::int64_t width = std::int64_t{r.to.w} + overrun;
  const std::int64_t rowBytes = plan.destinationBits ? (std::int64_t{r.to.x} + r.to.w + 7) / 8
                                                     : width * static_cast<std::int64_t>(plan.destinationBytes);
  const Range target = rowsRange(plan.destination, rowBytes, r.to.h);
  const Range depths = rowsRange(plan.zBuffer, width, r.to.h);
  const Range read[] = {sourceRange(plan, r), rowsRange(plan.zMap, r.from.w + overrun, r.from.h),
                        rowsRange(plan.alphamap, r.from.w + overrun, r.from.h)};
  if (meet(target, depths)) return true;
  return std::any_of(std::begin(read), std::end(read),
                     [&](const Range& range) { return meet(target, range) || meet(depths, range); });
}

}  // namespace kx
