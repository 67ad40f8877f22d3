/* kxgraphic: landscapes, height maps and water.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_LANDSCAPE_H
#define KXGRAPHIC_LANDSCAPE_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/landscape.inc"
#include "exports/height_map.inc"
#include "exports/water.inc"
#include "exports/declare_end.inc"

#endif
