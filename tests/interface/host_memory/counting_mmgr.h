/* The functions of the counting memory manager.
 * SPDX-License-Identifier: MIT */
#ifndef COUNTING_MMGR_H
#define COUNTING_MMGR_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

void* mmgr_alloc(size_t size);
void mmgr_free(void* block);

/** Calls of mmgr_alloc so far. */
long mmgr_allocations(void);

/** Blocks allocated and not freed. */
long mmgr_liveBlocks(void);

#ifdef __cplusplus
}
#endif

#endif
