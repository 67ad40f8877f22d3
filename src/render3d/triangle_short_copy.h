// Copying part of a block of pixels with few branches. All code has internal linkage.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kx {

namespace {

/// Copies Bytes at each end of a run of `size` bytes; the two may overlap.
template <int Bytes>
inline void copyEnds(std::uint8_t* to, const std::uint8_t* from, std::int32_t size) {
  __builtin_memcpy(to, from, Bytes);
  __builtin_memcpy(to + size - Bytes, from + size - Bytes, Bytes);
}

/// Copies `count` pixels of 16 bits, 1 to 15, between separate places.
inline void copyShortRun(void* to, const void* from, std::int32_t count) {
  auto* out = static_cast<std::uint8_t*>(to);
  const auto* in = static_cast<const std::uint8_t*>(from);
  const std::int32_t size = 2 * count;
  if (count >= 8)
    copyEnds<16>(out, in, size);
  else if (count >= 4)
    copyEnds<8>(out, in, size);
  else if (count >= 2)
    copyEnds<4>(out, in, size);
  else
    __builtin_memcpy(out, in, 2);
}

}  // namespace

}  // namespace kx
