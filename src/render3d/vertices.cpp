// Reading and ordering the corners of a triangle.
// SPDX-License-Identifier: MIT
#include "render3d/vertices.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace kx {

namespace {

/// Both kinds of vertex record are six words.
using VertexWords = std::array<std::uint32_t, 6>;
static_assert(sizeof(VertexWords) == sizeof(VertexFloat) && sizeof(VertexWords) == sizeof(VertexInt));
enum VertexWord { WordX, WordY, WordZ, WordU, WordV, WordShade };

VertexWords readWords(const void* vertices, std::size_t index) {
  VertexWords words;
  std::memcpy(&words, static_cast<const char*>(vertices) + index * sizeof words, sizeof words);
  return words;
}

std::int32_t coordinate(std::uint32_t word, VertexFields fields, Rounding rounding) {
  if (fields == VertexFields::Floats) return toCoordinate(word, rounding);
  return std::clamp(static_cast<std::int32_t>(word), -greatestCoordinate, greatestCoordinate);
}

}  // namespace

std::int32_t toCoordinate(std::uint32_t floatBits, Rounding rounding) {
  constexpr std::uint32_t mantissaBits = 23;
  constexpr std::uint32_t hiddenBit = 1u << mantissaBits;
  constexpr std::uint32_t exponentOfHalf = 126;
  constexpr std::uint32_t exponentBeyond = 127 + 15;  // magnitudes from 32768
  constexpr std::uint32_t exponentOfNan = 255;

  const std::uint32_t exponent = (floatBits >> mantissaBits) & 0xFF;
  const std::uint32_t fraction = floatBits & (hiddenBit - 1);
  if (exponent < exponentOfHalf || (exponent == exponentOfNan && fraction != 0)) return 0;
  std::uint32_t magnitude = greatestCoordinate;
  if (exponent < exponentBeyond) {
    const std::uint32_t mantissa = fraction | hiddenBit;
    const std::uint32_t shift = 127 + mantissaBits - exponent;  // 9 to 24: what lies behind the point
    magnitude = mantissa >> shift;
    if (rounding == Rounding::ToNearest) {
      const std::uint32_t rest = mantissa & ((1u << shift) - 1);
      const std::uint32_t half = 1u << (shift - 1);
      if (rest > half || (rest == half && (magnitude & 1) != 0)) ++magnitude;
      magnitude = std::min<std::uint32_t>(magnitude, greatestCoordinate);
    }
  }
  const auto value = static_cast<std::int32_t>(magnitude);
  return (floatBits >> 31) != 0 ? -value : value;
}

std::array<std::int32_t, 3> readColumns(const void* vertices, VertexFields fields) {
  std::array<std::int32_t, 3> columns;
  for (std::size_t i = 0; i < columns.size(); ++i)
    columns[i] = coordinate(readWords(vertices, i)[WordX], fields, Rounding::ToNearest);
  return columns;
}

Corners readCorners(const void* vertices, VertexFields fields, Rounding rounding) {
  Corners corners;
  for (std::size_t i = 0; i < corners.size(); ++i) {
    const VertexWords words = readWords(vertices, i);
    corners[i] = {.x = coordinate(words[WordX], fields, rounding),
                  .y = coordinate(words[WordY], fields, rounding),
                  .z = 0,
                  .u = coordinate(words[WordU], fields, rounding),
                  .v = coordinate(words[WordV], fields, rounding),
                  .shade = words[WordShade]};
  }
  return corners;
}

bool orderCorners(Corners& corners) {
  std::size_t top = corners[0].y <= corners[1].y ? 0 : 1;
  if (corners[top].y > corners[2].y) top = 2;
  std::rotate(corners.begin(), corners.begin() + static_cast<std::ptrdiff_t>(top), corners.end());
  if (corners[1].y > corners[2].y) std::swap(corners[1], corners[2]);
  if (corners[0].y != corners[1].y) return true;
  if (corners[0].y == corners[2].y || corners[0].x == corners[1].x) return false;
  if (corners[0].x > corners[1].x) std::swap(corners[0], corners[1]);
  return true;
}

}  // namespace kx
