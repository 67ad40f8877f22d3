// Comparing a block of bytes with another, one bit of the answer for each byte.
// SPDX-License-Identifier: MIT
#pragma once

#include <climits>
#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace kx {

/// Bit i: byte i of both blocks is equal.
using EqualityMask = std::size_t;

/// Bytes in a block.
constexpr unsigned equalityBlock = sizeof(EqualityMask) * CHAR_BIT;

inline EqualityMask compareBytes(const std::uint8_t* a, const std::uint8_t* b) {
  EqualityMask mask = 0;
#ifdef __SSE2__
  for (unsigned i = 0; i < equalityBlock; i += 16) {
    const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i));
    const __m128i y = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i));
    mask |= EqualityMask{static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(x, y)))} << i;
  }
#else
  for (unsigned i = 0; i < equalityBlock; ++i) mask |= EqualityMask{a[i] == b[i]} << i;
#endif
  return mask;
}

}  // namespace kx
