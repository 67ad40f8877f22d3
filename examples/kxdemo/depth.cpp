// Depth: Z buffers and Z maps decide what is in front, whatever is drawn first.
// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <numbers>

#include "panels.h"

namespace demo {

namespace {

class Depth final : public PanelScene {
public:
  explicit Depth(const Material& material)
      : PanelScene(material),
        picture_(material.covering(width, height)),
        relief_(makeBallDepth(ballSize, 60)),
        smallRelief_(makeBallDepth(smallSize, 0)),
        glow_(makeImage(glowSize, glowSize, material.format)),
        glowWeights_(makeSoftDisc(glowSize, glowSize)) {
    constexpr std::array<Rgb, kinds> colours{{{235, 60, 45}, {60, 130, 240}, {250, 200, 40}, {70, 200, 90}}};
    for (std::size_t i = 0; i < kinds; ++i) {
      balls_[i] = makeBall(ballSize, material.format, colours[i]);
      small_[i] = makeBall(smallSize, material.format, colours[i]);
    }
    KX_CHECK(KX_fillRect(glow_.get(), 0, 0, glowSize, glowSize, demo::colour(glow_.get(), 255, 240, 190)));
  }

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;

    show("Drawn in any order, sorted by depth", "KX_bltCopyTransparentZBuffer", [&](Bitmap* field) { ring(field, t); });

    show("Depths for each pixel: balls cut balls", "KX_bltCopyTransparentZMap", [&](Bitmap* field) {
      Bitmap* z = clearedDepth();
      for (std::size_t i = 0; i < 3; ++i) {
        const Place place = orbit(t * 0.8 + static_cast<double>(i) * turn / 3);
        KX_CHECK(KX_bltCopyTransparentZMap(field, z, place.x, place.y, balls_[i].get(), 0, 0, ballSize, ballSize,
                                           relief_.get(), place.depth));
      }
    });

    show("Glass, cut by the same depths", "KX_bltCopyTransparentAlphaZMap", [&](Bitmap* field) {
      cover(field, picture_);
      Bitmap* z = clearedDepth();
      for (std::size_t i = 0; i < 2; ++i) {
        const Place place = orbit(t * 0.8 + static_cast<double>(i) * turn / 2);
        KX_CHECK(KX_bltCopyTransparentAlphaZMap(field, z, place.x, place.y, balls_[3 - i].get(), 0, 0, ballSize,
                                                ballSize, 120, relief_.get(), place.depth));
      }
    });

    show("A glow behind and before columns", "KX_bltCopyAlphamapZBuffer", [&](Bitmap* field) {
      Bitmap* z = clearedDepth();
      for (int i = 0; i < 5; ++i)
        KX_CHECK(KX_fillRectZBuffer(field, z, 12 + i * 38, 20, 22, height - 40,
                                    colour(70U + static_cast<unsigned>(i) * 25, 80, 130), 220 - i * 40));
      const Place place = across(t, glowSize);
      KX_CHECK(KX_bltCopyAlphamapZBuffer(field, z, place.x, place.y, glow_.get(), 0, 0, glowSize, glowSize,
                                         glowWeights_.get(), place.depth));
    });

    show("Points and lines know depth too", "KX_drawLineZBuffer, KX_setPixelZBuffer",
         [&](Bitmap* field) { star(field, t); });

    show("What a Z buffer holds: dark is near", "KX_bltCopy from 8 to 16 bits", [&](Bitmap* field) {
      Bitmap* z = clearedDepth();
      for (int i = 0; i < 14; ++i) {
        const double angle = t * 0.7 + i * turn / 14;
        KX_CHECK(KX_bltCopyTransparentZMap(field, z, 72 + static_cast<int>(62 * std::cos(angle)),
                                           60 + static_cast<int>(50 * std::sin(angle * 2)), small_[0].get(), 0, 0,
                                           smallSize, smallSize, smallRelief_.get(),
                                           110 + static_cast<int>(100 * std::sin(angle))));
      }
      KX_CHECK(KX_bltCopy(field, 0, 0, z, 0, 0, width, height));
    });
  }

private:
  static constexpr double turn = 2 * std::numbers::pi;
  static constexpr int kinds = 4;
  static constexpr int ballSize = 96;
  static constexpr int smallSize = 56;
  static constexpr int glowSize = 90;

  struct Place {
    int x, y, depth;
  };

  static Place orbit(double angle) {
    return {52 + static_cast<int>(46 * std::cos(angle)), 43 - static_cast<int>(16 * std::sin(angle)),
            20 + static_cast<int>(20 * std::sin(angle))};
  }

  static Place across(double t, int size) {
    const double part = 0.5 + 0.5 * std::sin(t);
    return {static_cast<int>((width - size) * part), (height - size) / 2,
            20 + static_cast<int>(110 + 110 * std::cos(t * 0.7))};
  }

  void ring(Bitmap* field, double t) {
    Bitmap* z = clearedDepth();
    constexpr int count = 18;
    for (int i = 0; i < count; ++i) {
      // Seven is prime to the count: neighbours are not drawn one after the other.
      const double angle = t * 0.7 + i * 7 * turn / count;
      const int depth = 128 - static_cast<int>(100 * std::sin(angle));
      KX_CHECK(KX_bltCopyTransparentZBuffer(
          field, z, 72 + static_cast<int>(70 * std::cos(angle)), 62 + static_cast<int>(46 * std::sin(angle)),
          small_[static_cast<std::size_t>(i % kinds)].get(), 0, 0, smallSize, smallSize, depth));
    }
  }

  void star(Bitmap* field, double t) {
    Bitmap* z = clearedDepth();
    KX_CHECK(KX_fillRectZBuffer(field, z, 60, 50, 80, 82, colour(70, 80, 105), 128));
    constexpr int rays = 40;
    for (int i = 0; i < rays; ++i) {
      const double part = i / double{rays} + t * 0.03;
      const Point from = onCircle(part, 8);
      const Point to = onCircle(part, 86);
      KX_CHECK(
          KX_drawLineZBuffer(field, z, from.x, from.y, to.x, to.y, rainbow(i / double{rays}), i % 2 == 0 ? 100 : 160));
    }
    // Points on two rings that cross the plate: half of each is in front of it.
    for (int i = 0; i < 1600; ++i) {
      const double angle = i * turn / 1600 + t * 0.4;
      const int tilt = i % 2 == 0 ? 1 : -1;
      const int wobble = i * 7 % 5 - 2;
      const int x = width / 2 + static_cast<int>(std::lround((76 + wobble) * std::cos(angle)));
      const int y =
          height / 2 + static_cast<int>(std::lround((26 + wobble) * std::sin(angle) + tilt * 34 * std::cos(angle)));
      KX_CHECK(KX_setPixelZBuffer(field, z, x, y, colour(255, 244, 200),
                                  128 - static_cast<int>(std::lround(60 * std::sin(angle)))));
    }
  }

  Image picture_;
  Image relief_;
  Image smallRelief_;
  Image glow_;
  Image glowWeights_;
  std::array<Image, kinds> balls_;
  std::array<Image, kinds> small_;
};

}  // namespace

std::unique_ptr<Scene> makeDepth(const Material& material) { return std::make_unique<Depth>(material); }

}  // namespace demo
