// The six values that are stepped along edges and spans, and the exact division that gives their steps. Included by
// kernel files of every instruction set, hence all code has internal linkage.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kx {

/// All values are 16.16 fixed point. Shade values lie such that bits 16 and up are an offset in 5-5-5 position.
enum Lane { LaneX, LaneU, LaneV, LaneRed, LaneGreen, LaneBlue, LanesUsed };

/// Two spare lanes, which stay 0, make whole vectors.
struct alignas(32) Lanes {
  static constexpr int count = 8;
  std::int32_t value[count];
};

/// One side of a triangle, from its upper end.
struct Edge {
  Lanes at;           ///< values in the present row
  Lanes step;         ///< from row to row
  std::int32_t rows;  ///< that are left, the present one included
};

namespace {

/// (to - from) / divisor, cut toward zero, for each lane; divisor 2 to 65535. A divisor of 1 gives 0: there is no
/// second place to step to.
///
/// The half keeps the product at least 1 / (2 * divisor) away from every integer, far more than its rounding error
/// (below 2^-19 / divisor), so that cutting gives the exact quotient whatever the rounding mode.
[[maybe_unused]] inline void divideLanes(Lanes& step, const Lanes& from, const Lanes& to, std::int32_t divisor) {
  const double factor = divisor > 1 ? 1.0 / divisor : 0.0;
  for (int lane = 0; lane < Lanes::count; ++lane) {
    const double difference = static_cast<double>(to.value[lane]) - static_cast<double>(from.value[lane]);
    step.value[lane] = static_cast<std::int32_t>((difference + __builtin_copysign(0.5, difference)) * factor);
  }
}

}  // namespace

}  // namespace kx
