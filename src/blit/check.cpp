// The tests before anything is locked, in their order.
// SPDX-License-Identifier: MIT
#include "blit/check.h"

#include "bitmap/packed.h"
#include "bitmap/view.h"
#include "frame/checks.h"

namespace kx {

namespace {

Result checkPointers(const BlitRequest& r) {
  KX_TRY(checkWritable(r.dst));
  if (r.variant.zBuffer()) KX_TRY(checkWritable(r.zBuffer));
  KX_TRY(checkWritable(r.src));
  if (r.variant.alphamap()) KX_TRY(checkWritable(r.alphamap));
  if (r.variant.zMap()) KX_TRY(checkWritable(r.zMap));
  return Result::Ok;
}

Result checkRectangle(const FamilyRules& family, const Bitmap& bitmap, const Rect& rect) {
  const bool empty = family.refusesEmptySizes && (rect.w < 1 || rect.h < 1);
  return !empty && contains(bitmap, rect.x, rect.y, rect.w, rect.h) ? Result::Ok : Result::CoordinateOutOfRange;
}

Result checkRectangles(const FamilyRules& family, const BlitRequest& r) {
  if (family.sourceRectangleFirst) KX_TRY(checkRectangle(family, *r.src, r.from));
  KX_TRY(checkRectangle(family, *r.dst, r.to));
  return family.sourceRectangleFirst ? Result::Ok : checkRectangle(family, *r.src, r.from);
}

constexpr bool isByte(std::int32_t value) { return value >= 0 && value <= 255; }

Result checkWeights(const BlitRequest& r) {
  if (r.variant.alpha() && !isByte(r.alpha)) return Result::AlphaValueOutOfRange;
  if (r.variant.depth == BlitDepth::ZBuffer && !isByte(r.z)) return Result::ZValueOutOfRange;
  return Result::Ok;
}

Result checkDepthFormat(const FamilyRules& family, const Bitmap& bitmap) {
  const bool plain = !hasPackedRows(bitmap.format);
  const bool bytes = formatCode(bitmap.format) == KX_FORMAT_GREY;
  const bool good = family.depthNeedsBoth ? plain && bytes : plain || bytes;
  return good ? Result::Ok : Result::IllegalZBufferFormat;
}

Result checkOtherFormats(const FamilyRules& family, const BlitRequest& r) {
  if (r.variant.zBuffer()) KX_TRY(checkDepthFormat(family, *r.zBuffer));
  if (r.variant.zMap()) KX_TRY(checkDepthFormat(family, *r.zMap));
  if (r.variant.alphamap() && (hasPackedRows(r.alphamap->format) || formatCode(r.alphamap->format) != KX_FORMAT_GREY))
    return Result::IllegalAlphamapFormat;
  return Result::Ok;
}

/// Z buffer and maps are read a byte a pixel by their own pitch, whatever their size and format say.
Result checkCovers(const Bitmap* bitmap, const Rect& rect) {
  if (rect.w < 1 || rect.h < 1) return Result::Ok;
  std::int64_t held = std::int64_t{bitmap->pitch} * bitmap->height;
  if (hasPackedRows(bitmap->format)) {
    std::uint64_t packedBytes = 0;
    KX_TRY(packedBlockBytes(packedBytes, *bitmap));
    held = static_cast<std::uint32_t>(packedBytes);  // as KX_getBitmapSize gives it
  }
  const std::int64_t lastRow = std::int64_t{rect.y} + rect.h - 1;
  const std::int64_t end = lastRow * bitmap->pitch + rect.x + rect.w;
  return bitmap->pitch >= 0 && end <= held ? Result::Ok : Result::CoordinateOutOfRange;
}

/// Z buffer and maps.
[[gnu::noinline]] Result checkOthers(const FamilyRules& family, const BlitRequest& r) {
  KX_TRY(checkOtherFormats(family, r));
  if (r.variant.zBuffer()) KX_TRY(checkCovers(r.zBuffer, r.to));
  if (r.variant.zMap()) KX_TRY(checkCovers(r.zMap, r.from));
  if (r.variant.alphamap()) KX_TRY(checkCovers(r.alphamap, r.from));
  return Result::Ok;
}

}  // namespace

Result checkRequest(const FamilyRules& family, const BlitRequest& request) {
  KX_TRY(checkPointers(request));
  KX_TRY(checkRectangles(family, request));
  KX_TRY(checkWeights(request));
  if (request.variant.blends() && formatCode(request.dst->format) == KX_FORMAT_PALETTE) return family.blendIntoPalette;
  return request.variant.others() ? checkOthers(family, request) : Result::Ok;
}

}  // namespace kx
