// Row kernels for SSE2.
// SPDX-License-Identifier: MIT
#include <emmintrin.h>

#include "pixel/rows_vector.h"

namespace kx {

namespace {

struct Sse2 {
  using Reg = __m128i;
  static constexpr std::size_t bytes = 16;

  static Reg load(const void* p) { return _mm_loadu_si128(static_cast<const Reg*>(p)); }
  static void store(void* p, Reg a) { _mm_storeu_si128(static_cast<Reg*>(p), a); }
  static Reg zero() { return _mm_setzero_si128(); }
  static Reg splat8(std::uint32_t value) { return _mm_set1_epi8(static_cast<char>(value)); }
  static Reg splat16(std::uint32_t value) { return _mm_set1_epi16(static_cast<short>(value)); }
  static Reg splat32(std::uint32_t value) { return _mm_set1_epi32(static_cast<int>(value)); }

  static Reg both(Reg a, Reg b) { return _mm_and_si128(a, b); }
  static Reg either(Reg a, Reg b) { return _mm_or_si128(a, b); }
  static Reg differ(Reg a, Reg b) { return _mm_xor_si128(a, b); }
  static Reg without(Reg a, Reg mask) { return _mm_andnot_si128(mask, a); }
  static Reg select(Reg mask, Reg a, Reg b) { return either(both(a, mask), without(b, mask)); }
  static Reg odd16(Reg even, Reg odd) { return select(splat32(0xFFFF0000), odd, even); }
  static Reg equal8(Reg a, Reg b) { return _mm_cmpeq_epi8(a, b); }
  static Reg equal16(Reg a, Reg b) { return _mm_cmpeq_epi16(a, b); }

  static Reg add8(Reg a, Reg b) { return _mm_add_epi8(a, b); }
  static Reg addSaturated8(Reg a, Reg b) { return _mm_adds_epu8(a, b); }
  static Reg subSaturated8(Reg a, Reg b) { return _mm_subs_epu8(a, b); }
  static Reg min8(Reg a, Reg b) { return _mm_min_epu8(a, b); }
  static Reg add16(Reg a, Reg b) { return _mm_add_epi16(a, b); }
  static Reg sub16(Reg a, Reg b) { return _mm_sub_epi16(a, b); }
  static Reg mulLow16(Reg a, Reg b) { return _mm_mullo_epi16(a, b); }
  static Reg mulHigh16(Reg a, Reg b) { return _mm_mulhi_epu16(a, b); }
  template <unsigned Count>
  static Reg sll16(Reg a) {
    return _mm_slli_epi16(a, Count);
  }
  template <unsigned Count>
  static Reg srl16(Reg a) {
    return _mm_srli_epi16(a, Count);
  }

  static Reg unpackLow8(Reg a, Reg b) { return _mm_unpacklo_epi8(a, b); }
  static Reg unpackHigh8(Reg a, Reg b) { return _mm_unpackhi_epi8(a, b); }
  static Reg unpackLow16(Reg a, Reg b) { return _mm_unpacklo_epi16(a, b); }
  static Reg unpackHigh16(Reg a, Reg b) { return _mm_unpackhi_epi16(a, b); }
  static Reg pack16(Reg low, Reg high) { return _mm_packus_epi16(low, high); }

  /// Masks of 16-bit lanes to bytes, in the order of memory.
  static Reg packMask16(Reg low, Reg high) { return _mm_packs_epi16(low, high); }

  /// Bytes to 16-bit lanes.
  static Reg widen8(const std::uint8_t* p) {
    return unpackLow8(_mm_loadl_epi64(static_cast<const Reg*>(static_cast<const void*>(p))), zero());
  }

  /// Each byte three times.
  static Triple<Sse2> triple(const std::uint8_t* p) {
    std::uint8_t wide[3 * bytes];
    for (std::size_t i = 0; i < sizeof wide; ++i) wide[i] = p[i / 3];
    return loadTriple<Sse2>(wide);
  }

  /// Weights of the low and the high byte of each lane.
  struct Weights {
    Reg low, high;
  };
  static Weights weights(Reg pairs) { return {both(pairs, splat16(0x00FF)), srl16<8>(pairs)}; }

  /// Sum of both bytes by their weights.
  static Reg weigh(Reg pairs, Weights w) {
    return add16(mulLow16(both(pairs, splat16(0x00FF)), w.low), mulLow16(srl16<8>(pairs), w.high));
  }
};

}  // namespace

RowKernels improveRowsSse2(RowKernels base) { return improveWith<Sse2>(base); }

}  // namespace kx
