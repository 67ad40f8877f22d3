// Reading and writing pixels in memory of any alignment. Internal linkage, for kernels of every instruction set.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <cstring>

namespace kx {

static inline std::uint16_t load16(const void* p) {
  std::uint16_t value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

static inline void store16(void* p, std::uint32_t value) {
  const auto low = static_cast<std::uint16_t>(value);
  std::memcpy(p, &low, sizeof low);
}

static inline std::uint32_t load32(const void* p) {
  std::uint32_t value;
  std::memcpy(&value, p, sizeof value);
  return value;
}

static inline void store32(void* p, std::uint32_t value) { std::memcpy(p, &value, sizeof value); }

/// Three bytes, low byte first.
static inline std::uint32_t load24(const void* p) {
  return load16(p) | static_cast<std::uint32_t>(static_cast<const std::uint8_t*>(p)[2]) << 16;
}

static inline void store24(void* p, std::uint32_t value) {
  store16(p, value);
  static_cast<std::uint8_t*>(p)[2] = static_cast<std::uint8_t>(value >> 16);
}

}  // namespace kx
