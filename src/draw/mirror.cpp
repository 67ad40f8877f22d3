// Mirroring an image about its horizontal and its vertical axis.
// SPDX-License-Identifier: MIT
#include <cstring>
#include <utility>

#include "draw/image.h"
#include "frame/heap.h"
#include "kxgraphic/draw.h"
#include "pixel/access.h"

namespace kx {

namespace {

/// Calls `exchange(i, height - 1 - i)` for the rows of the upper half; a middle row stays.
template <typename Exchange>
void exchangeRows(std::int32_t height, Exchange exchange) {
  for (std::int32_t i = 0; i < height / 2; ++i) exchange(i, height - 1 - i);
}

/// Bytes that a row's pixels take, the last byte of one-bit pixels included.
std::size_t rowBytes(const Bitmap& bitmap) {
  const auto width = static_cast<std::uint64_t>(bitmap.width);
  return static_cast<std::size_t>((formatInfo(bitmap.format).bytesFixed * width + 0xFFFF) >> 16);
}

Result mirrorX(const Bitmap& bitmap) {
  if (!hasPixels(bitmap)) return Result::Ok;
  if (hasPackedRows(bitmap.format)) {
    if (isBadWritePointer(bitmap.rowTable)) return Result::BitmapDestroyed;
    exchangeRows(bitmap.height,
                 [&](std::int32_t a, std::int32_t b) { std::swap(bitmap.rowTable[a], bitmap.rowTable[b]); });
    return Result::Ok;
  }
  if (!hasBytes(bitmap.format)) return Result::Ok;
  const std::size_t size = rowBytes(bitmap);
  const HeapArray<std::uint8_t> buffer = makeHeapArray<std::uint8_t>(size);
  if (!buffer) return Result::OutOfMemory;
  exchangeRows(bitmap.height, [&](std::int32_t a, std::int32_t b) {
    std::uint8_t* const upper = rowAddress(bitmap, a);
    std::uint8_t* const lower = rowAddress(bitmap, b);
    std::memcpy(buffer.get(), upper, size);
    std::memcpy(upper, lower, size);
    std::memcpy(lower, buffer.get(), size);
  });
  return Result::Ok;
}

void reverseBits(std::uint8_t* row, std::int32_t width) {
  for (std::int32_t left = 0, right = width - 1; left < right; ++left, --right) {
    const std::uint32_t bit = readPixel(row, KX_FORMAT_MONO, left);
    writePixel(row, KX_FORMAT_MONO, left, readPixel(row, KX_FORMAT_MONO, right));
    writePixel(row, KX_FORMAT_MONO, right, bit);
  }
}

Result mirrorY(Bitmap* bitmap) {
  const std::uint32_t pixelBytes = bytesPerPixel(bitmap->format);
  return changePixels(bitmap, [=](Bitmap* plain) {
    forEachRow(*plain, [=](std::uint8_t* row) {
      if (pixelBytes != 0)
        imageKernels().reverse[pixelBytes - 1](row, static_cast<std::size_t>(plain->width));
      else if (formatCode(plain->format) == KX_FORMAT_MONO)
        reverseBits(row, plain->width);
    });
    return Result::Ok;
  });
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_mirrorBitmapX(Bitmap* bitmap) {
  return kx::toCode(kx::onLockedImage(bitmap, [=] { return kx::mirrorX(*bitmap); }));
}

std::uint32_t KX_CALL KX_mirrorBitmapY(Bitmap* bitmap) {
  return kx::toCode(kx::onLockedImage(bitmap, [=] { return kx::mirrorY(bitmap); }));
}
