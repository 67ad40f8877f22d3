// Whether what a blit writes is also what it reads.
// SPDX-License-Identifier: MIT
#pragma once

#include "blit/plan.h"

namespace kx {

/// How the destination and the Z buffer share memory with each other and with what is read.
Sharing sharedMemory(const BlitPlan& plan, const BlitRequest& request);

}  // namespace kx
