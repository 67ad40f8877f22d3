// Palettes of bitmaps and their translations into other formats.
// SPDX-License-Identifier: MIT
#include "bitmap/palette.h"

#include <algorithm>
#include <cstring>

#include "bitmap/record.h"
#include "kxgraphic/bitmap.h"
#include "pixel/channels.h"

namespace kx {

namespace {

/// Writes the pixel of each palette entry to a table of bytes (format 3) or 16-bit words.
template <typename Pixel, typename Translate>
void translatePalette(Pixel* table, const std::uint8_t* palette, Translate translate) {
  for (int i = 0; i < 256; ++i, palette += 3)
    table[i] = static_cast<Pixel>(translate(std::uint32_t{palette[0]}, std::uint32_t{palette[1]}, palette[2]));
}

void fillGrey(std::uint8_t* table, const std::uint8_t* palette) {
  translatePalette(table, palette,
                   [](std::uint32_t b, std::uint32_t g, std::uint32_t r) { return greyValue(b, r, g); });
}

/// Pixels of format 5 or 6 as everything else of the library makes them.
void fillWords(std::uint16_t* table, const std::uint8_t* palette, std::uint32_t format) {
  translatePalette(table, palette, [format](std::uint32_t b, std::uint32_t g, std::uint32_t r) {
    return fromChannels(format, r, g, b);
  });
}

/// Pixels of format 6 whose green is cut to five bits and stands one place too low.
void fillWordsWithNarrowGreen(std::uint16_t* table, const std::uint8_t* palette) {
  translatePalette(table, palette, [](std::uint32_t b, std::uint32_t g, std::uint32_t r) {
    return b >> 3 | (g >> 3) << 5 | (r >> 3) << 11;
  });
}

/// A table to be filled: the caller's as it is, or a new one in place of the bitmap's own.
template <typename Pixel>
Result renewTable(Bitmap& bitmap, Pixel*& table, std::uint32_t borrowedFlag) {
  if (owns(bitmap, table, borrowedFlag)) {
    mmgr_free(table);
    table = nullptr;
  }
  if (table != nullptr) return Result::Ok;
  table = allocateArray<Pixel>(256);
  if (table == nullptr) return Result::OutOfMemory;
  bitmap.flags &= ~borrowedFlag;
  return Result::Ok;
}

Result setPalette(Bitmap* bitmap, const std::uint8_t* palette) {
  if (isBadWritePointer(bitmap) || isBadReadPointer(palette)) return Result::IllegalParameter;
  if (formatCode(bitmap->format) != KX_FORMAT_PALETTE) return Result::ColorFormatNotSupported;
  if (isBadWritePointer(bitmap->palette)) return Result::PaletteDestroyed;
  std::memmove(bitmap->palette, palette, paletteBytes);  // the caller may pass the bitmap's own
  if (bitmap->table15 != nullptr) KX_TRY(refreshTable(bitmap, KX_FORMAT_555));
  if (bitmap->table16 != nullptr) KX_TRY(refreshTable(bitmap, KX_FORMAT_565));
  if (bitmap->table8 != nullptr) KX_TRY(refreshTable(bitmap, KX_FORMAT_GREY));
  return Result::Ok;
}

Result setPaletteReference(Bitmap* bitmap, std::uint8_t* palette, std::uint16_t* table15, std::uint16_t* table16,
                           std::uint8_t* table8) {
  KX_TRY(checkWritable(bitmap, palette));
  const void* const given[] = {palette, table15, table16, table8};
  for (const void* block : given)
    if (block != nullptr && isBadWritePointer(block)) return Result::IllegalParameter;
  if (formatCode(bitmap->format) != KX_FORMAT_PALETTE) return Result::ColorFormatNotSupported;
  if (isBadWritePointer(bitmap->palette)) return Result::PaletteDestroyed;

  // A block that comes back in any of the four places lives on as the caller's.
  const auto freeUnlessGiven = [&](void* block, std::uint32_t borrowedFlag) {
    if (owns(*bitmap, block, borrowedFlag) && std::find(std::begin(given), std::end(given), block) == std::end(given))
      mmgr_free(block);
  };
  freeUnlessGiven(bitmap->palette, KX_BORROWED_PALETTE);
  freeUnlessGiven(bitmap->table15, KX_BORROWED_TABLE15);
  freeUnlessGiven(bitmap->table16, KX_BORROWED_TABLE16);
  freeUnlessGiven(bitmap->table8, KX_BORROWED_TABLE8);

  const auto setBorrowed = [&](const void* block, std::uint32_t borrowedFlag) {
    bitmap->flags = block != nullptr ? bitmap->flags | borrowedFlag : bitmap->flags & ~borrowedFlag;
  };
  bitmap->palette = palette;
  bitmap->table15 = table15;
  bitmap->table16 = table16;
  bitmap->table8 = table8;
  setBorrowed(palette, KX_BORROWED_PALETTE);
  setBorrowed(table15, KX_BORROWED_TABLE15);
  setBorrowed(table16, KX_BORROWED_TABLE16);
  setBorrowed(table8, KX_BORROWED_TABLE8);
  return Result::Ok;
}

Result createCachedPalette(void** result, const std::uint8_t* palette, std::uint32_t format) {
  KX_TRY(checkWritable(result, palette));
  switch (formatCode(format)) {
    case KX_FORMAT_GREY: {
      auto* table = allocateArray<std::uint8_t>(256);
      if (table == nullptr) return Result::OutOfMemory;
      fillGrey(table, palette);
      *result = table;
      return Result::Ok;
    }
    case KX_FORMAT_555:
    case KX_FORMAT_565: {
      auto* table = allocateArray<std::uint16_t>(256);
      if (table == nullptr) return Result::OutOfMemory;
      fillWords(table, palette, format);
      *result = table;
      return Result::Ok;
    }
    default:
      return Result::IllegalParameter;
  }
}

}  // namespace

Result refreshTable(Bitmap* bitmap, std::uint32_t targetFormat) {
  KX_TRY(checkWritable(bitmap));
  const std::uint32_t target = formatCode(targetFormat);
  if (target != KX_FORMAT_GREY && target != KX_FORMAT_555 && target != KX_FORMAT_565) return Result::IllegalParameter;
  if (formatCode(bitmap->format) != KX_FORMAT_PALETTE) return Result::ColorFormatNotSupported;
  if (isBadWritePointer(bitmap->palette)) return Result::PaletteDestroyed;
  switch (target) {
    case KX_FORMAT_555:
      KX_TRY(renewTable(*bitmap, bitmap->table15, KX_BORROWED_TABLE15));
      fillWords(bitmap->table15, bitmap->palette, target);
      break;
    case KX_FORMAT_565:
      KX_TRY(renewTable(*bitmap, bitmap->table16, KX_BORROWED_TABLE16));
      fillWordsWithNarrowGreen(bitmap->table16, bitmap->palette);
      break;
    default:
      KX_TRY(renewTable(*bitmap, bitmap->table8, KX_BORROWED_TABLE8));
      fillGrey(bitmap->table8, bitmap->palette);
      break;
  }
  return Result::Ok;
}

}  // namespace kx

std::uint32_t KX_CALL KX_setPalette(Bitmap* bitmap, const std::uint8_t* palette) {
  return kx::toCode(kx::setPalette(bitmap, palette));
}

std::uint32_t KX_CALL KX_setPaletteReference(Bitmap* bitmap, std::uint8_t* palette, std::uint16_t* table15,
                                             std::uint16_t* table16, std::uint8_t* table8) {
  return kx::toCode(kx::setPaletteReference(bitmap, palette, table15, table16, table8));
}

std::uint32_t KX_CALL KX_createCachedPalette(void** result, std::uint8_t* palette, std::uint32_t format) {
  return kx::toCode(kx::createCachedPalette(result, palette, format));
}
