// The one source of random numbers in tests: small, and the same on every platform.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace kxtest {

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
  std::uint32_t below(std::uint32_t n) { return static_cast<std::uint32_t>(std::uint64_t{next()} * n >> 32); }

  /// low to high, both included.
  std::int32_t between(std::int32_t low, std::int32_t high) {
    return low + static_cast<std::int32_t>(below(static_cast<std::uint32_t>(high - low) + 1));
  }

  std::uint8_t byte() { return static_cast<std::uint8_t>(next() >> 24); }

  template <typename Bytes>
  void fill(Bytes& bytes) {
    for (auto& value : bytes) value = byte();
  }

private:
  std::uint32_t state_;
};

}  // namespace kxtest
