// The nearest-entry search with SSE2: 16 entries a step.
// SPDX-License-Identifier: MIT
#include <emmintrin.h>

#include "bitmap/nearest_vector.h"

namespace kx {

namespace {

struct Bytes16 {
  using Register = __m128i;
  static constexpr std::uint32_t width = 16;

  static Register load(const std::uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
  static Register splat(std::uint8_t x) { return _mm_set1_epi8(static_cast<char>(x)); }
  static Register add(Register x, Register y) { return _mm_adds_epu8(x, y); }
  static Register subtract(Register x, Register y) { return _mm_subs_epu8(x, y); }
  static Register either(Register x, Register y) { return _mm_or_si128(x, y); }
  static Register complement(Register x) { return _mm_xor_si128(x, _mm_set1_epi8(-1)); }
  static Register minimum(Register x, Register y) { return _mm_min_epu8(x, y); }

  static std::uint32_t equalBytes(Register x, Register y) {
    return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(x, y)));
  }

  static std::uint8_t leastByte(Register x) {
    x = _mm_min_epu8(x, _mm_srli_si128(x, 8));
    x = _mm_min_epu8(x, _mm_srli_si128(x, 4));
    x = _mm_min_epu8(x, _mm_srli_si128(x, 2));
    x = _mm_min_epu8(x, _mm_srli_si128(x, 1));
    return static_cast<std::uint8_t>(_mm_cvtsi128_si32(x));
  }
};

/// The perfect shuffle of 48 bytes (byte p goes to place 2p mod 47), done four times, takes triples of bytes apart.
void splitSse2(PalettePlanes* planes, const std::uint8_t* palette) {
  const auto interleave = [](__m128i x, __m128i y) { return _mm_unpacklo_epi8(x, y); };
  const auto highHalf = [](__m128i x) { return _mm_unpackhi_epi64(x, x); };
  const auto store = [](std::uint8_t* p, __m128i x) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), x); };
  for (int i = 0; i < 256; i += 16, palette += 48) {
    __m128i a = Bytes16::load(palette);
    __m128i b = Bytes16::load(palette + 16);
    __m128i c = Bytes16::load(palette + 32);
    for (int round = 0; round < 4; ++round) {
      const __m128i first = interleave(a, highHalf(b));
      const __m128i second = interleave(highHalf(a), c);
      c = interleave(b, highHalf(c));
      a = first;
      b = second;
    }
    store(planes->b + i, a);
    store(planes->g + i, b);
    store(planes->r + i, c);
  }
}

}  // namespace

NearestKernels nearestKernelsSse2() { return {splitSse2, findVector<Bytes16, 0>}; }

}  // namespace kx
