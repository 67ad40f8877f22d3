// The two triangle functions that draw: checks, choice of the variant, clipping from above and below, locks.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <optional>

#include "bitmap/locks.h"
#include "bitmap/view.h"
#include "kxgraphic/kxgraphic.h"
#include "pixel/cpu.h"
#include "pixel/formats.h"
#include "render3d/device.h"
#include "render3d/texel_check.h"
#include "render3d/triangle_kernels.h"

namespace kx {

namespace {

TriangleKernels chooseKernels(CpuLevel level) {
  switch (level) {
    case CpuLevel::Avx512:
      return triangleKernelsAvx512();
    case CpuLevel::Avx2:
      return triangleKernelsAvx2();
    case CpuLevel::Sse2:
      return triangleKernelsSse2();
    default:
      return triangleKernelsPortable();
  }
}

KernelTable<TriangleKernels> kernels{chooseKernels};

/// What a caller asks for. `alpha` is there for the blended variant only.
struct TriangleRequest {
  Device3D* device;
  Texture* texture;
  std::optional<std::int32_t> alpha;
  const void* vertices;
  VertexFields fields;
};

struct ClipRect {
  std::int32_t left, top, right, bottom;  ///< pixels, inclusive

  [[nodiscard]] bool isEmpty() const { return left > right || top > bottom; }
  [[nodiscard]] bool holdsColumn(std::int32_t x) const { return x >= left && x <= right; }
};

/// The device's clip rectangle cut to its present target, which on a screen may have become smaller.
ClipRect clipRect(const Device3D& device, const Bitmap& target) {
  return {.left = std::max(device.clipLeft, 0),
          .top = std::max(device.clipTop, 0),
          .right = std::min(device.clipRight, target.width - 1),
          .bottom = std::min(device.clipBottom, target.height - 1)};
}

/// A screen may have got another mode since the device was made.
Result checkTarget(const Bitmap& target) {
  return bytesPerPixel(target.format) < 2 || hasPackedRows(target.format) ? Result::ColorFormatNotSupported
                                                                          : Result::Ok;
}

/// Settled: triangles that stay between the clip columns round float fields to nearest, others cut them.
Corners readCorners(const TriangleRequest& request, const ClipRect& clip) {
  const auto columns = readColumns(request.vertices, request.fields);
  const bool inside = std::all_of(columns.begin(), columns.end(), [&](std::int32_t x) { return clip.holdsColumn(x); });
  return readCorners(request.vertices, request.fields, inside ? Rounding::ToNearest : Rounding::TowardZero);
}

/// Cuts the rows to the clip's bottom; rows above its top are left to the kernels to step over. False when nothing is
/// to be drawn. Settled: a triangle that ends in the row above the clip goes on.
bool cutRows(Triangle& triangle, const ClipRect& clip) {
  if (triangle.top > clip.bottom || triangle.top + triangle.rows < clip.top) return false;
  triangle.rows = std::min(triangle.rows, clip.bottom - triangle.top + 1);
  return true;
}

/// Bytes of the pixel block of a plain bitmap, as far as they can be addressed here.
std::int64_t blockSize(const Bitmap& bitmap) {
  return std::min<std::int64_t>(std::int64_t{bitmap.pitch} * bitmap.height, INT32_MAX);
}

/// True when a texel between the corners may lie outside the block.
bool leavesBlock(const Corners& corners, std::int32_t widthCode, std::int64_t lastTexel) {
  const auto [uLow, uHigh] = std::minmax({corners[0].u, corners[1].u, corners[2].u});
  const auto [vLow, vHigh] = std::minmax({corners[0].v, corners[1].v, corners[2].v});
  const std::int64_t rowBytes = std::int64_t{1} << widthCode;
  return vLow * rowBytes + 2 * uLow < 0 || vHigh * rowBytes + 2 * uHigh > lastTexel;
}

/// With target and texture locked. BitmapDestroyed for either without pixels.
Result drawLocked(TriangleJob& job, const Corners& corners, const Bitmap& target, const Bitmap& level,
                  const TriangleRequest& request) {
  const std::int64_t texelBytes = blockSize(level);
  if (texelBytes < 2 || target.pixels == nullptr || level.pixels == nullptr) return Result::BitmapDestroyed;
  job.pixels = target.pixels;
  job.pitch = target.pitch;
  job.texels = level.pixels;
  job.widthCode = request.texture->widthCodes[0] & 31;
  job.lastTexel = static_cast<std::int32_t>(texelBytes - 2);
  job.alpha = request.alpha.value_or(0);
  const TriangleVariant variant = {.is565 = formatCode(target.format) == KX_FORMAT_565,
                                   .blended = request.alpha.has_value(),
                                   .limited = leavesBlock(corners, job.widthCode, job.lastTexel)};
  // Drawing into the texture itself must finish each pixel before it reads the next texel.
  const bool drawsItself = memoryOf(target).meets(MemoryRange::of(level.pixels, texelBytes));
  (drawsItself ? triangleKernelsPortable() : *kernels).of(variant)(job);
  return Result::Ok;
}

Result drawTriangle(const TriangleRequest& request) {
  if (isBadReadPointer(request.device) || isBadReadPointer(request.texture) || isBadReadPointer(request.vertices))
    return Result::IllegalParameter;
  if (request.alpha && (*request.alpha < 0 || *request.alpha > 255)) return Result::AlphaValueOutOfRange;
  Bitmap* target = nullptr;
  KX_TRY(renderTarget(&target, request.device));
  Bitmap* level = request.texture->levels[0];
  if (level == nullptr) return Result::IllegalParameter;
  KX_TRY(checkTarget(*target));

  const ClipRect clip = clipRect(*request.device, *target);
  if (clip.isEmpty()) return Result::Ok;
  Corners corners = readCorners(request, clip);
  checkTexels(corners, *level);
  if (!orderCorners(corners)) return Result::Ok;
  TriangleJob job;
  setUpTriangle(job.triangle, corners);
  if (!cutRows(job.triangle, clip)) return Result::Ok;

  job.clipLeft = clip.left;
  job.clipRight = clip.right;
  job.clipTop = clip.top;
  // Settled: a failed lock of the texture leaves the target locked.
  KX_TRY(lockOnly(target));
  KX_TRY(lockOnly(level));
  KX_TRY(drawLocked(job, corners, *target, *level, request));
  const Result levelUnlocked = unlock(level);
  const Result targetUnlocked = unlock(target);
  return levelUnlocked != Result::Ok ? levelUnlocked : targetUnlocked;
}

VertexFields fieldsOf(std::uint8_t integers) { return integers != 0 ? VertexFields::Integers : VertexFields::Floats; }

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_drawTexturedTriangleGouraudShade(Device3D* device, Texture* texture, const void* vertices,
                                                          std::uint8_t integers) {
  return kx::toCode(kx::drawTriangle({.device = device,
                                      .texture = texture,
                                      .alpha = std::nullopt,
                                      .vertices = vertices,
                                      .fields = kx::fieldsOf(integers)}));
}

std::uint32_t KX_CALL KX_drawTexturedTriangleGouraudShadeAlpha(Device3D* device, Texture* texture, std::int32_t alpha,
                                                               const void* vertices, std::uint8_t integers) {
  return kx::toCode(kx::drawTriangle(
      {.device = device, .texture = texture, .alpha = alpha, .vertices = vertices, .fields = kx::fieldsOf(integers)}));
}
