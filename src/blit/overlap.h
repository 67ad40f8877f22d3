// Whether what a blit writes is also what it reads.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

#include "blit/plan.h"

namespace kx {

/// Bytes from `begin` to before `end`.
struct Range {
  std::uintptr_t begin = 0, end = 0;

  static Range of(const void* first, std::int64_t size) {
    const auto begin = reinterpret_cast<std::uintptr_t>(first);
    return {begin, begin + static_cast<std::uintptr_t>(size)};
  }

  [[nodiscard]] bool meets(const Range& other) const { return begin < other.end && other.begin < end; }
};

/// The bytes that each row of a rectangle takes. Empty where there is no rectangle.
struct Area {
  Plane plane;
  std::int64_t rowBytes = 0;
  std::int32_t height = 0;

  [[nodiscard]] Range row(std::int64_t y) const { return Range::of(plane.row(y), rowBytes); }

  /// From the first byte to the last, whichever way the rows go.
  [[nodiscard]] Range envelope() const {
    if (plane.start == nullptr) return {};
    const std::int64_t down = std::int64_t{height - 1} * plane.pitch;
    return Range::of(plane.start + static_cast<std::ptrdiff_t>(std::min<std::int64_t>(down, 0)),
                     std::max(down, -down) + rowBytes);
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
