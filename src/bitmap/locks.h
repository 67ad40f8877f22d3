// Locking, making and deleting through a bitmap's own method table, as every operation on somebody's bitmap does.
// SPDX-License-Identifier: MIT
#pragma once

#include "frame/checks.h"
#include "frame/result.h"
#include "kxgraphic/bitmap.h"
#include "kxgraphic/types.h"

namespace kx {

/// What KX_lock does with a bitmap that can be written. Settled: the count stops at its greatest value.
inline Result raiseLock(Bitmap* bitmap) {
  if (isBadWritePointer(bitmap->pixels)) return Result::BitmapDestroyed;
  if (bitmap->lockCount != 0xFFFFFFFF) ++bitmap->lockCount;
  return Result::Ok;
}

/// What KX_unlock does with a bitmap that can be written.
inline Result lowerLock(Bitmap* bitmap) {
  if (bitmap->lockCount != 0) --bitmap->lockCount;
  return Result::Ok;
}

/// MethodTableDestroyed when the bitmap has no table to go through.
inline Result checkTable(const Bitmap& bitmap) {
  return isBadReadPointer(bitmap.methods) ? Result::MethodTableDestroyed : Result::Ok;
}

/// Locks a bitmap whose table has not been tested; its pixels are not either.
inline Result lockOnly(Bitmap* bitmap) {
  KX_TRY(checkTable(*bitmap));
  return fromCode(bitmap->methods->lock(bitmap));
}

/// Locks a bitmap whose table can be read and then requires writable pixel memory (BitmapDestroyed, with the lock still
/// raised). Small operations come by the million: the library's own lock, which tests the memory itself, is raised on
/// the spot. That leaves out its test of the record, which callers have made.
/// Settled: no operation lowers a lock again when a later step fails, so this is no guard object.
inline Result lockTestedPixels(Bitmap* bitmap) {
  if (bitmap->methods->lock == &KX_lock) return raiseLock(bitmap);
  KX_TRY(fromCode(bitmap->methods->lock(bitmap)));
  return isBadWritePointer(bitmap->pixels) ? Result::BitmapDestroyed : Result::Ok;
}

/// The same for a bitmap whose table has not been tested.
inline Result lockPixels(Bitmap* bitmap) {
  KX_TRY(checkTable(*bitmap));
  return lockTestedPixels(bitmap);
}

/// Unlocks a bitmap that is locked; the library's own lock is lowered on the spot.
inline Result unlock(Bitmap* bitmap) {
  return bitmap->methods->unlock == &KX_unlock ? lowerLock(bitmap) : fromCode(bitmap->methods->unlock(bitmap));
}

/// Locking and unlocking around an operation that cannot fail would leave no trace. Single points that leave both out
/// do not wait for the count to come back from memory.
inline bool locksCancelOut(const Bitmap& bitmap) {
  return bitmap.methods->lock == &KX_lock && bitmap.methods->unlock == &KX_unlock && bitmap.lockCount != 0xFFFFFFFF;
}

/// Makes a bitmap as `model`'s owner makes them: through the same table, with the same extras. MethodTableDestroyed
/// when there is none.
inline Result createThroughTable(Bitmap** result, const Bitmap& model, std::int32_t width, std::int32_t height,
                                 std::uint32_t format) {
  KX_TRY(checkTable(model));
  return fromCode(
      model.methods->createBitmap(result, width, height, format, model.extra1, model.extra2, model.methods));
}

/// Deletes through the bitmap's own method table.
inline Result deleteThroughTable(Bitmap* bitmap) { return fromCode(bitmap->methods->deleteBitmap(bitmap)); }

}  // namespace kx
