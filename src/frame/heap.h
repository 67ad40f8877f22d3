// The library's memory. Every block comes from mmgr_alloc and goes back through mmgr_free; a failure is a null pointer.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>

extern "C" {
void* mmgr_alloc(std::size_t size);
void mmgr_free(void* block);
}

namespace kx {

/// Largest block the library asks for, in bytes: 2^31 - 1. A larger need counts as a failed allocation.
constexpr std::uint64_t largestBlock = 0x7FFFFFFF;

/// `size` bytes or null.
inline void* allocateBytes(std::uint64_t size) {
  return size > largestBlock ? nullptr : mmgr_alloc(static_cast<std::size_t>(size));
}

/// `count` elements, not initialised, or null.
template <typename T>
T* allocateArray(std::uint64_t count) {
  static_assert(std::is_trivially_copyable_v<T>);
  return count > largestBlock / sizeof(T) ? nullptr : static_cast<T*>(allocateBytes(count * sizeof(T)));
}

struct HeapDelete {
  void operator()(void* block) const { mmgr_free(block); }
};

/// A block that is freed with its scope unless it is released.
template <typename T>
using HeapArray = std::unique_ptr<T[], HeapDelete>;

template <typename T>
HeapArray<T> makeHeapArray(std::uint64_t count) {
  return HeapArray<T>(allocateArray<T>(count));
}

/// A record of the interface, freed with its scope unless it is released.
template <typename T>
using HeapRecord = std::unique_ptr<T, HeapDelete>;

/// A zeroed record, or null.
template <typename T>
HeapRecord<T> makeRecord() {
  static_assert(std::is_trivially_copyable_v<T>);
  T* record = static_cast<T*>(allocateBytes(sizeof(T)));
  if (record != nullptr) *record = T{};
  return HeapRecord<T>(record);
}

}  // namespace kx
