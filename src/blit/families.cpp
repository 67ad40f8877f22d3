// SPDX-License-Identifier: MIT
#include "blit/families.h"

namespace kx {

namespace {
constexpr Variant plain{BlitRule::Copy, BlitDepth::None};
constexpr Variant transparent{BlitRule::Transparent, BlitDepth::None};
}  // namespace

// Settled: the families differ in all of this on purpose. A transparent copy into a packed destination draws the
// source's 0 pixels as well, and a plain stretch into one leaves them out.
constinit const FamilyRules copyFamily = {
    .stretches = false,
    .sourceRectangleFirst = true,
    .refusesEmptySizes = false,
    .blendIntoPalette = Result::FunctionNotSupported,
    .depthNeedsBoth = true,
    .locksAllBeforePacked = true,
    .unlocksDestinationFirst = true,
    .packedCaller = transparent,
    .packedCallee = plain,
};

constinit const FamilyRules stretchFamily = {
    .stretches = true,
    .sourceRectangleFirst = false,
    .refusesEmptySizes = true,
    .blendIntoPalette = Result::ColorFormatNotSupported,
    .depthNeedsBoth = false,
    .locksAllBeforePacked = false,
    .unlocksDestinationFirst = false,
    .packedCaller = plain,
    .packedCallee = transparent,
};

}  // namespace kx
