// Independent copies of bitmaps, and how many bytes their pixels take.
// SPDX-License-Identifier: MIT
#include "kxgraphic/bitmap.h"

#include <algorithm>
#include <cstring>

#include "bitmap/locks.h"
#include "bitmap/packed.h"
#include "bitmap/record.h"
#include "pixel/formats.h"

namespace kx {

namespace {

/// A new block with a copy of the first `size` bytes of another, or null. `room` is the size of the new block.
template <typename T>
T* copyBlock(const T* source, std::uint64_t size, std::uint64_t room) {
  T* block = static_cast<T*>(allocateBytes(room));
  if (block != nullptr) std::memcpy(block, source, static_cast<std::size_t>(size));
  return block;
}

Result clonePlainPixels(Bitmap& clone, const Bitmap& source) {
  if (source.height < 0 || source.pitch < 0) return Result::OutOfMemory;
  const std::uint64_t room = plainBlockBytes(source.height, source.pitch);
  const auto size = static_cast<std::uint64_t>(std::int64_t{source.height} * source.pitch);
  clone.pixels = copyBlock(source.pixels, size, room);
  return clone.pixels == nullptr ? Result::OutOfMemory : Result::Ok;
}

/// Copies up to the greatest end of any row, as rows may stand in any order.
Result clonePackedPixels(Bitmap& clone, const Bitmap& source) {
  if (isBadWritePointer(source.rowTable)) return Result::BitmapDestroyed;
  const std::uint64_t tableSize = static_cast<std::uint64_t>(source.height) * sizeof(std::uint32_t);
  clone.rowTable = copyBlock(source.rowTable, tableSize, tableSize);
  if (clone.rowTable == nullptr) return Result::OutOfMemory;
  std::uint64_t end = 0;
  for (std::int32_t y = 0; y < source.height; ++y) end = std::max(end, source.rowTable[y] + packedRowLength(source, y));
  clone.pixels = copyBlock(source.pixels, end, end);
  return clone.pixels == nullptr ? Result::OutOfMemory : Result::Ok;
}

// Settled: once the record exists a failure returns at once; what was copied so far is neither freed nor is the source
// unlocked. Hence plain pointers here.
Result cloneBitmap(Bitmap** result, Bitmap* source, BitmapMethods* methods) {
  KX_TRY(checkWritable(methods, result, source));
  KX_TRY(checkVersion(methods));
  Bitmap* clone = makeBitmapRecord(methods).release();
  if (clone == nullptr) return Result::OutOfMemory;
  clone->width = source->width;
  clone->height = source->height;
  clone->format = source->format;
  clone->pitch = source->pitch;
  clone->extra1 = source->extra1;
  clone->extra2 = source->extra2;

  KX_TRY(lockPixels(source));
  KX_TRY(hasPackedRows(source->format) ? clonePackedPixels(*clone, *source) : clonePlainPixels(*clone, *source));
  if (formatCode(source->format) == KX_FORMAT_PALETTE) {
    clone->palette = allocateArray<std::uint8_t>(paletteBytes);
    if (clone->palette == nullptr) return Result::OutOfMemory;
    if (isBadWritePointer(source->palette)) return Result::PaletteDestroyed;
    std::memcpy(clone->palette, source->palette, paletteBytes);
  }
  static_cast<void>(unlock(source));
  *result = clone;
  return Result::Ok;
}

Result getBitmapSize(const Bitmap* bitmap, std::uint32_t* size) {
  KX_TRY(checkWritable(bitmap));
  std::uint64_t bytes = 0;
  if (!hasPackedRows(bitmap->format)) {
    bytes = static_cast<std::uint64_t>(std::int64_t{bitmap->pitch} * bitmap->height);
  } else {
    const Result measured = packedBlockBytes(bytes, *bitmap);
    // Settled: without memory for the decoded row the size stays unwritten and the answer is success.
    if (measured == Result::OutOfMemory) return Result::Ok;
    KX_TRY(measured);
  }
  // The pointer is not part of the checks and cannot be refused.
  if (!isBadWritePointer(size)) *size = static_cast<std::uint32_t>(bytes);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_cloneBitmap(Bitmap** result, Bitmap* source, BitmapMethods* methods) {
  return kx::toCode(kx::cloneBitmap(result, source, methods));
}

std::uint32_t KX_CALL KX_getBitmapSize(Bitmap* bitmap, std::uint32_t* size) {
  return kx::toCode(kx::getBitmapSize(bitmap, size));
}
