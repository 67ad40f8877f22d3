// SPDX-License-Identifier: MIT
#include "support/test_heap.h"

#include <cstdlib>

#include "frame/heap.h"

namespace {
std::size_t live = 0;
unsigned untilFailure = 0;
bool failed = false;
}  // namespace

extern "C" void* mmgr_alloc(std::size_t size) {
  if (untilFailure != 0 && --untilFailure == 0) {
    failed = true;
    return nullptr;
  }
  void* block = std::malloc(size);
  if (block != nullptr) ++live;
  return block;
}

extern "C" void mmgr_free(void* block) {
  if (block != nullptr) --live;
  std::free(block);
}

namespace kxtest {

std::size_t liveBlocks() { return live; }

void failAllocation(unsigned countdown) {
  untilFailure = countdown;
  failed = false;
}

bool allocationFailed() { return failed; }

}  // namespace kxtest
