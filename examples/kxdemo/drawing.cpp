// Points, lines and patterns; rectangles and flood fill.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "panels.h"

namespace demo {

namespace {

constexpr int rays = 48;

class Lines final : public PanelScene {
public:
  explicit Lines(const Material& material)
      : PanelScene(material),
        picture_(material.covering(width, height)),
        bead_(makeBall(18, material.format, {250, 190, 60})),
        brush_(makeBall(26, material.format, {90, 220, 250})) {}

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;

    show("Solid lines in every direction", "KX_drawLine", [&](Bitmap* field) {
      for (int i = 0; i < rays; ++i) {
        const double part = i / double{rays};
        const Point from = onCircle(part, 12);
        const Point to = onCircle(part + 0.12 * std::sin(t), 86);
        KX_CHECK(KX_drawLine(field, from.x, from.y, to.x, to.y, rainbow(part + t * 0.1)));
      }
    });

    show("Blended over a picture", "KX_drawLineAlpha", [&](Bitmap* field) {
      cover(field, picture_);
      for (int i = 0; i < 66; ++i)
        KX_CHECK(KX_drawLineAlpha(field, i * 3, 0, width - 1 - i * 3, height - 1, rainbow(i / 66.0 - t * 0.1), 150));
    });

    show("Dots every 2 to 11 steps, marching", "KX_drawDottedLine", [&](Bitmap* field) {
      constexpr int most = 11;
      for (int i = 0; i < 88; ++i) {
        const double part = i / 88.0;
        const int spacing = 2 + i * (most - 1) / 88;
        const double bend = 0.3 + 0.12 * std::sin(t * 0.8);
        const Point from = onCircle(part, 22 + static_cast<int>(t * 12 + i * 3) % spacing);
        const Point to = onCircle(part + bend, 88);
        KX_CHECK(KX_drawDottedLine(field, from.x, from.y, to.x, to.y, rainbow(part), spacing));
      }
    });

    show("An image stamped along a line", "KX_drawPatternLineTransparent", [&](Bitmap* field) {
      for (int i = 0; i < 5; ++i) {
        const Point from = onCircle(i / 5.0 - 0.25 + t * 0.04, 80);
        const Point to = onCircle((i + 2) / 5.0 - 0.25 + t * 0.04, 80);
        KX_CHECK(KX_drawPatternLineTransparent(field, from.x, from.y, to.x, to.y, 9, bead_.get()));
      }
    });

    show("Blended stamps: a broad brush", "KX_drawPatternLineTransparentAlpha", [&](Bitmap* field) {
      cover(field, picture_);
      const auto wave = [&](int i) { return 90 - static_cast<int>(55 * std::sin(i * 0.5 + t * 2)); };
      for (int i = 0; i < 16; ++i)
        KX_CHECK(KX_drawPatternLineTransparentAlpha(field, 12 * i, wave(i), 12 * (i + 1), wave(i + 1), 6, brush_.get(),
                                                    150));
    });

    show("Ten thousand points", "KX_setPixel, KX_setPixelAlpha", [&](Bitmap* field) { points(field, t); });
  }

private:
  /// Points on a curve that turns about itself.
  void points(Bitmap* field, double t) const {
    constexpr int count = 10000;
    std::uint32_t shade = 0;
    for (int i = 0; i < count; ++i) {
      const double part = i / double{count};
      const double a = part * 2 * 3.14159265 * 7;
      const int x = 100 + static_cast<int>(90 * std::sin(a * 3 + t * 0.5) * std::cos(part * 3.0 + t * 0.2));
      const int y = 91 + static_cast<int>(84 * std::sin(a * 2 - t * 0.3));
      if (i % 100 == 0) shade = rainbow(part);
      KX_CHECK(KX_setPixelAlpha(field, x, y, shade, 90));
    }
  }

  Image picture_;
  Image bead_;
  Image brush_;
};

class Fills final : public PanelScene {
public:
  explicit Fills(const Material& material)
      : PanelScene(material), picture_(material.covering(width, height)), moved_(material.covering(width, height)) {}

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;

