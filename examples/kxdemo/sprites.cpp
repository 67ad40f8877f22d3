// Hundreds of packed sprites over a background, sorted by depth, with glassy ones among them.
// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#include "art.h"
#include "scene.h"

namespace demo {

namespace {

class Sprites final : public Scene {
public:
  explicit Sprites(const Material& material)
      : background_(material.covering(frameWidth, frameHeight)),
        zBuffer_(makeImage(frameWidth, frameHeight, KX_FORMAT_GREY)) {
    KX_CHECK(KX_changeBrightnessContrast(background_.get(), -96, 0, 128));
    constexpr Rgb colours[kinds] = {{235, 60, 45}, {60, 130, 240}, {250, 200, 40},
                                    {70, 200, 90}, {200, 90, 220}, {90, 220, 230}};
    for (int i = 0; i < kinds; ++i)
      balls_.push_back(
          converted(makeBall(24 + i * 8, material.format, colours[i]), material.format | KX_STORAGE_PACKED));
  }

  void draw(Bitmap* target, const Frame& frame) override {
    KX_CHECK(KX_bltCopy(target, 0, 0, background_.get(), 0, 0, frameWidth, frameHeight));
    KX_CHECK(KX_fillRect(zBuffer_.get(), 0, 0, frameWidth, frameHeight, 255));
    for (int i = 0; i < count; ++i) {
      const Image& ball = balls_[static_cast<std::size_t>(i % kinds)];
      const double time = frame.seconds * (0.3 + i % 7 * 0.06) + i * 2.4;
      const double nearness = 0.5 + 0.5 * std::sin(time * 1.7 + i);
      const int x = static_cast<int>((frameWidth - ball->width) * (0.5 + 0.5 * std::sin(time)));
      const int y = static_cast<int>((frameHeight - ball->height) * (0.5 + 0.5 * std::cos(time * 1.3 + i)));
      const int depth = 250 - static_cast<int>(nearness * 240);
      if (i % 5 == 0)
        KX_CHECK(KX_bltCopyTransparentAlphaZBuffer(target, zBuffer_.get(), x, y, ball.get(), 0, 0, ball->width,
                                                   ball->height, 110, depth));
      else
        KX_CHECK(KX_bltCopyTransparentZBuffer(target, zBuffer_.get(), x, y, ball.get(), 0, 0, ball->width, ball->height,
                                              depth));
    }
  }

private:
  static constexpr int count = 400;
  static constexpr int kinds = 6;
  Image background_;
  Image zBuffer_;
  std::vector<Image> balls_;
};

}  // namespace

std::unique_ptr<Scene> makeSprites(const Material& material) { return std::make_unique<Sprites>(material); }

}  // namespace demo
