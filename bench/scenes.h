// Where the pixel benchmarks draw: positions, lines, rectangles, a maze, triangles.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "pictures.h"

namespace kxbench {

struct Point {
  std::int32_t x, y;
};

struct Line {
  std::int32_t x1, y1, x2, y2;
};

struct Rectangle {
  std::int32_t x, y, width, height;
};

struct Corner {
  std::int32_t x, y, u, v;
  std::uint32_t shade;
};

struct Triangle {
  Corner corners[3];
};

constexpr std::int32_t spriteSize = 64;
constexpr Point mazeStart = {323, 243};
constexpr std::uint8_t mazeOpen = 0x21, mazeWall = 0x5A, mazeFill = 0x77;

std::vector<Point> makeSpritePositions();
std::vector<Line> makeLines();
std::vector<Point> makePoints();
std::vector<Rectangle> makeRectangles();

/// Value of each pixel of the frame, row by row: open or wall.
Bytes makeMaze();

/// `count` triangles in boxes of `box` pixels.
std::vector<Triangle> makeTriangles(int count, std::int32_t box, std::uint32_t seed);
inline std::vector<Triangle> makeSmallTriangles() { return makeTriangles(2000, 50, 0x7121); }
inline std::vector<Triangle> makeLargeTriangles() { return makeTriangles(20, 400, 0x7122); }

/// Pixels of the longer axis of all lines.
std::int64_t pixelsOf(const std::vector<Line>& lines);
std::int64_t pixelsOf(const std::vector<Rectangle>& rectangles);
/// Twice the area of one.
std::int64_t doubleArea(const Triangle& triangle);
std::int64_t pixelsOf(const std::vector<Triangle>& triangles);

}  // namespace kxbench
