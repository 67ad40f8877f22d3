// Every deliberate difference between the copy and the stretch family, as data.
// SPDX-License-Identifier: MIT
#pragma once

#include "blit/request.h"

namespace kx {

struct FamilyRules {
  bool stretches;             ///< source and destination sizes differ
  bool sourceRectangleFirst;  ///< which rectangle is tested first
  bool refusesEmptySizes;     ///< else sizes below 1 draw nothing and succeed
  Result blendIntoPalette;    ///< the code for a blend into format 4
  bool depthNeedsBoth;        ///< Z buffer and Z map plain and of format 3; else either suffices
  bool locksAllBeforePacked;  ///< else a packed destination is locked alone, and its copy's blit locks the others
  bool unlocksDestinationFirst;
  Variant packedCaller;  ///< for a packed destination this member goes on as
  Variant packedCallee;  ///< that one; all others go on as themselves
};

extern const FamilyRules copyFamily;
extern const FamilyRules stretchFamily;

}  // namespace kx
