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
  static Register loadThird(const std::uint8_t* p, int third) { return load(p + 16 * third); }
  static void store(std::uint8_t* p, Register x) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), x); }
  static Register splat(std::uint8_t x) { return _mm_set1_epi8(static_cast<char>(x)); }
  static Register interleaveLow(Register x, Register y) { return _mm_unpacklo_epi8(x, y); }
  static Register highHalf(Register x) { return _mm_unpackhi_epi64(x, x); }
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

}  // namespace

NearestKernels nearestKernelsSse2() { return {splitVector<Bytes16>, findVector<Bytes16, 0>}; }

}  // namespace kx
