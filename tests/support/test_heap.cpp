// SPDX-License-Identifier: MIT
#include "support/test_heap.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unordered_map>

#include "frame/heap.h"

namespace {

/// What a block holds before it is written: makes reads of memory that was never set repeat themselves.
constexpr int freshByte = 0xCD;

/// Live blocks with the number of the allocation that made each. Never destroyed: objects with static storage may still
/// free blocks when the program ends.
auto& blocks() {
  static auto& map = *new std::unordered_map<void*, std::size_t>;
  return map;
}

std::size_t allocations = 0;
unsigned untilFailure = 0;
bool failed = false;
std::size_t largest = 0;

}  // namespace

extern "C" void* mmgr_alloc(std::size_t size) {
  if (untilFailure != 0 && --untilFailure == 0) {
    failed = true;
    return nullptr;
  }
  if (largest != 0 && size > largest) return nullptr;
  void* block = std::malloc(size);
  if (block == nullptr) return nullptr;
  std::memset(block, freshByte, size);
  blocks().emplace(block, ++allocations);
  return block;
}

extern "C" void mmgr_free(void* block) {
  if (blocks().erase(block) == 0) {
    std::fprintf(stderr, "mmgr_free(%p): not a live block\n", block);
    std::abort();
  }
  std::free(block);
}

namespace kxtest {

std::size_t liveBlocks() { return blocks().size(); }

void failAllocation(unsigned countdown) {
  untilFailure = countdown;
  failed = false;
}

void refuseBlocksAbove(std::size_t bytes) { largest = bytes; }

bool allocationFailed() { return failed; }

std::size_t allocationMark() { return allocations; }

void freeBlocksSince(std::size_t mark) {
  std::erase_if(blocks(), [mark](const auto& block) {
    if (block.second <= mark) return false;
    std::free(block.first);
    return true;
  });
}

}  // namespace kxtest
