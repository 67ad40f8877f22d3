// Packed bitmaps: making plain copies of them, packing them again, and decoding single rows.
// Drawing, blits and image operations on packed bitmaps go through these.
//
// Neither the record nor the memory manager knows the size of a packed pixel block, so the row table and the packets
// are trusted as to where they read; memory of the library's own is never overrun, whatever they say.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "frame/result.h"
#include "kxgraphic/types.h"

namespace kx {

/// Makes a plain copy of a packed bitmap, with the library's own methods and locked once. IllegalParameter,
/// BitmapDestroyed (no row table or pixels), PackerTypeNotSupported (a format without whole bytes), OutOfMemory.
Result unpack(Bitmap** result, Bitmap* source);

/// Packs `source` into `target`, unlocks and deletes `source` through its table. Whatever the outcome `source` is gone,
/// unless its own delete fails. On any failure the target keeps its old image. Afterwards the pixel block and the row
/// table are the target's own.
Result pack(Bitmap* target, Bitmap* source);

/// What decoding a row took and gave.
struct DecodedRow {
  std::uint64_t pixels;       ///< pixels written: the width or, where the last packet goes beyond, up to 127 more
  std::uint64_t packedBytes;  ///< bytes the row takes in the pixel block
};

/// Decodes row y, whole packets until the width is reached, into `row`, which needs packedRowBytes() bytes.
DecodedRow decodePackedRow(const Bitmap& bitmap, std::int32_t y, std::uint8_t* row);

/// Room for a decoded row and the overrun of its last packet: (width + 127) pixels.
std::uint64_t packedRowBytes(const Bitmap& bitmap);

/// Bytes that row y takes in the pixel block.
std::uint64_t packedRowLength(const Bitmap& bitmap, std::int32_t y);

/// Bytes of the pixel block up to the end of its last row. BitmapDestroyed (no row, row table or pixels), OutOfMemory.
Result packedBlockBytes(std::uint64_t& bytes, const Bitmap& bitmap);

/// Runs `draw(Bitmap* plain)` on a plain copy of a packed bitmap and packs the result back. The copy is always
/// released; the first failure is returned.
template <typename Draw>
Result drawOnUnpacked(Bitmap* packed, Draw draw);

/// Gives a plain copy back without packing it, after a failure.
void discardUnpacked(Bitmap* plain);

template <typename Draw>
Result drawOnUnpacked(Bitmap* packed, Draw draw) {
  Bitmap* plain = nullptr;
  KX_TRY(unpack(&plain, packed));
  const Result drawn = draw(plain);
  if (drawn != Result::Ok) {
    discardUnpacked(plain);
    return drawn;
  }
  return pack(packed, plain);
}

}  // namespace kx
