/* kxgraphic: the memory manager, a library of its own (mmgr.dll, libmmgr.so) that a program may replace by one with
 * these two functions. Blocks that kxgraphic hands over for good are released with mmgr_free.
 *
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_MMGR_H
#define KXGRAPHIC_MMGR_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Allocates a block.
 * @param size bytes
 * @return the block, aligned for any type; null for want of memory, which kxgraphic reports as code 2 */
void* mmgr_alloc(size_t size);

/** Releases a block.
 * @param block from mmgr_alloc; null is allowed */
void mmgr_free(void* block);

#ifdef __cplusplus
}
#endif

#endif
