// The one hook from the bitmaps up to the interface: bitmaps that the library makes for itself use its own functions.
// SPDX-License-Identifier: MIT
#pragma once

#include "kxgraphic/types.h"

namespace kx {

/// The library's own bitmap method table (defined in interface/).
BitmapMethods* ownBitmapMethods();

}  // namespace kx
