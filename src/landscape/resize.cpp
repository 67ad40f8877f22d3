// Growing a landscape by a border and cropping it to its textured part.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <limits>

#include "frame/heap.h"
#include "landscape/map_access.h"

namespace kx {

namespace {

/// Copies rows of `bytes` from one map into another, both with a row length of their own in bytes.
void copyRows(std::uint8_t* to, std::size_t toRow, const std::uint8_t* from, std::size_t fromRow, std::size_t bytes,
              std::int64_t rows) {
  for (std::int64_t y = 0; y < rows; ++y, to += toRow, from += fromRow) std::memcpy(to, from, bytes);
}

/// A cleared map of the new size whose cells from `toCell` on take the old map's from `fromCell` on; null when there is
/// no memory.
struct Relocation {
  std::int64_t newWidth, newHeight;     ///< cells
  std::int64_t toX, toY, fromX, fromY;  ///< first cell written and first cell read
  std::int64_t width, height;           ///< cells copied

  [[nodiscard]] HeapArray<std::uint8_t> apply(const void* map, std::int64_t oldWidth, unsigned cellBytes) const {
    const std::uint64_t size = cellCount(newWidth, newHeight) * cellBytes;
    HeapArray<std::uint8_t> moved = makeHeapArray<std::uint8_t>(size);
    if (!moved) return moved;
    std::memset(moved.get(), 0, static_cast<std::size_t>(size));
    const auto bytes = [&](std::int64_t cells) { return static_cast<std::size_t>(cells) * cellBytes; };
    copyRows(moved.get() + bytes(toY * newWidth + toX), bytes(newWidth),
             static_cast<const std::uint8_t*>(map) + bytes(fromY * oldWidth + fromX), bytes(oldWidth), bytes(width),
             height);
    return moved;
  }
};

Result relocate(Landscape& landscape, const Relocation& relocation) {
  if (relocation.newWidth > std::numeric_limits<std::int32_t>::max() ||
      relocation.newHeight > std::numeric_limits<std::int32_t>::max())
    return Result::OutOfMemory;
  const std::int64_t oldWidth = landscape.width;
  HeapArray<std::uint8_t> heights = relocation.apply(landscape.heightMap, oldWidth, 1);
  HeapArray<std::uint8_t> textures;
  HeapArray<std::uint8_t> lights;
  if (heights) textures = relocation.apply(landscape.textureMap, oldWidth, 2);
  if (textures) lights = relocation.apply(landscape.lightMap, oldWidth, resizedLightBytes(landscape.colourLight));
  if (!lights) return Result::OutOfMemory;

  mmgr_free(landscape.heightMap);
  mmgr_free(landscape.textureMap);
  mmgr_free(landscape.lightMap);
  landscape.heightMap = heights.release();
  landscape.textureMap = static_cast<std::uint16_t*>(static_cast<void*>(textures.release()));
  landscape.lightMap = lights.release();
  landscape.width = static_cast<std::int32_t>(relocation.newWidth);
  landscape.height = static_cast<std::int32_t>(relocation.newHeight);
  std::fill_n(landscape.drawingState, 4, 0U);
  return Result::Ok;
}

Result expand(Landscape* landscape, std::int32_t border) {
  KX_TRY(checkWritable(landscape));
  if (border <= 0) return Result::IllegalParameter;
  const std::int64_t width = landscape->width;
  const std::int64_t height = landscape->height;
  return relocate(*landscape, {width + 2 * std::int64_t{border}, height + 2 * std::int64_t{border}, border, border, 0,
                               0, width, height});
}

/// Cells of the map's textured part, inclusive. Settled: the last row and the last column are never looked at.
struct Bounds {
  std::int64_t left, top, right, bottom;
};

Bounds findTextured(const Landscape& landscape) {
  Bounds bounds{landscape.width, landscape.height, -1, -1};
  for (std::int64_t y = 0; y < landscape.height - 1; ++y)
    for (std::int64_t x = 0; x < landscape.width - 1; ++x) {
      if (landscape.textureMap[cellIndex(landscape, x, y)] == 0) continue;
      bounds.left = std::min(bounds.left, x);
      bounds.top = std::min(bounds.top, y);
      bounds.right = std::max(bounds.right, x);
      bounds.bottom = std::max(bounds.bottom, y);
    }
  return bounds;
}

Result minimize(Landscape* landscape) {
  KX_TRY(checkWritable(landscape));
  const Bounds found = findTextured(*landscape);
  if (found.left >= found.right || found.top >= found.bottom) return Result::Ok;
  const std::int64_t width = found.right - found.left + 2;
  const std::int64_t height = found.bottom - found.top + 2;
  return relocate(*landscape, {width, height, 0, 0, found.left, found.top, width, height});
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL LS_expandLandscape(Landscape* landscape, std::int32_t border) {
  return toCode(kx::expand(landscape, border));
}

std::uint32_t KX_CALL LS_minimizeLandscape(Landscape* landscape) { return toCode(kx::minimize(landscape)); }
