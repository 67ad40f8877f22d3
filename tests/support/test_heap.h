// The memory manager of the white-box tests: counts blocks and fails on request.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace kxtest {

/// Blocks allocated and not freed yet.
std::size_t liveBlocks();

/// From now on the `countdown`-th allocation (1 is the next one) fails, and only that one. 0: none fails.
void failAllocation(unsigned countdown);

/// True when the failure asked for has happened.
bool allocationFailed();

}  // namespace kxtest
