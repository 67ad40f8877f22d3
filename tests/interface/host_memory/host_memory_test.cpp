// A program with a memory manager and an operator new of its own: the library uses the first and leaves the second
// alone. SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "calls.h"
#include "counting_mmgr.h"

namespace {
long newCalls = 0;

void* allocate(std::size_t size) {
  ++newCalls;
  return std::malloc(size);
}
}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void operator delete(void* block) noexcept { std::free(block); }
void operator delete[](void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace {

TEST(HostMemory, TheLibraryTakesAllItsMemoryFromTheHostsManager) {
  const long allocationsBefore = mmgr_allocations();
  const long liveBefore = mmgr_liveBlocks();
  const long newBefore = newCalls;
  {
    kxtest::Scene scene;
    EXPECT_LT(allocationsBefore, mmgr_allocations());
    kxtest::callEveryFamily(scene, [](const char*, auto function, auto... arguments) { function(arguments...); });
  }
  EXPECT_EQ(newBefore, newCalls);
  EXPECT_EQ(liveBefore, mmgr_liveBlocks());
}

TEST(HostMemory, TheHostsNewDoesNotReachTheManager) {
  const long allocationsBefore = mmgr_allocations();
  const long newBefore = newCalls;
  int* volatile number = new int(1);
  delete number;
  EXPECT_EQ(newBefore + 1, newCalls);
  EXPECT_EQ(allocationsBefore, mmgr_allocations());
}

}  // namespace
