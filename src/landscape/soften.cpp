// Smoothing a rectangle or a round area of the height map.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>

#include "frame/heap.h"
#include "landscape/map_access.h"
#include "landscape/round_area.h"
#include "landscape/kernels.h"

namespace kx {

namespace {

/// A changed copy of the height map that takes the old one's place when it is complete. All reads see the old map.
class HeightCopy {
public:
  explicit HeightCopy(Landscape& landscape)
      : landscape_(landscape),
        heights_(makeHeapArray<std::uint8_t>(cellCount(landscape))),
        sums_(makeHeapArray<std::uint16_t>(static_cast<std::uint64_t>(landscape.width) + 2)) {
    if (complete()) std::memcpy(heights_.get(), landscape.heightMap, asSize(cellCount(landscape)));
  }

  [[nodiscard]] bool complete() const { return heights_ && sums_; }

  /// Smooths the cells x .. x + count - 1 of row y, none of them on the map's rim, into `out`.
  void smoothRow(std::uint8_t* out, std::int64_t x, std::int64_t y, std::int64_t count) const {
    const std::uint8_t* row = landscape_.heightMap + cellIndex(landscape_, x - 1, y);
    const auto cells = static_cast<std::size_t>(count);
    landscapeKernels->sumColumns(sums_.get(), row - landscape_.width, row, row + landscape_.width, cells + 2);
    landscapeKernels->smoothSums(out, sums_.get(), cells);
  }

  std::uint8_t* cell(std::int64_t x, std::int64_t y) { return heights_.get() + cellIndex(landscape_, x, y); }

  /// Lets the rim of a rectangle of at least 2 x 2 cells repeat its inner neighbours: left, right, top, bottom.
  void copyRim(const CellRect& rect) {
    const std::int64_t right = rect.x + rect.w - 1;
    const std::int64_t bottom = rect.y + rect.h - 1;
    for (std::int64_t y = rect.y; y <= bottom; ++y) *cell(rect.x, y) = *cell(rect.x + 1, y);
    for (std::int64_t y = rect.y; y <= bottom; ++y) *cell(right, y) = *cell(right - 1, y);
    std::memmove(cell(rect.x, rect.y), cell(rect.x, rect.y + 1), static_cast<std::size_t>(rect.w));
    std::memmove(cell(rect.x, bottom), cell(rect.x, bottom - 1), static_cast<std::size_t>(rect.w));
  }

  void replaceMap() {
    mmgr_free(landscape_.heightMap);
    landscape_.heightMap = heights_.release();
  }

private:
  Landscape& landscape_;
  HeapArray<std::uint8_t> heights_;
  HeapArray<std::uint16_t> sums_;
};

Result soften(Landscape* landscape, const CellRect& rect) {
  if (rect.w < 2 || rect.h < 2) return Result::Ok;
  HeightCopy copy(*landscape);
  if (!copy.complete()) return Result::OutOfMemory;
  for (std::int64_t y = rect.y + 1; y < rect.y + rect.h - 1 && rect.w > 2; ++y)
    copy.smoothRow(copy.cell(rect.x + 1, y), rect.x + 1, y, rect.w - 2);
  copy.copyRim(rect);
  copy.replaceMap();
  return Result::Ok;
}

Result softenRound(Landscape* landscape, const RoundArea& area) {
  KX_TRY(checkWritable(landscape));
  AreaMask mask;
  KX_TRY(makeAreaMask(&mask, *landscape, area));
  const CellRect rect = wholeMap(*landscape);
  if (rect.w < 2 || rect.h < 2) return Result::Ok;

  HeightCopy copy(*landscape);
  const HeapArray<std::uint8_t> smooth = makeHeapArray<std::uint8_t>(static_cast<std::uint64_t>(rect.w));
  if (!copy.complete() || !smooth) return Result::OutOfMemory;
  for (std::int64_t y = 1; y < rect.h - 1 && rect.w > 2; ++y) {
    copy.smoothRow(smooth.get() + 1, 1, y, rect.w - 2);
    const std::uint16_t* inside = mask.get() + cellIndex(*landscape, 0, y);
    std::uint8_t* row = copy.cell(0, y);
    for (std::int64_t x = 1; x < rect.w - 1; ++x)
      if (inside[x] != 0) row[x] = smooth[static_cast<std::size_t>(x)];
  }
  copy.copyRim(rect);
  copy.replaceMap();
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL LS_softenHeightMap(Landscape* landscape, std::int32_t x, std::int32_t y, std::int32_t w,
                                         std::int32_t h) {
  if (kx::isBadWritePointer(landscape)) return toCode(kx::Result::IllegalParameter);
  return toCode(kx::soften(landscape, kx::cutToMap(*landscape, x, y, w, h)));
}

std::uint32_t KX_CALL LS_softenHeightMapRound(Landscape* landscape, std::uint32_t seed, std::int32_t cx,
                                              std::int32_t cy, std::int32_t rMin, std::int32_t rMax,
                                              std::int32_t roughness) {
  return toCode(kx::softenRound(landscape, {seed, cx, cy, rMin, rMax, roughness}));
}
