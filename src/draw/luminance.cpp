// The average luminance of an image.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "draw/image.h"
#include "frame/heap.h"
#include "kxgraphic/draw.h"

namespace kx {

namespace {

std::uint64_t sumOfRow(ImageFormat layout, std::uint32_t pixelBytes, const std::uint8_t* row, std::size_t width) {
  const auto sumLightness = imageKernels().sumLightness[static_cast<std::size_t>(layout)];
  std::uint64_t sum = 0;
  for (std::size_t done = 0; done < width; done += longestSumRow)
    sum += sumLightness(row + done * pixelBytes, std::min(longestSumRow, width - done));
  return sum;
}

/// 0 for an image without pixels.
/// Settled: an average of the rows' averages, each cut to an integer.
Result averageOfRows(const Bitmap& bitmap, ImageFormat layout, std::uint32_t& luminance) {
  if (!hasPixels(bitmap)) return Result::Ok;
  const auto width = static_cast<std::size_t>(bitmap.width);
  HeapArray<std::uint8_t> decoded;
  if (hasPackedRows(bitmap.format)) {
    if (isBadWritePointer(bitmap.rowTable)) return Result::BitmapDestroyed;
    decoded = makeHeapArray<std::uint8_t>(packedRowBytes(bitmap));
    if (!decoded) return Result::OutOfMemory;
  }
  std::uint64_t sum = 0;
  for (std::int32_t y = 0; y < bitmap.height; ++y) {
    const std::uint8_t* row = decoded.get();
    if (decoded)
      decodePackedRow(bitmap, y, decoded.get());
    else
      row = rowAddress(bitmap, y);
    sum += sumOfRow(layout, bytesPerPixel(bitmap.format), row, width) / width;
  }
  luminance = static_cast<std::uint32_t>(sum / static_cast<std::uint32_t>(bitmap.height));
  return Result::Ok;
}

Result findLuminance(const Bitmap& bitmap, std::uint32_t& luminance) {
  constexpr std::uint32_t luminanceOfMono = 128;
  if (formatCode(bitmap.format) == KX_FORMAT_MONO) {
    luminance = luminanceOfMono;
    return Result::Ok;
  }
  if (formatCode(bitmap.format) == KX_FORMAT_PALETTE) {
    KX_TRY(checkOwnPalette(bitmap));
    luminance = static_cast<std::uint32_t>(sumOfRow(ImageFormat::Bgr24, 3, bitmap.palette, 256) / 256);
    return Result::Ok;
  }
  ImageFormat layout;
  if (!findImageFormat(bitmap.format, layout)) return Result::ColorFormatNotSupported;
  return averageOfRows(bitmap, layout, luminance);
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_getAverageLuminance(Bitmap* bitmap) {
  std::uint32_t luminance = 0;
  const kx::Result result = kx::onLockedImage(bitmap, [&] { return kx::findLuminance(*bitmap, luminance); });
  return result == kx::Result::Ok ? luminance : kx::toCode(result);
}
