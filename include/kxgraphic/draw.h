/* kxgraphic: points, lines, fills and image operations.
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
