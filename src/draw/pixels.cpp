// Single pixels.
// SPDX-License-Identifier: MIT
#include <cstdint>

#include "bitmap/packed.h"
#include "bitmap/view.h"
#include "draw/colour_formats.h"
#include "draw/target.h"
#include "frame/heap.h"
#include "kxgraphic/draw.h"
#include "pixel/access.h"

namespace kx {

namespace {

bool isInside(const Bitmap* bitmap, std::int32_t x, std::int32_t y) { return contains(*bitmap, x, y, 1, 1); }

Result readPackedPixel(const Bitmap& bitmap, std::int32_t x, std::int32_t y, std::uint32_t& value) {
  if (isBadWritePointer(bitmap.rowTable)) return Result::BitmapDestroyed;
  if (bytesPerPixel(bitmap.format) == 0) return Result::PackerTypeNotSupported;
  const HeapArray<std::uint8_t> row = makeHeapArray<std::uint8_t>(packedRowBytes(bitmap));
  if (!row) return Result::OutOfMemory;
  decodePackedRow(bitmap, y, row.get());
  value = readPixel(row.get(), bitmap.format, x);
  return Result::Ok;
}

Result getPixel(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t& value) {
  KX_TRY(checkWritable(bitmap));
  if (!isInside(bitmap, x, y)) return Result::CoordinateOutOfRange;
  KX_TRY(checkMethods(bitmap));
  const bool isPlain = !hasRunLengthRows(bitmap->format), locks = !isPlain || !locksCancelOut(*bitmap);
  if (locks) [[unlikely]] {
    KX_TRY(lockTestedPixels(bitmap));
  } else if (isBadWritePointer(bitmap->pixels)) {
    return Result::BitmapDestroyed;
  }
  if (isPlain) {
    value = readPixel(rowAddress(*bitmap, y), bitmap->format, x);
  } else {
    KX_TRY(readPackedPixel(*bitmap, x, y, value));
  }
  if (locks) static_cast<void>(unlock(bitmap));
  return Result::Ok;
}

/// The depth test of one pixel, which stores z where it passes.
bool passesDepth(const Bitmap& zBuffer, std::int32_t x, std::int32_t y, std::int32_t z) {
  std::uint8_t& stored = *pixelAddress(zBuffer, x, y);
  if (!depthPasses(z, stored)) return false;
  stored = static_cast<std::uint8_t>(z);
  return true;
}

std::uint32_t blended(std::uint32_t format, std::uint32_t colour, std::uint32_t pixel, std::int32_t alpha) {
  withByteFormat(format, [&](auto type) {
    colour = blendAlpha<decltype(type)>(colour, pixel, static_cast<std::uint32_t>(alpha));
  });
  return colour;
}

template <bool HasAlpha>
void putPoint(const Bitmap& bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour, std::int32_t alpha) {
  std::uint8_t* const row = rowAddress(bitmap, y);
  const std::uint32_t format = bitmap.format;
  writePixel(row, format, x, HasAlpha ? blended(format, colour, readPixel(row, format, x), alpha) : colour);
}

template <bool HasAlpha, bool HasDepth>
Result drawPointLocked(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour, std::int32_t alpha,
                       Bitmap* zBuffer, std::int32_t z);

/// Made once for each variant, without a record of what the variant lacks: points come by the million.
template <bool HasAlpha, bool HasDepth>
[[gnu::always_inline]] inline Result drawPoint(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour,
                                               std::int32_t alpha = 0, Bitmap* zBuffer = nullptr, std::int32_t z = 0) {
  const Blend blend{.hasAlpha = HasAlpha, .hasDepth = HasDepth, .alpha = alpha, .z = z, .zBuffer = zBuffer};
  KX_TRY(checkBitmaps(bitmap, blend));
  if (!isInside(bitmap, x, y)) return Result::CoordinateOutOfRange;
  // Settled: points test the depth first, everything else the weight.
  KX_TRY(checkDepth(blend));
  KX_TRY(checkAlpha(blend));
  KX_TRY(checkFormats(*bitmap, blend));
  if (!depthCovers(blend, x, y, 1, 1)) return Result::CoordinateOutOfRange;
  KX_TRY(checkMethods(bitmap, blend));
  if (HasDepth || hasRunLengthRows(bitmap->format) || !locksCancelOut(*bitmap)) [[unlikely]]
    return drawPointLocked<HasAlpha, HasDepth>(bitmap, x, y, colour, alpha, zBuffer, z);
  if (isBadWritePointer(bitmap->pixels)) return Result::BitmapDestroyed;
  putPoint<HasAlpha>(*bitmap, x, y, colour, alpha);
  return Result::Ok;
}

template <bool HasAlpha, bool HasDepth>
[[gnu::noinline]] Result drawPointLocked(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour,
                                         std::int32_t alpha, Bitmap* zBuffer, std::int32_t z) {
  KX_TRY(lockTestedPixels(bitmap));
  if constexpr (HasDepth) KX_TRY(lockTestedPixels(zBuffer));
  if (hasRunLengthRows(bitmap->format)) {
    KX_TRY(drawOnUnpacked(
        bitmap, [=](Bitmap* plain) { return drawPoint<HasAlpha, HasDepth>(plain, x, y, colour, alpha, zBuffer, z); }));
  } else if (!HasDepth || passesDepth(*zBuffer, x, y, z)) {
    putPoint<HasAlpha>(*bitmap, x, y, colour, alpha);
  }
  static_cast<void>(unlock(bitmap));
  if constexpr (HasDepth) static_cast<void>(unlock(zBuffer));
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
  return kx::toCode(kx::drawPoint<false, false>(bitmap, x, y, colour));
}

std::uint32_t KX_CALL KX_setPixelAlpha(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::uint32_t colour,
                                       std::int32_t alpha) {
  return kx::toCode(kx::drawPoint<true, false>(bitmap, x, y, colour, alpha));
}

std::uint32_t KX_CALL KX_setPixelZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x, std::int32_t y,
                                         std::uint32_t colour, std::int32_t z) {
  return kx::toCode(kx::drawPoint<false, true>(bitmap, x, y, colour, 0, zbuffer, z));
}

std::uint32_t KX_CALL KX_setPixelAlphaZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x, std::int32_t y,
                                              std::uint32_t colour, std::int32_t alpha, std::int32_t z) {
  return kx::toCode(kx::drawPoint<true, true>(bitmap, x, y, colour, alpha, zbuffer, z));
}
