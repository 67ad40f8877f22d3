// What the operations on whole images share: locking, and reaching rows of pixels or the palette.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "bitmap/locks.h"
#include "bitmap/packed.h"
#include "bitmap/record.h"
#include "bitmap/view.h"
#include "draw/target.h"
#include "kxgraphic/bitmap.h"
#include "pixel/image_rows.h"

namespace kx {

/// Runs `operate()` between lock and unlock. Unlike drawing, an operation that fails unlocks too.
template <typename Operate>
Result onLockedImage(Bitmap* bitmap, Operate operate) {
  KX_TRY(checkWritable(bitmap));
  KX_TRY(checkMethods(bitmap));
  KX_TRY(lockPixels(bitmap));
  const Result result = operate();
  static_cast<void>(unlock(bitmap));
  return result;
}

/// True for intensities and colours, with their layout in `layout`.
inline bool findImageFormat(std::uint32_t format, ImageFormat& layout) {
  switch (formatCode(format)) {
    case KX_FORMAT_GREY:
      layout = ImageFormat::Grey8;
      return true;
    case KX_FORMAT_555:
      layout = ImageFormat::Rgb555;
      return true;
    case KX_FORMAT_565:
      layout = ImageFormat::Rgb565;
      return true;
    case KX_FORMAT_888:
      layout = ImageFormat::Bgr24;
      return true;
    default:
      return false;
  }
}

/// False for a record of no size, which only a stranger can have made. Operations find nothing to do there.
inline bool hasPixels(const Bitmap& bitmap) { return bitmap.width > 0 && bitmap.height > 0; }

/// `changeRow(row)` on every row of a plain bitmap.
template <typename ChangeRow>
void forEachRow(const Bitmap& plain, ChangeRow changeRow) {
  if (!hasBytes(plain.format)) return;
  for (std::int32_t y = 0; y < plain.height; ++y) changeRow(rowAddress(plain, y));
}

/// `change(Bitmap* plain)` on the bitmap or, where its rows are packed, on a plain copy that is packed again.
template <typename Change>
Result changePixels(Bitmap* bitmap, Change change) {
  if (!hasPixels(*bitmap)) return Result::Ok;
  return hasPackedRows(bitmap->format) ? drawOnUnpacked(bitmap, change) : change(bitmap);
}

/// A palette that is used by reference, or whose translations are, is not the bitmap's to change.
inline Result checkOwnPalette(const Bitmap& bitmap) {
  constexpr std::uint32_t shared = KX_BORROWED_PALETTE | KX_BORROWED_TABLE15 | KX_BORROWED_TABLE16 | KX_BORROWED_TABLE8;
  if ((bitmap.flags & shared) != 0) return Result::FunctionNotSupported;
  return isBadWritePointer(bitmap.palette) ? Result::PaletteDestroyed : Result::Ok;
}

/// `change(entries, count)` on the palette as a row of 24-bit pixels; its translations follow.
template <typename Change>
Result changePalette(Bitmap* bitmap, Change change) {
  KX_TRY(checkOwnPalette(*bitmap));
  std::uint8_t palette[paletteBytes];
  std::memcpy(palette, bitmap->palette, paletteBytes);
  change(palette, paletteBytes / 3);
  return fromCode(KX_setPalette(bitmap, palette));
}

}  // namespace kx
