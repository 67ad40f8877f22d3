// Fails the 1st, 2nd, 3rd ... allocation of a call in turn, until the call needs no further one, and checks what it
// promises about each failure. Example:
//
//   Bitmap* bitmap = kxtest::garbagePointer<Bitmap>();
//   kxtest::sweepAllocations({.call = [&] { return KX_createBitmap(&bitmap, 4, 4, KX_FORMAT_565, 0, 0, methods); },
//                             .release = [&] { KX_deleteBitmap(bitmap); },
//                             .untouched = {kxtest::bytesOf(bitmap)}});
//
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace kxtest {

struct AllocationSweep {
  /// The call under test; returns its result code. Only its allocations fail.
  std::function<std::uint32_t()> call;
  /// Undoes a call that succeeded.
  std::function<void()> release = [] {};
  /// Memory that a failed call must leave as it was (read after `prepare` and again after the call).
  std::vector<std::span<const std::byte>> untouched = {};
  /// Run before and after every attempt, for a call that changes an object; their allocations never fail.
  std::function<void()> prepare = [] {};
  std::function<void()> cleanup = [] {};
  /// More to check after a failed attempt, before `cleanup`.
  std::function<void()> checkFailure = [] {};
  std::uint32_t failureCode = 2;
  std::uint32_t successCode = 0;
  /// Blocks that the call is settled to leak when its k-th allocation (from 1) fails. The sweep frees them.
  std::function<std::size_t(unsigned k)> leaked = [](unsigned) { return std::size_t{0}; };
};

/// Runs the sweep with GoogleTest expectations. Returns the number of allocations the call makes.
unsigned sweepAllocations(const AllocationSweep& sweep);

/// An object as bytes, for AllocationSweep::untouched.
template <typename T>
std::span<const std::byte> bytesOf(const T& object) {
  return std::as_bytes(std::span<const T, 1>(&object, 1));
}

/// What an output pointer holds before a call: neither null nor usable.
template <typename T>
T* garbagePointer() {
  return reinterpret_cast<T*>(std::uintptr_t{0xABCDEF01});
}

}  // namespace kxtest
