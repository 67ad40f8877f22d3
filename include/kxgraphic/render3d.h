/* kxgraphic: devices, textures, triangles and cameras.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_RENDER3D_H
#define KXGRAPHIC_RENDER3D_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/device_object.inc"
#include "exports/triangles.inc"
#include "exports/cameras.inc"
#include "exports/declare_end.inc"

#endif
