// What a blit does to its rows, chosen once: fetch, translate, test, combine, store.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "blit/convert.h"
#include "blit/families.h"
#include "blit/request.h"
#include "pixel/rows.h"

namespace kx {

/// Where source pixels come from.
enum class Fetch : std::uint8_t {
  Rows,     ///< whole bytes per pixel in plain rows
  Bits,     ///< one bit per pixel
  Packed,   ///< packed rows
  Nothing,  ///< a format without pixels: all values are 0
};

/// What memory a blit reads of what it writes. Rows are drawn one after the other, so that what a row shares with
/// earlier and later ones only needs their order kept.
enum class Sharing : std::uint8_t { None, OtherRows, SameRow };

/// Rows of bytes from the rectangle's top left corner on; `end` is the end of their block, of packed rows at least of
/// what can be read.
struct Plane {
  std::uint8_t* start = nullptr;
  std::ptrdiff_t pitch = 0;
  const std::uint8_t* end = nullptr;

  [[nodiscard]] std::uint8_t* row(std::int64_t y) const { return start + static_cast<std::ptrdiff_t>(y * pitch); }
};

constexpr Combine combineOf(Variant variant) {
  return variant.alphamap() ? Combine::Alphamap : variant.alpha() ? Combine::Alpha : Combine::Copy;
}

struct BlitPlan {
  std::int32_t width, height;  ///< of the destination rectangle
  bool empty;                  ///< nothing is drawn: no size, or no pixels and no depths to be stored
  bool stretched;
  std::int64_t stepX, stepY;  ///< source pixels per destination pixel, 16.16
  std::int32_t sourceWidth;

  Fetch fetch;
  Plane source;                     ///< of packed rows only the pixel memory
  std::size_t sourceBytes;          ///< of an element as fetched
  std::size_t sourceX;              ///< first bit, or first pixel of a packed row
  const std::uint32_t* packedRows;  ///< row offsets from the rectangle's top on
  bool overruns;                    ///< a run of a packed row may go on past the right edge

  const std::uint8_t* lookupTable;  ///< null: none
  std::size_t lookupBytes;          ///< of the table's elements
  ConvertRow convert;               ///< null: none
  const std::uint8_t* nearestTo;    ///< the palette that `convert` aims at

  bool isCopy;  ///< pixels are not blended
  bool keyed;   ///< the mask leaves out pixels of value 0 before translation
  RowTest test;
  RowKernels::CombineRow combine;  ///< null: the destination has no pixels
  std::uint32_t alpha;

  Plane destination;
  std::size_t destinationBytes;  ///< of an element; 1 for bits
  bool destinationBits;
  std::size_t destinationX;  ///< first bit
  bool readsDestination;     ///< bits only: the old pixels matter

  Plane zBuffer, zMap, alphamap;  ///< `start` null where the variant has none
  std::int32_t z;

  bool strips;        ///< stretched, and its rows are so far apart that they may be drawn strip by strip
  bool pixelByPixel;  ///< rows share memory with what they are made of: keep the order of a plain loop

  /// The row of the source rectangle that a row of the destination rectangle shows.
  [[nodiscard]] std::int64_t sourceRow(std::int32_t y) const { return stretched ? (y * stepY) >> 16 : y; }
};

/// Tests palettes, makes missing translations, and chooses. PaletteDestroyed, OutOfMemory.
Result makePlan(BlitPlan& plan, const FamilyRules& family, const BlitRequest& request);

/// Draws.
void run(const BlitPlan& plan);

}  // namespace kx
