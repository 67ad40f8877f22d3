/* kxgraphic: landscapes, height maps and water.
 *
 * A landscape is a rectangle of cells with a height, a light and a texture each. Saving: LS_convertToData with a
 * TextureRef for every texture in use, then write the block. Loading: LS_getTextureListFromData, find the texture of
 * each name, LS_createFromData with the completed list. The saved block, little-endian and without gaps: total
 * bytes, six position values, six scale values, width, height, light flag, texture count N (68 bytes); heights (1
 * byte a cell), lights (3 bytes a cell when the flag is 1, else 1), textures (2 bytes a cell); then for the N
 * textures their parameters (4 bytes each), flags (1), values (4) and names (64).
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_LANDSCAPE_H
#define KXGRAPHIC_LANDSCAPE_H

#include "types.h"

#include "exports/declare_begin.inc"
#include "exports/landscape.inc"
#include "exports/height_map.inc"
#include "exports/water.inc"
#include "exports/declare_end.inc"

#endif
