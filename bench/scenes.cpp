// SPDX-License-Identifier: MIT
#include "scenes.h"

#include <algorithm>
#include <cstdlib>

#include "random.h"

namespace kxbench {

std::vector<Point> makeSpritePositions() {
  std::vector<Point> positions(200);
  Random random(0x5EED01);
  for (Point& at : positions) {
    at.x = random.below(frameWidth - spriteSize + 1);
    at.y = random.below(frameHeight - spriteSize + 1);
  }
  return positions;
}

std::vector<Line> makeLines() {
  std::vector<Line> lines(1000);
  Random random(0x11E5);
  for (Line& line : lines) {
    line.x1 = random.below(frameWidth);
    line.y1 = random.below(frameHeight);
    line.x2 = random.below(frameWidth);
    line.y2 = random.below(frameHeight);
  }
  return lines;
}

std::vector<Point> makePoints() {
  std::vector<Point> points(100000);
  Random random(0x901);
  for (Point& at : points) {
    at.x = random.below(frameWidth);
    at.y = random.below(frameHeight);
  }
  return points;
}

std::vector<Rectangle> makeRectangles() {
  std::vector<Rectangle> rectangles(1000);
  Random random(0x8EC7);
  for (Rectangle& each : rectangles) {
    each.width = 1 + random.below(128);
    each.height = 1 + random.below(96);
    each.x = random.below(frameWidth - each.width + 1);
    each.y = random.below(frameHeight - each.height + 1);
  }
  return rectangles;
}

Bytes makeMaze() {
  constexpr std::int32_t cell = 8, wall = 2;
  Bytes maze(std::size_t{frameWidth} * frameHeight, mazeWall);
  const auto open = [&](std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom) {
    for (std::int32_t y = top; y < bottom; ++y)
      std::fill_n(maze.begin() + y * frameWidth + left, right - left, mazeOpen);
  };
  Random random(0x3A2E);
  for (std::int32_t cy = 0; cy < frameHeight / cell; ++cy)
    for (std::int32_t cx = 0; cx < frameWidth / cell; ++cx) {
      const bool bit = random.next() >> 31 != 0;
      const bool toTheLeft = cx > 0 && (cy == 0 || bit);
      const bool upward = !toTheLeft && cy > 0;
      const std::int32_t x = cx * cell, y = cy * cell;
      open(toTheLeft ? x : x + wall, y + wall, x + cell, y + cell);
      if (upward) open(x + wall, y, x + cell, y + wall);
    }
  return maze;
}

std::vector<Triangle> makeTriangles(int count, std::int32_t box, std::uint32_t seed) {
  std::vector<Triangle> triangles;
  Random random(seed);
  while (triangles.size() < static_cast<std::size_t>(count)) {
    const std::int32_t left = random.below(frameWidth - box);
    const std::int32_t top = random.below(frameHeight - box);
    Triangle triangle{};
    for (Corner& corner : triangle.corners) {
      corner.x = left + random.below(box);
      corner.y = top + random.below(box);
      corner.u = random.below(256);
      corner.v = random.below(256);
      corner.shade = random.next() & 0xFFFFFF;
    }
    if (doubleArea(triangle) >= std::int64_t{box} * box / 5) triangles.push_back(triangle);
  }
  return triangles;
}

std::int64_t pixelsOf(const std::vector<Line>& lines) {
  std::int64_t pixels = 0;
  for (const Line& line : lines) pixels += std::max(std::abs(line.x2 - line.x1), std::abs(line.y2 - line.y1)) + 1;
  return pixels;
}

std::int64_t pixelsOf(const std::vector<Rectangle>& rectangles) {
  std::int64_t pixels = 0;
  for (const Rectangle& each : rectangles) pixels += std::int64_t{each.width} * each.height;
  return pixels;
}

std::int64_t doubleArea(const Triangle& triangle) {
  const Corner& a = triangle.corners[0];
  const Corner& b = triangle.corners[1];
  const Corner& c = triangle.corners[2];
  return std::abs((b.x - a.x) * (c.y - a.y) - (c.x - a.x) * (b.y - a.y));
}

std::int64_t pixelsOf(const std::vector<Triangle>& triangles) {
  std::int64_t twice = 0;
  for (const Triangle& triangle : triangles) twice += doubleArea(triangle);
  return twice / 2;
}

}  // namespace kxbench
