// Kernels over rows of pixels: what every blit, blended fill and span of a triangle comes down to.
//
// A row kernel sees pointers, counts and weights, never a bitmap. Rows do not overlap unless both ends are equal, or
// the count is 1. Pointers need no alignment. A mask holds one byte a pixel: 0xFF draws, 0 leaves.
// Rows of one-bit pixels are handled as bytes of 0 and 1 between `readBits` and `writeBits`.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "pixel/formats.h"

namespace kx {

/// How a source pixel meets the destination pixel.
enum class Combine : std::uint8_t { Copy, Alpha, Alphamap };
constexpr std::size_t combineCount = 3;

/// Which pixels of the row are drawn: all, those of a source value other than 0, or those that a mask names.
enum class RowTest : std::uint8_t { All, Keyed, Masked };
constexpr std::size_t rowTestCount = 3;

/// Formats as the combining kernels tell them apart. Copies of format 4 go as Grey8.
enum class RowFormat : std::uint8_t { Mono, Grey8, Rgb555, Rgb565, Bgr24 };
constexpr std::size_t rowFormatCount = 5;

/// Bytes of a pixel in a row; bits stand in bytes of their own.
template <RowFormat Format>
constexpr std::size_t pixelBytes = Format == RowFormat::Bgr24                                   ? 3
                                   : Format == RowFormat::Rgb555 || Format == RowFormat::Rgb565 ? 2
                                                                                                : 1;

constexpr RowFormat rowFormats[16] = {RowFormat::Mono,  RowFormat::Grey8,  RowFormat::Grey8,  RowFormat::Grey8,
                                      RowFormat::Grey8, RowFormat::Rgb555, RowFormat::Rgb565, RowFormat::Bgr24};

/// The row format of a format word of 0 or 3 to 7.
constexpr RowFormat rowFormat(std::uint32_t word) { return rowFormats[formatCode(word)]; }

/// What a combining kernel works on: one row, or several that are drawn one after the other. Members that its rule and
/// test do not need may be anything.
struct RowSpan {
  std::uint8_t* dst;
  const std::uint8_t* src;
  std::size_t count;         ///< pixels
  const std::uint8_t* mask;  ///< RowTest::Masked: the same for all rows
  const std::uint8_t* map;   ///< Combine::Alphamap: weight of each destination pixel
  std::uint32_t alpha;       ///< Combine::Alpha: weight of the destination, 0 to 255
  std::size_t rows = 1;
  std::ptrdiff_t dstPitch = 0, srcPitch = 0, mapPitch = 0;  ///< bytes from row to row
};

/// One colour over every pixel of an area, by the rule of Combine::Alpha.
struct ColourArea {
  std::uint8_t* dst;
  std::ptrdiff_t pitch;     ///< bytes from row to row
  std::size_t rows, count;  ///< rows, and pixels of each
  std::uint32_t colour;     ///< a pixel value
  std::uint32_t alpha;      ///< weight of the destination, 0 to 255
};

/// A row of the Z buffer and the depths of the pixels. The mask is written, or narrowed where `refine` is set; pixels
/// that pass store their depth.
struct DepthSpan {
  std::uint8_t* mask;
  std::uint8_t* zBuffer;
  std::size_t count;
  bool refine;
  const std::uint8_t* zMap;  ///< null for one depth for all
  std::int32_t z;            ///< that depth, 0 to 255, or with a map the offset that is added to it (any)
};

/// A table of 256 elements, and what a level makes of it. To be made ready once for all rows.
struct LookupTable {
  const std::uint8_t* entries;
  std::uint8_t made[4 * 256];  ///< of 24 bits the entries in four bytes each; AVX-512: planes of 256 bytes, one for
                               ///< each byte of an entry
};

/// Source columns of one strip of a stretched row, and what a level makes of them. To be made ready once for all rows.
struct GatherColumns {
  static constexpr std::size_t longest = 1024;

  /// They never fall and stay below `limit`; the source row can be read up to there.
  std::uint32_t column[longest];
  std::size_t count;
  std::uint32_t limit;

  // AVX-512: each 64 bytes of the strip are bytes of a window of the source row.
  std::uint32_t windowParts;  ///< registers of a window; 0: too wide
  std::size_t fullBlocks;     ///< whole blocks whose windows can be read whole
  std::uint32_t blockFrom[3 * longest / 64];
  std::uint8_t places[3 * longest];
};

/// The row functions of one level of instruction sets. Arrays by bytes per pixel hold 1, 2 and 3 at indices 0 to 2.
struct RowKernels {
  using CombineRow = void (*)(const RowSpan&);
  /// Null for Alphamap with Keyed, which no variant joins.
  CombineRow combine[combineCount][rowTestCount][rowFormatCount];

  /// Null for Mono.
  void (*blendColour[rowFormatCount])(const ColourArea& area);

  /// Mask of the pixels whose value is not 0, by bytes per pixel.
  void (*keyMask[3])(std::uint8_t* mask, const std::uint8_t* src, std::size_t count);

  void (*depth)(const DepthSpan&);

  /// dst[i] = entries[src[i]], by bytes of an entry; the second where src[i] is not 0.
  using LookupRow = void (*)(std::uint8_t* dst, const std::uint8_t* src, const LookupTable& table, std::size_t count);
  void (*prepareLookup[3])(LookupTable& table, const std::uint8_t* entries);
  LookupRow lookup[3], lookupKeyed[3];

  /// dst[i] = src[column[i]], by bytes per pixel.
  void (*prepareColumns[3])(GatherColumns& columns);
  void (*gather[3])(std::uint8_t* dst, const std::uint8_t* src, const GatherColumns& columns);

  /// One byte of 0 or 1 for each bit from bit `first` of the row on, and back; the most significant bit comes first.
  void (*readBits)(std::uint8_t* dst, const std::uint8_t* row, std::size_t first, std::size_t count);
  void (*writeBits)(std::uint8_t* row, std::size_t first, const std::uint8_t* src, std::size_t count);

  // Always inlined, so that the kernel files leave no copy of it for their instruction set.
  [[gnu::always_inline]] CombineRow& of(Combine rule, RowTest test, RowFormat format) {
    return combine[static_cast<std::size_t>(rule)][static_cast<std::size_t>(test)][static_cast<std::size_t>(format)];
  }
  [[gnu::always_inline]] CombineRow of(Combine rule, RowTest test, RowFormat format) const {
    return combine[static_cast<std::size_t>(rule)][static_cast<std::size_t>(test)][static_cast<std::size_t>(format)];
  }
};

/// The kernels of the level in force.
const RowKernels& rowKernels();

/// The meaning of each kernel, and what the levels put in place of it. Each is given what the level below chose.
RowKernels portableRows();
RowKernels improveRowsSse2(RowKernels base);
RowKernels improveRowsAvx2(RowKernels base);
RowKernels improveRowsAvx512(RowKernels base);
RowKernels improveFetchAvx2(RowKernels base);
RowKernels improveFetchAvx512(RowKernels base);
RowKernels improveCopiesAvx512(RowKernels base);

}  // namespace kx
