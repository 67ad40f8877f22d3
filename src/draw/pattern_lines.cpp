// Pattern lines: the walk of the other lines with a whole bitmap stamped on every dot.
// SPDX-License-Identifier: MIT
#include "bitmap/locks.h"
#include "bitmap/packed.h"
#include "draw/line_checks.h"
#include "frame/checks.h"
#include "kxgraphic/bitmap.h"
#include "kxgraphic/draw.h"

namespace kx {

namespace {

/// What is stamped: all of `bitmap`, or its pixels other than 0.
struct Pattern {
  Bitmap* bitmap;
  bool transparent = false;
};

/// The visible part of one stamp.
struct Stamp {
  std::int32_t dx, dy, sx, sy, w, h;
};

/// Centres the pattern on a point and cuts it to the target. False when nothing remains.
bool placeStamp(Stamp& stamp, const Bitmap& target, const Bitmap& pattern, Point at) {
  if (pattern.width < 1 || pattern.height < 1) return false;
  stamp = {at.x - (pattern.width >> 1), at.y - (pattern.height >> 1), 0, 0, pattern.width, pattern.height};
  return KX_clipTwoRects(0, 0, pattern.width - 1, pattern.height - 1, &stamp.sx, &stamp.sy, &stamp.w, &stamp.h, 0, 0,
                         target.width - 1, target.height - 1, &stamp.dx, &stamp.dy) != 0;
}

/// Calls the target's copy blit of the variant.
Result blitStamp(Bitmap* target, const Stamp& stamp, const Pattern& pattern, const Blend& blend) {
  const BitmapMethods& methods = *target->methods;
  const auto& [dx, dy, sx, sy, w, h] = stamp;
  Bitmap* const source = pattern.bitmap;
  if (blend.hasAlpha && blend.hasDepth) {
    const auto blit = pattern.transparent ? methods.bltCopyTransparentAlphaZBuffer : methods.bltCopyAlphaZBuffer;
    return fromCode(blit(target, blend.zBuffer, dx, dy, source, sx, sy, w, h, blend.alpha, blend.z));
  }
  if (blend.hasAlpha) {
    const auto blit = pattern.transparent ? methods.bltCopyTransparentAlpha : methods.bltCopyAlpha;
    return fromCode(blit(target, dx, dy, source, sx, sy, w, h, blend.alpha));
  }
  if (blend.hasDepth) {
    const auto blit = pattern.transparent ? methods.bltCopyTransparentZBuffer : methods.bltCopyZBuffer;
    return fromCode(blit(target, blend.zBuffer, dx, dy, source, sx, sy, w, h, blend.z));
  }
  const auto blit = pattern.transparent ? methods.bltCopyTransparent : methods.bltCopy;
  return fromCode(blit(target, dx, dy, source, sx, sy, w, h));
}

Result drawStamps(Bitmap* target, const Line& line, const Pattern& pattern, const Blend& blend) {
  return walkLine(line, PointCursor(line), [&](const PointCursor& cursor) {
    Stamp stamp;
    if (!placeStamp(stamp, *target, *pattern.bitmap, cursor.point())) return Result::Ok;
    return blitStamp(target, stamp, pattern, blend);
  });
}

Result drawPatternLine(Bitmap* target, const Line& line, const Pattern& pattern, const Blend& blend) {
  KX_TRY(checkLine(target, line, blend));
  KX_TRY(checkWritable(pattern.bitmap));
  KX_TRY(checkFormats(*target, blend));
  KX_TRY(checkDepthAlong(*target, line, blend, [&](Point at) {
    Stamp stamp;
    return !placeStamp(stamp, *target, *pattern.bitmap, at) || depthCovers(blend, stamp.dx, stamp.dy, stamp.w, stamp.h);
  }));
  KX_TRY(checkMethods(target, blend));
  KX_TRY(checkMethods(pattern.bitmap));
  KX_TRY(lockForDrawing(target));
  KX_TRY(lockForDrawing(pattern.bitmap));
  if (hasPackedRows(target->format)) {
    KX_TRY(drawOnUnpacked(target, [&](Bitmap* plain) { return drawPatternLine(plain, line, pattern, blend); }));
  } else {
    KX_TRY(drawStamps(target, line, pattern, blend));
  }
  unlockAfterDrawing(target);
  unlockAfterDrawing(pattern.bitmap);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

using kx::Blend;

std::uint32_t KX_CALL KX_drawPatternLine(Bitmap* bitmap, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                         std::int32_t y2, std::int32_t spacing, Bitmap* pattern) {
  return kx::toCode(kx::drawPatternLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, {pattern}, {}));
}

std::uint32_t KX_CALL KX_drawPatternLineTransparent(Bitmap* bitmap, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                                    std::int32_t y2, std::int32_t spacing, Bitmap* pattern) {
  return kx::toCode(kx::drawPatternLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, {pattern, true}, {}));
}

std::uint32_t KX_CALL KX_drawPatternLineAlpha(Bitmap* bitmap, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                                              std::int32_t y2, std::int32_t spacing, Bitmap* pattern,
                                              std::int32_t alpha) {
  return kx::toCode(kx::drawPatternLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, {pattern}, Blend::weighted(alpha)));
}

std::uint32_t KX_CALL KX_drawPatternLineTransparentAlpha(Bitmap* bitmap, std::int32_t x1, std::int32_t y1,
                                                         std::int32_t x2, std::int32_t y2, std::int32_t spacing,
                                                         Bitmap* pattern, std::int32_t alpha) {
  return kx::toCode(
      kx::drawPatternLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, {pattern, true}, Blend::weighted(alpha)));
}

std::uint32_t KX_CALL KX_drawPatternLineZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x1, std::int32_t y1,
                                                std::int32_t x2, std::int32_t y2, std::int32_t spacing, Bitmap* pattern,
                                                std::int32_t z) {
  return kx::toCode(kx::drawPatternLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, {pattern}, Blend::deep(zbuffer, z)));
}

std::uint32_t KX_CALL KX_drawPatternLineTransparentZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x1,
                                                           std::int32_t y1, std::int32_t x2, std::int32_t y2,
                                                           std::int32_t spacing, Bitmap* pattern, std::int32_t z) {
  return kx::toCode(
      kx::drawPatternLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, {pattern, true}, Blend::deep(zbuffer, z)));
}

std::uint32_t KX_CALL KX_drawPatternLineAlphaZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x1, std::int32_t y1,
                                                     std::int32_t x2, std::int32_t y2, std::int32_t spacing,
                                                     Bitmap* pattern, std::int32_t alpha, std::int32_t z) {
  return kx::toCode(
      kx::drawPatternLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, {pattern}, Blend::weightedDeep(zbuffer, alpha, z)));
}

std::uint32_t KX_CALL KX_drawPatternLineTransparentAlphaZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x1,
                                                                std::int32_t y1, std::int32_t x2, std::int32_t y2,
                                                                std::int32_t spacing, Bitmap* pattern,
                                                                std::int32_t alpha, std::int32_t z) {
  return kx::toCode(kx::drawPatternLine(bitmap, {{x1, y1}, {x2, y2}, spacing}, {pattern, true},
                                        Blend::weightedDeep(zbuffer, alpha, z)));
}
