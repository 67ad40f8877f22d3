// Locking through a bitmap's own method table, as every operation on somebody's bitmap does.
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/checks.h"
#include "frame/result.h"
#include "kxgraphic/types.h"

namespace kx {

/// MethodTableDestroyed when the bitmap has no table to lock it through.
inline Result lockOnly(Bitmap* bitmap) {
  if (isBadReadPointer(bitmap->methods)) return Result::MethodTableDestroyed;
  return fromCode(bitmap->methods->lock(bitmap));
}

/// Locks and then requires writable pixel memory (BitmapDestroyed, with the lock still raised).
/// Settled: no operation lowers a lock again when a later step fails, so this is no guard object.
inline Result lockPixels(Bitmap* bitmap) {
  KX_TRY(lockOnly(bitmap));
  return isBadWritePointer(bitmap->pixels) ? Result::BitmapDestroyed : Result::Ok;
}

inline Result unlock(Bitmap* bitmap) { return fromCode(bitmap->methods->unlock(bitmap)); }

/// Deletes through the bitmap's own method table.
inline Result deleteThroughTable(Bitmap* bitmap) { return fromCode(bitmap->methods->deleteBitmap(bitmap)); }

}  // namespace kx
