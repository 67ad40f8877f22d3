// Whether what a blit writes is also what it reads.
// SPDX-License-Identifier: MIT
#pragma once

#include "blit/plan.h"
#include "pixel/memory_range.h"

namespace kx {

/// The bytes that each row of a rectangle takes. Empty where there is no rectangle.
struct Area {
  Plane plane;
  std::int64_t rowBytes = 0;
  std::int32_t height = 0;

  [[nodiscard]] MemoryRange row(std::int64_t y) const { return MemoryRange::of(plane.row(y), rowBytes); }

  [[nodiscard]] MemoryRange envelope() const {
    if (plane.start == nullptr) return {};
    return MemoryRange::ofRows(plane.start, rowBytes, plane.pitch, height);
  }
};

/// Areas that meet: while a row is drawn, or only across rows. By value: areas that do not meet stay in registers.
template <typename RowOf>
[[gnu::noinline]] Sharing compareRows(Area written, Area other, RowOf rowOf) {
  for (std::int32_t y = 0; y < written.height; ++y)
    if (written.row(y).meets(other.row(rowOf(y)))) return Sharing::SameRow;
  return Sharing::OtherRows;
}

/// What an area that is written shares with another. Its row y is made of the other's row `rowOf(y)`.
template <typename RowOf>
[[gnu::always_inline]] inline Sharing compare(const Area& written, const Area& other, RowOf rowOf) {
  return written.envelope().meets(other.envelope()) ? compareRows(written, other, rowOf) : Sharing::None;
}

/// How the destination and the Z buffer share memory with each other and with what is read.
Sharing sharedMemory(const BlitPlan& plan, const BlitRequest& request);

}  // namespace kx
