// SPDX-License-Identifier: MIT
#include "panels.h"

#include <cmath>
#include <numbers>

namespace demo {

namespace {

constexpr double turn = 2 * std::numbers::pi;

}  // namespace

PanelScene::PanelScene(const Material& material)
    : canvas_(makeImage(width, height, material.format)), depth_(makeImage(width, height, KX_FORMAT_GREY)) {}

void PanelScene::begin(Bitmap* target) {
  target_ = target;
  index_ = 0;
  KX_CHECK(KX_fillRect(target, 0, 0, frameWidth, frameHeight, colour(24, 27, 34)));
}

Bitmap* PanelScene::clearedDepth() {
  KX_CHECK(KX_fillRect(depth_.get(), 0, 0, width, height, 255));
  return depth_.get();
}

std::uint32_t PanelScene::rainbow(double part) const {
  const auto channel = [&](double shift) { return static_cast<unsigned>(150 + 100 * std::cos((part + shift) * turn)); };
  return colour(channel(0), channel(1 / 3.0), channel(2 / 3.0));
}

Point PanelScene::onCircle(double part, int radius) {
  return {width / 2 + static_cast<int>(std::lround(radius * std::cos(part * turn))),
          height / 2 + static_cast<int>(std::lround(radius * std::sin(part * turn)))};
}

void PanelScene::cover(Bitmap* field, const Image& image) { cover(field, image.get()); }

void PanelScene::cover(Bitmap* field, Bitmap* image) {
  KX_CHECK(KX_bltCopy(field, 0, 0, image, 0, 0, image->width, image->height));
}

void PanelScene::clear() { KX_CHECK(KX_fillRect(canvas_.get(), 0, 0, width, height, colour(40, 46, 58))); }

void PanelScene::place(std::string_view caption, std::string_view call) {
  const auto [x, y] = fieldAt(index_++);
  KX_CHECK(KX_bltCopy(target_, x, y, canvas_.get(), 0, 0, width, height));
  drawText(target_, x, y + height + 4, caption, colour(205, 212, 224));
  drawText(target_, x, y + height + 14, call, colour(255, 214, 110));
}

}  // namespace demo
