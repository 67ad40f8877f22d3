// Colours: made, taken apart, and moved between three and four bytes a pixel.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numbers>
#include <vector>

#include "paint.h"
#include "panels.h"

namespace demo {

namespace {

/// Channels of a hue, 0.0 to 1.0 once around, at a saturation and a brightness of 0.0 to 1.0.
Rgb ofHue(double hue, double saturation, double brightness) {
  const auto channel = [&](double shift) {
    const double wave = std::clamp(std::abs(std::fmod(hue + shift, 1.0) * 6 - 3) - 1, 0.0, 1.0);
    return static_cast<unsigned>(std::lround(255 * brightness * (1 + (wave - 1) * saturation)));
  };
  return {channel(0), channel(2 / 3.0), channel(1 / 3.0)};
}

class Colours final : public PanelScene {
public:
  explicit Colours(const Material& material)
      : PanelScene(material), picture_(material.covering(width, height)), dusk_(material.covering(width, height)) {
    KX_CHECK(KX_changeBrightnessContrast(dusk_.get(), -110, 0, 128));
    for (Image& channel : channels_) channel = makeImage(width, height, material.format);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) {
        split(x, y);
        const double radius = std::hypot(x - width / 2, y - height / 2) / 86;
        const double part = std::atan2(y - height / 2, x - width / 2) / (2 * std::numbers::pi) + 0.5;
        if (radius < 1)
          wheel_.push_back(
              {x, y, static_cast<std::size_t>(part * hues) % hues * steps + static_cast<std::size_t>(radius * steps)});
      }
    paintFlame();
  }

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;

    show("Every hue, from white to its full colour", "KX_toRGB", [&](Bitmap* field) { wheel(field, t); });

    show("A picture's red, green and blue", "KX_toRed, KX_toGreen, KX_toBlue", [&](Bitmap* field) {
      cover(field, picture_);
      const int shift = static_cast<int>(std::lround(33 * std::sin(t)));
      const std::array<int, 4> edges{0, width / 3 + shift, 2 * width / 3 + shift, width};
      for (std::size_t i = 0; i < channels_.size(); ++i)
        KX_CHECK(KX_bltCopy(field, edges[i], 0, channels_[i].get(), edges[i], 0, edges[i + 1] - edges[i], height));
    });

    show("Ramps: what each format keeps of them", "KX_toRGB and back, KX_getBytesPerPixel",
         [&](Bitmap* field) { ramps(field, t); });

    show("Four bytes a pixel: colours, and weights", "KX_convert32RGBA", [&](Bitmap* field) {
      KX_CHECK(KX_bltCopy(field, 2, 43, colours_.get(), 0, 0, flameWidth, flameHeight));
      KX_CHECK(KX_bltCopy(field, 102, 43, weights_.get(), 0, 0, flameWidth, flameHeight));
      drawText(field, 2, 30, "three bytes", colour(205, 212, 224));
      drawText(field, 102, 30, "the fourth", colour(205, 212, 224));
    });

    show("The two in a blit: candles", "KX_bltCopyAlphamap", [&](Bitmap* field) { candles(field, t); });

    show("Joined again, before a ground", "KX_convertTo32RGBA", [&](Bitmap* field) { joined(field); });
  }

private:
  static constexpr std::size_t hues = 180;
  static constexpr std::size_t steps = 32;  ///< of saturation
  struct Spot {
    int x, y;
    std::size_t shade;
  };

  static constexpr int flameWidth = 96;
  static constexpr int flameHeight = 96;
  static constexpr std::size_t flamePixels = std::size_t{flameWidth} * flameHeight;

  /// A pixel of the picture, one channel at a time.
  void split(int x, int y) {
    const std::uint32_t format = picture_->format;
    const std::uint32_t pixel = KX_getPixel(picture_.get(), x, y);
    KX_CHECK(KX_setPixel(channels_[0].get(), x, y, KX_toRGB(format, KX_toRed(format, pixel), 0, 0)));
    KX_CHECK(KX_setPixel(channels_[1].get(), x, y, KX_toRGB(format, 0, KX_toGreen(format, pixel), 0)));
    KX_CHECK(KX_setPixel(channels_[2].get(), x, y, KX_toRGB(format, 0, 0, KX_toBlue(format, pixel))));
  }

  /// Turns: each pixel knows its hue and its saturation, whose colour changes.
  void wheel(Bitmap* field, double t) const {
    std::array<std::uint32_t, hues * steps> shades{};
    for (std::size_t i = 0; i < shades.size(); ++i) {
      const Rgb shade =
          ofHue(static_cast<double>(i / steps) / hues + t * 0.08, static_cast<double>(i % steps) / steps, 1);
      shades[i] = colour(shade.red, shade.green, shade.blue);
    }
    for (const Spot& spot : wheel_) KX_CHECK(KX_setPixel(field, spot.x, spot.y, shades[spot.shade]));
  }

