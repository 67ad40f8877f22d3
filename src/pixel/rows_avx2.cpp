// Row kernels for AVX2.
// SPDX-License-Identifier: MIT
#include <immintrin.h>

#include "pixel/rows_vector.h"

namespace kx {

namespace {

struct Avx2 {
  using Reg = __m256i;
  static constexpr std::size_t bytes = 32;

  static Reg load(const void* p) { return _mm256_loadu_si256(static_cast<const Reg*>(p)); }
  static void store(void* p, Reg a) { _mm256_storeu_si256(static_cast<Reg*>(p), a); }
  static Reg zero() { return _mm256_setzero_si256(); }
  static Reg splat8(std::uint32_t value) { return _mm256_set1_epi8(static_cast<char>(value)); }
  static Reg splat16(std::uint32_t value) { return _mm256_set1_epi16(static_cast<short>(value)); }
  static Reg splat32(std::uint32_t value) { return _mm256_set1_epi32(static_cast<int>(value)); }

  static Reg both(Reg a, Reg b) { return _mm256_and_si256(a, b); }
  static Reg either(Reg a, Reg b) { return _mm256_or_si256(a, b); }
  static Reg differ(Reg a, Reg b) { return _mm256_xor_si256(a, b); }
  static Reg without(Reg a, Reg mask) { return _mm256_andnot_si256(mask, a); }
  static Reg select(Reg mask, Reg a, Reg b) { return _mm256_blendv_epi8(b, a, mask); }
  static Reg odd16(Reg even, Reg odd) { return _mm256_blend_epi16(even, odd, 0xAA); }
  static Reg equal8(Reg a, Reg b) { return _mm256_cmpeq_epi8(a, b); }
  static Reg equal16(Reg a, Reg b) { return _mm256_cmpeq_epi16(a, b); }

  static Reg add8(Reg a, Reg b) { return _mm256_add_epi8(a, b); }
  static Reg addSaturated8(Reg a, Reg b) { return _mm256_adds_epu8(a, b); }
  static Reg subSaturated8(Reg a, Reg b) { return _mm256_subs_epu8(a, b); }
  static Reg min8(Reg a, Reg b) { return _mm256_min_epu8(a, b); }
  static Reg add16(Reg a, Reg b) { return _mm256_add_epi16(a, b); }
  static Reg sub16(Reg a, Reg b) { return _mm256_sub_epi16(a, b); }
  static Reg mulLow16(Reg a, Reg b) { return _mm256_mullo_epi16(a, b); }
  static Reg mulHigh16(Reg a, Reg b) { return _mm256_mulhi_epu16(a, b); }
  template <unsigned Count>
  static Reg sll16(Reg a) {
    return _mm256_slli_epi16(a, Count);
  }
  template <unsigned Count>
  static Reg srl16(Reg a) {
    return _mm256_srli_epi16(a, Count);
  }

  static Reg unpackLow8(Reg a, Reg b) { return _mm256_unpacklo_epi8(a, b); }
  static Reg unpackHigh8(Reg a, Reg b) { return _mm256_unpackhi_epi8(a, b); }
  static Reg unpackLow16(Reg a, Reg b) { return _mm256_unpacklo_epi16(a, b); }
  static Reg unpackHigh16(Reg a, Reg b) { return _mm256_unpackhi_epi16(a, b); }
  static Reg pack16(Reg low, Reg high) { return _mm256_packus_epi16(low, high); }

  /// Masks of 16-bit lanes to bytes, in the order of memory.
  static Reg packMask16(Reg low, Reg high) {
    return _mm256_permute4x64_epi64(_mm256_packs_epi16(low, high), _MM_SHUFFLE(3, 1, 2, 0));
  }

  static __m128i loadHalf(const std::uint8_t* p) {
    return _mm_loadu_si128(static_cast<const __m128i*>(static_cast<const void*>(p)));
  }

  /// Bytes to 16-bit lanes.
  static Reg widen8(const std::uint8_t* p) { return _mm256_cvtepu8_epi16(loadHalf(p)); }

  /// Each byte three times. A half register of the result needs bytes 0-5, 5-10 or 10-15 of sixteen.
  static Triple<Avx2> triple(const std::uint8_t* p) {
    const __m128i begin = _mm_setr_epi8(0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5);
    const __m128i middle = _mm_setr_epi8(5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10);
    const __m128i end = _mm_setr_epi8(10, 11, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 15, 15, 15);
    return {{_mm256_shuffle_epi8(_mm256_broadcastsi128_si256(loadHalf(p)), _mm256_set_m128i(middle, begin)),
             _mm256_shuffle_epi8(load(p), _mm256_set_m128i(begin, end)),
             _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(loadHalf(p + 16)), _mm256_set_m128i(end, middle))}};
  }

  /// Weights of the low and the high byte of each lane.
  using Weights = Reg;
  static Weights weights(Reg pairs) { return pairs; }

  /// Sum of both bytes, below 128, by their weights.
  static Reg weigh(Reg pairs, Weights w) { return _mm256_maddubs_epi16(w, pairs); }
};

}  // namespace

RowKernels improveRowsAvx2(RowKernels base) { return improveWith<Avx2>(base); }

}  // namespace kx
