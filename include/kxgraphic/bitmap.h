/* kxgraphic: bitmaps, clipping, colours and palettes.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_BITMAP_H
#define KXGRAPHIC_BITMAP_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/bitmap_object.inc"
#include "exports/bitmap_functions.inc"
#include "exports/clipping.inc"
#include "exports/colours.inc"
#include "exports/declare_end.inc"

#endif
