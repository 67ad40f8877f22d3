// The drawing workloads (groups h to l) as data.
// SPDX-License-Identifier: MIT
#pragma once

#include "scenes.h"
#include "works.h"

namespace kxbench {

enum class Drawing {
  Lines,
  Points,
  Rectangles,
  Maze,   ///< flood fill of a maze
  Solid,  ///< flood fill of an empty frame
  SmallTriangles,
  LargeTriangles,
  Grey,
  Brighten,
  Invert,
  MirrorX,
  MirrorY,
  Luminance
};

struct DrawWork {
  std::string name;
  Drawing drawing;
  std::uint32_t target;     ///< format code
  std::int32_t alpha = -1;  ///< weight of what is in the target, 0 to 255; below 0: not blended
  bool lit = true;          ///< triangles: a colour for each vertex
  bool deep = false;        ///< triangles: against a depth buffer that each round clears; peers only

  [[nodiscard]] std::int64_t pixels() const;
  [[nodiscard]] Picture makeTarget() const;
  [[nodiscard]] bool isTriangles() const {
    return drawing == Drawing::SmallTriangles || drawing == Drawing::LargeTriangles;
  }
  [[nodiscard]] std::vector<Triangle> triangles() const {
    return drawing == Drawing::SmallTriangles ? makeSmallTriangles() : makeLargeTriangles();
  }
};

const std::vector<DrawWork>& drawWorks();

/// What lines, points and rectangles are drawn in.
constexpr std::uint32_t drawColour = 0x5A;

constexpr std::int32_t textureSide = 256;

/// Depth of a triangle, 0 (near) to 1, where depths are tested: in no order.
constexpr float triangleDepth(std::size_t index) { return float(index * 37 % 101) / 101; }

}  // namespace kxbench
