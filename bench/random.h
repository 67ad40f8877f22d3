// The generator behind all data: xorshift32.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kxbench {

class Random {
public:
  explicit Random(std::uint32_t seed) : state_(seed) {}

  std::uint32_t next() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_;
  }

  /// 0 to n - 1.
  std::int32_t below(std::int32_t n) {
    return static_cast<std::int32_t>(std::uint64_t{next()} * static_cast<std::uint32_t>(n) >> 32);
  }

  /// The top eight bits.
  std::uint8_t byte() { return static_cast<std::uint8_t>(next() >> 24); }

private:
  std::uint32_t state_;
};

}  // namespace kxbench
