// SPDX-License-Identifier: MIT
#include "blit/in_place.h"

#include <cstring>
#include <functional>

#include "bitmap/view.h"
#include "blit/overlap.h"
#include "pixel/memory.h"

namespace kx {

namespace {

/// Kept out of the way of what is usual: a plain copy within the same rows. Towards the right it repeats what it has
/// just written, four bytes at a time.
[[gnu::cold, gnu::noinline]] void copyWords(Area target, Area source) {
  const auto bytes = static_cast<std::size_t>(target.rowBytes);
  for (std::int32_t y = 0; y < target.height; ++y) {
    std::uint8_t* dst = target.plane.row(y);
    const std::uint8_t* src = source.plane.row(y);
    if (std::less_equal<>()(static_cast<const std::uint8_t*>(dst), src)) {
      std::memmove(dst, src, bytes);
      continue;
    }
    std::size_t i = 0;
    for (; i + 4 <= bytes; i += 4) store32(dst + i, load32(src + i));
    for (; i < bytes; ++i) dst[i] = src[i];
  }
}

}  // namespace

bool drawInPlace(const FamilyRules& family, const BlitRequest& r) {
  const Bitmap &dst = *r.dst, &src = *r.src;
  const std::uint32_t pixelBytes = bytesPerPixel(src.format);
  if (family.stretches || r.variant.zBuffer() || hasPackedRows(src.format) || pixelBytes == 0 ||
      formatCode(src.format) != formatCode(dst.format))
    return false;
  const std::int32_t width = r.to.w, height = r.to.h;
  if (width < 1 || height < 1) return true;
  const RowTest test = r.variant.transparent() ? RowTest::Keyed : RowTest::All;
  const auto combine = rowKernels().of(combineOf(r.variant), test, rowFormat(dst.format));

  const auto area = [=](const Bitmap& bitmap, const Rect& rect) {
    return Area{{pixelAddress(bitmap, rect.x, rect.y), bitmap.pitch}, std::int64_t{width} * pixelBytes, height};
  };
  const Area target = area(dst, r.to), source = area(src, r.from);
  const auto sameRow = [](std::int32_t y) { return y; };
  Sharing sharing = compare(target, source, sameRow);
  Plane weights;
  if (r.variant.alphamap()) {
    weights = {rowAddress(*r.alphamap, r.from.y) + r.from.x, r.alphamap->pitch};
    sharing = std::max(sharing, compare(target, {weights, width, height}, sameRow));
  }
  if (sharing == Sharing::SameRow) [[unlikely]] {
    if (r.variant.rule != BlitRule::Copy) return false;
    copyWords(target, source);
    return true;
  }

  combine({.dst = target.plane.start,
           .src = source.plane.start,
           .count = static_cast<std::size_t>(width),
           .mask = nullptr,
           .map = weights.start,
           .alpha = static_cast<std::uint32_t>(r.alpha),
           .rows = static_cast<std::size_t>(height),
           .dstPitch = target.plane.pitch,
           .srcPitch = source.plane.pitch,
           .mapPitch = weights.pitch});
  return true;
}

}  // namespace kx
