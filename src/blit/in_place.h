// Blits that need no plan: most of all blits, the smallest among them.
// SPDX-License-Identifier: MIT
#pragma once

#include "blit/families.h"
#include "blit/request.h"

namespace kx {

/// Draws a copy between plain rows of one format without depth, whose source rows are combined with the destination as
/// they lie. False, and nothing drawn, for all others.
bool drawInPlace(const FamilyRules& family, const BlitRequest& request);

}  // namespace kx
