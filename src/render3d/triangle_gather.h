// Texels by the gather instructions of AVX2, in blocks of sixteen pixels. All code has internal linkage.
// SPDX-License-Identifier: MIT
#pragma once

#include <immintrin.h>

#include "render3d/triangle_span.h"

namespace kx {

namespace {

struct GatherAccess {
  static constexpr int bytes = 32;
  using Words = Vectors<bytes>::Words;
  using UnsignedWords = Vectors<bytes>::UnsignedWords;
  using Halves = Vectors<bytes>::Halves;

  /// The aligned words that hold the texels: nothing past the block is read.
  static UnsignedWords wordsAround(const std::uint8_t* base, Words offset) {
    const auto index = reinterpret_cast<__m256i>(offset >> 2);
    return reinterpret_cast<UnsignedWords>(_mm256_i32gather_epi32(reinterpret_cast<const int*>(base), index, 4));
  }

  /// 16 for a texel in the high half of its word, else 0.
  static UnsignedWords halfShift(Words offset) { return reinterpret_cast<UnsignedWords>((offset & 2) << 3); }

  static Halves texels(const std::uint8_t* base, Words even, Words odd) {
    return interleave(wordsAround(base, even) >> halfShift(even), wordsAround(base, odd) << (halfShift(odd) ^ 16u));
  }

  static Halves interleave(UnsignedWords even, UnsignedWords odd) {
    return reinterpret_cast<Halves>(
        _mm256_blend_epi16(reinterpret_cast<__m256i>(even), reinterpret_cast<__m256i>(odd), 0xAA));
  }
};

}  // namespace

}  // namespace kx
