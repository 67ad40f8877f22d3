// Triangle spans in blocks of sixteen pixels.
// SPDX-License-Identifier: MIT
#include "render3d/triangle_blocks16.h"
#include "render3d/triangle_short_copy.h"

namespace kx {

namespace {

struct Avx2Access : Blocks16 {
  static Halves loadPart(const void* p, std::int32_t count) {
    Halves pixels = {};
    copyShortRun(&pixels, p, count);
    return pixels;
  }

  static void storePart(void* p, const Halves& pixels, std::int32_t count) { copyShortRun(p, &pixels, count); }
};

template <int GreenShift, bool Blended, bool Limited>
using Filler = VectorFiller<Avx2Access, GreenShift, Blended, Limited>;

}  // namespace

TriangleKernels triangleKernelsAvx2() { return makeTriangleKernels<Filler>(); }

}  // namespace kx
