// What the triangle kernels of all instruction sets take, and the table of the chosen ones.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "render3d/triangle_setup.h"

namespace kx {

/// One triangle on one target. `clip...` lie inside the target; the rows of the triangle end at the clip's bottom.
struct TriangleJob {
  Triangle triangle;
  std::int32_t clipLeft, clipRight, clipTop;  ///< pixels, inclusive
  std::uint8_t* pixels;                       ///< first row of the target
  std::ptrdiff_t pitch;                       ///< bytes
  const std::uint8_t* texels;                 ///< rows of 2^widthCode bytes
  std::int32_t widthCode;                     ///< 0 to 31
  std::int32_t lastTexel;                     ///< greatest byte offset of a texel in the block
  std::int32_t alpha;                         ///< 0 to 255, weight of the target
};

/// What is fixed for a whole triangle.
struct TriangleVariant {
  bool is565;
  bool blended;
  bool limited;  ///< texel addresses may lie outside the block and are limited to it
};

struct TriangleKernels {
  using Draw = void (*)(const TriangleJob& job);

  Draw draw[2][2][2];  ///< 5-5-5 or 5-6-5, blended, limited

  [[nodiscard]] Draw of(TriangleVariant variant) const { return draw[variant.is565][variant.blended][variant.limited]; }
};

/// One pixel after the other: the meaning of all others, and right where target and texture share memory.
TriangleKernels triangleKernelsPortable();
TriangleKernels triangleKernelsSse2();
TriangleKernels triangleKernelsAvx2();
TriangleKernels triangleKernelsAvx512();

}  // namespace kx
