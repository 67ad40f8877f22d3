/* kxgraphic: video modes and presenting frames.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_SCREEN_H
#define KXGRAPHIC_SCREEN_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/screen_object.inc"
#include "exports/declare_end.inc"

#endif
