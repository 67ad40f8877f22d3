// Bitmaps, and the clipping functions that keep drawing inside them.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "panels.h"

namespace demo {

namespace {

/// The window that things are clipped to, edges inclusive.
constexpr int clipLeft = 40;
constexpr int clipTop = 36;
constexpr int clipRight = 159;
constexpr int clipBottom = 145;

class Bitmaps final : public PanelScene {
public:
  explicit Bitmaps(const Material& material)
      : PanelScene(material),
        picture_(material.covering(width, height)),
        ball_(makeBall(ballSize, material.format, {250, 200, 40})) {
    Bitmap* clone = nullptr;
    KX_CHECK(KX_cloneBitmap(&clone, picture_.get(), bitmapMethods()));
    clone_.reset(clone);
    KX_CHECK(KX_invertBitmap(clone));
    // A window on the memory of the picture: no pixel is copied.
    Bitmap part = *picture_;
    part.width = width / 2;
    part.height = height / 2;
    part.pixels += picture_->pitch * (height / 4) + width / 4 * 2;
    Bitmap* view = nullptr;
    KX_CHECK(KX_createFromData(&view, &part, 1, bitmapMethods()));
    view_.reset(view);
  }

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;

    show("A sprite cut at the edges of a window", "KX_clipTwoRects", [&](Bitmap* field) {
      window(field);
      for (int i = 0; i < 4; ++i) {
        const Point at = onCircle(t * 0.1 + i / 4.0, 62);
        int x = at.x - ballSize / 2;
        int y = at.y - ballSize / 2;
        int left = 0;
        int top = 0;
        int w = ballSize;
        int h = ballSize;
        if (KX_clipTwoRects(0, 0, ballSize - 1, ballSize - 1, &left, &top, &w, &h, clipLeft, clipTop, clipRight,
                            clipBottom, &x, &y) != 0)
          KX_CHECK(KX_bltCopyTransparent(field, x, y, ball_.get(), left, top, w, h));
      }
    });

    show("Lines cut at the edges of a window", "KX_clipLine", [&](Bitmap* field) {
      window(field);
      constexpr int count = 24;
      for (int i = 0; i < count; ++i) {
        const Point from = onCircle(i / double{count} + t * 0.03, 89);
        const Point to = onCircle(i / double{count} + t * 0.03 + 0.38, 89);
        KX_CHECK(KX_drawLineAlpha(field, from.x, from.y, to.x, to.y, colour(90, 100, 120), 170));
        Point a = from;
        Point b = to;
        if (KX_clipLine(clipLeft, clipTop, clipRight, clipBottom, &a.x, &a.y, &b.x, &b.y) != 0)
          KX_CHECK(KX_drawLine(field, a.x, a.y, b.x, b.y, rainbow(i / double{count})));
      }
    });

    show("A growing picture cut in proportion", "KX_clipStretchRect", [&](Bitmap* field) {
      window(field);
      int wide = 60 + static_cast<int>(70 * (1 + std::sin(t)));
      int high = wide * height / width;
      int x = 100 - wide / 2 + static_cast<int>(30 * std::sin(t * 0.7));
      int y = 91 - high / 2;
      int left = 0;
      int top = 0;
      int w = width;
      int h = height;
      if (KX_clipStretchRect(0, 0, width - 1, height - 1, &left, &top, &w, &h, clipLeft, clipTop, clipRight, clipBottom,
                             &x, &y, &wide, &high) != 0)
        KX_CHECK(KX_bltStretch(field, x, y, wide, high, picture_.get(), left, top, w, h));
    });

    show("The pixels under the mouse", "KX_getPixel, KX_toRed, ...Green, ...Blue",
         [&](Bitmap* field) { magnifier(field, frame); });

    show("A clone is independent: inverted", "KX_cloneBitmap, KX_invertBitmap", [&](Bitmap* field) {
      cover(field, picture_);
      const int edge = width / 2 + static_cast<int>(99 * std::sin(t));
      KX_CHECK(KX_bltCopy(field, 0, 0, clone_.get(), 0, 0, edge, height));
    });

    show("A bitmap on a part of another's memory", "KX_createFromData", [&](Bitmap* field) {
      const Point at = onCircle(t * 0.15, 40);
      KX_CHECK(KX_bltCopy(field, at.x - view_->width / 2, at.y - view_->height / 2, view_.get(), 0, 0, view_->width,
                          view_->height));
    });
  }

private:
  static constexpr int ballSize = 60;

  void window(Bitmap* field) const {
    KX_CHECK(
        KX_fillRect(field, clipLeft, clipTop, clipRight - clipLeft + 1, clipBottom - clipTop + 1, colour(70, 90, 130)));
  }

  void magnifier(Bitmap* field, const Frame& frame) const {
    constexpr int seen = 9;
    constexpr int zoom = 10;
    cover(field, picture_);
    const int x = std::clamp(frame.mouseX * width / frameWidth, seen / 2, width - 1 - seen / 2);
    const int y = std::clamp(frame.mouseY * height / frameHeight, seen / 2, height - 1 - seen / 2);
    const int left = x > width / 2 ? 8 : width - 8 - seen * zoom;
    for (int row = 0; row < seen; ++row)
      for (int column = 0; column < seen; ++column)
        KX_CHECK(KX_fillRect(field, left + column * zoom, 8 + row * zoom, zoom - 1, zoom - 1,
                             KX_getPixel(picture_.get(), x + column - seen / 2, y + row - seen / 2)));
    const std::uint32_t white = colour(255, 255, 255);
    KX_CHECK(KX_drawLine(field, x - 4, y, x + 4, y, white));
    KX_CHECK(KX_drawLine(field, x, y - 4, x, y + 4, white));
    const std::uint32_t pixel = KX_getPixel(picture_.get(), x, y);
    const std::uint32_t format = picture_->format;
    char text[64];
    static_cast<void>(std::snprintf(text, sizeof text, "pixel %04X\n%u, %u, %u", pixel, KX_toRed(format, pixel),
                                    KX_toGreen(format, pixel), KX_toBlue(format, pixel)));
    KX_CHECK(KX_fillRectAlpha(field, left, 104, seen * zoom, 26, 0, 90));
    drawText(field, left + 4, 108, text, white);
  }

  Image picture_;
  Image ball_;
  Image clone_;
  Image view_;
};

}  // namespace

std::unique_ptr<Scene> makeBitmaps(const Material& material) { return std::make_unique<Bitmaps>(material); }

}  // namespace demo
