// The first sheet: one picture in every pixel format, with what it weighs plain, packed and compressed.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdio>

#include "scene.h"

namespace demo {

namespace {

struct Variant {
  std::uint32_t format;
  const char* title;
};

constexpr Variant variants[] = {
    {KX_FORMAT_MONO, "1 bit, ordered dither"},  {KX_FORMAT_GREY, "8 bits, grey"},
    {KX_FORMAT_PALETTE, "8 bits, 256 colours"}, {KX_FORMAT_555, "15 bits, 5-5-5"},
    {KX_FORMAT_565, "16 bits, 5-6-5"},          {KX_FORMAT_888, "24 bits"},
};

/// Largest panel; a larger picture is shrunk to it.
constexpr int panelWidth = 320;
constexpr int panelHeight = 240;
constexpr int gap = 12;
constexpr int captionHeight = 44;
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

std::uint32_t pixelBytes(const Image& image) {
  std::uint32_t size = 0;
  KX_CHECK(KX_getBitmapSize(image.get(), &size));
  return size;
}

/// "plain 76800  packed 71234" and "LZW 60123  CRC-32 0123ABCD".
std::string weights(const Image& image) {
  const std::uint32_t plain = pixelBytes(image);
  std::string packed = "not packable";
  if (image->format != KX_FORMAT_MONO)
    packed = "packed " + std::to_string(pixelBytes(converted(image, image->format | KX_STORAGE_PACKED)));
  std::vector<std::uint8_t> compressed(static_cast<std::size_t>(plain) * 2 + 16);
  const std::uint32_t lzw = LZ_compress(compressed.data(), image->pixels, plain);
  char text[160];
  std::snprintf(text, sizeof text, "plain %u bytes, %s\nLZW %u, CRC-32 %08X", plain, packed.c_str(), lzw,
                KX_calculateCRC(image->pixels, static_cast<std::int32_t>(plain)));
  return text;
}

}  // namespace

Image drawFormats(const Material& material) {
  const Image picture = shrunk(material.picture);
  constexpr int rows = static_cast<int>(std::size(variants)) / columns;
  Image sheet = makeSheet(columns * (panelWidth + gap) + gap, titleHeight + rows * (panelHeight + captionHeight + gap),
                          KX_FORMAT_888, std::string(material.name) + ": one picture, six pixel formats");
  Bitmap* target = sheet.get();
  int index = 0;
  for (const Variant& variant : variants) {
    const int x = gap + index % columns * (panelWidth + gap);
    const int y = titleHeight + index / columns * (panelHeight + captionHeight + gap);
    const Image panel = variant.format == KX_FORMAT_MONO ? dithered(picture) : converted(picture, variant.format);
    KX_CHECK(KX_bltCopy(target, x + (panelWidth - panel->width) / 2, y + (panelHeight - panel->height) / 2, panel.get(),
                        0, 0, panel->width, panel->height));
    drawText(target, x, y + panelHeight + 5, variant.title, colour(target, 255, 214, 110));
    drawText(target, x, y + panelHeight + 18, weights(panel), colour(target, 205, 212, 224));
    ++index;
  }
  return sheet;
}

}  // namespace demo
