// Which bytes something takes up in memory, and whether others are among them.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>

namespace kx {

/// Bytes from `begin` to before `end`.
struct MemoryRange {
  std::uintptr_t begin = 0, end = 0;

  static MemoryRange of(const void* first, std::int64_t size) {
    const auto begin = reinterpret_cast<std::uintptr_t>(first);
    return {begin, begin + static_cast<std::uintptr_t>(size)};
  }

  /// From the lowest to the highest of `rows` rows of `rowBytes`, `pitch` bytes apart, whichever way they go. The first
  /// row begins at `first`.
  static MemoryRange ofRows(const void* first, std::int64_t rowBytes, std::int64_t pitch, std::int64_t rows) {
    const std::int64_t down = (rows - 1) * pitch;
    return of(static_cast<const char*>(first) + static_cast<std::intptr_t>(std::min<std::int64_t>(down, 0)),
              std::max(down, -down) + rowBytes);
  }

  [[nodiscard]] bool meets(const MemoryRange& other) const { return begin < other.end && other.begin < end; }
};

}  // namespace kx
