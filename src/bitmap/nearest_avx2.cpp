// The nearest-entry search with AVX2: 32 entries a step.
// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "bitmap/nearest_vector.h"

namespace kx {

namespace {

struct Bytes32 {
  using Register = __m256i;
  static constexpr std::uint32_t width = 32;

  static Register load(const std::uint8_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
  /// Each half of the register takes its own 48 bytes.
  static Register loadThird(const std::uint8_t* p, int third) {
    return _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(p + 48 + 16 * third),
                               reinterpret_cast<const __m128i*>(p + 16 * third));
  }
  static void store(std::uint8_t* p, Register x) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), x); }
  static Register splat(std::uint8_t x) { return _mm256_set1_epi8(static_cast<char>(x)); }
  static Register interleaveLow(Register x, Register y) { return _mm256_unpacklo_epi8(x, y); }
  static Register highHalf(Register x) { return _mm256_unpackhi_epi64(x, x); }
  static Register add(Register x, Register y) { return _mm256_adds_epu8(x, y); }
  static Register subtract(Register x, Register y) { return _mm256_subs_epu8(x, y); }
  static Register either(Register x, Register y) { return _mm256_or_si256(x, y); }
  static Register complement(Register x) { return _mm256_xor_si256(x, _mm256_set1_epi8(-1)); }
  static Register minimum(Register x, Register y) { return _mm256_min_epu8(x, y); }

  static std::uint32_t equalBytes(Register x, Register y) {
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(_mm256_cmpeq_epi8(x, y)));
  }

  static std::uint8_t leastByte(Register x) {
    __m128i half = _mm_min_epu8(_mm256_castsi256_si128(x), _mm256_extracti128_si256(x, 1));
    half = _mm_min_epu8(half, _mm_srli_epi16(half, 8));
    // The upper byte of each word is now at least the lower one's; drop it for the search over words.
    half = _mm_minpos_epu16(_mm_and_si128(half, _mm_set1_epi16(0xFF)));
    return static_cast<std::uint8_t>(_mm_cvtsi128_si32(half));
  }
};

}  // namespace

NearestKernels nearestKernelsAvx2() { return {splitVector<Bytes32>, findVector<Bytes32, 0>}; }

}  // namespace kx
