// Textures: chains of mip levels in the pixel format of a device's target. The caller fills the levels.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <bit>

#include "bitmap/locks.h"
#include "frame/heap.h"
#include "kxgraphic/kxgraphic.h"
#include "pixel/formats.h"
#include "render3d/device.h"

namespace kx {

namespace {

constexpr std::int32_t mostLevels = 9;
constexpr std::int32_t smallestSide = 2;
constexpr std::int32_t greatestWidth = 1024;

/// Creation flag that marks a texture level to drivers.
constexpr std::uint32_t levelFlag = 0x200;

Result createTexture(Texture** result, Device3D* device, std::int32_t width, std::int32_t height, std::uint32_t format,
                     std::int32_t levelCount) {
  if (isBadWritePointer(result) || isBadReadPointer(device)) return Result::IllegalParameter;
  if (width < smallestSide || height < smallestSide) return Result::IllegalParameter;
  if (hasPackedRows(format)) return Result::PackerTypeNotSupported;
  Bitmap* target = nullptr;
  KX_TRY(renderTarget(&target, device));
  if (formatCode(format) != formatCode(target->format)) return Result::ColorFormatNotSupported;
  if (levelCount < 1 || levelCount > mostLevels) return Result::IllegalParameter;
  if (width > greatestWidth || !std::has_single_bit(static_cast<std::uint32_t>(width))) return Result::IllegalSize;

  HeapRecord<Texture> made = makeRecord<Texture>();
  if (made == nullptr) return Result::OutOfMemory;
  // Settled: from here on neither the record nor the levels made so far are released on failure.
  Texture* texture = made.release();
  texture->device = device;
  for (std::int32_t level = 0; level < levelCount; ++level) {
    KX_TRY(createThroughTable(&texture->levels[level], *target, width, height, format | levelFlag));
    texture->widthCodes[level] = std::countr_zero(static_cast<std::uint32_t>(width)) + 1;
    width >>= 1;
    height >>= 1;
    // Settled: tested after the last level too, so that the smallest level is at least 4 x 4.
    if (width < smallestSide || height < smallestSide) return Result::IllegalSize;
  }
  texture->levelCount = levelCount;
  *result = texture;
  return Result::Ok;
}

Result deleteTexture(Texture* texture) {
  KX_TRY(checkWritable(texture));
  const std::int32_t count = std::min(texture->levelCount, mostLevels);
  for (std::int32_t level = 0; level < count; ++level) {
    if (texture->levels[level] == nullptr) continue;
    KX_TRY(deleteThroughTable(texture->levels[level]));
    // A second attempt after a failure goes on here.
    texture->levels[level] = nullptr;
  }
  mmgr_free(texture);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_createTexture(Texture** result, Device3D* device, std::int32_t width, std::int32_t height,
                                       std::uint32_t format, std::int32_t levelCount) {
  return kx::toCode(kx::createTexture(result, device, width, height, format, levelCount));
}

std::uint32_t KX_CALL KX_deleteTexture(Texture* texture) { return kx::toCode(kx::deleteTexture(texture)); }
