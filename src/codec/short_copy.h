// Copying a few bytes: neither a call nor a byte too many.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>

namespace kx {

/// Copies `bytes` (at least 1); up to 4 without a branch on how many, more in two pieces that overlap.
inline void copyShort(std::uint8_t* dst, const std::uint8_t* src, std::size_t bytes) {
  const auto bothEnds = [=](auto first) {
    auto last = first;
    std::memcpy(&first, src, sizeof first);
    std::memcpy(&last, src + bytes - sizeof last, sizeof last);
    std::memcpy(dst, &first, sizeof first);
    std::memcpy(dst + bytes - sizeof last, &last, sizeof last);
  };
  struct Sixteen {
    std::uint64_t low, high;
  };
  if (bytes <= 4) {
    for (const std::size_t i : {std::size_t{0}, bytes / 2, (bytes - 1) / 2, bytes - 1}) dst[i] = src[i];
  } else if (bytes <= 8) {
    bothEnds(std::uint32_t{});
  } else if (bytes <= 16) {
    bothEnds(std::uint64_t{});
  } else if (bytes <= 32) {
    bothEnds(Sixteen{});
  } else {
    std::memcpy(dst, src, bytes);
  }
}

}  // namespace kx
