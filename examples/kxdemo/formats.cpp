// One picture in every pixel format, with what it weighs plain, packed and compressed: as a scene and as a sheet.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "panels.h"

namespace demo {

namespace {

struct Variant {
  std::uint32_t format;
  const char* title;
};

constexpr int variantCount = 6;
constexpr std::array<Variant, variantCount> variants{{
    {KX_FORMAT_MONO, "1 bit, ordered dither"},
    {KX_FORMAT_GREY, "8 bits, grey"},
    {KX_FORMAT_PALETTE, "8 bits, 256 colours"},
    {KX_FORMAT_555, "15 bits, 5-5-5"},
    {KX_FORMAT_565, "16 bits, 5-6-5"},
    {KX_FORMAT_888, "24 bits"},
}};

/// The library turns a colour into one bit by a threshold of half brightness; moving each pixel by its place in a 4 x 4
/// pattern first gives the eye the tones between.
Image dithered(const Image& picture) {
  static constexpr int pattern[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
  Image mono = makeImage(picture->width, picture->height, KX_FORMAT_MONO);
  for (int y = 0; y < picture->height; ++y)
    for (int x = 0; x < picture->width; ++x) {
      const std::uint32_t pixel = KX_getPixel(picture.get(), x, y);
      const std::uint32_t grey = KX_toRGB(KX_FORMAT_GREY, KX_toRed(KX_FORMAT_888, pixel),
                                          KX_toGreen(KX_FORMAT_888, pixel), KX_toBlue(KX_FORMAT_888, pixel));
      const auto moved =
          static_cast<unsigned>(std::clamp(static_cast<int>(grey) + pattern[y % 4][x % 4] * 16 - 120, 0, 255));
      KX_CHECK(KX_setPixel(mono.get(), x, y, KX_toRGB(KX_FORMAT_MONO, moved, moved, moved)));
    }
  return mono;
}

Image inFormat(const Image& picture, std::uint32_t format) {
  return format == KX_FORMAT_MONO ? dithered(picture) : converted(picture, format);
}

std::uint32_t pixelBytes(const Image& image) {
  std::uint32_t size = 0;
  KX_CHECK(KX_getBitmapSize(image.get(), &size));
  return size;
}

struct Weights {
  std::uint32_t plain, lzw, crc;
  std::uint32_t packed;  ///< 0 where the format cannot be packed
};

Weights weigh(const Image& image) {
  const std::uint32_t plain = pixelBytes(image);
  std::vector<std::uint8_t> compressed(static_cast<std::size_t>(plain) * 2 + 16);
  return {plain, LZ_compress(compressed.data(), image->pixels, plain),
          KX_calculateCRC(image->pixels, static_cast<std::int32_t>(plain)),
          image->format == KX_FORMAT_MONO ? 0 : pixelBytes(converted(image, image->format | KX_STORAGE_PACKED))};
}

std::string packedText(const Weights& weights) {
  return weights.packed == 0 ? "not packable" : "packed " + std::to_string(weights.packed);
}

/// Each field pans over a bitmap of its own format: the copy converts.
class Formats final : public PanelScene {
public:
  explicit Formats(const Material& material) : PanelScene(material) {
    const Image large = makeImage(width + slack, height + slack, KX_FORMAT_888);
    KX_CHECK(KX_bltStretch(large.get(), 0, 0, large->width, large->height, material.picture.get(), 0, 0,
                           material.picture->width, material.picture->height));
    for (std::size_t i = 0; i < variantCount; ++i) {
      Image image = inFormat(large, variants[i].format);
      const Weights weights = weigh(image);
      if (variants[i].format == KX_FORMAT_PALETTE)
        indexed_ = std::make_unique<Indexed>(std::move(image));
      else
        images_[i] = std::move(image);
      captions_[i] = std::to_string(weights.plain) + " bytes, LZW " + std::to_string(weights.lzw);
    }
  }

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const int x = slack / 2 + static_cast<int>(std::lround(slack / 2 * std::sin(frame.seconds * 0.9)));
    const int y = slack / 2 - static_cast<int>(std::lround(slack / 2 * std::cos(frame.seconds * 0.7)));
    for (std::size_t i = 0; i < variantCount; ++i)
      show(variants[i].title, captions_[i], [&](Bitmap* field) {
        Bitmap* image = images_[i] ? images_[i].get() : indexed_->bitmap();
        KX_CHECK(KX_bltCopy(field, 0, 0, image, x, y, width, height));
      });
  }

private:
  static constexpr int slack = 60;
  std::array<Image, variantCount> images_;
  std::unique_ptr<Indexed> indexed_;  ///< in the place of the image that has a palette
  std::array<std::string, variantCount> captions_;
};

/// Largest panel of the sheet; a larger picture is shrunk to it.
constexpr int panelWidth = 320;
constexpr int panelHeight = 240;
constexpr int gap = 12;
constexpr int captionHeight = 40;
constexpr int titleHeight = 40;
constexpr int columns = 3;

Image shrunk(const Image& picture) {
  const double factor = std::min(
      {1.0, panelWidth / static_cast<double>(picture->width), panelHeight / static_cast<double>(picture->height)});
  const int width = std::max(1, static_cast<int>(picture->width * factor));
  const int height = std::max(1, static_cast<int>(picture->height * factor));
  Image small = makeImage(width, height, picture->format);
  KX_CHECK(KX_bltStretch(small.get(), 0, 0, width, height, picture.get(), 0, 0, picture->width, picture->height));
  return small;
}

}  // namespace

Image formatSheet(const Material& material) {
  const Image picture = shrunk(material.picture);
  constexpr int rows = variantCount / columns;
  Image sheet = makeImage(columns * (panelWidth + gap) + gap, titleHeight + rows * (panelHeight + captionHeight + gap),
                          KX_FORMAT_888);
  Bitmap* target = sheet.get();
  KX_CHECK(KX_fillRect(target, 0, 0, target->width, target->height, colour(target, 24, 27, 34)));
  KX_CHECK(KX_fillRect(target, 0, 0, target->width, titleHeight - 8, colour(target, 43, 62, 96)));
  drawText(target, 12, 9, std::string(material.name) + ": one picture, six pixel formats",
           colour(target, 255, 255, 255), 2);
  int index = 0;
  for (const Variant& variant : variants) {
    const int x = gap + index % columns * (panelWidth + gap);
    const int y = titleHeight + index / columns * (panelHeight + captionHeight + gap);
    const Image panel = inFormat(picture, variant.format);
    const Weights weights = weigh(panel);
    KX_CHECK(KX_bltCopy(target, x + (panelWidth - panel->width) / 2, y + (panelHeight - panel->height) / 2, panel.get(),
                        0, 0, panel->width, panel->height));
    char text[160];
    static_cast<void>(std::snprintf(text, sizeof text, "plain %u bytes, %s\nLZW %u, CRC-32 %08X", weights.plain,
                                    packedText(weights).c_str(), weights.lzw, weights.crc));
    drawText(target, x, y + panelHeight + 5, variant.title, colour(target, 255, 214, 110));
    drawText(target, x, y + panelHeight + 16, text, colour(target, 205, 212, 224));
    ++index;
  }
  return sheet;
}

std::unique_ptr<Scene> makeFormats(const Material& material) { return std::make_unique<Formats>(material); }

}  // namespace demo
