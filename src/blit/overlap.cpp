// SPDX-License-Identifier: MIT
#include "blit/overlap.h"

#include <algorithm>

#include "bitmap/view.h"

namespace kx {

namespace {

/// Bytes from `begin` to before `end`.
struct Range {
  std::uintptr_t begin = 0, end = 0;

  [[nodiscard]] bool meets(const Range& other) const { return begin < other.end && other.begin < end; }
};

/// The most by which a run goes past the right edge, in pixels.
constexpr std::int64_t longestOverrun = 128;

Range rangeOf(const void* first, std::int64_t size) {
  const auto begin = reinterpret_cast<std::uintptr_t>(first);
  return {begin, begin + static_cast<std::uintptr_t>(size)};
}

/// The bytes that each row of a rectangle takes. Empty where there is no rectangle.
struct Area {
  Plane plane;
  std::int64_t rowBytes = 0;
  std::int32_t height = 0;

  [[nodiscard]] Range row(std::int64_t y) const { return rangeOf(plane.row(y), rowBytes); }

  /// From the first byte to the last, whichever way the rows go.
  [[nodiscard]] Range envelope() const {
    if (plane.start == nullptr) return {};
    const std::int64_t down = std::int64_t{height - 1} * plane.pitch;
    return rangeOf(plane.row(down < 0 ? height - 1 : 0), std::max(down, -down) + rowBytes);
  }
};

/// Bits `first` to before `first + count` of each row.
Area bitArea(Plane plane, std::size_t first, std::int32_t count, std::int32_t height) {
  plane.start += first / 8;
  return {plane, (static_cast<std::int64_t>(first % 8) + count + 7) / 8, height};
}

/// All that decoding the rows may read.
Range packedRange(const BlitPlan& plan, const BlitRequest& r) {
  const auto [least, greatest] = std::minmax_element(plan.packedRows, plan.packedRows + r.from.h);
  // A pixel takes at most a header and its own bytes.
  const std::int64_t longestRow =
      (std::int64_t{r.from.x} + r.from.w + longestOverrun) * static_cast<std::int64_t>(plan.sourceBytes + 1);
  return rangeOf(plan.source.start + *least, std::int64_t{*greatest} - *least + longestRow);
}

/// Rows meet while one of them is drawn, or only across rows.
Sharing compare(const BlitPlan& plan, const Area& written, const Area& other, bool otherIsStretched) {
  if (!written.envelope().meets(other.envelope())) return Sharing::None;
  for (std::int32_t y = 0; y < plan.height; ++y)
    if (written.row(y).meets(other.row(otherIsStretched ? plan.sourceRow(y) : y))) return Sharing::SameRow;
  return Sharing::OtherRows;
}

}  // namespace

Sharing sharedMemory(const BlitPlan& plan, const BlitRequest& r) {
  const std::int64_t overrun = plan.overruns ? longestOverrun : 0;
  const std::int64_t width = r.to.w + overrun, sourceWidth = r.from.w + overrun;
  const Area target = plan.destinationBits
                          ? bitArea(plan.destination, plan.destinationX, r.to.w, r.to.h)
                          : Area{plan.destination, width * static_cast<std::int64_t>(plan.destinationBytes), r.to.h};
  const Area depths{plan.zBuffer, width, r.to.h};
  Sharing sharing = plan.zBuffer.start != nullptr ? compare(plan, target, depths, false) : Sharing::None;
  const auto readsFrom = [&](const Area& read) {
    if (read.plane.start == nullptr) return;
    sharing = std::max(sharing, compare(plan, target, read, true));
    if (plan.zBuffer.start != nullptr) sharing = std::max(sharing, compare(plan, depths, read, true));
  };
  readsFrom({plan.zMap, sourceWidth, r.from.h});
  readsFrom({plan.alphamap, sourceWidth, r.from.h});
  if (plan.fetch == Fetch::Rows)
    readsFrom({plan.source, r.from.w * static_cast<std::int64_t>(plan.sourceBytes), r.from.h});
  if (plan.fetch == Fetch::Bits) readsFrom(bitArea(plan.source, plan.sourceX, r.from.w, r.from.h));
  // Where the packets of a row lie is not known before they are read.
  if (plan.fetch == Fetch::Packed) {
    const Range packets = packedRange(plan, r);
    if (packets.meets(target.envelope()) || packets.meets(depths.envelope())) sharing = Sharing::SameRow;
  }
  return sharing;
}

}  // namespace kx
