// The water ripple map: one step of its waves, and an image seen through them.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "frame/checks.h"
#include "kxgraphic/landscape.h"
#include "landscape/kernels.h"
#include "pixel/memory.h"
#include "pixel/memory_range.h"

namespace kx {

namespace {

Result step(std::int16_t* target, std::int32_t targetPitch, const std::int16_t* current, std::int32_t currentPitch,
            std::int32_t width, std::int32_t height, std::uint8_t mode, std::int32_t damping) {
  KX_TRY(checkWritable(target, current));
  if (targetPitch == 0 || currentPitch == 0 || width < 1 || height < 1 || damping < 1 || damping > 15)
    return Result::IllegalParameter;
  if (mode > 1 || width < 3 || height < 3) return Result::Ok;

  const auto waveRow = mode == 0 ? landscapeKernels->waveFourNeighbours : landscapeKernels->waveEightNeighbours;
  auto* targetRow = reinterpret_cast<std::uint8_t*>(target) + 2;
  const auto* currentRow = reinterpret_cast<const std::uint8_t*>(current) + 2;
  for (std::int32_t y = 1; y < height - 1; ++y) {
    targetRow += targetPitch;
    currentRow += currentPitch;
    waveRow(targetRow, currentRow, currentPitch, static_cast<std::size_t>(width) - 2, damping);
  }
  return Result::Ok;
}

/// The low 16 bits, as the lanes of the channels take a number.
std::int16_t cut(std::int32_t value) { return static_cast<std::int16_t>(value); }

/// Greatest position in an image, as positions saturate at 16 bits.
constexpr std::int32_t farthest = std::numeric_limits<std::int16_t>::max();

/// The arguments of a refraction.
struct Refraction {
  std::uint8_t* dest;  ///< the first block's first pixel
  std::int32_t destPitch;
  const std::uint8_t* water;  ///< the first cell
  std::int32_t waterPitch;
  std::int32_t cellSize;
  std::int32_t cellsX, cellsY;
  const std::uint8_t* image;
  std::int32_t imageX, imageY, imageWidth, imageHeight, imagePitch;
  std::int32_t shadeShift;
  std::int16_t tint[3];

  void draw() const {
    // No block fits into a smaller image.
    if (imageWidth < cellSize || imageHeight < cellSize) return;
    switch (cellSize) {
      case 1:
        return drawCells<1>();
      case 2:
        return drawCells<2>();
      case 4:
        return drawCells<4>();
      case 8:
        return drawCells<8>();
      default:
        return drawCells<0>();
    }
  }

private:
  /// What is shaded at once.
  static constexpr std::int32_t mostPixels = 512;

  /// Cells of one row, side by side.
  struct Cells {
    const std::uint8_t* water;
    std::uint8_t* to;
    std::int64_t x, y;  ///< place in the image that the first one shows in still water
    std::int32_t count;

    [[nodiscard]] Cells part(std::int32_t first, std::int32_t some, std::int32_t size) const {
      return {water + std::ptrdiff_t{2} * first, to + std::ptrdiff_t{2} * first * size, x + std::int64_t{first} * size,
              y, some};
    }
  };

  /// Size: the cells' when it is known beforehand, else 0.
  template <std::int32_t Size>
  void drawCells() const {
    const std::int32_t size = Size != 0 ? Size : cellSize;
    const std::int32_t together = std::max(mostPixels / cellSize, 1);
    for (std::int64_t j = 0; j < cellsY; ++j) {
      const Cells row{water + j * waterPitch, dest + j * size * destPitch, imageX, imageY + j * size, cellsX};
      if (shadeShift == 0)
        copyCells<Size>(row);
      else
        for (std::int32_t i = 0, some = 0; i < cellsX; i += some) {
          some = std::min(together, cellsX - i);
          shadeCells<Size>(row.part(i, some, size));
        }
    }
  }

