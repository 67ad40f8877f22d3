/* The functions of the counting memory manager.
 * SPDX-License-Identifier: MIT */
#ifndef COUNTING_MMGR_H
#define COUNTING_MMGR_H

#include "kxgraphic/mmgr.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Calls of mmgr_alloc so far. */
long mmgr_allocations(void);

/** Blocks allocated and not freed. */
long mmgr_liveBlocks(void);

#ifdef __cplusplus
}
#endif

#endif
