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

using Int16Limits = std::numeric_limits<std::int16_t>;

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

std::int16_t saturated(std::int64_t value) {
  return static_cast<std::int16_t>(std::clamp<std::int64_t>(value, Int16Limits::min(), Int16Limits::max()));
}

/// The low 16 bits, as the lanes of the channels take a number.
std::int16_t cut(std::int32_t value) { return static_cast<std::int16_t>(value); }

/// The channels of a shaded pixel, always those of 5-5-5, blue first.
constexpr std::int32_t laneMasks[3] = {0x001F, 0x03E0, 0x7C00};

/// What is added to the lanes of every pixel of a block: first the shade, then the tint, each with saturation.
struct Shading {
  std::int16_t shade[3];
  std::int16_t tint[3];

  [[nodiscard]] std::uint16_t apply(std::uint16_t pixel) const {
    std::int32_t result = 0;
    for (int lane = 0; lane < 3; ++lane) {
      const std::int32_t mask = laneMasks[lane];
      const std::int16_t shaded = saturated((pixel & mask) + shade[lane]);
      const std::int16_t tinted = saturated(shaded + tint[lane]);
      result |= std::clamp<std::int32_t>(tinted, 0, mask) & mask;
    }
    return static_cast<std::uint16_t>(result);
  }
};

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
    for (std::int32_t j = 0; j < cellsY; ++j)
      for (std::int32_t i = 0; i < cellsX; ++i) drawCell(i, j);
  }

private:
  void drawCell(std::int64_t i, std::int64_t j) const {
    const std::uint8_t* cell = water + j * waterPitch + i * 2;
    const std::int32_t height = cut(load16(cell));
    const std::int32_t right = cut(load16(cell + 2));
    const std::int32_t lower = cut(load16(cell + waterPitch));
    const std::int64_t x = sample(imageX + i * cellSize, height - right, imageWidth);
    const std::int64_t y = sample(imageY + j * cellSize, height - lower, imageHeight);
    const std::uint8_t* from = image + y * imagePitch + x * 2;
    std::uint8_t* to = dest + j * cellSize * destPitch + i * cellSize * 2;
    if (shadeShift == 0) {
      for (std::int32_t row = 0; row < cellSize; ++row, from += imagePitch, to += destPitch)
        std::memmove(to, from, static_cast<std::size_t>(cellSize) * 2);
      return;
    }
    const std::int32_t lowerLeft = cut(load16(cell + waterPitch - 2));
    const std::int32_t shade = ((height - lowerLeft) >> (shadeShift - 1)) * 4;
    const Shading shading{{cut(shade), cut(shade), cut(shade * 32)}, {tint[0], tint[1], tint[2]}};
    for (std::int32_t row = 0; row < cellSize; ++row, from += imagePitch, to += destPitch)
      for (std::int32_t pixel = 0; pixel < cellSize; ++pixel)
        store16(to + pixel * 2, shading.apply(load16(from + pixel * 2)));
  }

  /// A position in the image moved by a slope of the water; the block beginning there lies inside the image.
  [[nodiscard]] std::int64_t sample(std::int64_t nominal, std::int32_t slope, std::int32_t size) const {
    return std::clamp<std::int64_t>(saturated(nominal + (cut(slope) >> 3)), 0, size - cellSize);
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
