// SPDX-License-Identifier: MIT
#include "image.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <stb_image.h>
#include <stb_image_write.h>

namespace demo {

namespace {

constexpr int largestPicture = 4096;

/// Exit codes of the program for pictures.
constexpr int exitMissing = 3;
constexpr int exitBroken = 4;
constexpr int exitTooLarge = 5;

}  // namespace

void check(std::uint32_t code, const char* call) {
  if (code == 0) return;
  std::array<char, 32> number{};
  static_cast<void>(std::snprintf(number.data(), number.size(), "0x%04X", code));
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

namespace {

/// Pixels as stb gives them, and their size.
struct Decoded {
  std::unique_ptr<stbi_uc, void (*)(void*)> rgb;
  int width, height;
};

Image toImage(const Decoded& decoded, const std::string& name) {
  if (!decoded.rgb) throw Error(exitBroken, name + ": " + stbi_failure_reason());
  Image image = makeImage(decoded.width, decoded.height, KX_FORMAT_888);
  const stbi_uc* from = decoded.rgb.get();
  for (int y = 0; y < decoded.height; ++y) {
    std::uint8_t* to = image->pixels + static_cast<std::ptrdiff_t>(image->pitch) * y;
    for (int x = 0; x < decoded.width; ++x, from += 3, to += 3) {
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
    }
  }
  return image;
}

}  // namespace

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
  stbi_uc* rgb = stbi_load(file.c_str(), &width, &height, &channels, 3);
  return toImage({{rgb, stbi_image_free}, width, height}, file);
}

Image decodePicture(std::span<const std::uint8_t> bytes, const std::string& name) {
  int width = 0;
  int height = 0;
  int channels = 0;
  stbi_uc* rgb = stbi_load_from_memory(bytes.data(), static_cast<int>(bytes.size()), &width, &height, &channels, 3);
  return toImage({{rgb, stbi_image_free}, width, height}, name);
}

std::vector<std::uint8_t> rgbOf(const Image& image) {
  const Image colours = converted(image, KX_FORMAT_888);
  std::vector<std::uint8_t> rgb(static_cast<std::size_t>(colours->width) * 3 *
                                static_cast<std::size_t>(colours->height));
  std::uint8_t* to = rgb.data();
  for (int y = 0; y < colours->height; ++y) {
    const std::uint8_t* from = colours->pixels + static_cast<std::ptrdiff_t>(colours->pitch) * y;
    for (int x = 0; x < colours->width; ++x, from += 3, to += 3) {
      to[0] = from[2];
      to[1] = from[1];
      to[2] = from[0];
    }
  }
  return rgb;
}

void savePicture(const Image& image, const std::string& file) {
  const std::vector<std::uint8_t> rgb = rgbOf(image);
  if (stbi_write_png(file.c_str(), image->width, image->height, 3, rgb.data(), image->width * 3) == 0)
    throw Error(exitNotWritten, file + ": cannot be written");
}

std::uint32_t colour(const Bitmap* bitmap, unsigned red, unsigned green, unsigned blue) {
  return KX_toRGB(bitmap->format, red, green, blue);
}

}  // namespace demo
