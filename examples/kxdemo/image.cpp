// SPDX-License-Identifier: MIT
#include "image.h"

#include <algorithm>
#include <array>
#include <cstring>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wunused-function"
#define STB_IMAGE_IMPLEMENTATION
#define STBI_MAX_DIMENSIONS 65536
#include <stb_image.h>
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb_image_write.h>
#include <stb_easy_font.h>
#pragma GCC diagnostic pop

namespace demo {

namespace {

constexpr int largestPicture = 4096;

/// Exit codes of the program for pictures.
constexpr int exitMissing = 3;
constexpr int exitBroken = 4;
constexpr int exitTooLarge = 5;
constexpr int exitNotWritten = 6;

/// A corner of stb_easy_font's quads.
struct FontVertex {
  float x, y, z;
  std::uint8_t colour[4];
};

}  // namespace

void check(std::uint32_t code, const char* call) {
  if (code == 0) return;
  std::array<char, 32> number{};
  std::snprintf(number.data(), number.size(), "0x%04X", code);
  throw Error(1, std::string(call) + " returned " + number.data());
}

BitmapMethods* bitmapMethods() {
  static BitmapMethods table = [] {
    BitmapMethods filled;
    KX_getBitmapInterface(&filled, nullptr, nullptr, 0);
    return filled;
  }();
  return &table;
}

Image makeImage(int width, int height, std::uint32_t format) {
  Bitmap* bitmap = nullptr;
  KX_CHECK(KX_createBitmap(&bitmap, width, height, format, 0, 0, bitmapMethods()));
  if ((format & KX_STORAGE_MASK) == 0)
    std::memset(bitmap->pixels, 0, static_cast<std::size_t>(bitmap->pitch) * static_cast<std::size_t>(height));
  return Image(bitmap);
}

Image converted(const Image& source, std::uint32_t format) {
  Image copy = makeImage(source->width, source->height, format);
  if ((format & KX_FORMAT_CODE_MASK) == KX_FORMAT_PALETTE) {
    // The first 256 pixels fill the palette, so those of a miniature stand for the whole picture.
    const Image miniature = makeImage(16, 16, KX_FORMAT_888);
    KX_CHECK(KX_bltStretch(miniature.get(), 0, 0, 16, 16, source.get(), 0, 0, source->width, source->height));
    std::array<std::uint8_t, 768> palette{};
    KX_CHECK(KX_calculatePalette(palette.data(), miniature.get()));
    KX_CHECK(KX_setPalette(copy.get(), palette.data()));
  }
  KX_CHECK(KX_bltCopy(copy.get(), 0, 0, source.get(), 0, 0, source->width, source->height));
  return copy;
}

Image loadPicture(const std::string& file) {
  int width = 0;
  int height = 0;
  int channels = 0;
  if (std::FILE* opened = std::fopen(file.c_str(), "rb"))
    std::fclose(opened);
  else
    throw Error(exitMissing, file + ": cannot be opened");
  if (stbi_info(file.c_str(), &width, &height, &channels) == 0)
    throw Error(exitBroken, file + ": " + stbi_failure_reason());
  if (width > largestPicture || height > largestPicture)
    throw Error(exitTooLarge, file + ": " + std::to_string(width) + " x " + std::to_string(height) +
                                  " pixels; the demo takes up to " + std::to_string(largestPicture) + " each way");
  const std::unique_ptr<stbi_uc, void (*)(void*)> rgb(stbi_load(file.c_str(), &width, &height, &channels, 3),
                                                      stbi_image_free);
  if (!rgb) throw Error(exitBroken, file + ": " + stbi_failure_reason());

  Image image = makeImage(width, height, KX_FORMAT_888);
  const stbi_uc* from = rgb.get();
  for (int y = 0; y < height; ++y) {
    std::uint8_t* to = image->pixels + static_cast<std::ptrdiff_t>(image->pitch) * y;
    for (int x = 0; x < width; ++x, from += 3, to += 3) {
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
    }
  }
  return image;
}

void savePicture(const Image& image, const std::string& file) {
  const Image colours = converted(image, KX_FORMAT_888);
  const auto rowBytes = static_cast<std::size_t>(colours->width) * 3;
  std::vector<std::uint8_t> rgb(rowBytes * static_cast<std::size_t>(colours->height));
  std::uint8_t* to = rgb.data();
  for (int y = 0; y < colours->height; ++y) {
    const std::uint8_t* from = colours->pixels + static_cast<std::ptrdiff_t>(colours->pitch) * y;
    for (int x = 0; x < colours->width; ++x, from += 3, to += 3) {
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
    }
  }
  if (stbi_write_png(file.c_str(), colours->width, colours->height, 3, rgb.data(), static_cast<int>(rowBytes)) == 0)
    throw Error(exitNotWritten, file + ": cannot be written");
}

std::uint32_t colour(const Bitmap* bitmap, unsigned red, unsigned green, unsigned blue) {
  return KX_toRGB(bitmap->format, red, green, blue);
}

void drawText(Bitmap* target, int x, int y, std::string_view text, std::uint32_t colour, int scale) {
  std::string copy(text);
  std::vector<FontVertex> corners(copy.size() * 64 + 64);
  const int quads = stb_easy_font_print(0, 0, copy.data(), nullptr, corners.data(),
                                        static_cast<int>(corners.size() * sizeof(FontVertex)));
  for (int i = 0; i < quads; ++i) {
    const FontVertex& first = corners[static_cast<std::size_t>(i) * 4];
    const FontVertex& last = corners[static_cast<std::size_t>(i) * 4 + 2];
    int left = x + static_cast<int>(first.x) * scale;
    int top = y + static_cast<int>(first.y) * scale;
    int width = static_cast<int>(last.x - first.x) * scale;
    int height = static_cast<int>(last.y - first.y) * scale;
    int right = 0;
    int bottom = 0;
    if (KX_clipTwoRects(0, 0, width - 1, height - 1, &right, &bottom, &width, &height, 0, 0, target->width - 1,
                        target->height - 1, &left, &top) != 0)
      KX_CHECK(KX_fillRect(target, left, top, width, height, colour));
  }
}

int textWidth(std::string_view text, int scale) {
  std::string copy(text);
  return stb_easy_font_width(copy.data()) * scale;
}

}  // namespace demo