    show("Filled rectangles", "KX_fillRect", [&](Bitmap* field) {
      for (int i = 0; i < 60; ++i) {
        const int size = 4 + static_cast<int>(14 * (0.5 + 0.5 * std::sin(t * 2 + i % 10 * 0.5 + i / 10)));
        KX_CHECK(KX_fillRect(field, 1 + i % 10 * 20, 6 + i / 10 * 30, size, size + 8, rainbow(i / 60.0 + t * 0.05)));
      }
    });

    show("Panes of glass, weights 32 to 224", "KX_fillRectAlpha", [&](Bitmap* field) {
      cover(field, picture_);
      for (int i = 0; i < 7; ++i) {
        const int y = 30 + static_cast<int>(28 * std::sin(t * 1.3 + i * 0.8));
        KX_CHECK(KX_fillRectAlpha(field, 6 + i * 24, y, 44, 120, rainbow(i / 7.0), 32 + i * 32));
      }
    });

    show("A pyramid drawn from the top", "KX_fillRectZBuffer", [&](Bitmap* field) {
      Bitmap* z = clearedDepth();
      for (int i = 0; i < 9; ++i) {
        const int shift = static_cast<int>((9 - i) * 3 * std::sin(t * 1.5));
        KX_CHECK(KX_fillRectZBuffer(field, z, 92 - i * 10 + shift, 84 - i * 9, 16 + i * 20, 14 + i * 18,
                                    rainbow(i / 9.0), 10 + i * 20));
      }
    });

    show("The fields between lines, one by one", "KX_floodFill", [&](Bitmap* field) { star(field, t); });

    show("The sky, with a growing tolerance", "KX_floodFill", [&](Bitmap* field) {
      cover(field, picture_);
      KX_CHECK(KX_floodFill(field, width / 2, 4, static_cast<int>(40 + 39 * std::sin(t)), colour(250, 120, 30)));
    });

    show("A picture moved onto itself", "KX_moveRect", [&](Bitmap* field) {
      // Rows of a picture slide on their own, each by one pixel a frame.
      for (int row = 0; row < height; row += bandHeight) {
        const int h = std::min(bandHeight, height - row);
        const bool left = row / bandHeight % 2 == 0;
        KX_CHECK(KX_bltCopy(edge_.get(), 0, 0, moved_.get(), left ? 0 : width - 1, row, 1, h));
        KX_CHECK(KX_moveRect(moved_.get(), left ? 0 : 1, row, left ? 1 : 0, row, width - 1, h));
        KX_CHECK(KX_bltCopy(moved_.get(), left ? width - 1 : 0, row, edge_.get(), 0, 0, 1, h));
      }
      cover(field, moved_);
    });
  }

private:
  static constexpr int bandHeight = 26;

  void star(Bitmap* field, double t) const {
    const std::uint32_t ground = colour(245, 245, 240);
    KX_CHECK(KX_fillRect(field, 0, 0, width, height, ground));
    for (int i = 0; i < 7; ++i) {
      const Point a = onCircle(i / 7.0, 89);
      const Point b = onCircle((i + 3) / 7.0, 89);
      KX_CHECK(KX_drawLine(field, a.x, a.y, b.x, b.y, colour(30, 30, 40)));
    }
    // Seven tips, seven fields between them, the middle, the ground outside.
    const int filled = static_cast<int>(t * 5) % 26;
    for (int i = 0; i < std::min(filled, 14); ++i) {
      const bool tip = i < 7;
      const Point seed = onCircle((i % 7 + (tip ? 0.0 : 0.5)) / 7.0, tip ? 60 : 26);
      KX_CHECK(KX_floodFill(field, seed.x, seed.y, 0, rainbow(i % 7 / 7.0 + (tip ? 0.0 : 0.5))));
    }
    if (filled > 15) KX_CHECK(KX_floodFill(field, width / 2, height / 2, 0, colour(255, 214, 110)));
    if (filled > 17) KX_CHECK(KX_floodFill(field, 4, height - 4, 0, colour(52, 62, 96)));
  }

  Image picture_;
  Image moved_;
  Image edge_ = makeImage(1, bandHeight, moved_->format);
};

}  // namespace

std::unique_ptr<Scene> makeLines(const Material& material) { return std::make_unique<Lines>(material); }
std::unique_ptr<Scene> makeFills(const Material& material) { return std::make_unique<Fills>(material); }

}  // namespace demo
