// Image operations, each frame on a fresh copy.
// SPDX-License-Identifier: MIT
#include <cmath>
#include <cstdlib>
#include <string>

#include "panels.h"

namespace demo {

namespace {

class Operations final : public PanelScene {
public:
  explicit Operations(const Material& material)
      : PanelScene(material),
        picture_(material.covering(width, height)),
        work_(makeImage(width, height, material.format)),
        packed_(converted(picture_, material.format | KX_STORAGE_PACKED)) {}

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;
    const int swing = static_cast<int>(150 * std::sin(t * 1.5));
    const auto operate = [&](const std::string& caption, const char* call, auto operation) {
      show(caption, call, [&](Bitmap* field) {
        cover(work_.get(), picture_);
        KX_CHECK(operation(work_.get()));
        cover(field, work_);
      });
    };

    show("Grey scale, behind a moving edge", "KX_grayScale", [&](Bitmap* field) {
      cover(work_.get(), picture_);
      KX_CHECK(KX_grayScale(work_.get()));
      cover(field, picture_);
      KX_CHECK(KX_bltCopy(field, 0, 0, work_.get(), 0, 0, width / 2 + static_cast<int>(90 * std::sin(t)), height));
    });
    operate("Brightness " + std::to_string(swing), "KX_changeBrightnessContrast",
            [&](Bitmap* image) { return KX_changeBrightnessContrast(image, swing, 0, 128); });
    operate("Contrast " + std::to_string(std::abs(swing)) + " around luminance " +
                std::to_string(KX_getAverageLuminance(picture_.get())),
            "KX_getAverageLuminance",
            [&](Bitmap* image) { return KX_changeBrightnessContrast(image, 0, std::abs(swing), -1); });
    operate("Inverted", "KX_invertBitmap", KX_invertBitmap);
    operate("Left to right, and back", "KX_mirrorBitmapY",
            [&](Bitmap* image) { return std::fmod(t, 2) < 1 ? KX_mirrorBitmapY(image) : 0U; });
    show("Upside down: packed, only a table turns", "KX_mirrorBitmapX", [&](Bitmap* field) {
      // Every second and a half the packed bitmap is turned in place.
      const int turns = static_cast<int>(t / 1.5);
      if (turns != turns_) KX_CHECK(KX_mirrorBitmapX(packed_.get()));
      turns_ = turns;
      cover(field, packed_);
    });
  }

private:
  Image picture_;
  Image work_;
  Image packed_;
  int turns_ = 0;
};

}  // namespace

std::unique_ptr<Scene> makeOperations(const Material& material) { return std::make_unique<Operations>(material); }

}  // namespace demo
