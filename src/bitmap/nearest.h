// The palette entry nearest to a colour.
// SPDX-License-Identifier: MIT
#pragma once

#include "bitmap/nearest_kernels.h"
#include "pixel/channels.h"

namespace kx {

/// Takes a palette apart for many searches.
PalettePlanes splitPalette(const std::uint8_t* palette);

/// Index of the nearest entry; of equally near ones the last.
std::uint32_t nearestEntry(const PalettePlanes& planes, Rgb colour);

}  // namespace kx
