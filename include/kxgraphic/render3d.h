/* kxgraphic: devices, textures, triangles and cameras.
 *
 * A Device3D draws into a 15- or 16-bit bitmap, or into whatever is the back buffer of a screen at the time of each
 * call, inside its clip rectangle cut to that target. It keeps no list of its textures and cameras: each is deleted by
 * its own function, and all must be gone before what they stand on.
 *
 * Triangles are given in screen space: pixels to the right and down, and texels of level 0. Fields may be floats or
 * integers; values beyond +-32767 and infinities are limited to that range, and not-a-number counts as 0. Floats are
 * rounded to nearest, halves to even, when all three x lie between the clip columns, and otherwise cut toward zero.
 * Rows are inclusive at both ends. A row starts at the left edge's pixel and has one pixel more than there are whole
 * ones between the edges: it ends at the right edge's pixel or the one before. All three corners on one row, or a flat
 * top whose two corners share x, draw nothing.
 *
 * A pixel is the nearest texel, to whose channels (five bits each; the lowest bit of a 5-6-5 green is dropped) the
 * interpolated shade is added, limited to black and white. Of a shade byte (signed) the upper five bits count: 0x08 is
 * one step of a channel, 0xF8 minus one. Bit 0 of every pixel drawn is set, so that none has the value 0, which
 * transparent blits skip. No depth is tested or written.
 *
 * Texel coordinates are the caller's duty: every pixel must fall on a texel, 0 to width - 1 and 0 to height - 1. A
 * right or lower corner is never quite reached, as the steps count both ends, so that it may lie on the far edge: u
 * from 0 to width over as many pixels shows each texel once. Debug builds of the library stop at a vertex outside of
 * 0 to width and 0 to height; others read some texel of the level instead.
 *
 * The drawing functions give the same pixels in any floating-point mode, KX_beginRendering or not.
 *
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
