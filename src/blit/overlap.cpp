// SPDX-License-Identifier: MIT
#include "blit/overlap.h"

#include <algorithm>

#include "bitmap/view.h"

namespace kx {

namespace {

/// The most by which a run goes past the right edge, in pixels.
constexpr std::int64_t longestOverrun = 128;

/// Bits `first` to before `first + count` of each row.
Area bitArea(Plane plane, std::size_t first, std::int32_t count, std::int32_t height) {
  plane.start += first / 8;
  return {plane, (static_cast<std::int64_t>(first % 8) + count + 7) / 8, height};
}

/// All that decoding the rows may read.
MemoryRange packedRange(const BlitPlan& plan, const BlitRequest& r) {
  const auto [least, greatest] = std::minmax_element(plan.packedRows, plan.packedRows + r.from.h);
  // A pixel takes at most a header and its own bytes.
  const std::int64_t longestRow =
      (std::int64_t{r.from.x} + r.from.w + longestOverrun) * static_cast<std::int64_t>(plan.sourceBytes + 1);
  return MemoryRange::of(plan.source.start + *least, std::int64_t{*greatest} - *least + longestRow);
}

}  // namespace

Sharing sharedMemory(const BlitPlan& plan, const BlitRequest& r) {
  const std::int64_t overrun = plan.overruns ? longestOverrun : 0;
  const std::int64_t width = r.to.w + overrun, sourceWidth = r.from.w + overrun;
  const Area target = plan.destinationBits
                          ? bitArea(plan.destination, plan.destinationX, r.to.w, r.to.h)
                          : Area{plan.destination, width * static_cast<std::int64_t>(plan.destinationBytes), r.to.h};
  const Area depths{plan.zBuffer, width, r.to.h};
  const auto sameRow = [](std::int32_t y) { return y; };
  const auto sourceRow = [&](std::int32_t y) { return plan.sourceRow(y); };
  Sharing sharing = plan.zBuffer.start != nullptr ? compare(target, depths, sameRow) : Sharing::None;
  const auto readsFrom = [&](const Area& read) {
    if (read.plane.start == nullptr) return;
    sharing = std::max(sharing, compare(target, read, sourceRow));
    if (plan.zBuffer.start != nullptr) sharing = std::max(sharing, compare(depths, read, sourceRow));
  };
  readsFrom({plan.zMap, sourceWidth, r.from.h});
  readsFrom({plan.alphamap, sourceWidth, r.from.h});
  if (plan.fetch == Fetch::Rows)
    readsFrom({plan.source, r.from.w * static_cast<std::int64_t>(plan.sourceBytes), r.from.h});
  if (plan.fetch == Fetch::Bits) readsFrom(bitArea(plan.source, plan.sourceX, r.from.w, r.from.h));
  // Where the packets of a row lie is not known before they are read.
  if (plan.fetch == Fetch::Packed) {
    const MemoryRange packets = packedRange(plan, r);
    if (packets.meets(target.envelope()) || packets.meets(depths.envelope())) sharing = Sharing::SameRow;
  }
  return sharing;
}

}  // namespace kx
