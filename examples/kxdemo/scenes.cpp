// The table of scenes and what all of them share.
// SPDX-License-Identifier: MIT
#include "scene.h"

#include <cmath>
#include <string>

#include "text.h"

namespace demo {

std::span<const SceneEntry> scenes() {
  static constexpr SceneEntry table[] = {
      {"formats", "One picture, six pixel formats",
       "KX_createBitmap, KX_calculatePalette, KX_setPalette, KX_bltCopy, KX_getBitmapSize, LZ_compress", makeFormats,
       false},
      {"bitmaps", "Bitmaps and clipping", "Blits refuse what lies outside; the clipping functions cut it off before",
       makeBitmaps, true},
      {"copies", "Copy blits", "Five ways to combine a source pixel with what is there, from any format to any other",
       makeCopies, true},
      {"depth", "Depth", "Each way to combine, with a Z buffer and one depth, or a Z map with a depth for each pixel",
       makeDepth, true},
      {"ways", "Thirty blits",
       "Five ways to combine pixels; below with a Z buffer, then with a Z map. Copied for three seconds, then "
       "stretched",
       makeWays, true},
      {"stretches", "Stretch blits", "The same fifteen, scaled to any size without filtering", makeStretches, true},
      {"lines", "Points, lines and patterns", "Solid, dotted and stamped; plain, blended, with depth, or both",
       makeLines, true},
      {"fills", "Rectangles and flood fill", "KX_fillRect and its variants, KX_floodFill, KX_moveRect", makeFills,
       true},
      {"operations", "Image operations", "In place, in every format, plain or packed", makeOperations, true},
      {"palettes", "Palettes and colours", "256 entries of blue, green and red; 8-bit pixels follow them at once",
       makePalettes, true},
      {"colours", "Colours", "Channels of 0 to 255 in every format, and pixels of four bytes from elsewhere",
       makeColours, true},
      {"sprites", "400 packed sprites sorted by depth",
       "KX_bltCopyTransparentZBuffer, KX_bltCopyTransparentAlphaZBuffer from run-length packed bitmaps", makeSprites,
       true},
      {"solid", "A turning solid",
       "KX_cameraTransformAndProject, KX_beginRendering, KX_drawTexturedTriangleGouraudShade and ...Alpha", makeSolid,
       true},
      {"cameras", "Six cameras",
       "KX_create3DDevice, KX_createTexture, KX_createCamera, KX_cameraTransform, KX_cameraProject, textured triangles",
       makeCameras, true},
      {"relief", "Height maps: an island in six steps",
       "LS_ functions make, smooth, stretch, measure and save the heights of a landscape", makeRelief, false},
      {"island", "A flight over the island",
       "LS_createLandscape, LS_setTextures, KX_drawTexturedTriangleGouraudShade, KX_bltStretchTransparent for the "
       "palms",
       makeIsland, true},
      {"water", "Water, and drops under the mouse", "KX_calculateWaterMap, KX_drawWaterBitmap", makeWater, true},
      {"screens", "How frames reach the display",
       "KX_createScreen makes one to three buffers for a window; KX_flip shows what is drawn. Try the keys 1, 2, 3 and "
       "F",
       makeScreens, true},
      {"coders", "Coders", "LZ_compress, RLE_compressWords, their opposites, and KX_calculateCRC over each frame",
       makeCoders, false},
      {"tables", "Method tables and drivers",
       "KX_getBitmapInterface fills a bitmap's own functions, from the library, a driver, or the program", makeTables,
       false},
  };
  return table;
}

Image Material::covering(int width, int height) const {
  Image image = makeImage(width, height, format);
  KX_CHECK(KX_bltStretch(image.get(), 0, 0, width, height, picture.get(), 0, 0, picture->width, picture->height));
  return image;
}

void drawTitled(Scene& scene, std::size_t index, Bitmap* target, const Frame& frame) {
  scene.draw(target, frame);
  const SceneEntry& entry = scenes()[index];
  KX_CHECK(KX_fillRectAlpha(target, 0, 0, frameWidth, headHeight, colour(target, 30, 50, 90), 90));
  const std::string place = std::to_string(index + 1) + "/" + std::to_string(scenes().size());
  const std::uint32_t white = colour(target, 255, 255, 255);
  drawText(target, 10, 4, entry.title, white, 2);
  drawText(target, frameWidth - 10 - textWidth(place, 2), 4, place, colour(target, 150, 175, 215), 2);
  drawText(target, 10, 24, entry.calls, colour(target, 255, 214, 110));
}

Frame visitedAt(double seconds) {
  return {seconds, frameWidth / 2 + static_cast<int>(190 * std::sin(seconds * 1.1)),
          frameHeight / 2 + static_cast<int>(120 * std::sin(seconds * 1.7 + 0.4)), std::fmod(seconds, 0.75) < 0.12,
          nullptr};
}

}  // namespace demo
