/* kxgraphic: LZW, run-length and CRC-32.
 *
 * The streams have no headers: callers keep the lengths. No pointer and no size of an output is tested.
 *
 * An LZW stream is a sequence of codes, packed low bit first into 32-bit little-endian words, the last one padded with
 * zero bits. Codes 0 to 255 stand for that byte, 256 clears the dictionary, entry k has code 257 + k: the string of the
 * code read when it was made, and the byte after it. Codes have 9 bits, and from an entry on as many as its code needs,
 * up to 16. The encoder clears a full dictionary at once.
 *
 * A run-length stream is a sequence of packets of a header h, a signed byte, and elements of a fixed size:
 *   h = 0 to 127      h + 1 elements follow as they are
 *   h = -1 to -127    one element follows, which stands for 1 - h of them
 *   h = -128          nothing follows; such fillers are skipped
 * The encoder makes a run of any two or more equal elements, at most 128; one of exactly 128 that ends before the input
 * does is split into 127 and 1. Rows of packed bitmaps are such streams, their elements pixels.
 *
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_CODEC_H
#define KXGRAPHIC_CODEC_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/codec.inc"
#include "exports/declare_end.inc"

#endif
