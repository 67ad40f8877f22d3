// Texel coordinates are the caller's duty: debug builds stop at a vertex whose texel lies outside its level.
// SPDX-License-Identifier: MIT
#pragma once

#include "kxgraphic/types.h"
#include "render3d/vertices.h"

namespace kx {

/// Told of vertex 0, 1 or 2 in the caller's order. The one installed at first prints a line and aborts; tests that pass
/// such vertices on purpose put their own in its place.
using TexelFault = void (*)(int vertex, const VertexInt& corner, const Bitmap& level);
extern TexelFault texelFault;

/// `corners` in the caller's order. Does nothing in release builds.
void checkTexels(const Corners& corners, const Bitmap& level);

}  // namespace kx
