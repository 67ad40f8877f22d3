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

Lanes cornerLanes(const VertexInt& corner) {
  Lanes lanes = {};
  lanes.value[LaneX] = corner.x * 0x10000;
  lanes.value[LaneU] = corner.u * 0x10000;
  lanes.value[LaneV] = corner.v * 0x10000;
  lanes.value[LaneRed] = shadeChannel(corner.shade, 2, 23);
  lanes.value[LaneGreen] = shadeChannel(corner.shade, 1, 18);
  lanes.value[LaneBlue] = shadeChannel(corner.shade, 0, 13);
  return lanes;
}

/// Rows count both ends.
Edge makeEdge(const VertexInt& from, const VertexInt& to) {
  Edge edge;
  edge.at = cornerLanes(from);
  edge.rows = to.y - from.y + 1;
  divideLanes(edge.step, edge.at, cornerLanes(to), edge.rows);
  return edge;
}

}  // namespace

Triangle setUpTriangle(const Corners& corners) {
  Triangle triangle;
  triangle.top = corners[0].y;
  triangle.right = makeEdge(corners[1], corners[2]);
  triangle.lower = triangle.right;
  if (corners[0].y == corners[1].y) {
    triangle.left = makeEdge(corners[0], corners[2]);
    triangle.rows = triangle.left.rows;
    return triangle;
  }
  triangle.left = makeEdge(corners[0], corners[1]);
  triangle.right = makeEdge(corners[0], corners[2]);
  triangle.rows = std::max(triangle.left.rows, triangle.right.rows);
  if (triangle.right.step.value[LaneX] < triangle.left.step.value[LaneX]) std::swap(triangle.left, triangle.right);
  return triangle;
}

}  // namespace kx
