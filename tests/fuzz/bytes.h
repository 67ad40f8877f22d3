// Reading decisions from the bytes of a fuzz input. Past the end everything is 0.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace kxtest {

class ByteReader {
public:
  ByteReader(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}

  [[nodiscard]] bool empty() const { return at_ == end_; }
  [[nodiscard]] std::size_t left() const { return static_cast<std::size_t>(end_ - at_); }
  [[nodiscard]] const std::uint8_t* rest() const { return at_; }

  std::uint8_t byte() { return at_ == end_ ? std::uint8_t{0} : *at_++; }

  /// 0 to n - 1, for n up to 65536.
  std::uint32_t below(std::uint32_t n) {
    const std::uint32_t value = n <= 256 ? byte() : byte() | std::uint32_t{byte()} << 8;
    return value % n;
  }

  std::int32_t between(std::int32_t low, std::int32_t high) {
    return low + static_cast<std::int32_t>(below(static_cast<std::uint32_t>(high - low) + 1));
  }

  std::uint32_t word() {
    std::uint32_t value = 0;
    for (int shift = 0; shift < 32; shift += 8) value |= std::uint32_t{byte()} << shift;
    return value;
  }

private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
};

}  // namespace kxtest
