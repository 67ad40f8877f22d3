// Making an image grey.
// SPDX-License-Identifier: MIT
#include "draw/image.h"
#include "kxgraphic/draw.h"

namespace kx {

namespace {

Result makeGrey(Bitmap* bitmap) {
  const auto greyKernel = [](ImageFormat layout) { return imageKernels().grey[static_cast<std::size_t>(layout)]; };
  ImageFormat layout;
  if (formatCode(bitmap->format) == KX_FORMAT_PALETTE) return changePalette(bitmap, greyKernel(ImageFormat::Bgr24));
  if (!findImageFormat(bitmap->format, layout) || layout == ImageFormat::Grey8) return Result::Ok;
  return changePixels(bitmap, [=](Bitmap* plain) {
    forEachRow(*plain, [&](std::uint8_t* row) { greyKernel(layout)(row, static_cast<std::size_t>(plain->width)); });
    return Result::Ok;
  });
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_grayScale(Bitmap* bitmap) {
  return kx::toCode(kx::onLockedImage(bitmap, [=] { return kx::makeGrey(bitmap); }));
}
