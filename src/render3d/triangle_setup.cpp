// Edge set-up of triangles.
// SPDX-License-Identifier: MIT
#include "render3d/triangle_setup.h"

#include <algorithm>
#include <utility>

namespace kx {

namespace {

/// Signed byte `index` of a shade word times 2^shift. Settled: the low three bits count for nothing.
std::int32_t shadeChannel(std::uint32_t shade, int index, int shift) {
  const auto byte = static_cast<std::int8_t>(shade >> (8 * index));
  return (byte & ~7) * (1 << shift);
}

void setLanes(Lanes& lanes, const VertexInt& corner) {
  lanes = Lanes{corner.x * 0x10000,
                corner.u * 0x10000,
                corner.v * 0x10000,
                shadeChannel(corner.shade, 2, 23),
                shadeChannel(corner.shade, 1, 18),
                shadeChannel(corner.shade, 0, 13),
                0,
                0};
}

/// Rows count both ends.
void setEdge(Edge& edge, const VertexInt& from, const VertexInt& to) {
  Lanes end;
  setLanes(edge.at, from);
  setLanes(end, to);
  edge.rows = to.y - from.y + 1;
  divideLanes(edge.step, edge.at, end, edge.rows);
}

}  // namespace

void setUpTriangle(Triangle& triangle, const Corners& corners) {
  triangle.top = corners[0].y;
  setEdge(triangle.lower, corners[1], corners[2]);
  if (corners[0].y == corners[1].y) {
    setEdge(triangle.left, corners[0], corners[2]);
    triangle.right = triangle.lower;
    triangle.rows = triangle.left.rows;
    return;
  }
  setEdge(triangle.left, corners[0], corners[1]);
  setEdge(triangle.right, corners[0], corners[2]);
  triangle.rows = std::max(triangle.left.rows, triangle.right.rows);
  if (triangle.right.step[laneX] < triangle.left.step[laneX]) std::swap(triangle.left, triangle.right);
}

}  // namespace kx
