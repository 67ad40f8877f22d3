/* kxgraphic: copy and stretch blits.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_BLIT_H
#define KXGRAPHIC_BLIT_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/copy_blits.inc"
#include "exports/stretch_blits.inc"
#include "exports/data.inc"
#include "exports/declare_end.inc"

#endif
