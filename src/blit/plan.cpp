// Choosing the stages of a blit.
// SPDX-License-Identifier: MIT
#include "blit/plan.h"

#include <algorithm>
#include <cstdlib>

#include "bitmap/palette.h"
#include "bitmap/view.h"
#include "blit/overlap.h"
#include "frame/checks.h"

namespace kx {

namespace {

/// End of a plain bitmap's pixel block, with the spare row that the library's own blocks have.
const std::uint8_t* blockEnd(const Bitmap& bitmap) {
  if (bitmap.pitch < 0) return bitmap.pixels - bitmap.pitch;  // rows go upwards from the last of the block
  const bool borrowed = (bitmap.flags & KX_BORROWED_PIXELS) != 0;
  return rowAddress(bitmap, bitmap.height) + (borrowed ? 0 : bitmap.pitch);
}

/// A Z buffer or map: a byte a pixel, whatever its format.
Plane bytePlane(const Bitmap* bitmap, const Rect& rect) {
  if (bitmap == nullptr) return {};
  return {rowAddress(*bitmap, rect.y) + rect.x, bitmap->pitch, blockEnd(*bitmap)};
}

Result checkPalette(const Bitmap& bitmap) {
  return isBadWritePointer(bitmap.palette) ? Result::PaletteDestroyed : Result::Ok;
}

Result checkTranslations(const Bitmap& bitmap) {
  KX_TRY(checkPalette(bitmap));
  const void* const tables[] = {bitmap.table15, bitmap.table16, bitmap.table8};
  for (const void* table : tables)
    if (table != nullptr && isBadWritePointer(table)) return Result::PaletteDestroyed;
  return Result::Ok;
}

/// The translation of a palettised source into a format with pixels of its own, made when it is missing.
Result useTranslation(BlitPlan& plan, Bitmap& source, std::uint32_t target) {
  KX_TRY(checkTranslations(source));
  plan.lookupBytes = bytesPerPixel(target);
  const auto table = [&]() -> const void* {
    switch (target) {
      case KX_FORMAT_GREY:
        return source.table8;
      case KX_FORMAT_555:
        return source.table15;
      case KX_FORMAT_565:
        return source.table16;
      default:
        return source.palette;
    }
  };
  if (plan.lookupBytes != 0 && table() == nullptr) KX_TRY(refreshTable(&source, target));
  plan.lookupTable = plan.lookupBytes == 0 ? nullptr : static_cast<const std::uint8_t*>(table());
  return Result::Ok;
}

/// From source pixels to destination pixels.
Result planTranslation(BlitPlan& plan, const BlitRequest& r) {
  const std::uint32_t source = formatCode(r.src->format), target = formatCode(r.dst->format);
  if (source == target) return Result::Ok;
  if (source == KX_FORMAT_PALETTE) {
    if (target != KX_FORMAT_MONO) return useTranslation(plan, *r.src, target);
    KX_TRY(checkPalette(*r.src));
    plan.lookupTable = r.src->palette;
    plan.lookupBytes = 3;
  }
  if (target == KX_FORMAT_PALETTE) {
    KX_TRY(checkPalette(*r.dst));
    plan.nearestTo = r.dst->palette;
  }
  plan.convert = convertRow(source, target);
  return Result::Ok;
}

/// Up to where the row table says that packed rows go on: to the start of a row that lies behind.
const std::uint8_t* packedEnd(const Bitmap& source, const Rect& rect) {
  if (rect.w < 1 || rect.h < 1) return source.pixels;
  const std::int32_t last = std::min(rect.y + rect.h, source.height - 1);
  return source.pixels + *std::max_element(source.rowTable + rect.y, source.rowTable + last + 1);
}

void planFetch(BlitPlan& plan, const BlitRequest& r) {
  const Bitmap& source = *r.src;
  const std::uint32_t pixelBytes = bytesPerPixel(source.format);
  plan.sourceBytes = std::max(pixelBytes, 1u);
  plan.sourceX = static_cast<std::size_t>(r.from.x);
  plan.sourceWidth = r.from.w;
  if (pixelBytes != 0 && hasPackedRows(source.format)) {
    plan.fetch = Fetch::Packed;
    plan.packedRows = source.rowTable + r.from.y;
    plan.source = {source.pixels, 0, packedEnd(source, r.from)};
  } else if (pixelBytes != 0) {
    plan.fetch = Fetch::Rows;
    plan.source = {pixelAddress(source, r.from.x, r.from.y), source.pitch, nullptr};
  } else if (formatCode(source.format) == KX_FORMAT_MONO && !hasPackedRows(source.format)) {
    plan.fetch = Fetch::Bits;
    plan.source = {rowAddress(source, r.from.y), source.pitch, nullptr};
  } else {
    plan.fetch = Fetch::Nothing;
  }
}

void planDestination(BlitPlan& plan, const BlitRequest& r) {
  const Bitmap& target = *r.dst;
  plan.destinationBits = formatCode(target.format) == KX_FORMAT_MONO;
  plan.destinationBytes = std::max(bytesPerPixel(target.format), 1u);
  plan.destinationX = static_cast<std::size_t>(r.to.x);
  plan.destination = {plan.destinationBits ? rowAddress(target, r.to.y) : pixelAddress(target, r.to.x, r.to.y),
                      target.pitch, blockEnd(target)};
}

void planCombine(BlitPlan& plan, const BlitRequest& r) {
  const bool translated = plan.lookupTable != nullptr || plan.convert != nullptr;
  const bool masked = r.variant.zBuffer() || (r.variant.transparent() && translated);
  plan.keyed = masked && r.variant.transparent();
  plan.test = masked ? RowTest::Masked : r.variant.transparent() ? RowTest::Keyed : RowTest::All;
  const Combine rule = combineOf(r.variant);
  plan.isCopy = rule == Combine::Copy;
  plan.combine = hasBytes(r.dst->format) ? rowKernels().of(rule, plan.test, rowFormat(r.dst->format)) : nullptr;
  plan.readsDestination = !plan.isCopy || plan.test != RowTest::All;
  plan.alpha = static_cast<std::uint32_t>(r.alpha);
}

/// Rows of what is written do not reach into each other, as those of a Z buffer of an odd format may.
bool rowsAreApart(const BlitPlan& plan) {
  const auto apart = [](const Plane& plane, std::int64_t rowBytes) {
    return plane.start == nullptr || std::abs(std::int64_t{plane.pitch}) >= rowBytes;
  };
  const std::int64_t width = plan.width;
  return apart(plan.zBuffer, width) &&
         apart(plan.destination, width * static_cast<std::int64_t>(plan.destinationBytes));
}

}  // namespace

Result makePlan(BlitPlan& plan, const FamilyRules& family, const BlitRequest& r) {
  plan = {};
  KX_TRY(planTranslation(plan, r));
  plan.width = r.to.w;
  plan.height = r.to.h;
  plan.stretched = family.stretches;
  if (plan.stretched) {
    plan.stepX = (std::int64_t{r.from.w} << 16) / r.to.w;
    plan.stepY = (std::int64_t{r.from.h} << 16) / r.to.h;
  }
  planFetch(plan, r);
  planDestination(plan, r);
  planCombine(plan, r);
  // The converting rows decode no more than they need.
  plan.overruns = plan.fetch == Fetch::Packed && !plan.stretched && plan.convert == nullptr;
  plan.zBuffer = bytePlane(r.zBuffer, r.to);
  plan.zMap = bytePlane(r.zMap, r.from);
  plan.alphamap = bytePlane(r.alphamap, r.from);
  plan.z = r.z;
  plan.empty = r.to.w < 1 || r.to.h < 1 || (plan.combine == nullptr && r.zBuffer == nullptr);
  const Sharing sharing = plan.empty ? Sharing::None : sharedMemory(plan, r);
  plan.strips = plan.stretched && sharing == Sharing::None && rowsAreApart(plan);
  plan.pixelByPixel = sharing == Sharing::SameRow;
  return Result::Ok;
}

}  // namespace kx
