// The memory manager of the white-box tests: counts blocks, fails on request, fills new blocks with a pattern and stops
// the program when something is freed that is no live block; a program's own manager need not know null either. Blocks
// end at a page that nobody may touch or begin behind one, now this, now that.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace kxtest {

/// Blocks allocated and not freed yet.
std::size_t liveBlocks();

/// From now on the `countdown`-th allocation (1 is the next one) fails, and only that one. 0: none fails.
void failAllocation(unsigned countdown);

/// From now on blocks of more than `bytes` bytes are refused, as on a machine with little memory. 0: none is.
void refuseBlocksAbove(std::size_t bytes);

/// True when the failure asked for has happened.
bool allocationFailed();

/// A point in time for freeBlocksSince().
std::size_t allocationMark();

/// Frees every block that was allocated after `mark` and is still live: for calls that are known to leak.
void freeBlocksSince(std::size_t mark);

}  // namespace kxtest
