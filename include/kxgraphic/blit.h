/* kxgraphic: copy and stretch blits.
 * SPDX-License-Identifier: MIT
 *
 * Each of the two families has fifteen members: five ways to combine a source pixel with the destination pixel
 * (plain, Transparent, Alpha, TransparentAlpha, Alphamap), times three depth tests (none, ZBuffer, ZMap). Rectangles
 * lie wholly inside their bitmaps; nothing is clipped. A pixel is handled in this order:
 *
 * - Transparent: a source pixel whose stored value is 0 (of a palettised source: index 0) is skipped, depth included.
 * - ZBuffer: the pixel is drawn when z (0 to 255) is less than or equal to the byte of the Z buffer at the destination
 *   position, which then becomes z. ZMap: z is the byte of the Z map at the source position plus zoffset (any value);
 *   its low byte is stored.
 * - Alpha: alpha (0 to 255) is the weight of the destination. Each channel becomes floor(((255 - alpha) * source +
 *   alpha * destination) / 255). Bit 15 of a blended 5-5-5 pixel is 0.
 * - Alphamap: the byte of the alpha map at the source position is the weight of the destination; 255 leaves the pixel
 *   as it is, any other a gives (source * (256 - a) + destination * a) >> 8 in each channel. A blended 5-6-5 pixel
 *   has five bits of green; its lowest green bit is 0.
 *
 * Source and destination may have different formats. A palettised source goes through its translation table for the
 * destination's format (of 24 bits: its palette); a missing table is made with five bits of green and stays in the
 * bitmap. Other pairs convert channel by channel as KX_toRGB and KX_toRed do, into a palette by KX_findNearestColor;
 * blends then happen in the destination's format, where a single bit counts as a channel of 0 or 255 and is set from
 * 128 on.
 *
 * A packed source is decoded row by row. The rest of a run that begins left of sx is copied whole, even beyond the
 * right edge, up to the end of the pixel memory; stretches and copies that convert channel by channel do not do that.
 * A packed destination is unpacked, drawn on with the same function (two members go on as others, see there) and
 * packed again.
 *
 * Z buffer, Z map and alpha map are plain bitmaps of format 3 that cover the rectangles they are read for. Where
 * bitmaps share memory, the result is that of a plain loop over the pixels, and of a plain copy without conversion
 * that of a loop over words of four bytes.
 *
 * Result codes: 0; 7 a bitmap pointer is not writable; 0x2005 a rectangle outside its bitmap; 0x2006 alpha or 0x2007 z
 * outside 0 to 255; 6 (copies) or 0x2000 (stretches) a blend into format 4; 0x2008 Z buffer or Z map and 0x2009 alpha
 * map of a wrong format; 0x2005 one of these too small; then, for each bitmap in the order of the locks (destination,
 * source, Z buffer, alpha map, Z map), 5 its method table cannot be read, what its lock returned, 0x2001 its pixel
 * memory or row table is not writable; 0x2002 a palette or translation table not writable; 2 out of memory.
 */
#ifndef KXGRAPHIC_BLIT_H
#define KXGRAPHIC_BLIT_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/copy_blits.inc"
#include "exports/stretch_blits.inc"
#include "exports/data.inc"
#include "exports/declare_end.inc"

#endif
