// Ripples over a picture: drops fall by themselves and under the mouse.
// SPDX-License-Identifier: MIT
#include <cstdint>

#include "ripples.h"
#include "scene.h"

namespace demo {

namespace {

class Water final : public Scene {
public:
  explicit Water(const Material& material) : image_(material.covering(frameWidth, frameHeight)) {}

  void draw(Bitmap* target, const Frame& frame) override {
    if (step_++ % 45 == 0) {
      const int y = static_cast<int>(random() % cellsY);
      drop(static_cast<int>(random() % cellsX), y, 1400);
    }
    if (frame.mouseDown) drop(frame.mouseX / cellSize, frame.mouseY / cellSize, 900);
    ripples_.step();

    // The shades tell mostly in the blue.
    const bool blue5 = (image_->format & KX_FORMAT_CODE_MASK) == KX_FORMAT_555;
    ripples_.draw(target, {1, 0}, {cellsX, cellsY}, cellSize, image_.get(), {}, blue5 ? 8 : 0);
  }

private:
  static constexpr int cellSize = 2;
  static constexpr int cellsX = frameWidth / cellSize;
  static constexpr int cellsY = frameHeight / cellSize;
  std::uint32_t random() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_;
  }

  void drop(int x, int y, int depth) { ripples_.splash({x + 1, y}, 4, depth); }

  Image image_;
  // One cell more on each side: every cell drawn has its neighbours.
  Ripples ripples_{cellsX + 2, cellsY + 2};
  int step_ = 0;
  std::uint32_t state_ = 0x57A7E;
};

}  // namespace

std::unique_ptr<Scene> makeWater(const Material& material) { return std::make_unique<Water>(material); }

}  // namespace demo
