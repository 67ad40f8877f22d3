// Filled rectangles: solid and blended ones at once, depth-tested ones as rows of one colour through the row kernels.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "bitmap/packed.h"
#include "bitmap/view.h"
#include "draw/target.h"
#include "kxgraphic/draw.h"
#include "pixel/access.h"
#include "pixel/rows.h"
#include "pixel/solid_fill.h"

namespace kx {

namespace {

struct Rectangle {
  std::int32_t x, y, w, h;
};

/// Pixels that pass through the row kernels at a time.
constexpr std::int32_t longestChunk = 256;

/// Sets w bits from bit x of a row on.
void fillBits(std::uint8_t* row, std::int32_t x, std::int32_t w, bool value) {
  const auto paint = [value](std::uint8_t& byte, unsigned mask) {
    byte = static_cast<std::uint8_t>(value ? byte | mask : byte & ~mask);
  };
  const std::int32_t last = x + w - 1;
  const unsigned firstMask = 0xFFu >> (x & 7);
  const unsigned lastMask = 0xFF00u >> ((last & 7) + 1) & 0xFF;
  if (x / 8 == last / 8) return paint(row[x / 8], firstMask & lastMask);
  paint(row[x / 8], firstMask);
  std::fill(row + x / 8 + 1, row + last / 8, static_cast<std::uint8_t>(value ? 0xFF : 0));
  paint(row[last / 8], lastMask);
}

void fillPlain(const Bitmap& bitmap, const Rectangle& area, std::uint32_t colour) {
  if (formatCode(bitmap.format) == KX_FORMAT_MONO) {
    for (std::int32_t y = area.y; y < area.y + area.h; ++y)
      fillBits(rowAddress(bitmap, y), area.x, area.w, (colour & 1) != 0);
  } else if (const std::uint32_t pixelBytes = bytesPerPixel(bitmap.format); pixelBytes != 0) {
    fillSolid(pixelAddress(bitmap, area.x, area.y), bitmap.pitch, static_cast<std::size_t>(area.h),
              static_cast<std::size_t>(area.w), pixelBytes, colour);
  }
}

/// Fills what passes the depth test, through the kernels with a row of one colour as their source.
class DepthFill {
public:
  /// For runs of at most `longest` pixels.
  DepthFill(const Bitmap& target, std::uint32_t colour, const Blend& blend, std::int32_t longest)
      : target_(target),
        blend_(blend),
        isMono_(formatCode(target.format) == KX_FORMAT_MONO),
        combine_(rowKernels().of(blend.hasAlpha ? Combine::Alpha : Combine::Copy, RowTest::Masked,
                                 rowFormat(target.format))) {
    fillSolid(source_, 0, 1, static_cast<std::size_t>(longest), isMono_ ? 1 : bytesPerPixel(target.format),
              isMono_ ? colour & 1 : colour);
  }

  void fillRun(std::int32_t x, std::int32_t y, std::int32_t count) {
    const auto pixels = static_cast<std::size_t>(count);
    std::uint8_t mask[longestChunk];
    rowKernels().depth({.mask = mask,
                        .zBuffer = pixelAddress(*blend_.zBuffer, x, y),
                        .count = pixels,
                        .refine = false,
                        .zMap = nullptr,
                        .z = blend_.z});
    std::uint8_t* const row = rowAddress(target_, y);
    if (isMono_) {
      std::uint8_t bits[longestChunk];
      rowKernels().readBits(bits, row, static_cast<std::size_t>(x), pixels);
      combine(bits, mask, pixels);
      rowKernels().writeBits(row, static_cast<std::size_t>(x), bits, pixels);
    } else {
      combine(pixelAddress(target_, x, y), mask, pixels);
    }
  }

private:
  void combine(std::uint8_t* dst, const std::uint8_t* mask, std::size_t count) const {
    combine_({.dst = dst,
              .src = source_,
              .count = count,
              .mask = mask,
              .map = nullptr,
              .alpha = static_cast<std::uint32_t>(blend_.alpha)});
  }

