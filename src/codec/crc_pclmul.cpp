// CRC-32 by carry-less multiplication: eight 16-byte accumulators are moved over the data, each step multiplying what
// they hold by the power of x that the distance stands for, modulo the polynomial.
// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "codec/crc.h"

namespace kx {

namespace {

/// x^n modulo the polynomial, bits reflected, one place to the left: the product of two reflected numbers comes out one
/// place too far to the right.
constexpr std::uint64_t power(int n) {
  std::uint32_t x = 0x80000000;
  for (; n > 0; --n) x = (x >> 1) ^ ((x & 1) != 0 ? 0xEDB88320u : 0u);
  return std::uint64_t{x} << 1;
}

/// Moves an accumulator `Bytes` ahead. The 32 bits up and down come from the constants filling half of their words.
template <int Bytes>
inline __m128i moveAhead(__m128i accumulator) {
  constexpr std::uint64_t low = power(8 * Bytes + 32);
  constexpr std::uint64_t high = power(8 * Bytes - 32);
  const __m128i factors = _mm_set_epi64x(static_cast<long long>(high), static_cast<long long>(low));
  return _mm_xor_si128(_mm_clmulepi64_si128(accumulator, factors, 0x00),
                       _mm_clmulepi64_si128(accumulator, factors, 0x11));
}

inline __m128i load(const std::uint8_t* data) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(data)); }

}  // namespace

std::size_t foldCrc(std::uint32_t crc, const std::uint8_t* data, std::size_t length, std::uint8_t (&folded)[16]) {
  constexpr int lanes = 8;
  constexpr std::size_t step = 16 * lanes;
  static_assert(step == shortestCrcFold);

  const std::uint8_t* at = data;
  __m128i lane[lanes];
  for (int i = 0; i < lanes; ++i) lane[i] = load(at + 16 * i);
  lane[0] = _mm_xor_si128(lane[0], _mm_cvtsi32_si128(static_cast<int>(crc)));
  at += step;
  for (length -= step; length >= step; length -= step, at += step)
    for (int i = 0; i < lanes; ++i) lane[i] = _mm_xor_si128(moveAhead<step>(lane[i]), load(at + 16 * i));

  __m128i all = lane[0];
  for (int i = 1; i < lanes; ++i) all = _mm_xor_si128(moveAhead<16>(all), lane[i]);
  for (; length >= 16; length -= 16, at += 16) all = _mm_xor_si128(moveAhead<16>(all), load(at));
  _mm_storeu_si128(reinterpret_cast<__m128i*>(folded), all);
  return static_cast<std::size_t>(at - data);
}

}  // namespace kx
