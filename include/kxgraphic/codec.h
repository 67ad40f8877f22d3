/* kxgraphic: LZW, run-length and CRC-32.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_CODEC_H
#define KXGRAPHIC_CODEC_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/codec.inc"
#include "exports/declare_end.inc"

#endif
