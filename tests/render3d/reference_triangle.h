// A plain triangle: the rules one pixel at a time, in 64 bits, sharing no code with the library.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "kxgraphic/types.h"

namespace kxtest {

struct ReferenceTriangle {
  std::int64_t clipLeft, clipTop, clipRight, clipBottom;  ///< inside the target
  const Bitmap* target;
  const Texture* texture;
  int alpha;  ///< weight of the target, or -1 for the variant without
};

void drawReference(const ReferenceTriangle& triangle, const VertexFloat (&vertices)[3]);
void drawReference(const ReferenceTriangle& triangle, const VertexInt (&vertices)[3]);

}  // namespace kxtest
