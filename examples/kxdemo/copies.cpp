// Copy blits: every way a source pixel meets the destination, on 16-bit pixels.
// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "panels.h"

namespace demo {

namespace {

constexpr Rgb red{235, 60, 45};
constexpr Rgb blue{60, 130, 240};
constexpr Rgb yellow{250, 200, 40};
constexpr Rgb green{70, 200, 90};

class Copies final : public PanelScene {
public:
  explicit Copies(const Material& material)
      : PanelScene(material),
        picture_(material.covering(width, height)),
        dark_(material.covering(width, height)),
        tile_(makeStone(tileSize, material.format, 2)),
        ball_(makeBall(ballSize, material.format, yellow)),
        glass_(makeBall(64, material.format, blue)),
        packed_(converted(ball_, material.format | KX_STORAGE_PACKED)),
        spot_(makeImage(spotSize, spotSize, material.format)),
        spotWeights_(makeSoftDisc(spotSize, spotSize)) {
    KX_CHECK(KX_grayScale(dark_.get()));
    KX_CHECK(KX_changeBrightnessContrast(dark_.get(), -140, 0, 128));
    constexpr std::array<Rgb, indexedCount> colours{{red, yellow, green, blue, {200, 90, 220}, {230, 230, 235}}};
    for (const Rgb& shade : colours) indexed_.push_back(makeIndexedBall(56, shade));
    KX_CHECK(KX_getBitmapSize(ball_.get(), &plainSize_));
    KX_CHECK(KX_getBitmapSize(packed_.get(), &packedSize_));
  }

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;

    show("Tiles, scrolled: all pixels copied", "KX_bltCopy", [&](Bitmap* field) { tiles(field, t); });

    show("Source pixels of value 0 are skipped", "KX_bltCopyTransparent", [&](Bitmap* field) {
      cover(field, picture_);
      for (int i = 0; i < 6; ++i) {
        const int hop = static_cast<int>(std::abs(std::sin(t * 2.6 + i * 0.7)) * 110);
        KX_CHECK(KX_bltCopyTransparent(field, 4 + i * 28, height - ballSize - 4 - hop, ball_.get(), 0, 0, ballSize,
                                       ballSize));
      }
    });

    show("Constant alpha from 0 to 255 and back", "KX_bltCopyTransparentAlpha", [&](Bitmap* field) {
      cover(field, picture_);
      for (int i = 0; i < 6; ++i) {
        const int alpha = static_cast<int>(127.5 - 127.5 * std::cos(t * 1.5 + i));
        KX_CHECK(KX_bltCopyTransparentAlpha(field, 4 + i % 3 * 64, 20 + i / 3 * 78, glass_.get(), 0, 0, 64, 64, alpha));
      }
    });

    show("A weight for each pixel: a soft light", "KX_bltCopyAlphamap", [&](Bitmap* field) {
      cover(field, dark_);
      const int x = static_cast<int>((width - spotSize) * (0.5 + 0.5 * std::sin(t * 1.1)));
      const int y = static_cast<int>((height - spotSize) * (0.5 + 0.5 * std::sin(t * 1.7 + 1)));
      KX_CHECK(KX_bltCopy(spot_.get(), 0, 0, picture_.get(), x, y, spotSize, spotSize));
      KX_CHECK(KX_bltCopyAlphamap(field, x, y, spot_.get(), 0, 0, spotSize, spotSize, spotWeights_.get()));
    });

    show("8-bit sprites with palettes of their own", "KX_setPaletteReference, ...Transparent", [&](Bitmap* field) {
      for (int i = 0; i < indexedCount; ++i) {
        const Point at = onCircle(i / double{indexedCount} + t * 0.12, 60);
        KX_CHECK(KX_bltCopyTransparent(field, at.x - 28, at.y - 28, indexed_[static_cast<std::size_t>(i)].bitmap(), 0,
                                       0, 56, 56));
      }
    });

    show("Plain " + std::to_string(plainSize_) + ", packed " + std::to_string(packedSize_) + " bytes",
         "KX_bltCopyTransparent from both", [&](Bitmap* field) {
           for (int i = 0; i < 8; ++i) {
             const Point at = onCircle(i / 8.0 - t * 0.1, 56);
             KX_CHECK(KX_bltCopyTransparent(field, at.x - ballSize / 2, at.y - ballSize / 2,
                                            (i % 2 == 0 ? ball_ : packed_).get(), 0, 0, ballSize, ballSize));
           }
         });
  }

private:
  static constexpr int ballSize = 44;
  static constexpr int spotSize = 104;
  static constexpr int tileSize = 64;
  static constexpr int indexedCount = 6;

  void tiles(Bitmap* field, double t) const {
    const int offsetX = static_cast<int>(t * 40) % tileSize;
    const int offsetY = static_cast<int>(t * 25) % tileSize;
    for (int row = -1; row <= height / tileSize; ++row)
      for (int column = -1; column <= width / tileSize; ++column) {
        int x = column * tileSize + offsetX;
        int y = row * tileSize + offsetY;
        int left = 0;
        int top = 0;
        int w = tileSize;
        int h = tileSize;
        if (KX_clipTwoRects(0, 0, tileSize - 1, tileSize - 1, &left, &top, &w, &h, 0, 0, width - 1, height - 1, &x,
                            &y) != 0)
          KX_CHECK(KX_bltCopy(field, x, y, tile_.get(), left, top, w, h));
      }
  }

  Image picture_;
  Image dark_;
  Image tile_;
  Image ball_;
  Image glass_;
  Image packed_;
  Image spot_;
  Image spotWeights_;
  std::vector<Indexed> indexed_;
  std::uint32_t plainSize_ = 0;
  std::uint32_t packedSize_ = 0;
};

}  // namespace

std::unique_ptr<Scene> makeCopies(const Material& material) { return std::make_unique<Copies>(material); }

}  // namespace demo
