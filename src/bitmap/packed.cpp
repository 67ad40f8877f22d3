// Packed bitmaps: unpack, pack and the decoding of rows.
// SPDX-License-Identifier: MIT
#include "bitmap/packed.h"

#include <algorithm>
#include <cstring>

#include "bitmap/locks.h"
#include "bitmap/own_methods.h"
#include "bitmap/record.h"
#include "bitmap/view.h"
#include "codec/run_length.h"
#include "kxgraphic/bitmap.h"
#include "kxgraphic/codec.h"

namespace kx {

namespace {

/// The most by which the last packet of a row goes beyond the row.
constexpr std::uint64_t longestOverrun = 127;

std::uint64_t rowPixels(const Bitmap& bitmap) { return static_cast<std::uint64_t>(std::max(bitmap.width, 0)); }

/// Walks the packets of row y until they give a row's pixels. `emit(pixels, count, isRun)` sees each of them.
template <typename Emit>
DecodedRow walkPackedRow(const Bitmap& bitmap, std::int32_t y, Emit emit) {
  constexpr int filler = -128;
  const std::uint64_t wanted = rowPixels(bitmap);
  const std::uint32_t pixelBytes = bytesPerPixel(bitmap.format);
  const std::uint8_t* const start = bitmap.pixels + bitmap.rowTable[y];
  const std::uint8_t* packet = start;
  std::uint64_t given = 0;
  while (given < wanted) {
    const int header = static_cast<std::int8_t>(*packet++);
    if (header == filler) continue;
    const bool isRun = header < 0;
    const auto count = static_cast<std::uint32_t>(isRun ? 1 - header : 1 + header);
    emit(packet, given, count, isRun);
    given += count;
    packet += std::size_t{pixelBytes} * (isRun ? 1 : count);
  }
  return {given, static_cast<std::uint64_t>(packet - start)};
}

/// Decodes into room for `room` pixels; what does not fit is cut.
DecodedRow decodeInto(const Bitmap& bitmap, std::int32_t y, std::uint8_t* row, std::uint64_t room) {
  const std::uint32_t pixelBytes = bytesPerPixel(bitmap.format);
  return walkPackedRow(bitmap, y,
                       [=](const std::uint8_t* source, std::uint64_t given, std::uint64_t count, bool isRun) {
                         const auto bytes = static_cast<std::size_t>(std::min(count, room - given) * pixelBytes);
                         std::uint8_t* out = row + static_cast<std::size_t>(given * pixelBytes);
                         if (!isRun)
                           std::memcpy(out, source, bytes);
                         else if (pixelBytes == 1)
                           std::memset(out, *source, bytes);
                         else
                           for (std::size_t i = 0; i < bytes; i += pixelBytes) std::memcpy(out + i, source, pixelBytes);
                       });
}

/// The new blocks of a target that is being packed.
struct PackedImage {
  HeapArray<std::uint8_t> pixels;
  HeapArray<std::uint32_t> rowTable;
};

Result encode(PackedImage& image, const Bitmap& source) {
  const auto height = static_cast<std::uint32_t>(std::max(source.height, 0));
  const std::uint32_t pixelBytes = bytesPerPixel(source.format);
  const std::uint64_t longestRow = packedBound(rowPixels(source), pixelBytes);
  const HeapArray<std::uint8_t> work = makeHeapArray<std::uint8_t>(longestRow * height);
  image.rowTable = makeHeapArray<std::uint32_t>(height);
  if (!work || !image.rowTable) return Result::OutOfMemory;
  std::uint32_t total = 0;
  for (std::uint32_t y = 0; y < height; ++y) {
    image.rowTable[y] = total;
    total += RLE_compressWords(work.get() + total, rowAddress(source, static_cast<std::int32_t>(y)),
                               static_cast<std::uint32_t>(rowPixels(source)), pixelBytes);
  }
  image.pixels = makeHeapArray<std::uint8_t>(std::uint64_t{total} + 1);
  if (!image.pixels) return Result::OutOfMemory;
  std::memcpy(image.pixels.get(), work.get(), total);
  return Result::Ok;
}

}  // namespace

std::uint64_t packedRowBytes(const Bitmap& bitmap) {
  return (rowPixels(bitmap) + longestOverrun) * bytesPerPixel(bitmap.format);
}

DecodedRow decodePackedRow(const Bitmap& bitmap, std::int32_t y, std::uint8_t* row) {
  return decodeInto(bitmap, y, row, rowPixels(bitmap) + longestOverrun);
}

std::uint64_t packedRowLength(const Bitmap& bitmap, std::int32_t y) {
  return walkPackedRow(bitmap, y, [](const std::uint8_t*, std::uint64_t, std::uint32_t, bool) {}).packedBytes;
}

Result unpack(Bitmap** result, Bitmap* source) {
  KX_TRY(checkWritable(result, source));
  if (isBadWritePointer(source->pixels) || isBadWritePointer(source->rowTable)) return Result::BitmapDestroyed;
  if (bytesPerPixel(source->format) == 0) return Result::PackerTypeNotSupported;
  Bitmap* plain = nullptr;
  KX_TRY(fromCode(KX_createBitmap(&plain, source->width, source->height, formatCode(source->format), source->extra1,
                                  source->extra2, ownBitmapMethods())));
  KX_TRY(lockOnly(plain));
  for (std::int32_t y = 0; y < source->height; ++y) decodeInto(*source, y, rowAddress(*plain, y), rowPixels(*source));
  if (plain->palette != nullptr && source->palette != nullptr)
    std::memcpy(plain->palette, source->palette, paletteBytes);
  *result = plain;
  return Result::Ok;
}

Result pack(Bitmap* target, Bitmap* source) {
  KX_TRY(checkWritable(target, source));
  PackedImage image;
  if (const Result encoded = encode(image, *source); encoded != Result::Ok) {
    discardUnpacked(source);
    return encoded;
  }
  static_cast<void>(unlock(source));
  KX_TRY(deleteThroughTable(source));
  if (owns(*target, target->pixels, KX_BORROWED_PIXELS)) mmgr_free(target->pixels);
  if (owns(*target, target->rowTable, KX_BORROWED_ROW_TABLE)) mmgr_free(target->rowTable);
  target->pixels = image.pixels.release();
  target->rowTable = image.rowTable.release();
  target->flags &= ~std::uint32_t{KX_BORROWED_PIXELS | KX_BORROWED_ROW_TABLE};
  return Result::Ok;
}

void discardUnpacked(Bitmap* plain) {
  static_cast<void>(unlock(plain));
  static_cast<void>(deleteThroughTable(plain));
}

}  // namespace kx
