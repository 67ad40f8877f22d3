// The smallest call of each family of exports - one pixel, one byte, one cell - as data: what a call costs beside its
// work. The benchmarks time them (rows n.call), kxcount counts their instructions.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace kxbench {

struct SmallestCall {
  const char* family;  ///< the list of exports it stands for, include/kxgraphic/exports/FAMILY.inc
  const char* name;
  std::function<std::uint32_t(std::int32_t)> call;  ///< 0 when it went well; takes a place, 0 to placesOfCalls - 1
};

constexpr std::int32_t placesOfCalls = 100;

/// All of them. What they work on lives as long as they do.
std::vector<SmallestCall> makeSmallestCalls();

}  // namespace kxbench
