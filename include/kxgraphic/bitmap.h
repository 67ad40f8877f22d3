/* kxgraphic: bitmaps, clipping, colours and palettes.
 *
 * A bitmap is a record (types.h) of size, format, pixels and, in format 4, a palette. Plain rows take `pitch` bytes,
 * which is the row's bytes rounded up to a multiple of four; one spare row follows the last. Packed rows are
 * run-length coded (RLE_compressWords with whole pixels as elements), each from its place in the row table; a decoded
 * row is cut at the bitmap's width. Any storage bits but 0 count as packed, though only 0x10 is laid out so.
 *
 * Whoever touches pixels locks the bitmap through its own method table, and unlocks it afterwards; locks nest. All
 * blocks come from mmgr_alloc. A palette has 256 entries of blue, green and red; its translations into 5-5-5, 5-6-5
 * and grey are kept in the bitmap once something needed them.
 *
 * Functions return 0 or the code of a fault. Their comments list the codes in the order in which they are tested; a
 * code without a remark is 7 for a pointer that cannot be used, 4 for a method table newer than 0x10000, 2 for want
 * of memory. A size of more than 2^31 - 1 bytes counts as want of memory.
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
