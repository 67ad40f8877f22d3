// Palette translations kept in a bitmap.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "frame/result.h"
#include "kxgraphic/types.h"

namespace kx {

/// Fills the bitmap's translation for a target format (3, 5 or 6) from its palette: a table of the bitmap's own is made
/// anew, the caller's is rewritten in place. IllegalParameter, ColorFormatNotSupported, PaletteDestroyed, OutOfMemory
/// (the bitmap is then without this table). Settled: the 5-6-5 table carries five bits of green, unlike
/// KX_createCachedPalette's.
Result refreshTable(Bitmap* bitmap, std::uint32_t targetFormat);

}  // namespace kx
