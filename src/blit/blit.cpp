// One blit from end to end: checks, locks, a packed destination's detour, drawing, unlocks.
// SPDX-License-Identifier: MIT
#include "bitmap/locks.h"
#include "bitmap/packed.h"
#include "blit/check.h"
#include "blit/in_place.h"
#include "blit/plan.h"

namespace kx {

namespace {

/// The source and the bitmaps beside it, in the order in which they are locked and unlocked.
template <typename Step>
Result forSourceAndOthers(const BlitRequest& r, Step step) {
  KX_TRY(step(r.src));
  if (!r.variant.others()) return Result::Ok;
  if (r.variant.zBuffer()) KX_TRY(step(r.zBuffer));
  if (r.variant.alphamap()) KX_TRY(step(r.alphamap));
  if (r.variant.zMap()) KX_TRY(step(r.zMap));
  return Result::Ok;
}

Result lockSourceAndOthers(const BlitRequest& request) {
  return forSourceAndOthers(request, [&](Bitmap* bitmap) {
    KX_TRY(lockPixels(bitmap));
    const bool unreachable =
        bitmap == request.src && hasPackedRows(bitmap->format) && isBadWritePointer(bitmap->rowTable);
    return unreachable ? Result::BitmapDestroyed : Result::Ok;
  });
}

/// What an unlock returns is not looked at: the picture stands.
Result unlockSourceAndOthers(const BlitRequest& request) {
  return forSourceAndOthers(request, [](Bitmap* bitmap) {
    static_cast<void>(unlock(bitmap));
    return Result::Ok;
  });
}

Result drawPacked(const FamilyRules& family, const BlitRequest& request) {
  return drawOnUnpacked(request.dst, [&](Bitmap* plain) {
    BlitRequest onPlain = request;
    onPlain.dst = plain;
    if (request.variant == family.packedCaller) onPlain.variant = family.packedCallee;
    return blit(family, onPlain);
  });
}

Result drawPlanned(const FamilyRules& family, const BlitRequest& request) {
  BlitPlan plan;
  KX_TRY(makePlan(plan, family, request));
  run(plan);
  return Result::Ok;
}

}  // namespace

// Settled: whatever a failing step has locked stays locked.
Result blit(const FamilyRules& family, const BlitRequest& request) {
  KX_TRY(checkRequest(family, request));
  const bool packed = hasPackedRows(request.dst->format);
  const bool locksOthers = !packed || family.locksAllBeforePacked;
  KX_TRY(lockPixels(request.dst));
  if (locksOthers) KX_TRY(lockSourceAndOthers(request));
  if (packed || !drawInPlace(family, request))
    KX_TRY(packed ? drawPacked(family, request) : drawPlanned(family, request));
  if (family.unlocksDestinationFirst) static_cast<void>(unlock(request.dst));
  if (locksOthers) KX_TRY(unlockSourceAndOthers(request));
  if (!family.unlocksDestinationFirst) static_cast<void>(unlock(request.dst));
  return Result::Ok;
}

}  // namespace kx
