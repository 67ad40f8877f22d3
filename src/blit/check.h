// The tests before anything is locked.
// SPDX-License-Identifier: MIT
#pragma once

#include "blit/families.h"
#include "blit/request.h"

namespace kx {

Result checkRequest(const FamilyRules& family, const BlitRequest& request);

}  // namespace kx
