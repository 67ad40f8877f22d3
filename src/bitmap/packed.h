// Packed bitmaps: making plain copies of them, packing them again, and decoding single rows.
// Drawing, blits and image operations on packed bitmaps go through these.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "frame/result.h"
#include "kxgraphic/types.h"

namespace kx {

/// Makes a plain copy of a packed bitmap, with the library's own methods and locked once. IllegalParameter,
/// OutOfMemory, BitmapDestroyed (no row table or pixels).
Result unpack(Bitmap** result, Bitmap* source);

/// Packs `source` into `target`, unlocks and deletes `source` through its table. Whatever the outcome `source` is gone,
/// unless its own delete fails. On OutOfMemory the target keeps its old image.
Result pack(Bitmap* target, Bitmap* source);

/// Decodes row y into `row`, which needs room for packedRowBytes() bytes. Never reads past the bitmap's pixel block as
/// far as its size is known.
void decodePackedRow(const Bitmap& bitmap, std::int32_t y, std::uint8_t* row);

/// Room for a decoded row and the overrun of its last packet: (width + 127) pixels.
std::uint64_t packedRowBytes(const Bitmap& bitmap);

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
