// Measuring heights, stretching them, and finding hills and valleys.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <limits>

#include "landscape/map_access.h"
#include "landscape/round_area.h"

namespace kx {

namespace {

constexpr std::int32_t unmeasured = std::numeric_limits<std::int32_t>::max();

struct Measured {
  std::int64_t average = 0;
  std::int32_t lowest = 0;
  std::int32_t highest = 0;

  [[nodiscard]] bool flat() const { return lowest == highest; }
};

/// The heights of a rectangle's row. Settled: rows are counted from the top of the map; the rectangle's y only limits
/// how many there are. Landscapes built with these functions depend on it.
std::uint8_t* heightsOfRow(const Landscape& landscape, const CellRect& rect, std::int64_t row) {
  return landscape.heightMap + cellIndex(landscape, rect.x, row);
}

/// The average is one of truncated row averages.
Measured measure(const Landscape& landscape, const CellRect& rect) {
  if (rect.empty()) return {};
  Measured result{0, unmeasured, 0};
  for (std::int64_t row = 0; row < rect.h; ++row) {
    const std::uint8_t* heights = heightsOfRow(landscape, rect, row);
    std::int64_t sum = 0;
    for (std::int64_t x = 0; x < rect.w; ++x) {
      sum += heights[x];
      result.lowest = std::min<std::int32_t>(result.lowest, heights[x]);
      result.highest = std::max<std::int32_t>(result.highest, heights[x]);
    }
    result.average += sum / rect.w;
  }
  result.average /= rect.h;
  return result;
}

/// A height moved away from the average; `base` is what an average height becomes. The area is not flat.
std::uint8_t stretch(std::uint8_t height, const Measured& area, std::int64_t range, std::int64_t base) {
  const std::int64_t stretched = (height - area.average) * range / (area.highest - area.lowest) + base;
  return static_cast<std::uint8_t>(std::clamp<std::int64_t>(stretched, 0, 255));
}

bool isHeight(std::int32_t value) { return value >= 0 && value <= 255; }

Result grade(Landscape* landscape, std::int32_t base, std::int32_t range, std::int32_t x, std::int32_t y,
             std::int32_t w, std::int32_t h) {
  KX_TRY(checkWritable(landscape));
  if (!isHeight(base) || !isHeight(range)) return Result::IllegalParameter;
  const CellRect rect = cutToMap(*landscape, x, y, w, h);
  const Measured area = measure(*landscape, rect);
  if (area.flat()) return Result::Ok;
  std::uint8_t stretched[256];
  for (int height = 0; height < 256; ++height)
    stretched[height] = stretch(static_cast<std::uint8_t>(height), area, range, base);
  for (std::int64_t row = 0; row < rect.h; ++row) {
    std::uint8_t* heights = heightsOfRow(*landscape, rect, row);
    for (std::int64_t i = 0; i < rect.w; ++i) heights[i] = stretched[heights[i]];
  }
  return Result::Ok;
}

/// Only masked cells count, but each row's sum is divided by the full width and the sum of rows by the full height.
Measured measureMasked(const Landscape& landscape, const std::uint16_t* mask) {
  Measured result{0, unmeasured, 0};
  for (std::int64_t y = 0; y < landscape.height; ++y) {
    std::int64_t sum = 0;
    for (std::int64_t x = 0; x < landscape.width; ++x) {
      const std::size_t cell = cellIndex(landscape, x, y);
      if (mask[cell] == 0) continue;
      const std::int32_t height = landscape.heightMap[cell];
      sum += height;
      result.lowest = std::min(result.lowest, height);
      result.highest = std::max(result.highest, height);
    }
    result.average += sum / landscape.width;
  }
  result.average /= landscape.height;
  return result;
}

Result gradeRound(Landscape* landscape, const RoundArea& area, std::int32_t range) {
  KX_TRY(checkWritable(landscape));
  if (!isHeight(range)) return Result::IllegalParameter;
  AreaMask mask;
  KX_TRY(makeAreaMask(&mask, *landscape, area));
  const Measured masked = measureMasked(*landscape, mask.get());
  if (masked.flat()) return Result::Ok;
  const std::size_t cells = asSize(cellCount(*landscape));
  // Settled: here the average is added back, where the rectangle's grading adds a base of the caller's.
  for (std::size_t cell = 0; cell < cells; ++cell)
    if (mask[cell] != 0)
      landscape->heightMap[cell] = stretch(landscape->heightMap[cell], masked, range, masked.average);
  return Result::Ok;
}

Result getAverage(const Landscape* landscape, std::uint32_t* average, std::uint32_t* lowest, std::uint32_t* highest,
                  std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h) {
  KX_TRY(checkWritable(landscape, average, lowest, highest));
  const Measured area = measure(*landscape, cutToMap(*landscape, x, y, w, h));
  *average = static_cast<std::uint32_t>(area.average);
  *lowest = static_cast<std::uint32_t>(area.lowest);
  *highest = static_cast<std::uint32_t>(area.highest);
  return Result::Ok;
}

Result findHillValley(const Landscape* landscape, std::uint32_t* outX, std::uint32_t* outY, bool hill, std::int32_t x,
                      std::int32_t y, std::int32_t w, std::int32_t h) {
  KX_TRY(checkWritable(landscape, outX, outY));
  const CellRect rect = cutToMap(*landscape, x, y, w, h);
  std::int64_t foundX = 0;
  std::int64_t foundY = 0;
  std::int32_t best = hill ? 0 : unmeasured;
  for (std::int64_t row = 0; row < rect.h && !rect.empty(); ++row) {
    const std::uint8_t* heights = heightsOfRow(*landscape, rect, row);
    for (std::int64_t i = 0; i < rect.w; ++i) {
      const std::int32_t height = heights[i];
      if (hill ? height <= best : height >= best || height == 0) continue;
      best = height;
      foundX = rect.x + i;
      foundY = rect.y + row;
    }
  }
  *outX = static_cast<std::uint32_t>(foundX);
  *outY = static_cast<std::uint32_t>(foundY);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL LS_gradeHeightMap(Landscape* landscape, std::int32_t base, std::int32_t range, std::int32_t x,
                                        std::int32_t y, std::int32_t w, std::int32_t h) {
  return toCode(kx::grade(landscape, base, range, x, y, w, h));
}

std::uint32_t KX_CALL LS_gradeHeightMapRound(Landscape* landscape, std::uint32_t seed, std::int32_t cx, std::int32_t cy,
                                             std::int32_t rMin, std::int32_t rMax, std::int32_t roughness,
                                             std::int32_t range) {
  return toCode(kx::gradeRound(landscape, {seed, cx, cy, rMin, rMax, roughness}, range));
}

std::uint32_t KX_CALL LS_getAverageHeight(const Landscape* landscape, std::uint32_t* average, std::uint32_t* lowest,
                                          std::uint32_t* highest, std::int32_t x, std::int32_t y, std::int32_t w,
                                          std::int32_t h) {
  return toCode(kx::getAverage(landscape, average, lowest, highest, x, y, w, h));
}

std::uint32_t KX_CALL LS_findHillValley(const Landscape* landscape, std::uint32_t* outX, std::uint32_t* outY,
                                        std::uint8_t hill, std::int32_t x, std::int32_t y, std::int32_t w,
                                        std::int32_t h) {
  return toCode(kx::findHillValley(landscape, outX, outY, hill != 0, x, y, w, h));
}
