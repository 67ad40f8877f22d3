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
  static Register splat(std::uint8_t x) { return _mm256_set1_epi8(static_cast<char>(x)); }
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

/// For 48 bytes in three registers: byte j of one of them, and of only one, belongs to a given channel. Chosen by
/// `everyThird`, a channel's 16 bytes are in one register, and `order` sorts them. Twice, for both halves of a
/// register.
struct SplitTables {
  std::uint8_t everyThird[3][32] = {};
  std::uint8_t order[3][32] = {};

  constexpr SplitTables() {
    for (int channel = 0; channel < 3; ++channel)
      for (int j = 0; j < 32; ++j) {
        everyThird[channel][j] = j % 16 % 3 == channel ? 0xFF : 0;
        order[channel][j] = static_cast<std::uint8_t>((3 * j + channel) % 16);
      }
  }
};

constexpr SplitTables splitTables;

void splitAvx2(PalettePlanes* planes, const std::uint8_t* palette) {
  std::uint8_t* const outputs[] = {planes->b, planes->g, planes->r};
  for (int i = 0; i < 256; i += 32, palette += 96) {
    __m256i thirds[3];
    for (int k = 0; k < 3; ++k)
      thirds[k] = _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(palette + 48 + 16 * k),
                                      reinterpret_cast<const __m128i*>(palette + 16 * k));
    for (int channel = 0; channel < 3; ++channel) {
      const auto pick = [&](__m256i rest, int k) {
        // Byte j of register k is byte 16 k + j of the 48, of channel (k + j) mod 3.
        return _mm256_blendv_epi8(rest, thirds[k], Bytes32::load(splitTables.everyThird[(channel + 3 - k) % 3]));
      };
      const __m256i mixed = pick(pick(thirds[0], 1), 2);
      const __m256i sorted = _mm256_shuffle_epi8(mixed, Bytes32::load(splitTables.order[channel]));
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(outputs[channel] + i), sorted);
    }
  }
}

}  // namespace

NearestKernels nearestKernelsAvx2() { return {splitAvx2, findVector<Bytes32, 0>}; }

}  // namespace kx
