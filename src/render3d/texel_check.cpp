// The check of texel coordinates in debug builds.
// SPDX-License-Identifier: MIT
#include "render3d/texel_check.h"

#include <cstdio>
#include <cstdlib>

namespace kx {

namespace {

[[noreturn]] void stop(int vertex, const VertexInt& corner, const Bitmap& level) {
  std::fprintf(stderr, "kxgraphic: vertex %d: texel (%d, %d) lies outside its %d x %d level\n", vertex,
               static_cast<int>(corner.u), static_cast<int>(corner.v), static_cast<int>(level.width),
               static_cast<int>(level.height));
  std::abort();
}

}  // namespace

TexelFault texelFault = stop;

void checkTexels([[maybe_unused]] const Corners& corners, [[maybe_unused]] const Bitmap& level) {
#ifndef NDEBUG
  for (int vertex = 0; vertex < 3; ++vertex) {
    const VertexInt& corner = corners[static_cast<std::size_t>(vertex)];
    // The far edges are allowed: the last pixel of a row and the last row lie one step before the corner's texel.
    if (corner.u < 0 || corner.v < 0 || corner.u > level.width || corner.v > level.height)
      texelFault(vertex, corner, level);
  }
#endif
}

}  // namespace kx
