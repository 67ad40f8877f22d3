// Places and ways of whole numbers.
// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>

namespace demo {

struct Point {
  int x = 0, y = 0;
};

constexpr Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
constexpr Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
constexpr Point operator*(Point a, int b) { return {a.x * b, a.y * b}; }
constexpr Point operator/(Point a, int b) { return {a.x / b, a.y / b}; }
constexpr std::int64_t dot(Point a, Point b) { return std::int64_t{a.x} * b.x + std::int64_t{a.y} * b.y; }
constexpr std::int64_t cross(Point a, Point b) { return std::int64_t{a.x} * b.y - std::int64_t{a.y} * b.x; }

/// As far as `length` from 0 in a direction: 256ths of a turn, clockwise from the right.
inline Point pointing(int heading, int length) {
  const double angle = heading * std::numbers::pi / 128;
  return {static_cast<int>(std::lround(std::cos(angle) * length)),
          static_cast<int>(std::lround(std::sin(angle) * length))};
}

}  // namespace demo
