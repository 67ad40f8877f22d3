// new and delete of the shared library: straight to the memory manager, null on failure. The linker keeps them hidden,
// so a host's own operators stay its own; the static archive goes without them for the same reason.
// SPDX-License-Identifier: MIT
#include <new>

#include "frame/heap.h"

namespace {

// A program's own memory manager need not know null.
void release(void* block) {
  if (block != nullptr) mmgr_free(block);
}

}  // namespace

void* operator new(std::size_t size) { return mmgr_alloc(size); }
void* operator new[](std::size_t size) { return mmgr_alloc(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return mmgr_alloc(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return mmgr_alloc(size); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