  /// Four bands a format: red, green, blue, grey.
  void ramps(Bitmap* field, double t) const {
    static constexpr std::array<std::uint32_t, 5> formats{KX_FORMAT_888, KX_FORMAT_565, KX_FORMAT_555, KX_FORMAT_GREY,
                                                          KX_FORMAT_MONO};
    constexpr int rows = 36;
    constexpr int left = 46;
    for (std::size_t i = 0; i < formats.size(); ++i) {
      const std::uint32_t format = formats[i];
      const int top = static_cast<int>(i) * rows + 2;
      char text[32];
      static_cast<void>(std::snprintf(text, sizeof text, "%.4g\nbytes", KX_getBytesPerPixel(format) / 65536.0));
      drawText(field, 4, top + 6, text, colour(205, 212, 224));
      for (int x = left; x < width - 2; ++x) {
        const double phase = (x - left) / 152.0 + t * 0.1;
        const auto light = static_cast<unsigned>(std::lround(255 * (1 - std::abs(std::fmod(phase, 1.0) * 2 - 1))));
        for (int band = 0; band < 4; ++band) {
          const bool grey = band == 3;
          const std::uint32_t value = KX_toRGB(format, grey || band == 0 ? light : 0, grey || band == 1 ? light : 0,
                                               grey || band == 2 ? light : 0);
          KX_CHECK(KX_fillRect(field, x, top + band * 8, 1, 8,
                               colour(KX_toRed(format, value), KX_toGreen(format, value), KX_toBlue(format, value))));
        }
      }
    }
  }

  /// A flame of four bytes a pixel, as other programs keep theirs; then its two parts. A weight of 255 hides it.
  void paintFlame() {
    rgba_.resize(flamePixels * 4);
    for (int y = 0; y < flameHeight; ++y)
      for (int x = 0; x < flameWidth; ++x) {
        const double up = 1 - (y + 0.5) / flameHeight;
        const double aside = demo::place(x, flameWidth) * 1.7;
        const double body = std::hypot(aside * (1 + up * 1.6), (up - 0.34) * 2.6);
        const double heat = std::clamp(1.15 - body, 0.0, 1.0);
        std::uint8_t* pixel =
            rgba_.data() + (static_cast<std::size_t>(y) * flameWidth + static_cast<std::size_t>(x)) * 4;
        pixel[0] = static_cast<std::uint8_t>(std::lround(200 * std::pow(heat, 4)));
        pixel[1] = static_cast<std::uint8_t>(std::lround(80 + 170 * std::min(1.0, heat * 1.5)));
        pixel[2] = 255;
        pixel[3] = static_cast<std::uint8_t>(std::lround(255 - 255 * std::min(1.0, heat * 1.7)));
      }
    KX_CHECK(KX_convert32RGBA(colours_->pixels, colours_->pitch, weights_->pixels, weights_->pitch, rgba_.data(),
                              flameWidth, flameHeight, flameWidth * 4));
  }

  void candles(Bitmap* field, double t) const {
    cover(field, dusk_);
    for (int i = 0; i < 5; ++i) {
      const int x = 24 + i * 34;
      const int top = 96 + i * 7 % 20;
      for (int stripe = 0; stripe < 10; ++stripe) {
        const auto shade = static_cast<unsigned>(226 - stripe * 15);
        KX_CHECK(KX_fillRect(field, x + stripe, top, 1, height - top, colour(shade, shade - 8, shade - 40)));
      }
      KX_CHECK(KX_drawLine(field, x + 5, top - 4, x + 5, top - 1, colour(30, 20, 20)));
      const int wide = 26 + static_cast<int>(std::lround(3 * std::sin(t * 9 + i * 2)));
      const int high = 58 + static_cast<int>(std::lround(8 * std::sin(t * 7 + i * 1.3)));
      KX_CHECK(KX_bltStretchAlphamap(field, x + 5 - wide / 2, top - high + 8, wide, high, colours_.get(), 0, 0,
                                     flameWidth, flameHeight, weights_.get()));
    }
  }

  /// What comes back is what went in; a program could hand it to a display of four bytes a pixel.
  void joined(Bitmap* field) {
    std::vector<std::uint8_t> again(rgba_.size());
    KX_CHECK(KX_convertTo32RGBA(again.data(), flameWidth * 4, colours_->pixels, colours_->pitch, weights_->pixels,
                                weights_->pitch, flameWidth, flameHeight));
    for (int y = 0; y < flameHeight; ++y)
      for (int x = 0; x < flameWidth; ++x) {
        const std::uint8_t* pixel =
            again.data() + (static_cast<std::size_t>(y) * flameWidth + static_cast<std::size_t>(x)) * 4;
        const unsigned ground = (x / 12 + y / 12) % 2 == 0 ? 150 : 90;
        const auto mixed = [&](unsigned channel) { return (channel * (255U - pixel[3]) + ground * pixel[3]) / 255; };
        KX_CHECK(KX_setPixel(field, 52 + x, 43 + y, colour(mixed(pixel[2]), mixed(pixel[1]), mixed(pixel[0]))));
      }
    const bool same = std::memcmp(again.data(), rgba_.data(), again.size()) == 0;
    drawText(field, 52, 30, same ? "the same bytes" : "OTHER BYTES", colour(205, 212, 224));
  }

  Image picture_;
  Image dusk_;
  std::vector<Spot> wheel_;
  std::array<Image, 3> channels_;
  Image colours_ = makeImage(flameWidth, flameHeight, KX_FORMAT_888);
  Image weights_ = makeImage(flameWidth, flameHeight, KX_FORMAT_GREY);
  std::vector<std::uint8_t> rgba_;
};

}  // namespace

std::unique_ptr<Scene> makeColours(const Material& material) { return std::make_unique<Colours>(material); }

}  // namespace demo
