// Inputs of the coder tests: from noise to long runs, the same in every run.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "support/plain_coders.h"

namespace kxtest {

class Random {
public:
  explicit Random(std::uint32_t seed) : state_(seed * 2654435761u + 1) {}

  /// 0 to n - 1.
  std::uint32_t below(std::uint32_t n) {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return static_cast<std::uint32_t>(std::uint64_t{state_} * n >> 32);
  }

private:
  std::uint32_t state_;
};

constexpr int shapes = 8;

constexpr std::uint8_t canary = 0xEE;

/// True when the block, filled with canaries before, was not written from byte `from` on.
inline bool untouchedFrom(const Bytes& block, std::size_t from) {
  return std::all_of(block.data() + from, block.data() + block.size(), [](int byte) { return byte == canary; });
}

/// `count` elements of `size` bytes in one of `shapes` shapes.
inline Bytes makeData(int shape, std::size_t count, std::size_t size, Random& random) {
  Bytes data;
  data.reserve(count * size);
  Bytes element(size);
  const std::uint32_t values[shapes] = {256, 1, 2, 3, 16, 256, 4, 256};
  const std::uint32_t runs[shapes] = {1, 300, 3, 130, 9, 260, 1, 2};
  while (data.size() < count * size) {
    for (std::uint8_t& byte : element) byte = static_cast<std::uint8_t>(random.below(values[shape]));
    for (std::uint32_t run = 1 + random.below(runs[shape]); run > 0 && data.size() < count * size; --run)
      data.insert(data.end(), element.begin(), element.end());
  }
  return data;
}

}  // namespace kxtest
