// Blocks of sixteen pixels in vectors of AVX2. All code has internal linkage.
// SPDX-License-Identifier: MIT
#pragma once

#include <immintrin.h>

#include "render3d/triangle_span.h"

namespace kx {

namespace {

struct Blocks16 {
  static constexpr int bytes = 32;
  using Words = Vectors<bytes>::Words;
  using UnsignedWords = Vectors<bytes>::UnsignedWords;
  using Halves = Vectors<bytes>::Halves;

  /// Single loads are faster than the gather instructions of many processors, and read nothing beside the texel.
  static Halves texels(const std::uint8_t* base, const Words& even, const Words& odd) {
    const TexelOffsets<bytes> offsets(even, odd);
    const auto eight = [&](int i) {
      __m128i texels = _mm_loadu_si16(base + offsets.even[i]);
      texels = _mm_insert_epi16(texels, loadTexel(base + offsets.odd[i]), 1);
      texels = _mm_insert_epi16(texels, loadTexel(base + offsets.even[i + 1]), 2);
      texels = _mm_insert_epi16(texels, loadTexel(base + offsets.odd[i + 1]), 3);
      texels = _mm_insert_epi16(texels, loadTexel(base + offsets.even[i + 2]), 4);
      texels = _mm_insert_epi16(texels, loadTexel(base + offsets.odd[i + 2]), 5);
      texels = _mm_insert_epi16(texels, loadTexel(base + offsets.even[i + 3]), 6);
      return _mm_insert_epi16(texels, loadTexel(base + offsets.odd[i + 3]), 7);
    };
    return reinterpret_cast<Halves>(_mm256_set_m128i(eight(4), eight(0)));
  }

  static Halves interleave(UnsignedWords even, UnsignedWords odd) {
    return reinterpret_cast<Halves>(
        _mm256_blend_epi16(reinterpret_cast<__m256i>(even), reinterpret_cast<__m256i>(odd), 0xAA));
  }
};

}  // namespace

}  // namespace kx
