// The table of scenes and what sheets share.
// SPDX-License-Identifier: MIT
#include "scene.h"

namespace demo {

std::span<const SceneEntry> scenes() {
  static constexpr SceneEntry table[] = {
      {"formats", "One picture in six pixel formats: KX_createBitmap, KX_bltCopy, KX_calculatePalette, LZ_compress",
       drawFormats, nullptr},
      {"blits",
       "Copy and stretch blits: KX_bltCopyTransparent, ...Alpha, ...Alphamap, ...ZBuffer, ...ZMap, KX_bltStretch",
       drawBlits, nullptr},
      {"lines", "Lines and patterns: KX_drawLine, KX_drawDottedLine, KX_drawPatternLine and their variants", drawLines,
       nullptr},
      {"fills", "Rectangles and flood fill: KX_fillRect, KX_fillRectAlpha, KX_fillRectZBuffer, KX_floodFill", drawFills,
       nullptr},
      {"operations", "Image operations: KX_grayScale, KX_changeBrightnessContrast, KX_invertBitmap, KX_mirrorBitmapX",
       drawOperations, nullptr},
      {"sprites", "Hundreds of packed sprites: KX_bltCopyTransparentZBuffer, KX_bltCopyTransparentAlpha", nullptr,
       makeSprites},
      {"solid", "A turning solid: KX_cameraTransformAndProject, KX_drawTexturedTriangleGouraudShade", nullptr,
       makeSolid},
      {"relief", "A generated island: LS_createHeightMap, LS_softenHeightMap, LS_gradeHeightMap", drawRelief, nullptr},
      {"island", "A flight over the island: LS_createLandscape, KX_cameraProject, textured triangles", nullptr,
       makeIsland},
      {"water", "Ripples, and drops under the mouse: KX_calculateWaterMap, KX_drawWaterBitmap", nullptr, makeWater},
  };
  return table;
}

Image filmed(const SceneEntry& entry, const Material& material, double seconds) {
  const std::unique_ptr<Scene> scene = entry.moving(material);
  Image image = makeImage(frameWidth, frameHeight, material.format);
  constexpr double framesASecond = 60;
  for (int i = 0; i <= static_cast<int>(seconds * framesASecond); ++i) {
    Frame frame;
    frame.seconds = i / framesASecond;
    frame.mouseX = frameWidth / 3;
    frame.mouseY = frameHeight / 2;
    frame.mouseDown = i % 40 == 0;
    scene->draw(image.get(), frame);
  }
  return image;
}

Image makeSheet(int width, int height, std::uint32_t format, std::string_view title) {
  Image sheet = makeImage(width, height, format);
  KX_CHECK(KX_fillRect(sheet.get(), 0, 0, width, height, colour(sheet.get(), 24, 27, 34)));
  KX_CHECK(KX_fillRect(sheet.get(), 0, 0, width, titleHeight - 8, colour(sheet.get(), 43, 62, 96)));
  drawText(sheet.get(), 12, 9, title, colour(sheet.get(), 255, 255, 255), 2);
  return sheet;
}

Panels::Panels(int count, int columns, std::uint32_t format, std::string_view title)
    : sheet_(makeSheet(columns * (width + gap) + gap,
                       titleHeight + (count + columns - 1) / columns * (height + captionHeight + gap), format, title)),
      columns_(columns) {}

void Panels::next(std::string_view caption) {
  x = gap + index_ % columns_ * (width + gap);
  y = titleHeight + index_ / columns_ * (height + captionHeight + gap);
  ++index_;
  KX_CHECK(KX_fillRect(target(), x, y, width, height, colour(40, 46, 58)));
  drawText(target(), x, y + height + 5, caption, colour(205, 212, 224));
}

void Panels::cover(const Image& image) const {
  KX_CHECK(KX_bltStretch(target(), x, y, width, height, image.get(), 0, 0, image->width, image->height));
}

}  // namespace demo
