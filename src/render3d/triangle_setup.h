// From three ordered corners to the edges of a triangle.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "render3d/triangle_lanes.h"
#include "render3d/vertices.h"

namespace kx {

/// A triangle ready to be drawn row by row. Every value of every row and pixel lies between those of the corners.
struct Triangle {
  Edge left, right;  ///< from the top row
  Edge lower;        ///< from the middle corner down: what a side goes on with when its rows run out
  std::int32_t top;  ///< first row
  std::int32_t rows;
};

/// The edges between corners that orderCorners() has ordered.
void setUpTriangle(Triangle& triangle, const Corners& corners);

}  // namespace kx
