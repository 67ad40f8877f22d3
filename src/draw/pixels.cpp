// Single pixels.
// SPDX-License-Identifier: MIT
#include <cstdint>

#include "bitmap/locks.h"
#include "bitmap/packed.h"
#include "bitmap/view.h"
#include "frame/checks.h"
#include "frame/heap.h"
#include "kxgraphic/draw.h"
#include "pixel/access.h"

namespace kx {

namespace {

Result checkPoint(const Bitmap* bitmap, std::int32_t x, std::int32_t y) {
  KX_TRY(checkWritable(bitmap));
  return contains(*bitmap, x, y, 1, 1) ? Result::Ok : Result::CoordinateOutOfRange;
}

/// Locks a target and requires what drawing a point needs of it.
Result lockTarget(Bitmap* bitmap) {
  if (isBadWritePointer(bitmap->methods)) return Result::MethodTableDestroyed;
  KX_TRY(lockPixels(bitmap));
  if (hasRunLengthRows(bitmap->format) && isBadWritePointer(bitmap->rowTable)) return Result::BitmapDestroyed;
  return Result::Ok;
}

Result readPackedPixel(const Bitmap& bitmap, std::int32_t x, std::int32_t y, std::uint32_t& value) {
  if (bytesPerPixel(bitmap.format) == 0) return Result::PackerTypeNotSupported;
  const HeapArray<std::uint8_t> row = makeHeapArray<std::uint8_t>(packedRowBytes(bitmap));
  if (!row) return Result::OutOfMemory;
  decodePackedRow(bitmap, y, row.get());
  value = readPixel(row.get(), bitmap.format, x);
  return Result::Ok;
}

Result getPixel(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t& value) {
  KX_TRY(checkPoint(bitmap, x, y));
  KX_TRY(lockTarget(bitmap));
  if (hasRunLengthRows(bitmap->format)) {
    KX_TRY(readPackedPixel(*bitmap, x, y, value));
  } else {
    value = readPixel(rowAddress(*bitmap, y), bitmap->format, x);
  }
  static_cast<void>(unlock(bitmap));
  return Result::Ok;
}

Result setPixel(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour) {
  KX_TRY(checkPoint(bitmap, x, y));
  KX_TRY(lockTarget(bitmap));
  if (hasRunLengthRows(bitmap->format)) {
    KX_TRY(drawOnUnpacked(bitmap, [=](Bitmap* plain) { return setPixel(plain, x, y, colour); }));
  } else {
    writePixel(rowAddress(*bitmap, y), bitmap->format, x, colour);
  }
  static_cast<void>(unlock(bitmap));
  return Result::Ok;
}

}  // namespace

}  // namespace kx

// Settled: a pixel value and a failure code share the result and cannot be told apart.
std::uint32_t KX_CALL KX_getPixel(Bitmap* bitmap, std::int32_t x, std::int32_t y) {
  std::uint32_t value = 0;
  const kx::Result result = kx::getPixel(bitmap, x, y, value);
  return result == kx::Result::Ok ? value : kx::toCode(result);
}

std::uint32_t KX_CALL KX_setPixel(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour) {
  return kx::toCode(kx::setPixel(bitmap, x, y, colour));
}
