/* kxgraphic: points, lines, fills and image operations.
 *
 * Drawing takes coordinates in pixels, which must lie inside the bitmap (nothing is clipped), and colours as pixel
 * values of the bitmap's format. Variants add, in the words of their names:
 *   Alpha    a weight of the target from 0 (the colour alone) to 255 (nothing changes); each channel becomes
 *            ((255 - alpha) colour + alpha target) / 255, cut to an integer. Formats 3, 5, 6 and 7.
 *   ZBuffer  a plain bitmap of format 3 that holds the depth of each pixel of the target at the same place, and a
 *            depth z from 0 to 255. Pixels whose stored depth is z or more are drawn and store z. It may differ from
 *            the target in size as long as its pixel block holds the depths.
 *
 * Functions return 0 or the code of a fault; their comments list the codes in the order of the tests. Common ones:
 *   7       a bitmap that cannot be accessed, or a value out of its domain
 *   0x2005  coordinates outside the bitmap
 *   0x2006  alpha, and 0x2007 z, not 0 to 255
 *   6       a blend into a format that has none, or a change of a palette that is used by reference
 *   0x2008  a Z buffer that is packed or not of format 3
 *   5       a bitmap without method table
 *   0x2001  a bitmap without pixels, or packed without a row table
 *   8       packed rows of less than a byte per pixel
 *   2       memory ran out, which only packed bitmaps, flood fills and mirroring need
 * and whatever a bitmap's own lock returns.
 *
 * Up to code 5 nothing is locked or changed. Then the target and the Z buffer are locked through their own tables.
 * Drawing that fails after that leaves them locked; image operations leave locked only a bitmap without pixels. Packed
 * bitmaps are unpacked, drawn on and packed again as a whole for every call, and are unchanged when one fails.
 *
 * Image operations work on whole bitmaps in place. Channels of five and six bits are widened to eight with ones below,
 * the green of six bits losing its lowest bit to them, and cut again. In format 4 the operations on colours change the
 * palette and its translations, unless one of these belongs to somebody else (bits 0x04 to 0x20 of Bitmap.flags).
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_DRAW_H
#define KXGRAPHIC_DRAW_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/points.inc"
#include "exports/lines.inc"
#include "exports/fills.inc"
#include "exports/image_methods.inc"
#include "exports/image_functions.inc"
#include "exports/declare_end.inc"

#endif
