// SPDX-License-Identifier: MIT
#include "support/allocation_sweep.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/test_heap.h"

namespace kxtest {

namespace {

/// A call that needs more allocations than this is taken for one that never ends.
constexpr unsigned mostAllocations = 10000;

using Bytes = std::vector<std::byte>;

std::vector<Bytes> snapshot(const AllocationSweep& sweep) {
  std::vector<Bytes> bytes;
  for (const auto& range : sweep.untouched) bytes.emplace_back(range.begin(), range.end());
  return bytes;
}

}  // namespace

unsigned sweepAllocations(const AllocationSweep& sweep) {
  for (unsigned k = 1; k <= mostAllocations; ++k) {
    SCOPED_TRACE(testing::Message() << "allocation " << k << " fails");
    const std::size_t liveAtStart = liveBlocks();
    sweep.prepare();
    const std::vector<Bytes> before = snapshot(sweep);
    const std::size_t liveBefore = liveBlocks();
    const std::size_t mark = allocationMark();

    failAllocation(k);
    const std::uint32_t code = sweep.call();
    const bool failed = allocationFailed();
    failAllocation(0);

    if (failed) {
      EXPECT_EQ(sweep.failureCode, code);
      EXPECT_EQ(before, snapshot(sweep)) << "an output was touched";
      EXPECT_EQ(liveBefore + sweep.leaked(k), liveBlocks()) << "live blocks after the failure";
      sweep.checkFailure();
      if (sweep.leaked(k) != 0) freeBlocksSince(mark);
    } else {
      EXPECT_EQ(sweep.successCode, code);
      sweep.release();
    }
    sweep.cleanup();
    EXPECT_EQ(liveAtStart, liveBlocks()) << "live blocks at the end";
    if (!failed) return k - 1;
    if (testing::Test::HasFailure()) return k;
  }
  ADD_FAILURE() << "the call does not come to an end";
  return mostAllocations;
}

}  // namespace kxtest
