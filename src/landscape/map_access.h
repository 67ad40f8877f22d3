// What the landscape functions share: sizes of maps and the rectangle rule.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "kxgraphic/landscape.h"

namespace kx {

inline std::uint64_t cellCount(std::int64_t width, std::int64_t height) {
  return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
}

inline std::uint64_t cellCount(const Landscape& landscape) { return cellCount(landscape.width, landscape.height); }

/// Index of cell (x, y) in every map.
inline std::size_t cellIndex(const Landscape& landscape, std::int64_t x, std::int64_t y) {
  return static_cast<std::size_t>(y * landscape.width + x);
}

/// Bytes of memory that exist, so that they fit the address space.
inline std::size_t asSize(std::uint64_t bytes) { return static_cast<std::size_t>(bytes); }

/// Bytes of light a cell keeps in clones and data blocks: red, green, blue, or one intensity.
inline unsigned storedLightBytes(std::uint32_t colourLight) { return colourLight == 1 ? 3 : 1; }

/// Bytes of light a cell takes when the landscape is resized, which is also what is allocated.
/// Settled: any flag but 0 counts as coloured here, where clones and data blocks want exactly 1.
inline unsigned resizedLightBytes(std::uint32_t colourLight) { return colourLight != 0 ? 3 : 1; }

/// A rectangle cut to the map.
struct CellRect {
  std::int64_t x, y, w, h;

  [[nodiscard]] bool empty() const { return w < 1 || h < 1; }
};

/// A negative size means the map's; parts left of or above the map are cut off, and so is what passes its far edges.
inline CellRect cutToMap(const Landscape& landscape, std::int64_t x, std::int64_t y, std::int64_t w, std::int64_t h) {
  const std::int64_t width = landscape.width;
  const std::int64_t height = landscape.height;
  if (w < 0) w = width;
  if (h < 0) h = height;
  if (x < 0) {
    w += x;
    x = 0;
  }
  if (y < 0) {
    h += y;
    y = 0;
  }
  if (x + w > width - 1) w = width - x;
  if (y + h > height - 1) h = height - y;
  return {x, y, w, h};
}

/// The whole map.
inline CellRect wholeMap(const Landscape& landscape) { return {0, 0, landscape.width, landscape.height}; }

}  // namespace kx
