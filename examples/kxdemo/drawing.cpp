// The sheets of lines and fills.
// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>

#include "art.h"
#include "scene.h"

namespace demo {

namespace {

constexpr double turn = 2 * std::numbers::pi;

struct Point {
  int x, y;
};

/// A point on a circle inside a panel; `part` 0.0 to 1.0 goes once around.
Point onCircle(const Panels& panels, double part, int radius) {
  return {panels.x + Panels::width / 2 + static_cast<int>(std::lround(radius * std::cos(part * turn))),
          panels.y + Panels::height / 2 + static_cast<int>(std::lround(radius * std::sin(part * turn)))};
}

/// A colour of the rainbow.
std::uint32_t rainbow(const Panels& panels, double part) {
  const auto channel = [&](double shift) { return static_cast<unsigned>(150 + 100 * std::cos((part + shift) * turn)); };
  return panels.colour(channel(0), channel(1 / 3.0), channel(2 / 3.0));
}

Image depthOf(const Panels& panels) {
  Image zBuffer = makeImage(panels.target()->width, panels.target()->height, KX_FORMAT_GREY);
  std::memset(zBuffer->pixels, 255,
              static_cast<std::size_t>(zBuffer->pitch) * static_cast<std::size_t>(zBuffer->height));
  return zBuffer;
}

constexpr int rays = 48;

}  // namespace

Image drawLines(const Material& material) {
  Panels panels(6, 3, KX_FORMAT_565, "Lines and patterns");
  Bitmap* target = panels.target();
  const Image zBuffer = depthOf(panels);

  panels.next("Solid lines in every direction\nKX_drawLine");
  for (int i = 0; i < rays; ++i) {
    const Point from = onCircle(panels, i / double{rays}, 20);
    const Point to = onCircle(panels, i / double{rays}, 95);
    KX_CHECK(KX_drawLine(target, from.x, from.y, to.x, to.y, rainbow(panels, i / double{rays})));
  }

  panels.next("Half transparent over a picture\nKX_drawLineAlpha");
  panels.cover(material.picture);
  for (int i = 0; i < 100; ++i)
    KX_CHECK(KX_drawLineAlpha(target, panels.x + i * 3, panels.y, panels.x + 299 - i * 3, panels.y + 199,
                              rainbow(panels, i / 100.0), 150));

  panels.next("Dots every 2 to 12 steps\nKX_drawDottedLine");
  for (int spacing = 2; spacing <= 12; ++spacing)
    KX_CHECK(KX_drawDottedLine(target, panels.x + 10, panels.y + spacing * 16 - 20, panels.x + 290,
                               panels.y + spacing * 16 - 8, rainbow(panels, spacing / 12.0), spacing));

  panels.next("A small image stamped along a line\nKX_drawPatternLineTransparent");
  const Image ball = makeBall(22, KX_FORMAT_565, {250, 190, 60});
  for (int i = 0; i < 5; ++i) {
    const Point from = onCircle(panels, i / 5.0 - 0.25, 82);
    const Point to = onCircle(panels, (i + 2) / 5.0 - 0.25, 82);
    KX_CHECK(KX_drawPatternLineTransparent(target, from.x, from.y, to.x, to.y, 9, ball.get()));
  }

  panels.next("The same, half transparent, as a broad brush\nKX_drawPatternLineTransparentAlpha");
  panels.cover(material.picture);
  const Image brush = makeBall(26, KX_FORMAT_565, {90, 220, 250});
  for (int i = 0; i < 24; ++i)
    KX_CHECK(KX_drawPatternLineTransparentAlpha(
        target, panels.x + 12 * i, panels.y + 100 - static_cast<int>(60 * std::sin(i * 0.45)), panels.x + 12 * (i + 1),
        panels.y + 100 - static_cast<int>(60 * std::sin((i + 1) * 0.45)), 6, brush.get(), 130));

  panels.next("Lines behind and before a plane at depth 128\nKX_fillRectZBuffer, KX_drawLineZBuffer");
  KX_CHECK(KX_fillRectZBuffer(target, zBuffer.get(), panels.x + 75, panels.y + 50, 150, 100, panels.colour(70, 80, 105),
                              128));
  for (int i = 0; i < rays; ++i) {
    const Point from = onCircle(panels, i / double{rays}, 10);
    const Point to = onCircle(panels, i / double{rays}, 95);
    KX_CHECK(KX_drawLineZBuffer(target, zBuffer.get(), from.x, from.y, to.x, to.y, rainbow(panels, i / double{rays}),
                                i % 2 == 0 ? 100 : 160));
  }
  return panels.take();
}

Image drawFills(const Material& material) {
  Panels panels(6, 3, KX_FORMAT_565, "Rectangles and flood fill");
  Bitmap* target = panels.target();
  const Image zBuffer = depthOf(panels);

  panels.next("Filled rectangles\nKX_fillRect");
  for (int i = 0; i < 60; ++i)
    KX_CHECK(KX_fillRect(target, panels.x + i % 10 * 30, panels.y + i / 10 * 33, 4 + i % 10 * 3, 6 + i / 10 * 5,
                         rainbow(panels, i / 60.0)));

  panels.next("Panes of glass, weights 32 to 224\nKX_fillRectAlpha");
  panels.cover(material.picture);
  for (int i = 0; i < 7; ++i)
    KX_CHECK(KX_fillRectAlpha(target, panels.x + 8 + i * 40, panels.y + 10 + i * 8, 60, 120, rainbow(panels, i / 7.0),
                              32 + i * 32));

  panels.next("A pyramid drawn from the top, sorted by depth\nKX_fillRectZBuffer");
  for (int i = 0; i < 9; ++i)
    KX_CHECK(KX_fillRectZBuffer(target, zBuffer.get(), panels.x + 140 - i * 15, panels.y + 92 - i * 10, 20 + i * 30,
                                16 + i * 20, rainbow(panels, i / 9.0), 10 + i * 20));

  panels.next("Flood fill of the fields between lines\nKX_drawLine, KX_floodFill");
  const std::uint32_t ground = panels.colour(245, 245, 240);
  KX_CHECK(KX_fillRect(target, panels.x, panels.y, Panels::width, Panels::height, ground));
  for (int i = 0; i < 7; ++i) {
    const Point a = onCircle(panels, i / 7.0, 99);
    const Point b = onCircle(panels, (i + 3) / 7.0, 99);
    KX_CHECK(KX_drawLine(target, a.x, a.y, b.x, b.y, panels.colour(30, 30, 40)));
  }
  for (int i = 0; i < 7; ++i)
    for (const int radius : {86, 60, 42}) {
      const Point seed = onCircle(panels, (i + (radius == 60 ? 0.5 : 0.0)) / 7.0, radius);
      if (KX_getPixel(target, seed.x, seed.y) == ground)
        KX_CHECK(KX_floodFill(target, seed.x, seed.y, 0, rainbow(panels, i / 7.0 + radius / 200.0)));
    }

  KX_CHECK(KX_floodFill(target, panels.x + Panels::width / 2, panels.y + Panels::height / 2, 0,
                        panels.colour(255, 214, 110)));

  panels.next("Flood fill of the sky with tolerance 12, 24, 48\nKX_floodFill");
  for (int i = 0; i < 3; ++i) {
    const int x = panels.x + i * 100;
    KX_CHECK(KX_bltStretch(target, x, panels.y, 98, Panels::height, material.picture.get(), 0, 0,
                           material.picture->width, material.picture->height));
    // A frame keeps the fill inside its field.
    KX_CHECK(KX_fillRect(target, x + 98, panels.y, 2, Panels::height, panels.colour(0, 0, 0)));
    KX_CHECK(KX_floodFill(target, x + 49, panels.y + 4, 12 << i, panels.colour(250, 120, 30)));
  }

  panels.next("A rectangle moved onto itself, six times\nKX_moveRect");
  panels.cover(material.picture);
  for (int i = 0; i < 6; ++i)
    KX_CHECK(KX_moveRect(target, panels.x + 30 + i * 22, panels.y + 20 + i * 12, panels.x + 8 + i * 22,
                         panels.y + 8 + i * 12, 120, 90));
  return panels.take();
}

Image drawOperations(const Material& material) {
  Panels panels(9, 3, KX_FORMAT_888, "Image operations, before and after");
  const auto show = [&](const char* caption, std::uint32_t format, auto operation) {
    panels.next(caption);
    const Image image = converted(material.picture, format);
    KX_CHECK(operation(image.get()));
    panels.cover(image);
  };
  show("Before", KX_FORMAT_888, [](Bitmap*) { return 0U; });
  show("Grey scale\nKX_grayScale", KX_FORMAT_888, KX_grayScale);
  show("Inverted\nKX_invertBitmap", KX_FORMAT_565, KX_invertBitmap);
  show("Brightness +80\nKX_changeBrightnessContrast", KX_FORMAT_888,
       [](Bitmap* image) { return KX_changeBrightnessContrast(image, 80, 0, 128); });
  show("Contrast +100 around the average luminance\nKX_changeBrightnessContrast", KX_FORMAT_888,
       [](Bitmap* image) { return KX_changeBrightnessContrast(image, 0, 100, -1); });
  show("Brightness -100, contrast -40\nKX_changeBrightnessContrast", KX_FORMAT_565,
       [](Bitmap* image) { return KX_changeBrightnessContrast(image, -100, -40, 128); });
  show("Top to bottom\nKX_mirrorBitmapX", KX_FORMAT_565, KX_mirrorBitmapX);
  show("Left to right\nKX_mirrorBitmapY", KX_FORMAT_888, KX_mirrorBitmapY);
  show("Grey palette of an 8-bit picture, contrast +60\nKX_calculatePalette, KX_grayScale", KX_FORMAT_PALETTE,
       [](Bitmap* image) {
         KX_CHECK(KX_grayScale(image));
         return KX_changeBrightnessContrast(image, 0, 60, 128);
       });
  return panels.take();
}

}  // namespace demo
