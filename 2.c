#line 74 "docs/porting.md"
/* mmgr.c */
#include <stddef.h>
#include <stdlib.h>

void* mmgr_alloc(size_t size);
void mmgr_free(void* block);

static size_t blocks;

void* mmgr_alloc(size_t size) {
  void* block = malloc(size);
  if (block != NULL) ++blocks;
  return block;
}

void mmgr_free(void* block) {
  if (block != NULL) --blocks;
  free(block);
}
