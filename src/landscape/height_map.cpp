// Making height maps: clearing, the midpoint subdivision, and moving the lowest height to a given one.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "landscape/map_access.h"
#include "landscape/random.h"

namespace kx {

namespace {

Result clear(Landscape* landscape) {
  KX_TRY(checkWritable(landscape));
  std::memset(landscape->heightMap, 0, asSize(cellCount(*landscape)));
  return Result::Ok;
}

/// Fills a map by midpoint subdivision. Cells of height 0 count as not set yet.
class Subdivision {
public:
  Subdivision(Landscape& landscape, LandscapeRandom& random, std::int64_t roughness, std::int64_t lowest,
              std::int64_t highest)
      : landscape_(landscape), random_(random), roughness_(roughness), lowest_(lowest), highest_(highest) {}

  /// The block of w x h cells whose top left cell is (x, y); its corners are set.
  void divide(std::int64_t x, std::int64_t y, std::int64_t w, std::int64_t h) {
    if (w <= 2 || h <= 2) return;
    const std::int64_t middleX = w >> 1;
    const std::int64_t middleY = h >> 1;
    const std::int64_t right = x + w - 1;
    const std::int64_t bottom = y + h - 1;
    const int topLeft = at(x, y);
    const int topRight = at(right, y);
    const int bottomLeft = at(x, bottom);
    const int bottomRight = at(right, bottom);
    place(x + middleX, y, (topLeft + topRight) >> 1);
    place(x, y + middleY, (topLeft + bottomLeft) >> 1);
    place(x + middleX, bottom, (bottomLeft + bottomRight) >> 1);
    place(right, y + middleY, (topRight + bottomRight) >> 1);
    place(x + middleX, y + middleY, (topLeft + topRight + bottomLeft + bottomRight) >> 2);

    // The quarters share their middle row and column. The displacement is the same at every depth.
    divide(x, y, middleX + 1, middleY + 1);
    divide(x + middleX, y, w - middleX, middleY + 1);
    divide(x, y + middleY, middleX + 1, h - middleY);
    divide(x + middleX, y + middleY, w - middleX, h - middleY);
  }

private:
  std::uint8_t& at(std::int64_t x, std::int64_t y) { return landscape_.heightMap[cellIndex(landscape_, x, y)]; }

  void place(std::int64_t x, std::int64_t y, int mean) {
    std::uint8_t& cell = at(x, y);
    if (cell != 0) return;
    const std::int64_t displacement = random_.next() % (2 * roughness_ + 1) - roughness_;
    cell = static_cast<std::uint8_t>(std::clamp(mean + displacement, lowest_, highest_));
  }

  Landscape& landscape_;
  LandscapeRandom& random_;
  std::int64_t roughness_;
  std::int64_t lowest_;
  std::int64_t highest_;
};

Result create(Landscape* landscape, std::uint32_t seed, const std::uint32_t* corners, std::int32_t roughness,
              std::int32_t minHeight, std::int32_t maxHeight) {
  KX_TRY(checkWritable(landscape));
  if (corners != nullptr && isBadReadPointer(corners)) return Result::IllegalParameter;
  if (minHeight < 0 || maxHeight > 255 || maxHeight <= minHeight) return Result::IllegalParameter;
  if (roughness < 1) return Result::IllegalParameter;

  KX_TRY(clear(landscape));
  LandscapeRandom random;
  random.seed(effectiveSeed(seed));
  const std::int64_t right = landscape->width - 1;
  const std::int64_t bottom = landscape->height - 1;
  const std::size_t cells[4] = {cellIndex(*landscape, 0, 0), cellIndex(*landscape, right, 0),
                                cellIndex(*landscape, 0, bottom), cellIndex(*landscape, right, bottom)};
  for (int i = 0; i < 4; ++i) {
    std::uint8_t& cell = landscape->heightMap[cells[i]];
    // In a map one cell wide or high the corners fall together and the first one stays.
    if (cell != 0) continue;
    const auto range = static_cast<std::uint32_t>(maxHeight - minHeight + 1);
    cell = static_cast<std::uint8_t>(
        corners != nullptr ? corners[i] : static_cast<std::uint32_t>(minHeight) + random.next() % range);
  }
  Subdivision(*landscape, random, roughness, minHeight, maxHeight).divide(0, 0, landscape->width, landscape->height);
  return Result::Ok;
}

Result setOrigin(Landscape* landscape, std::uint32_t origin) {
  KX_TRY(checkWritable(landscape));
  std::uint8_t* heights = landscape->heightMap;
  const std::size_t cells = asSize(cellCount(*landscape));
  int lowest = 255;
  int highest = 0;
  for (std::size_t i = 0; i < cells; ++i) {
    // Settled: a height that is a new lowest is not looked at for the highest.
    if (heights[i] < lowest)
      lowest = heights[i];
    else if (heights[i] > highest)
      highest = heights[i];
  }
  if (highest - lowest + std::int64_t{origin} > 255) return Result::Ok;
  for (std::size_t i = 0; i < cells; ++i)
    heights[i] = static_cast<std::uint8_t>(heights[i] - lowest + static_cast<std::int64_t>(origin));
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL LS_clearHeightMap(Landscape* landscape) { return toCode(kx::clear(landscape)); }

std::uint32_t KX_CALL LS_createHeightMap(Landscape* landscape, std::uint32_t seed, const std::uint32_t* corners,
                                         std::int32_t roughness, std::int32_t minHeight, std::int32_t maxHeight) {
  return toCode(kx::create(landscape, seed, corners, roughness, minHeight, maxHeight));
}

std::uint32_t KX_CALL LS_setHeightMapOrigin(Landscape* landscape, std::uint32_t origin) {
  return toCode(kx::setOrigin(landscape, origin));
}
