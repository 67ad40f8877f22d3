// Triangle spans in blocks of eight pixels.
// SPDX-License-Identifier: MIT
#include "render3d/triangle_short_copy.h"
#include "render3d/triangle_span.h"

namespace kx {

namespace {

struct Sse2Access {
  static constexpr int bytes = 16;
  using Words = Vectors<bytes>::Words;
  using UnsignedWords = Vectors<bytes>::UnsignedWords;
  using Halves = Vectors<bytes>::Halves;

  static Halves texels(const std::uint8_t* base, const Words& even, const Words& odd) {
    const TexelOffsets<bytes> offsets(even, odd);
    const auto texel = [&](const Words& words, int i) { return loadTexel(base + words[i]); };
    return Halves{texel(offsets.even, 0), texel(offsets.odd, 0), texel(offsets.even, 1), texel(offsets.odd, 1),
                  texel(offsets.even, 2), texel(offsets.odd, 2), texel(offsets.even, 3), texel(offsets.odd, 3)};
  }

  static Halves interleave(UnsignedWords even, UnsignedWords odd) {
    return reinterpret_cast<Halves>((even & 0xFFFFu) | (odd & 0xFFFF0000u));
  }

  static Halves loadPart(const void* p, std::int32_t count) {
    Halves pixels = {};
    copyShortRun(&pixels, p, count);
    return pixels;
  }

  static void storePart(void* p, const Halves& pixels, std::int32_t count) { copyShortRun(p, &pixels, count); }
};

template <int GreenShift, bool Blended, bool Limited>
using Filler = VectorFiller<Sse2Access, GreenShift, Blended, Limited>;

}  // namespace

TriangleKernels triangleKernelsSse2() { return makeTriangleKernels<Filler>(); }

}  // namespace kx
