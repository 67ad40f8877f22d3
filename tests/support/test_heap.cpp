// SPDX-License-Identifier: MIT
#include "support/test_heap.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unordered_map>

#include "frame/heap.h"
#include "support/guard_pages.h"

#if defined(__has_feature)
#if __has_feature(memory_sanitizer)
#include <sanitizer/msan_interface.h>
#define KX_MEMORY_SANITIZER
#endif
#endif

namespace {

using kxtest::GuardedBlock;

/// What a block holds before it is written: makes reads of memory that was never set repeat themselves.
constexpr int freshByte = 0xCD;

/// Windows asks for the first four bytes of whatever a pointer names, and a heap has them.
constexpr std::size_t leastGuarded = 4;

/// Larger blocks are left to the C heap, for the sake of address space.
constexpr std::size_t largestGuarded = 1 << 20;

std::size_t allocations = 0;

struct Block {
  std::size_t number;    ///< of the allocation that made it
  GuardedBlock guarded;  ///< none for blocks of the C heap
};

/// Live blocks. Never destroyed: objects with static storage may still free blocks when the program ends.
auto& blocks() {
  static auto& map = *new std::unordered_map<void*, Block>;
  return map;
}

/// Valgrind and the memory sanitizer want blocks that nobody has written to: with KX_MEMCHECK in the environment.
bool heapIsChecked() {
  static const bool checked = std::getenv("KX_MEMCHECK") != nullptr;
  return checked;
}

bool hasGuardPages(std::size_t size) { return KX_GUARD_PAGES && size <= largestGuarded && !heapIsChecked(); }

/// For the memory sanitizer, which is told to take all other heap memory as set: the standard library writes to its own
/// where the sanitizer does not look.
void markUnset([[maybe_unused]] const void* block, [[maybe_unused]] std::size_t size) {
#ifdef KX_MEMORY_SANITIZER
  if (block != nullptr) __msan_allocated_memory(block, size);
#endif
}

/// A block of the C heap, or one that ends or begins at a page nobody may touch. Null on failure.
void* makeBlock(std::size_t size) {
  Block block{++allocations, {}};
  void* start = nullptr;
  if (hasGuardPages(size)) {
    const bool front = block.number * 0x9E3779B9u >> 16 & 1;
    block.guarded =
        GuardedBlock(std::max(size, leastGuarded), front ? GuardedBlock::Flush::Front : GuardedBlock::Flush::Back);
    start = block.guarded.data();
  } else {
    start = std::malloc(size);
    markUnset(start, size);
  }
  if (start != nullptr) blocks().emplace(start, std::move(block));
  return start;
}

/// Gives it back to where it came from.
void dropBlock(void* start, const Block& block) {
  if (block.guarded.data() == nullptr) std::free(start);
}

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
  void* block = makeBlock(size);
  if (block != nullptr && !heapIsChecked()) std::memset(block, freshByte, size);
  return block;
}

extern "C" void mmgr_free(void* block) {
  const auto place = blocks().find(block);
  if (place == blocks().end()) {
    std::fprintf(stderr, "mmgr_free(%p): not a live block\n", block);
    std::abort();
  }
  dropBlock(block, place->second);
  blocks().erase(place);
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
    if (block.second.number <= mark) return false;
    dropBlock(block.first, block.second);
    return true;
  });
}

}  // namespace kxtest
