// Pointer tests without a system call: points and lines make millions of them.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace kx::platform {

/// The first pages of the address space are never mapped; small numbers passed as pointers end up there.
constexpr std::uintptr_t lowestGoodAddress = 65536;

inline bool isReadable(const void* p) { return reinterpret_cast<std::uintptr_t>(p) >= lowestGoodAddress; }
inline bool isWritable(const void* p) { return isReadable(p); }

}  // namespace kx::platform
