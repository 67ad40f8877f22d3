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

namespace kx {

namespace {

std::uint64_t rowPixels(const Bitmap& bitmap) { return static_cast<std::uint64_t>(std::max(bitmap.width, 0)); }

const std::uint8_t* packedRow(const Bitmap& bitmap, std::int32_t y) { return bitmap.pixels + bitmap.rowTable[y]; }

/// The new blocks of a target that is being packed.
struct PackedImage {
  HeapArray<std::uint8_t> pixels;
  HeapArray<std::uint32_t> rowTable;
};

Result encode(PackedImage& image, const Bitmap& source) {
  const auto width = static_cast<std::uint32_t>(rowPixels(source));
  const auto height = static_cast<std::uint32_t>(std::max(source.height, 0));
  const std::uint32_t pixelBytes = bytesPerPixel(source.format);
  const HeapArray<std::uint8_t> work = makeHeapArray<std::uint8_t>(packedBound(width, pixelBytes) * height);
  image.rowTable = makeHeapArray<std::uint32_t>(height);
  if (!work || !image.rowTable) return Result::OutOfMemory;
  std::size_t total = 0;
  for (std::uint32_t y = 0; y < height; ++y) {
    image.rowTable[y] = static_cast<std::uint32_t>(total);
    const std::uint8_t* row = rowAddress(source, static_cast<std::int32_t>(y));
    total += packElements(work.get() + total, row, width, pixelBytes);
  }
  image.pixels = makeHeapArray<std::uint8_t>(std::uint64_t{total} + 1);
  if (!image.pixels) return Result::OutOfMemory;
  std::memcpy(image.pixels.get(), work.get(), total);
  return Result::Ok;
}

}  // namespace

std::uint64_t packedRowBytes(const Bitmap& bitmap) {
  return (rowPixels(bitmap) + longestPacket - 1) * bytesPerPixel(bitmap.format);
}

DecodedRow decodePackedRow(const Bitmap& bitmap, std::int32_t y, std::uint8_t* row) {
  const Unpacked unpacked =
      unpackPackets(row, rowPixels(bitmap), packedRow(bitmap, y), unlimitedSource, bytesPerPixel(bitmap.format));
  return {unpacked.elements, unpacked.sourceBytes};
}

std::uint64_t packedRowLength(const Bitmap& bitmap, std::int32_t y) {
  RunReader reader(packedRow(bitmap, y), unlimitedSource, bytesPerPixel(bitmap.format));
  for (std::uint64_t given = 0; given < rowPixels(bitmap); given += reader.count()) reader.next();
  return reader.used();
}

Result packedBlockBytes(std::uint64_t& bytes, const Bitmap& bitmap) {
  if (isBadWritePointer(bitmap.pixels) || isBadWritePointer(bitmap.rowTable) || bitmap.height < 1)
    return Result::BitmapDestroyed;
  const HeapArray<std::uint8_t> row = makeHeapArray<std::uint8_t>(packedRowBytes(bitmap));
  if (!row) return Result::OutOfMemory;
  const std::int32_t last = bitmap.height - 1;
  bytes = bitmap.rowTable[last] + decodePackedRow(bitmap, last, row.get()).packedBytes;
  return Result::Ok;
}

Result unpack(Bitmap** result, Bitmap* source) {
  KX_TRY(checkWritable(result, source));
  if (isBadWritePointer(source->pixels) || isBadWritePointer(source->rowTable)) return Result::BitmapDestroyed;
  if (bytesPerPixel(source->format) == 0) return Result::PackerTypeNotSupported;
  Bitmap* plain = nullptr;
  KX_TRY(fromCode(KX_createBitmap(&plain, source->width, source->height, formatCode(source->format), source->extra1,
                                  source->extra2, ownBitmapMethods())));
  KX_TRY(lockOnly(plain));
  for (std::int32_t y = 0; y < source->height; ++y)
    unpackElements(rowAddress(*plain, y), rowPixels(*source), packedRow(*source, y), unlimitedSource,
                   bytesPerPixel(source->format));
  if (plain->palette != nullptr) {
    if (isBadReadPointer(source->palette)) {
      // What needs a palette then finds none here either.
      mmgr_free(plain->palette);
      plain->palette = nullptr;
    } else {
      std::memcpy(plain->palette, source->palette, paletteBytes);
    }
  }
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
