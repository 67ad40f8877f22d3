// Places and ways of whole numbers.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

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

}  // namespace demo
