// The six values that are stepped along edges and spans, and the exact division that gives their steps. Included by
// kernel files of every instruction set, hence all code has internal linkage.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kx {

/// All values are 16.16 fixed point. Shade values lie such that bits 16 and up are an offset in 5-5-5 position.
constexpr int laneX = 0, laneU = 1, laneV = 2, laneRed = 3, laneGreen = 4, laneBlue = 5;

/// Two spare lanes, which stay 0, make whole vectors.
constexpr int laneCount = 8;
using Lanes [[gnu::vector_size(4 * laneCount)]] = std::int32_t;

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
  using Four [[gnu::vector_size(16)]] = std::int32_t;
  using FourDoubles [[gnu::vector_size(32)]] = double;
  using FourSigns [[gnu::vector_size(32)]] = std::int64_t;
  constexpr std::int64_t half = __builtin_bit_cast(std::int64_t, 0.5);

  const double factor = divisor > 1 ? 1.0 / divisor : 0.0;
  for (int lane = 0; lane < laneCount; lane += 4) {
    Four begin, end;
    __builtin_memcpy(&begin, reinterpret_cast<const std::int32_t*>(&from) + lane, sizeof begin);
    __builtin_memcpy(&end, reinterpret_cast<const std::int32_t*>(&to) + lane, sizeof end);
    const FourDoubles difference =
        __builtin_convertvector(end, FourDoubles) - __builtin_convertvector(begin, FourDoubles);
    const FourSigns sign = reinterpret_cast<FourSigns>(difference) & INT64_MIN;
    const FourDoubles quotient = (difference + reinterpret_cast<FourDoubles>(sign | half)) * factor;
    const Four cut = __builtin_convertvector(quotient, Four);
    __builtin_memcpy(reinterpret_cast<std::int32_t*>(&step) + lane, &cut, sizeof cut);
  }
}

}  // namespace

}  // namespace kx
