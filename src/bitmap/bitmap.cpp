// Making, locking and deleting bitmaps.
// SPDX-License-Identifier: MIT
#include "kxgraphic/bitmap.h"

#include <cstring>

#include "bitmap/locks.h"
#include "bitmap/record.h"
#include "pixel/formats.h"

namespace kx {

namespace {

Result layOutPlain(Bitmap& bitmap, HeapArray<std::uint8_t>& pixels) {
  const std::uint64_t pitch = plainPitch(bitmap.format, bitmap.width);
  if (pitch > largestBlock) return Result::OutOfMemory;
  pixels = makeHeapArray<std::uint8_t>(plainBlockBytes(bitmap.height, static_cast<std::int64_t>(pitch)));
  if (!pixels) return Result::OutOfMemory;
  bitmap.pitch = static_cast<std::int32_t>(pitch);
  return Result::Ok;
}

/// Packed rows that start out black: runs of 128 pixels of value 0, at least as many as the width needs.
Result layOutPacked(Bitmap& bitmap, HeapArray<std::uint8_t>& pixels, HeapArray<std::uint32_t>& rowTable) {
  constexpr std::uint8_t runOf128 = 0x81;
  const std::uint32_t pixelBytes = bytesPerPixel(bitmap.format);
  const auto height = static_cast<std::uint32_t>(bitmap.height);
  const std::uint64_t runs = (static_cast<std::uint64_t>(bitmap.width) + 127) / 128;
  const std::uint64_t rowBytes = ((runs + 1) * (pixelBytes + 1) + 3) & ~std::uint64_t{3};

  rowTable = makeHeapArray<std::uint32_t>(height);
  if (!rowTable) return Result::OutOfMemory;
  pixels = makeHeapArray<std::uint8_t>((std::uint64_t{height} + 1) * rowBytes);
  if (!pixels) return Result::OutOfMemory;
  std::memset(pixels.get(), 0, static_cast<std::size_t>(height * rowBytes));
  for (std::uint32_t y = 0; y < height; ++y) {
    rowTable[y] = static_cast<std::uint32_t>(y * rowBytes);
    std::uint8_t* row = pixels.get() + rowTable[y];
    for (std::uint64_t k = 0; k < runs; ++k) row[(pixelBytes + 1) * k] = runOf128;
  }
  return Result::Ok;
}

Result createBitmap(Bitmap** result, std::int32_t width, std::int32_t height, std::uint32_t format,
                    std::uint32_t extra1, std::uint32_t extra2, BitmapMethods* methods) {
  KX_TRY(checkWritable(methods, result));
  if (width < 1 || height < 1) return Result::IllegalParameter;
  KX_TRY(checkVersion(methods));

  HeapRecord<Bitmap> bitmap = makeBitmapRecord(methods);
  if (!bitmap) return Result::OutOfMemory;
  bitmap->width = width;
  bitmap->height = height;
  bitmap->format = format;
  bitmap->extra1 = extra1;
  bitmap->extra2 = extra2;

  HeapArray<std::uint8_t> pixels;
  HeapArray<std::uint32_t> rowTable;
  if (!hasRunLengthRows(format)) {
    KX_TRY(layOutPlain(*bitmap, pixels));
  } else {
    if (bytesPerPixel(format) == 0) {
      static_cast<void>(bitmap.release());  // Settled: this refusal leaks the record.
      return Result::PackerTypeNotSupported;
    }
    KX_TRY(layOutPacked(*bitmap, pixels, rowTable));
  }
  HeapArray<std::uint8_t> palette;
  if (formatCode(format) == KX_FORMAT_PALETTE) {
    palette = makeHeapArray<std::uint8_t>(paletteBytes);
    if (!palette) return Result::OutOfMemory;
  }
  bitmap->pixels = pixels.release();
  bitmap->rowTable = rowTable.release();
  bitmap->palette = palette.release();
  *result = bitmap.release();
  return Result::Ok;
}

Result createFromData(Bitmap** result, const Bitmap* source, bool borrow, BitmapMethods* methods) {
  KX_TRY(checkWritable(methods, result, source));
  KX_TRY(checkVersion(methods));

  HeapRecord<Bitmap> bitmap = makeBitmapRecord(methods);
  if (!bitmap) return Result::OutOfMemory;
  bitmap->width = source->width;
  bitmap->height = source->height;
  bitmap->format = source->format;
  bitmap->pixels = source->pixels;
  bitmap->rowTable = source->rowTable;
  bitmap->palette = source->palette;
  bitmap->extra1 = source->extra1;
  bitmap->extra2 = source->extra2;
  bitmap->reserved21 = source->reserved21;
  bitmap->reserved22 = source->reserved22;
  bitmap->pitch = source->pitch;
  if (bitmap->pitch == 0) {
    const std::uint64_t pitch = plainPitch(bitmap->format, bitmap->width);
    if (pitch > largestBlock) return Result::OutOfMemory;
    bitmap->pitch = static_cast<std::int32_t>(pitch);
  }
  if (borrow) {
    bitmap->flags = KX_BORROWED_PIXELS;
    if (bitmap->rowTable != nullptr) bitmap->flags |= KX_BORROWED_ROW_TABLE;
    if (bitmap->palette != nullptr) bitmap->flags |= KX_BORROWED_PALETTE;
  }
  if (formatCode(bitmap->format) == KX_FORMAT_PALETTE && bitmap->palette == nullptr) {
    bitmap->palette = allocateArray<std::uint8_t>(paletteBytes);
    if (bitmap->palette == nullptr) return Result::OutOfMemory;
  }
  *result = bitmap.release();
  return Result::Ok;
}

Result deleteBitmap(Bitmap* bitmap) {
  KX_TRY(checkWritable(bitmap));
  const struct {
    void* block;
    std::uint32_t borrowedFlag;
    Result fault;
  } blocks[] = {
      {bitmap->pixels, KX_BORROWED_PIXELS, Result::BitmapDestroyed},
      {bitmap->rowTable, KX_BORROWED_ROW_TABLE, Result::BitmapDestroyed},
      {bitmap->palette, KX_BORROWED_PALETTE, Result::PaletteDestroyed},
      {bitmap->table15, KX_BORROWED_TABLE15, Result::PaletteDestroyed},
      {bitmap->table16, KX_BORROWED_TABLE16, Result::PaletteDestroyed},
      {bitmap->table8, KX_BORROWED_TABLE8, Result::PaletteDestroyed},
  };
  for (const auto& [block, borrowedFlag, fault] : blocks)
    if (owns(*bitmap, block, borrowedFlag) && isBadWritePointer(block)) return fault;
  for (const auto& [block, borrowedFlag, fault] : blocks)
    if (owns(*bitmap, block, borrowedFlag)) mmgr_free(block);
  mmgr_free(bitmap);
  return Result::Ok;
}

/// `change(bitmap)` on the lock of a bitmap.
Result changeLock(Bitmap* bitmap, Result (*change)(Bitmap*)) {
  KX_TRY(checkWritable(bitmap));
  return change(bitmap);
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_createBitmap(Bitmap** result, std::int32_t width, std::int32_t height, std::uint32_t format,
                                      std::uint32_t extra1, std::uint32_t extra2, BitmapMethods* methods) {
  return kx::toCode(kx::createBitmap(result, width, height, format, extra1, extra2, methods));
}

std::uint32_t KX_CALL KX_createFromData(Bitmap** result, Bitmap* source, std::uint8_t borrow, BitmapMethods* methods) {
  return kx::toCode(kx::createFromData(result, source, borrow != 0, methods));
}

std::uint32_t KX_CALL KX_deleteBitmap(Bitmap* bitmap) { return kx::toCode(kx::deleteBitmap(bitmap)); }

std::uint32_t KX_CALL KX_lock(Bitmap* bitmap) { return kx::toCode(kx::changeLock(bitmap, kx::raiseLock)); }

std::uint32_t KX_CALL KX_unlock(Bitmap* bitmap) { return kx::toCode(kx::changeLock(bitmap, kx::lowerLock)); }

std::uint32_t KX_CALL KX_getBytesPerPixel(std::uint32_t format) { return kx::formatInfo(format).bytesFixed; }
