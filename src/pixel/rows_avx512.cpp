// Row kernels for AVX-512 with byte permutations.
// SPDX-License-Identifier: MIT
#include "pixel/avx512.h"
#include "pixel/rows_vector.h"

namespace kx {

namespace {

struct Avx512 {
  using Reg = __m512i;
  static constexpr std::size_t bytes = 64;

  static Reg load(const void* p) { return _mm512_loadu_si512(p); }
  static void store(void* p, Reg a) { _mm512_storeu_si512(p, a); }

  /// The lowest bytes of a register; the others are loaded as 0 and not stored.
  class Part {
  public:
    explicit Part(std::size_t count) : bytes_(lowest(count)) {}
    Reg load(const void* p) const { return _mm512_maskz_loadu_epi8(bytes_, p); }
    void store(void* p, Reg a) const { _mm512_mask_storeu_epi8(p, bytes_, a); }

  private:
    __mmask64 bytes_;
  };

  static Reg zero() { return _mm512_setzero_si512(); }
  static Reg splat8(std::uint32_t value) { return _mm512_set1_epi8(static_cast<char>(value)); }
  static Reg splat16(std::uint32_t value) { return _mm512_set1_epi16(static_cast<short>(value)); }
  static Reg splat32(std::uint32_t value) { return _mm512_set1_epi32(static_cast<int>(value)); }

  static Reg both(Reg a, Reg b) { return _mm512_and_si512(a, b); }
  static Reg either(Reg a, Reg b) { return _mm512_or_si512(a, b); }
  static Reg differ(Reg a, Reg b) { return _mm512_xor_si512(a, b); }
  static Reg without(Reg a, Reg mask) { return _mm512_andnot_si512(mask, a); }
  static Reg select(Reg mask, Reg a, Reg b) { return _mm512_ternarylogic_epi64(mask, a, b, 0xCA); }
  static Reg odd16(Reg even, Reg odd) { return _mm512_mask_blend_epi16(0xAAAAAAAA, even, odd); }
  static Reg equal8(Reg a, Reg b) { return _mm512_movm_epi8(_mm512_cmpeq_epi8_mask(a, b)); }
  static Reg equal16(Reg a, Reg b) { return _mm512_movm_epi16(_mm512_cmpeq_epi16_mask(a, b)); }

  static Reg add8(Reg a, Reg b) { return _mm512_add_epi8(a, b); }
  static Reg addSaturated8(Reg a, Reg b) { return _mm512_adds_epu8(a, b); }
  static Reg subSaturated8(Reg a, Reg b) { return _mm512_subs_epu8(a, b); }
  static Reg min8(Reg a, Reg b) { return _mm512_min_epu8(a, b); }
  static Reg add16(Reg a, Reg b) { return _mm512_add_epi16(a, b); }
  static Reg sub16(Reg a, Reg b) { return _mm512_sub_epi16(a, b); }
  static Reg mulLow16(Reg a, Reg b) { return _mm512_mullo_epi16(a, b); }
  static Reg mulHigh16(Reg a, Reg b) { return _mm512_mulhi_epu16(a, b); }
  template <unsigned Count>
  static Reg sll16(Reg a) {
    return _mm512_slli_epi16(a, Count);
  }
  template <unsigned Count>
  static Reg srl16(Reg a) {
    return _mm512_srli_epi16(a, Count);
  }

  static Reg unpackLow8(Reg a, Reg b) { return _mm512_unpacklo_epi8(a, b); }
  static Reg unpackHigh8(Reg a, Reg b) { return _mm512_unpackhi_epi8(a, b); }
  static Reg unpackLow16(Reg a, Reg b) { return _mm512_unpacklo_epi16(a, b); }
  static Reg unpackHigh16(Reg a, Reg b) { return _mm512_unpackhi_epi16(a, b); }
  static Reg pack16(Reg low, Reg high) { return _mm512_packus_epi16(low, high); }

  /// Masks of 16-bit lanes to bytes, in the order of memory.
  static Reg packMask16(Reg low, Reg high) {
    return _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), _mm512_packs_epi16(low, high));
  }

  /// Bytes to 16-bit lanes.
  static Reg widen8(const std::uint8_t* p) {
    return _mm512_cvtepu8_epi16(_mm256_loadu_si256(static_cast<const __m256i*>(static_cast<const void*>(p))));
  }

  /// Each byte three times.
  static Triple<Avx512> triple(const std::uint8_t* p) {
    const Reg source = load(p);
    Triple<Avx512> out = loadTriple<Avx512>(interleaving.element);
    for (Reg& r : out.r) r = _mm512_permutexvar_epi8(r, source);
    return out;
  }

  /// Weights of the low and the high byte of each lane.
  using Weights = Reg;
  static Weights weights(Reg pairs) { return pairs; }

  /// Sum of both bytes, below 128, by their weights.
  static Reg weigh(Reg pairs, Weights w) { return _mm512_maddubs_epi16(w, pairs); }
};

}  // namespace

RowKernels improveRowsAvx512(RowKernels base) { return improveWith<Avx512>(base); }

}  // namespace kx