  /// Calls `use(k, from)` with the first pixel of each cell's block in the image.
  template <std::int32_t Size, typename Use>
  void findBlocks(const Cells& cells, Use use) const {
    const std::int32_t size = Size != 0 ? Size : cellSize;
    const std::int32_t lastX = std::min(imageWidth - size, farthest);
    const std::int32_t lastY = std::min(imageHeight - size, farthest);
    const std::int32_t y = nominal(cells.y);
    const std::uint8_t* cell = cells.water;
    for (std::int32_t k = 0; k < cells.count; ++k, cell += 2) {
      const std::int32_t height = cut(load16(cell));
      const std::int32_t right = cut(load16(cell + 2));
      const std::int32_t lower = cut(load16(cell + waterPitch));
      const std::int32_t x = nominal(cells.x + std::int64_t{k} * size);
      const std::int32_t fromX = std::clamp(x + (cut(height - right) >> 3), 0, lastX);
      const std::int32_t fromY = std::clamp(y + (cut(height - lower) >> 3), 0, lastY);
      use(k, image + std::ptrdiff_t{fromY} * imagePitch + std::ptrdiff_t{fromX} * 2);
    }
  }

  /// A position before the water moves it, by at most 2^12 pixels. What lies farther off ends at the same place.
  static std::int32_t nominal(std::int64_t position) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(position, 2 * farthest));
  }

  template <std::int32_t Size>
  void copyCells(const Cells& cells) const {
    const std::int32_t size = Size != 0 ? Size : cellSize;
    findBlocks<Size>(cells, [&](std::int32_t k, const std::uint8_t* from) {
      std::uint8_t* to = cells.to + std::ptrdiff_t{2} * k * size;
      for (std::int32_t row = 0; row < size; ++row, from += imagePitch, to += destPitch)
        std::memmove(to, from, static_cast<std::size_t>(size) * 2);
    });
  }

  /// The channels are always taken apart as 5-5-5. The shade comes first, then the tint.
  template <std::int32_t Size>
  void shadeCells(const Cells& cells) const {
    const std::int32_t size = Size != 0 ? Size : cellSize;
    const std::uint8_t *from[mostPixels], *lowest = nullptr, *highest = nullptr;
    std::int16_t shades[mostPixels];
    findBlocks<Size>(cells, [&](std::int32_t k, const std::uint8_t* block) {
      from[k] = block;
      lowest = k == 0 ? block : std::min(lowest, block);
      highest = k == 0 ? block : std::max(highest, block);
      const std::uint8_t* const cell = cells.water + std::ptrdiff_t{2} * k;
      const std::int32_t slope = cut(load16(cell)) - cut(load16(cell + waterPitch - 2));
      std::fill_n(shades + k * std::min(size, mostPixels), std::min(size, mostPixels),
                  cut((slope >> (shadeShift - 1)) * 4));
    });
    const bool alone = isApart(cells, lowest, highest, size);
    if (cells.count == 1) return shadeCell(cells.to, from[0], shades, alone ? mostPixels : 1);
    if (!alone) {
      for (std::int32_t k = 0; k < cells.count; ++k) shadeCells<Size>(cells.part(k, 1, size));
      return;
    }
    std::uint8_t pixels[2 * mostPixels];
    for (std::int64_t row = 0; row < size; ++row) {
      for (std::int32_t k = 0; k < cells.count; ++k)
        std::memcpy(pixels + 2 * k * size, from[k] + row * imagePitch, static_cast<std::size_t>(size) * 2);
      landscapeKernels->shadePixels(cells.to + row * destPitch, pixels, shades,
                                    static_cast<std::size_t>(cells.count) * static_cast<std::size_t>(size), tint);
    }
  }

  /// One cell's block, `most` pixels at a time.
  void shadeCell(std::uint8_t* to, const std::uint8_t* from, const std::int16_t* shades, std::int32_t most) const {
    for (std::int32_t row = 0; row < cellSize; ++row, from += imagePitch, to += destPitch)
      for (std::int32_t done = 0; done < cellSize; done += std::min(most, cellSize - done))
        landscapeKernels->shadePixels(to + std::ptrdiff_t{2} * done, from + std::ptrdiff_t{2} * done, shades,
                                      static_cast<std::size_t>(std::min(most, cellSize - done)), tint);
  }

  /// False where pixels drawn for these cells may be read for them, as image or as water, or drawn twice.
  [[nodiscard]] bool isApart(const Cells& cells, const std::uint8_t* lowest, const std::uint8_t* highest,
                             std::int32_t size) const {
    const std::int64_t width = std::int64_t{2} * size * cells.count;
    const auto drawn = MemoryRange::ofRows(cells.to, width, destPitch, size);
    const auto seen = MemoryRange::ofRows(lowest, highest - lowest + std::int64_t{2} * size, imagePitch, size);
    const auto heights = MemoryRange::of(cells.water, std::int64_t{2} * cells.count + 2);
    const auto lowerHeights = MemoryRange::of(cells.water + waterPitch - 2, std::int64_t{2} * cells.count + 2);
    const bool rowsApart = size == 1 || std::abs(std::int64_t{destPitch}) >= width;
    return rowsApart && !drawn.meets(seen) && !drawn.meets(heights) && !drawn.meets(lowerHeights);
  }
};

