// Bitmaps of the library for its own rows.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "kxgraphic/kxgraphic.h"
#include "pictures.h"

namespace kxbench {

struct DeleteBitmap {
  void operator()(Bitmap* bitmap) const { KX_deleteBitmap(bitmap); }
};
using OwnedBitmap = std::unique_ptr<Bitmap, DeleteBitmap>;

/// The library's own methods.
BitmapMethods* ownMethods();

/// A bitmap with the picture's pixels and, for palette indices, the palette of the benchmarks.
OwnedBitmap makeBitmap(Picture picture);

/// The same with packed rows.
OwnedBitmap makePackedBitmap(Picture picture);

/// Ends the program when a call of the library failed: a benchmark of refusals would be fast.
void require(std::uint32_t code, const char* what);

}  // namespace kxbench
