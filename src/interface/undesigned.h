// Prototypes of the exports whose argument lists are not public yet.
// SPDX-License-Identifier: MIT
#pragma once

#include "kxgraphic/types.h"

#include "kxgraphic/exports/declare_begin.inc"
#undef KX_UNDESIGNED
#define KX_UNDESIGNED KX_METHOD
#include "kxgraphic/exports/undesigned_methods.inc"
#include "kxgraphic/exports/declare_end.inc"
