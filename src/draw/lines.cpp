// Solid and dotted lines: one walk, and dots by the bitmap's own point operations.
// SPDX-License-Identifier: MIT
#include "bitmap/locks.h"
#include "bitmap/own_methods.h"
#include "bitmap/packed.h"
#include "draw/line_checks.h"
#include "draw/line_dots.h"
#include "draw/line_stepper.h"
#include "draw/target.h"
#include "kxgraphic/draw.h"

namespace kx {

namespace {

Result callPointMethod(Bitmap* target, Point at, std::uint32_t colour, const Blend& blend) {
  const BitmapMethods& methods = *target->methods;
  if (blend.hasAlpha && blend.hasDepth)
    return fromCode(methods.setPixelAlphaZBuffer(target, blend.zBuffer, at.x, at.y, colour, blend.alpha, blend.z));
  if (blend.hasAlpha) return fromCode(methods.setPixelAlpha(target, at.x, at.y, colour, blend.alpha));
  if (blend.hasDepth) return fromCode(methods.setPixelZBuffer(target, blend.zBuffer, at.x, at.y, colour, blend.z));
  return fromCode(methods.setPixel(target, at.x, at.y, colour));
}

bool locksItself(const Bitmap& bitmap) {
  const BitmapMethods& own = *ownBitmapMethods();
  return bitmap.methods->lock == own.lock && bitmap.methods->unlock == own.unlock;
}

/// True when everything that a point of the line would call is the library's own.
bool isOwnPointMethod(const Bitmap& target, const Blend& blend) {
  const BitmapMethods& own = *ownBitmapMethods();
  const BitmapMethods& methods = *target.methods;
  if (!locksItself(target) || (blend.hasDepth && !locksItself(*blend.zBuffer))) return false;
  if (blend.hasAlpha && blend.hasDepth) return methods.setPixelAlphaZBuffer == own.setPixelAlphaZBuffer;
  if (blend.hasAlpha) return methods.setPixelAlpha == own.setPixelAlpha;
  if (blend.hasDepth) return methods.setPixelZBuffer == own.setPixelZBuffer;
  return methods.setPixel == own.setPixel;
}

Result drawDots(Bitmap* target, const Line& line, std::uint32_t colour, const Blend& blend) {
  if (isOwnPointMethod(*target, blend) && hasDirectDots(target->format)) {
    // The tests and locks of a point, once for all of them.
    KX_TRY(lockForDrawing(target, blend));
    drawDotsDirectly(*target, line, colour, blend);
    unlockAfterDrawing(target, blend);
    return Result::Ok;
  }
  return walkLine(line, PointCursor(line),
                  [&](const PointCursor& cursor) { return callPointMethod(target, cursor.point(), colour, blend); });
}

Result drawLine(Bitmap* target, const Line& line, std::uint32_t colour, const Blend& blend) {
  KX_TRY(checkLine(target, line, blend));
  KX_TRY(checkFormats(*target, blend));
  KX_TRY(checkDepthAlong(*target, line, blend, [&](Point at) { return depthCovers(blend, at.x, at.y, 1, 1); }));
  KX_TRY(checkMethods(target, blend));
  KX_TRY(lockForDrawing(target));
  if (hasPackedRows(target->format)) {
    KX_TRY(drawOnUnpacked(target, [&](Bitmap* plain) { return drawLine(plain, line, colour, blend); }));
  } else {
    KX_TRY(drawDots(target, line, colour, blend));
  }
  unlockAfterDrawing(target);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

using kx::Blend;

std::uint32_t KX_CALL KX_drawLine(Bitmap* bitmap, std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                                  std::uint32_t colour) {
  return kx::toCode(kx::drawLine(bitmap, {{x1, y1}, {x2, y2}}, colour, {}));
}

std::uint32_t KX_CALL KX_drawLineAlpha(Bitmap* bitmap, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                       std::int32_t y2, std::uint32_t colour, std::int32_t alpha) {
  return kx::toCode(kx::drawLine(bitmap, {{x1, y1}, {x2, y2}}, colour, Blend::weighted(alpha)));
}

std::uint32_t KX_CALL KX_drawLineZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x1, std::int32_t y1,
                                         std::int32_t x2, std::int32_t y2, std::uint32_t colour, std::int32_t z) {
  return kx::toCode(kx::drawLine(bitmap, {{x1, y1}, {x2, y2}}, colour, Blend::deep(zbuffer, z)));
}

std::uint32_t KX_CALL KX_drawLineAlphaZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x1, std::int32_t y1,
                                              std::int32_t x2, std::int32_t y2, std::uint32_t colour,
                                              std::int32_t alpha, std::int32_t z) {
  return kx::toCode(kx::drawLine(bitmap, {{x1, y1}, {x2, y2}}, colour, Blend::weightedDeep(zbuffer, alpha, z)));
}

std::uint32_t KX_CALL KX_drawDottedLine(Bitmap* bitmap, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                        std::int32_t y2, std::uint32_t colour, std::int32_t spacing) {
  return kx::toCode(kx::drawLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, colour, {}));
}

std::uint32_t KX_CALL KX_drawDottedLineAlpha(Bitmap* bitmap, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                             std::int32_t y2, std::uint32_t colour, std::int32_t spacing,
                                             std::int32_t alpha) {
  return kx::toCode(kx::drawLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, colour, Blend::weighted(alpha)));
}

std::uint32_t KX_CALL KX_drawDottedLineZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x1, std::int32_t y1,
                                               std::int32_t x2, std::int32_t y2, std::uint32_t colour,
                                               std::int32_t spacing, std::int32_t z) {
  return kx::toCode(kx::drawLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, colour, Blend::deep(zbuffer, z)));
}

std::uint32_t KX_CALL KX_drawDottedLineAlphaZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x1, std::int32_t y1,
                                                    std::int32_t x2, std::int32_t y2, std::uint32_t colour,
                                                    std::int32_t spacing, std::int32_t alpha, std::int32_t z) {
  return kx::toCode(
      kx::drawLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, colour, Blend::weightedDeep(zbuffer, alpha, z)));
}
