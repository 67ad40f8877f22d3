// Stretch blits: the same ways to combine, at any size.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>

#include "panels.h"

namespace demo {

namespace {

class Stretches final : public PanelScene {
public:
  explicit Stretches(const Material& material)
      : PanelScene(material),
        picture_(material.covering(320, 292)),
        ball_(makeBall(ballSize, material.format, {250, 200, 40})),
        other_(makeBall(ballSize, material.format, {70, 140, 245})),
        packed_(converted(ball_, material.format | KX_STORAGE_PACKED)),
        relief_(makeBallDepth(ballSize, 60)),
        weights_(makeSoftDisc(picture_->width, picture_->height)),
        small_(material.covering(50, 46)) {}

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;
    const double wave = 0.5 + 0.5 * std::sin(t * 1.2);

    show("Into a picture and out again", "KX_bltStretch", [&](Bitmap* field) {
      const int w = 40 + static_cast<int>((picture_->width - 40) * wave);
      const int h = w * picture_->height / picture_->width;
      KX_CHECK(KX_bltStretch(field, 0, 0, width, height, picture_.get(), (picture_->width - w) / 2,
                             (picture_->height - h) / 2, w, h));
    });

    show("Squash and stretch, from packed rows", "KX_bltStretchTransparent", [&](Bitmap* field) {
      for (int i = 0; i < 3; ++i) {
        const double hop = std::abs(std::sin(t * 3 + i));
        const int h = 34 + static_cast<int>(30 * std::min(1.0, hop * 2.5));
        const int w = 98 - h;
        KX_CHECK(KX_bltStretchTransparent(field, 36 + i * 64 - w / 2, height - 8 - h - static_cast<int>(90 * hop), w, h,
                                          packed_.get(), 0, 0, ballSize, ballSize));
      }
    });

    show("A picture fades into itself, closer", "KX_bltStretchAlpha", [&](Bitmap* field) {
      KX_CHECK(KX_bltStretch(field, 0, 0, width, height, picture_.get(), 0, 0, picture_->width, picture_->height));
      KX_CHECK(KX_bltStretchAlpha(field, 0, 0, width, height, picture_.get(), 60, 70, 150, 137,
                                  static_cast<int>(255 * wave)));
    });

    show("A weight for each source pixel", "KX_bltStretchAlphamap", [&](Bitmap* field) {
      const int w = 60 + static_cast<int>(140 * wave);
      const int h = w * height / width;
      KX_CHECK(KX_bltStretchAlphamap(field, (width - w) / 2, (height - h) / 2, w, h, picture_.get(), 0, 0,
                                     picture_->width, picture_->height, weights_.get()));
    });

    show("Balls grow through one another", "KX_bltStretchTransparentZMap", [&](Bitmap* field) {
      Bitmap* z = clearedDepth();
      const int first = 60 + static_cast<int>(80 * wave);
      const int second = 200 - first;
      KX_CHECK(KX_bltStretchTransparentZMap(field, z, 20, (height - first) / 2, first, first, ball_.get(), 0, 0,
                                            ballSize, ballSize, relief_.get(), 20 - first / 8));
      KX_CHECK(KX_bltStretchTransparentZMap(field, z, width - 20 - second, (height - second) / 2, second, second,
                                            other_.get(), 0, 0, ballSize, ballSize, relief_.get(), 20 - second / 8));
    });

    show("A small canvas at whole factors 1 to 4", "KX_bltStretch", [&](Bitmap* field) {
      const int factor = 1 + static_cast<int>(t * 0.8) % 4;
      const int w = std::min(width, small_->width * factor);
      const int h = std::min(height, small_->height * factor);
      KX_CHECK(
          KX_bltStretch(field, (width - w) / 2, (height - h) / 2, w, h, small_.get(), 0, 0, w / factor, h / factor));
    });
  }

private:
  static constexpr int ballSize = 64;
  Image picture_;
  Image ball_;
  Image other_;
  Image packed_;
  Image relief_;
  Image weights_;
  Image small_;
};

}  // namespace

std::unique_ptr<Scene> makeStretches(const Material& material) { return std::make_unique<Stretches>(material); }

}  // namespace demo