Result draw(std::uint16_t* dest, std::int32_t destX, std::int32_t destY, std::int32_t destPitch,
            const std::int16_t* water, std::int32_t waterPitch, std::int32_t cellSize, std::int32_t mapX,
            std::int32_t mapY, std::int32_t cellsX, std::int32_t cellsY, const std::uint16_t* image,
            std::int32_t imageX, std::int32_t imageY, std::int32_t imageWidth, std::int32_t imageHeight,
            std::int32_t imagePitch, std::uint8_t pixelFormat, std::int32_t shadeShift, const std::int8_t* tint) {
  KX_TRY(checkWritable(dest, water, image));
  if (destPitch == 0 || waterPitch == 0 || imagePitch == 0 || cellsX < 1 || cellsY < 1) return Result::IllegalParameter;
  if (mapX < 0 || mapY < 0) return Result::CoordinateOutOfRange;
  if (shadeShift < 0 || shadeShift > 16) return Result::IllegalParameter;
  if (destX < 0 || destY < 0 || imageX < 0 || imageY < 0) return Result::CoordinateOutOfRange;
  if (cellSize < 1) return Result::IllegalParameter;
  if (pixelFormat != KX_FORMAT_555 && pixelFormat != KX_FORMAT_565) return Result::ColorFormatNotSupported;
  if (shadeShift != 0 && isBadReadPointer(tint)) return Result::IllegalParameter;

  Refraction refraction{};
  refraction.dest = reinterpret_cast<std::uint8_t*>(dest) + std::int64_t{destY} * destPitch + std::int64_t{destX} * 2;
  refraction.destPitch = destPitch;
  refraction.water =
      reinterpret_cast<const std::uint8_t*>(water) + std::int64_t{mapY} * waterPitch + std::int64_t{mapX} * 2;
  refraction.waterPitch = waterPitch;
  refraction.cellSize = cellSize;
  refraction.cellsX = cellsX;
  refraction.cellsY = cellsY;
  refraction.image = reinterpret_cast<const std::uint8_t*>(image);
  refraction.imageX = imageX;
  refraction.imageY = imageY;
  refraction.imageWidth = imageWidth;
  refraction.imageHeight = imageHeight;
  refraction.imagePitch = imagePitch;
  refraction.shadeShift = shadeShift;
  if (shadeShift != 0) {
    refraction.tint[0] = cut(tint[0] * -4);
    refraction.tint[1] = cut(tint[1] * -4);
    refraction.tint[2] = cut(tint[2] * -128);
  }
  refraction.draw();
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_calculateWaterMap(std::int16_t* target, std::int32_t targetPitch, const std::int16_t* current,
                                           std::int32_t currentPitch, std::int32_t width, std::int32_t height,
                                           std::uint8_t mode, std::int32_t damping) {
  return toCode(kx::step(target, targetPitch, current, currentPitch, width, height, mode, damping));
}

std::uint32_t KX_CALL KX_drawWaterBitmap(std::uint16_t* dest, std::int32_t destX, std::int32_t destY,
                                         std::int32_t destPitch, const std::int16_t* water, std::int32_t waterPitch,
                                         std::int32_t cellSize, std::int32_t mapX, std::int32_t mapY,
                                         std::int32_t cellsX, std::int32_t cellsY, const std::uint16_t* image,
                                         std::int32_t imageX, std::int32_t imageY, std::int32_t imageWidth,
                                         std::int32_t imageHeight, std::int32_t imagePitch, std::uint8_t pixelFormat,
                                         std::int32_t shadeShift, const std::int8_t* tint) {
  return toCode(kx::draw(dest, destX, destY, destPitch, water, waterPitch, cellSize, mapX, mapY, cellsX, cellsY, image,
                         imageX, imageY, imageWidth, imageHeight, imagePitch, pixelFormat, shadeShift, tint));
}