  const Bitmap& target_;
  const Blend& blend_;
  bool isMono_;
  RowKernels::CombineRow combine_;
  std::uint8_t source_[longestChunk * 3];
};

void fillBlended(const Bitmap& target, const Rectangle& area, std::uint32_t colour, const Blend& blend) {
  if (!hasBytes(target.format)) return;
  if (!blend.hasDepth)
    return rowKernels().blendColour[static_cast<std::size_t>(rowFormat(target.format))](
        {.dst = pixelAddress(target, area.x, area.y),
         .pitch = target.pitch,
         .rows = static_cast<std::size_t>(area.h),
         .count = static_cast<std::size_t>(area.w),
         .colour = colour,
         .alpha = static_cast<std::uint32_t>(blend.alpha)});
  // Where the depths lie in the target itself each pixel is finished before the next is tested.
  const bool onePerRun = memoryOf(target).meets(memoryOf(*blend.zBuffer));
  const std::int32_t longest = onePerRun ? 1 : std::min(area.w, longestChunk);
  DepthFill fill(target, colour, blend, longest);
  for (std::int32_t y = area.y; y < area.y + area.h; ++y)
    for (std::int32_t done = 0; done < area.w; done += longest)
      fill.fillRun(area.x + done, y, std::min(longest, area.w - done));
}

Result fillRect(Bitmap* target, const Rectangle& area, std::uint32_t colour, const Blend& blend) {
  KX_TRY(checkBitmaps(target, blend));
  if (area.w < 1 || area.h < 1 || !contains(*target, area.x, area.y, area.w, area.h))
    return Result::CoordinateOutOfRange;
  KX_TRY(checkAlpha(blend));
  KX_TRY(checkDepth(blend));
  KX_TRY(checkFormats(*target, blend));
  if (!depthCovers(blend, area.x, area.y, area.w, area.h)) return Result::CoordinateOutOfRange;
  KX_TRY(checkMethods(target, blend));
  KX_TRY(lockForDrawing(target, blend));
  if (hasRunLengthRows(target->format)) {
    KX_TRY(drawOnUnpacked(target, [&](Bitmap* plain) { return fillRect(plain, area, colour, blend); }));
  } else if (blend.hasAlpha || blend.hasDepth) {
    fillBlended(*target, area, colour, blend);
  } else {
    fillPlain(*target, area, colour);
  }
  unlockAfterDrawing(target, blend);
  return Result::Ok;
}

}  // namespace

}  // namespace kx

using kx::Blend;

std::uint32_t KX_CALL KX_fillRect(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h,
                                  std::uint32_t colour) {
  return kx::toCode(kx::fillRect(bitmap, {x, y, w, h}, colour, {}));
}

std::uint32_t KX_CALL KX_fillRectAlpha(Bitmap* bitmap, std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h,
                                       std::uint32_t colour, std::int32_t alpha) {
  return kx::toCode(kx::fillRect(bitmap, {x, y, w, h}, colour, Blend::weighted(alpha)));
}

std::uint32_t KX_CALL KX_fillRectZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x, std::int32_t y,
                                         std::int32_t w, std::int32_t h, std::uint32_t colour, std::int32_t z) {
  return kx::toCode(kx::fillRect(bitmap, {x, y, w, h}, colour, Blend::deep(zbuffer, z)));
}

std::uint32_t KX_CALL KX_fillRectAlphaZBuffer(Bitmap* bitmap, Bitmap* zbuffer, std::int32_t x, std::int32_t y,
                                              std::int32_t w, std::int32_t h, std::uint32_t colour, std::int32_t alpha,
                                              std::int32_t z) {
  return kx::toCode(kx::fillRect(bitmap, {x, y, w, h}, colour, Blend::weightedDeep(zbuffer, alpha, z)));
}
