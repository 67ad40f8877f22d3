// Brightness and contrast of an image around a pivot.
// SPDX-License-Identifier: MIT
#include <algorithm>

#include "draw/image.h"
#include "kxgraphic/draw.h"

namespace kx {

namespace {

struct BrightnessRequest {
  std::int32_t brightness, contrast;  ///< -256 to 256
  std::int32_t pivot;                 ///< below 0: the average luminance
  bool transparent;
};

/// InternalError when the pivot is to be found and cannot.
Result makeRule(BrightnessRule& rule, Bitmap* bitmap, const BrightnessRequest& request) {
  std::int32_t pivot = request.pivot;
  if (pivot < 0) pivot = static_cast<std::int32_t>(KX_getAverageLuminance(bitmap));
  if (pivot < 0) return Result::InternalError;
  const auto factor = [&](std::int32_t contrast) {
    return static_cast<std::uint32_t>(std::max(0, 256 + request.brightness + contrast));
  };
  rule = {.pivot = pivot,
          .below = factor(-request.contrast),
          .at = factor(0),
          .above = factor(request.contrast),
          .transparent = request.transparent};
  return Result::Ok;
}

Result changePaletteBrightness(Bitmap* bitmap, const BrightnessRequest& request) {
  KX_TRY(checkOwnPalette(*bitmap));
  BrightnessRule rule;
  KX_TRY(makeRule(rule, bitmap, request));
  const auto brighten = imageKernels().brighten[static_cast<std::size_t>(ImageFormat::Bgr24)];
  return changePalette(bitmap, [&](std::uint8_t* entries, std::size_t count) { brighten(entries, count, rule); });
}

Result changeBrightness(Bitmap* bitmap, const BrightnessRequest& request) {
  if (formatCode(bitmap->format) == KX_FORMAT_PALETTE) return changePaletteBrightness(bitmap, request);
  ImageFormat layout;
  if (!findImageFormat(bitmap->format, layout)) return Result::Ok;
  const auto brighten = imageKernels().brighten[static_cast<std::size_t>(layout)];
  return changePixels(bitmap, [&](Bitmap* plain) {
    BrightnessRule rule;
    KX_TRY(makeRule(rule, plain, request));
    forEachRow(*plain, [&](std::uint8_t* row) { brighten(row, static_cast<std::size_t>(plain->width), rule); });
    return Result::Ok;
  });
}

Result changeBrightnessContrast(Bitmap* bitmap, const BrightnessRequest& request) {
  return onLockedImage(bitmap, [&] {
    const auto inRange = [](std::int32_t value) { return value >= -256 && value <= 256; };
    if (!inRange(request.brightness) || !inRange(request.contrast)) return Result::IllegalParameter;
    return changeBrightness(bitmap, request);
  });
}

}  // namespace

}  // namespace kx

std::uint32_t KX_CALL KX_changeBrightnessContrast(Bitmap* bitmap, std::int32_t brightness, std::int32_t contrast,
                                                  std::int32_t pivot) {
  return kx::toCode(kx::changeBrightnessContrast(bitmap, {brightness, contrast, pivot, false}));
}

std::uint32_t KX_CALL KX_changeBrightnessContrastTransparent(Bitmap* bitmap, std::int32_t brightness,
                                                             std::int32_t contrast, std::int32_t pivot) {
  return kx::toCode(kx::changeBrightnessContrast(bitmap, {brightness, contrast, pivot, true}));
}
