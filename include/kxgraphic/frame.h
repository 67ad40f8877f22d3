/* kxgraphic: faults, method tables and drivers.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_FRAME_H
#define KXGRAPHIC_FRAME_H

#include "errors.h"
#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/common_methods.inc"
#include "exports/interfaces.inc"
#include "exports/declare_end.inc"

#endif
