/* kxgraphic: the whole interface, for C11 and C++17.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_H
#define KXGRAPHIC_H

#include "bitmap.h"
#include "blit.h"
#include "codec.h"
#include "draw.h"
#include "frame.h"
#include "landscape.h"
#include "render3d.h"
#include "screen.h"
#include "types.h"

#endif
