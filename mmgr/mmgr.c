/* The memory manager of kxgraphic on the C heap. A program may put a library of its own in its place.
 * SPDX-License-Identifier: MIT */
#include <stddef.h>
#include <stdlib.h>

#ifdef _WIN32
#define MMGR_EXPORT __declspec(dllexport)
#else
#define MMGR_EXPORT __attribute__((visibility("default")))
#endif

MMGR_EXPORT void* mmgr_alloc(size_t size);
MMGR_EXPORT void mmgr_free(void* block);

/* A block of `size` bytes, or null. */
void* mmgr_alloc(size_t size) { return malloc(size); }

/* Releases a block; null is allowed. */
void mmgr_free(void* block) { free(block); }
