// Ripples over a picture: drops fall by themselves and under the mouse.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>
#include <vector>

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
    KX_CHECK(KX_calculateWaterMap(previous_.data(), mapPitch, current_.data(), mapPitch, mapWidth, mapHeight, 1, 5));
    std::swap(previous_, current_);

    // Shades are those of 5-5-5; they tell mostly in the blue.
    const std::uint32_t format = image_->format & KX_FORMAT_CODE_MASK;
    const int shadeShift = format == KX_FORMAT_555 ? 8 : 0;
    constexpr std::array<std::int8_t, 3> noTint{};
    KX_CHECK(KX_drawWaterBitmap(reinterpret_cast<std::uint16_t*>(target->pixels), 0, 0, target->pitch, current_.data(),
                                mapPitch, cellSize, 1, 0, cellsX, cellsY,
                                reinterpret_cast<const std::uint16_t*>(image_->pixels), 0, 0, frameWidth, frameHeight,
                                image_->pitch, static_cast<std::uint8_t>(format), shadeShift, noTint.data()));
  }

private:
  static constexpr int cellSize = 2;
  static constexpr int cellsX = frameWidth / cellSize;
  static constexpr int cellsY = frameHeight / cellSize;
  // One cell more on each side: every cell drawn has its neighbours.
  static constexpr int mapWidth = cellsX + 2;
  static constexpr int mapHeight = cellsY + 2;
  static constexpr int mapPitch = mapWidth * 2;

  std::uint32_t random() {
    state_ ^= state_ << 13;
    state_ ^= state_ >> 17;
    state_ ^= state_ << 5;
    return state_;
  }

  void drop(int x, int y, int depth) {
    constexpr int radius = 4;
    for (int j = -radius; j <= radius; ++j)
      for (int i = -radius; i <= radius; ++i) {
        const int column = x + i + 1;
        const int row = y + j;
        if (i * i + j * j > radius * radius || column < 1 || row < 1 || column > mapWidth - 2 || row > mapHeight - 2)
          continue;
        current_[static_cast<std::size_t>(row * mapWidth + column)] = static_cast<std::int16_t>(-depth);
      }
  }

  Image image_;
  std::vector<std::int16_t> current_ = std::vector<std::int16_t>(mapWidth * mapHeight);
  std::vector<std::int16_t> previous_ = std::vector<std::int16_t>(mapWidth * mapHeight);
  int step_ = 0;
  std::uint32_t state_ = 0x57A7E;
};

}  // namespace

std::unique_ptr<Scene> makeWater(const Material& material) { return std::make_unique<Water>(material); }

}  // namespace demo
