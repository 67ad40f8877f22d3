// Triangle spans in blocks of sixteen pixels, with masked access to the last block.
// SPDX-License-Identifier: MIT
#include "render3d/triangle_blocks16.h"

namespace kx {

namespace {

struct Avx512Access : Blocks16 {
  static __mmask16 lowest(std::int32_t count) { return static_cast<__mmask16>((1u << count) - 1); }

  static Halves loadPart(const void* p, std::int32_t count) {
    return reinterpret_cast<Halves>(_mm256_maskz_loadu_epi16(lowest(count), p));
  }

  static void storePart(void* p, Halves pixels, std::int32_t count) {
    _mm256_mask_storeu_epi16(p, lowest(count), reinterpret_cast<__m256i>(pixels));
  }
};

template <int GreenShift, bool Blended, bool Limited>
using Filler = VectorFiller<Avx512Access, GreenShift, Blended, Limited>;

}  // namespace

TriangleKernels triangleKernelsAvx512() { return makeTriangleKernels<Filler>(); }

}  // namespace kx
