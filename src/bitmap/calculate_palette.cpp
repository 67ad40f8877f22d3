// A palette for a bitmap: its first 256 pixels, pulled towards those that follow.
// SPDX-License-Identifier: MIT
#include <cstring>

#include "bitmap/locks.h"
#include "bitmap/nearest.h"
#include "bitmap/own_methods.h"
#include "bitmap/packed.h"
#include "bitmap/record.h"
#include "bitmap/view.h"
#include "kxgraphic/bitmap.h"
#include "pixel/access.h"

namespace kx {

namespace {

constexpr std::uint32_t entryCount = 256;

std::uint8_t midway(std::uint8_t entry, std::uint8_t pixel) { return static_cast<std::uint8_t>((entry + pixel) >> 1); }

/// Takes pixels in order of the visit and makes entries of them.
class PaletteBuilder {
public:
  explicit PaletteBuilder(std::uint8_t* palette) : palette_(palette) {}
  PaletteBuilder(const PaletteBuilder&) = delete;
  PaletteBuilder& operator=(const PaletteBuilder&) = delete;

  void add(Rgb pixel) {
    if (filled_ == entryCount) {
      pull(nearestEntry(planes_, pixel), pixel);
    } else {
      write(filled_, pixel);
      if (++filled_ == entryCount) planes_ = splitPalette(palette_);
    }
  }

  /// Writes what was pulled. Entries that no pixel reached stay as they were.
  void finish() {
    if (filled_ < entryCount) return;
    for (std::uint32_t i = 0; i < entryCount; ++i) write(i, {planes_.b[i], planes_.g[i], planes_.r[i]});
  }

private:
  void pull(std::uint32_t entry, Rgb pixel) {
    planes_.b[entry] = midway(planes_.b[entry], pixel.b);
    planes_.g[entry] = midway(planes_.g[entry], pixel.g);
    planes_.r[entry] = midway(planes_.r[entry], pixel.r);
  }

  void write(std::uint32_t entry, Rgb colour) {
    std::uint8_t* bytes = palette_ + std::size_t{3} * entry;
    bytes[0] = colour.b;
    bytes[1] = colour.g;
    bytes[2] = colour.r;
  }

  std::uint8_t* palette_;
  std::uint32_t filled_ = 0;
  PalettePlanes planes_{};
};

/// True when reading a pixel through the bitmap's table comes to reading its memory.
bool readsItsMemory(const BitmapMethods& methods) {
  const BitmapMethods& own = *ownBitmapMethods();
  return methods.getPixel == own.getPixel && methods.lock == own.lock && methods.unlock == own.unlock;
}

void collectColours(std::uint8_t* palette, Bitmap* bitmap) {
  PaletteBuilder builder(palette);
  const bool direct = readsItsMemory(*bitmap->methods);
  for (std::int32_t y = 0; y < bitmap->height; ++y) {
    const std::uint8_t* row = rowAddress(*bitmap, y);
    for (std::int32_t x = 0; x < bitmap->width; ++x) {
      const std::uint32_t value = direct ? readPixel(row, bitmap->format, x) : bitmap->methods->getPixel(bitmap, x, y);
      builder.add(toChannels(bitmap->format, value));
    }
  }
  builder.finish();
}

Result collectPackedColours(std::uint8_t* palette, Bitmap* bitmap) {
  Bitmap* plain = nullptr;
  KX_TRY(unpack(&plain, bitmap));
  collectColours(palette, plain);
  KX_TRY(unlock(plain));
  return deleteThroughTable(plain);
}

Result calculatePalette(std::uint8_t* palette, Bitmap* bitmap) {
  KX_TRY(checkWritable(palette, bitmap));
  KX_TRY(lockPixels(bitmap));
  switch (formatCode(bitmap->format)) {
    case KX_FORMAT_MONO:
      std::memset(palette, 0, paletteBytes / 2);
      std::memset(palette + paletteBytes / 2, 255, paletteBytes / 2);
      break;
    case KX_FORMAT_GREY:
      for (std::uint32_t i = 0; i < entryCount; ++i) std::memset(palette + std::size_t{3} * i, static_cast<int>(i), 3);
      break;
    case KX_FORMAT_PALETTE:
      if (isBadWritePointer(bitmap->palette)) return Result::PaletteDestroyed;
      std::memmove(palette, bitmap->palette, paletteBytes);
      break;
    case KX_FORMAT_555:
    case KX_FORMAT_565:
    case KX_FORMAT_888:
      if (hasPackedRows(bitmap->format)) {
        KX_TRY(collectPackedColours(palette, bitmap));
      } else {
        collectColours(palette, bitmap);
      }
      break;
    default:
      break;
  }
  static_cast<void>(unlock(bitmap));
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_calculatePalette(std::uint8_t* palette, Bitmap* bitmap) {
  return kx::toCode(kx::calculatePalette(palette, bitmap));
}
