// The library's own method tables.
// SPDX-License-Identifier: MIT
#pragma once

#include "bitmap/own_methods.h"
#include "kxgraphic/types.h"

namespace kx {

/// The library's own 3D device method table.
DeviceMethods* ownDeviceMethods();

}  // namespace kx
