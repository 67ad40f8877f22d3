// Moving a rectangle inside one bitmap.
// SPDX-License-Identifier: MIT
#include <cstring>

#include "bitmap/packed.h"
#include "bitmap/view.h"
#include "draw/target.h"
#include "kxgraphic/blit.h"

namespace kx {

namespace {

struct Move {
  std::int32_t dx, dy, sx, sy, w, h;
};

void moveRows(const Bitmap& bitmap, const Move& move) {
  const auto bytes = static_cast<std::size_t>(byteOffset(bitmap.format, move.w));
  const bool bottomUp = move.sy < move.dy;
  for (std::int32_t i = 0; i < move.h; ++i) {
    const std::int32_t row = bottomUp ? move.h - 1 - i : i;
    std::memmove(pixelAddress(bitmap, move.dx, move.dy + row), pixelAddress(bitmap, move.sx, move.sy + row), bytes);
  }
}

Result moveRect(Bitmap* bitmap, const Move& move) {
  KX_TRY(checkBitmaps(bitmap, {}));
  if (!contains(*bitmap, move.sx, move.sy, move.w, move.h) || !contains(*bitmap, move.dx, move.dy, move.w, move.h))
    return Result::CoordinateOutOfRange;
  if (bytesPerPixel(bitmap->format) == 0) return Result::ColorFormatNotSupported;
  KX_TRY(checkMethods(bitmap));
  KX_TRY(lockForDrawing(bitmap));
  if (hasPackedRows(bitmap->format)) {
    KX_TRY(drawOnUnpacked(bitmap, [&](Bitmap* plain) { return moveRect(plain, move); }));
  } else if (move.w > 0) {
    moveRows(*bitmap, move);
  }
  unlockAfterDrawing(bitmap);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_moveRect(Bitmap* bitmap, std::int32_t dx, std::int32_t dy, std::int32_t sx, std::int32_t sy,
                                  std::int32_t w, std::int32_t h) {
  return kx::toCode(kx::moveRect(bitmap, {dx, dy, sx, sy, w, h}));
}
