// Inverting an image.
// SPDX-License-Identifier: MIT
#include "draw/image.h"
#include "kxgraphic/draw.h"

namespace kx {

namespace {

/// The bits of a byte or a 16-bit pixel that an inverted pixel can have.
/// Settled: widening a six-bit green to eight bits loses its lowest bit, and inverting brings it out as 0.
constexpr std::uint16_t invertMask(std::uint32_t format) {
  switch (formatCode(format)) {
    case KX_FORMAT_555:
      return 0x7FFF;
    case KX_FORMAT_565:
      return 0xFFDF;
    default:
      return 0xFFFF;
  }
}

Result invert(Bitmap* bitmap) {
  const auto invertBytes = imageKernels().invert;
  if (formatCode(bitmap->format) == KX_FORMAT_PALETTE)
    return changePalette(bitmap,
                         [=](std::uint8_t* entries, std::size_t count) { invertBytes(entries, 3 * count, 0xFFFF); });
  ImageFormat layout;
  if (!findImageFormat(bitmap->format, layout)) return Result::Ok;
  return changePixels(bitmap, [=](Bitmap* plain) {
    const auto size = static_cast<std::size_t>(byteOffset(plain->format, plain->width));
    forEachRow(*plain, [=](std::uint8_t* row) { invertBytes(row, size, invertMask(plain->format)); });
    return Result::Ok;
  });
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_invertBitmap(Bitmap* bitmap) {
  return kx::toCode(kx::onLockedImage(bitmap, [=] { return kx::invert(bitmap); }));
}
