// The water ripple map: one step of its waves, and an image seen through them.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <limits>

#include "frame/checks.h"
#include "kxgraphic/landscape.h"
#include "landscape/kernels.h"
#include "pixel/memory.h"

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
  /// Size: the cells' when it is known beforehand, else 0.
  template <std::int32_t Size>
  void drawCells() const {
    const std::int32_t size = Size != 0 ? Size : cellSize;
    const std::int32_t lastX = std::min(imageWidth - size, farthest);
    const std::int32_t lastY = std::min(imageHeight - size, farthest);
    for (std::int64_t j = 0; j < cellsY; ++j) {
      const std::uint8_t* cell = water + j * waterPitch;
      std::uint8_t* to = dest + j * size * destPitch;
      const std::int32_t y = nominal(imageY + j * size);
      for (std::int64_t i = 0; i < cellsX; ++i, cell += 2, to += std::ptrdiff_t{2} * size) {
        const std::int32_t height = cut(load16(cell));
        const std::int32_t right = cut(load16(cell + 2));
        const std::int32_t lower = cut(load16(cell + waterPitch));
        const std::int32_t fromX = std::clamp(nominal(imageX + i * size) + (cut(height - right) >> 3), 0, lastX);
        const std::int32_t fromY = std::clamp(y + (cut(height - lower) >> 3), 0, lastY);
        const std::uint8_t* from = image + std::ptrdiff_t{fromY} * imagePitch + std::ptrdiff_t{fromX} * 2;
        if (shadeShift == 0)
          copyBlock(to, from, size);
        else
          shadeBlock(to, from, size, height - cut(load16(cell + waterPitch - 2)));
      }
    }
  }

  /// A position before the water moves it, by at most 2^12 pixels. What lies farther off ends at the same place.
  static std::int32_t nominal(std::int64_t position) {
    return static_cast<std::int32_t>(std::min<std::int64_t>(position, 2 * farthest));
  }

  void copyBlock(std::uint8_t* to, const std::uint8_t* from, std::int32_t size) const {
    for (std::int32_t row = 0; row < size; ++row, from += imagePitch, to += destPitch)
      std::memmove(to, from, static_cast<std::size_t>(size) * 2);
  }

  /// The channels are always taken apart as 5-5-5. The shade comes first, then the tint.
  void shadeBlock(std::uint8_t* to, const std::uint8_t* from, std::int32_t size, std::int32_t slope) const {
    landscapeKernels->shadeBlock(to, destPitch, from, imagePitch, static_cast<std::size_t>(size),
                                 (slope >> (shadeShift - 1)) * 4, tint);
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
