// The library's own method tables, filled from the lists.
// SPDX-License-Identifier: MIT
#include "interface/method_tables.h"

#include "frame/checks.h"
#include "interface/undesigned.h"
#include "kxgraphic/kxgraphic.h"

namespace kx {

namespace {

#define KX_METHOD(slot, result, parameters) &KX_##slot,
#define KX_PLACEHOLDER(slot, result, parameters) &KX_##slot,
#define KX_UNDESIGNED(slot, result, parameters) reinterpret_cast<KxUndesignedMethod>(&KX_##slot),

BitmapMethods bitmapMethods = {
    currentVersion,
#include "kxgraphic/exports/bitmap_methods.inc"
};

DeviceMethods deviceMethods = {
    currentVersion,
#include "kxgraphic/exports/device_methods.inc"
};

#undef KX_METHOD
#undef KX_PLACEHOLDER
#undef KX_UNDESIGNED

}  // namespace

BitmapMethods* ownBitmapMethods() { return &bitmapMethods; }

DeviceMethods* ownDeviceMethods() { return &deviceMethods; }

}  // namespace kx

std::uint32_t KX_CALL KX_getDriverTechnology() { return 0; }
