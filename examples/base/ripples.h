// Waves on a grid of cells, which the library moves.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "image.h"
#include "point.h"

namespace demo {

class Ripples {
public:
  Ripples(int width, int height)
      : width_(width), height_(height), now_(static_cast<std::size_t>(width * height)), before_(now_) {}

  /// Height at a cell, or at the nearest one on the rim.
  [[nodiscard]] int at(Point cell) const {
    return now_[index({std::clamp(cell.x, 0, width_ - 1), std::clamp(cell.y, 0, height_ - 1)})];
  }

  /// How the water slopes at a cell, downhill.
  [[nodiscard]] Point slope(Point cell) const {
    return {at(cell - Point{1, 0}) - at(cell + Point{1, 0}), at(cell - Point{0, 1}) - at(cell + Point{0, 1})};
  }

  /// Presses a disc down. The rim stays as it is: waves do not reach it, so it would never rise again.
  void splash(Point middle, int radius, int depth) {
    for (int y = -radius; y <= radius; ++y)
      for (int x = -radius; x <= radius; ++x) {
        const Point cell = middle + Point{x, y};
        if (x * x + y * y <= radius * radius && cell.x > 0 && cell.y > 0 && cell.x < width_ - 1 && cell.y < height_ - 1)
          now_[index(cell)] = static_cast<std::int16_t>(-depth);
      }
  }

  void step() {
    KX_CHECK(KX_calculateWaterMap(before_.data(), pitch(), now_.data(), pitch(), width_, height_, 1, 5));
    std::swap(before_, now_);
  }

  /// Keeps the cells whose bits are set in `wet` and flattens the others: a shore, which throws waves back.
  void mask(const std::vector<std::int16_t>& wet) {
    for (std::size_t i = 0; i < now_.size(); ++i) now_[i] = static_cast<std::int16_t>(now_[i] & wet[i]);
  }

  /// Fills the top left of a bitmap with `count` cells from `first` on, each of size x size pixels, and what is seen
  /// through them of a bitmap of the same format from `groundAt` on. Shades are those of 5-5-5; `shift` weakens them.
  void draw(Bitmap* target, Point first, Point count, int size, const Bitmap* ground, Point groundAt, int shift) const {
    constexpr std::int8_t noTint[3] = {};
    KX_CHECK(KX_drawWaterBitmap(
        reinterpret_cast<std::uint16_t*>(target->pixels), 0, 0, target->pitch, cells(), pitch(), size, first.x, first.y,
        count.x, count.y, reinterpret_cast<const std::uint16_t*>(ground->pixels), groundAt.x, groundAt.y, ground->width,
        ground->height, ground->pitch, static_cast<std::uint8_t>(ground->format & KX_FORMAT_CODE_MASK), shift, noTint));
  }

private:
  [[nodiscard]] const std::int16_t* cells() const { return now_.data(); }
  [[nodiscard]] int pitch() const { return width_ * 2; }
  [[nodiscard]] std::size_t index(Point cell) const { return static_cast<std::size_t>(cell.y * width_ + cell.x); }

  int width_, height_;
  std::vector<std::int16_t> now_, before_;
};

}  // namespace demo
