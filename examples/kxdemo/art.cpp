// SPDX-License-Identifier: MIT
#include "art.h"

#include "paint.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace demo {

namespace {

/// Brightness 0.0 to 1.0 of a ball of radius 1 lit from the upper left, or below 0 outside it.
double ballLight(double x, double y) {
  const double squared = x * x + y * y;
  if (squared > 1) return -1;
  const double z = std::sqrt(1 - squared);
  const double diffuse = std::max(0.0, (-x * 0.55 - y * 0.6 + z * 0.6));
  const double shine = std::pow(std::max(0.0, -x * 0.4 - y * 0.45 + z * 0.8), 24);
  return std::min(1.0, 0.12 + 0.62 * diffuse + 0.5 * shine);
}

/// A channel at a brightness: black, then the colour, then white.
unsigned lit(unsigned channel, double light) {
  const double base = std::min(1.0, light * 1.45) * channel;
  const double white = std::max(0.0, light - 0.7) / 0.3;
  return static_cast<unsigned>(std::clamp(base + (255 - base) * white * white, 0.0, 255.0));
}

}  // namespace

Image makeBall(int size, std::uint32_t format, Rgb colour) {
  return painted(size, size, format, [&](int x, int y) {
    const double light = ballLight(place(x, size), place(y, size));
    if (light < 0) return 0U;
    return std::max(1U, KX_toRGB(format, lit(colour.red, light), lit(colour.green, light), lit(colour.blue, light)));
  });
}

Indexed::Indexed(Image image) : image_(std::move(image)) {
  Palette own{};
  std::copy_n(image_->palette, own.size(), own.begin());
  setPalette(own);
}

void Indexed::setPalette(const Palette& palette) {
  *palette_ = palette;
  void* table = nullptr;
  KX_CHECK(KX_createCachedPalette(&table, palette_->data(), KX_FORMAT_565));
  // The bitmap gives the table before up only now.
  const auto before =
      std::exchange(table16_, std::unique_ptr<std::uint16_t, TableDelete>(static_cast<std::uint16_t*>(table)));
  KX_CHECK(KX_setPaletteReference(image_.get(), palette_->data(), nullptr, table16_.get(), nullptr));
}

Indexed makeIndexedBall(int size, Rgb colour) {
  Indexed ball(painted(size, size, KX_FORMAT_PALETTE, [&](int x, int y) {
    const double light = ballLight(place(x, size), place(y, size));
    return light < 0 ? 0U : 1 + static_cast<unsigned>(light * 62);
  }));
  Palette palette{};
  for (unsigned i = 0; i < 64; ++i) {
    palette[i * 3] = static_cast<std::uint8_t>(lit(colour.blue, i / 63.0));
    palette[i * 3 + 1] = static_cast<std::uint8_t>(lit(colour.green, i / 63.0));
    palette[i * 3 + 2] = static_cast<std::uint8_t>(lit(colour.red, i / 63.0));
  }
  ball.setPalette(palette);
  return ball;
}

Image makeBallDepth(int size, int nearest) {
  return painted(size, size, KX_FORMAT_GREY, [&](int x, int y) {
    const double squared = std::pow(place(x, size), 2) + std::pow(place(y, size), 2);
    if (squared > 1) return 255U;
    return static_cast<unsigned>(std::min(255.0, nearest + (1 - std::sqrt(1 - squared)) * size / 2));
  });
}

Image makeSoftDisc(int width, int height) {
  return painted(width, height, KX_FORMAT_GREY, [&](int x, int y) {
    const double distance = std::hypot(place(x, width), place(y, height));
    return static_cast<unsigned>(std::clamp((distance - 0.55) * 2.3, 0.0, 1.0) * 255);
  });
}

Image makeStone(int size, std::uint32_t format, int cells) {
  return painted(size, size, format, [&](int x, int y) {
    const int cell = size / cells;
    const bool light = (x / cell + y / cell) % 2 == 0;
    const bool joint = x % cell == 0 || y % cell == 0;
    const auto grain = static_cast<unsigned>((x * 37 + y * 59 + x * y * 13) % 23);
    const unsigned base = joint ? 60 : light ? 196 : 116;
    return KX_toRGB(format, base + grain, base + grain - 12, base / 2 + grain + 20);
  });
}

}  // namespace demo
