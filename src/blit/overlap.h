// Whether what a blit writes may be what it reads.
// SPDX-License-Identifier: MIT
#pragma once

#include "blit/plan.h"

namespace kx {

/// True when the destination or the Z buffer may share memory with each other or with anything that is read. May say so
/// for rectangles that lie side by side in the same rows.
bool sharesMemory(const BlitPlan& plan, const BlitRequest& request);

}  // namespace kx
