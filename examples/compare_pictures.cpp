// Holds pictures that programs make against those of the documents, to the last pixel:
//   compare_pictures MADE PNG [MADE PNG ...]          tells which differ
//   compare_pictures --write MADE PNG [MADE PNG ...]  makes the PNG files anew, after somebody looked at the pictures
// What is made is a BMP or a PNG file. A PNG file is written anew only where pixels differ.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string_view>
#include <vector>

#include <kxgraphic/kxgraphic.hpp>
#include <kxgraphic/picture.h>

#include <stb_image.h>
#include <stb_image_write.h>

namespace {

struct Picture {
  int width = 0, height = 0;
  std::vector<std::uint8_t> rgb;
};

bool readBmp(const char* file, Picture& picture) {
  kx::Bitmap bitmap;
  kx::Bitmap colours;
  if (kxLoadPicture(bitmap.put(), file, kx::bitmapMethods()) != 0 ||
      colours.create(bitmap->width, bitmap->height, kx::Format::bgr888) ||
      KX_bltCopy(colours, 0, 0, bitmap, 0, 0, bitmap->width, bitmap->height) != 0)
    return false;
  picture.width = bitmap->width;
  picture.height = bitmap->height;
  const kx::Pixels pixels(colours);
  for (int y = 0; y < picture.height; ++y)
    for (const kx::Bgr& pixel : pixels.row<kx::Bgr>(y))
      picture.rgb.insert(picture.rgb.end(), {pixel.red, pixel.green, pixel.blue});
  return true;
}

bool readPng(const char* file, Picture& picture) {
  int channels = 0;
  const std::unique_ptr<stbi_uc, void (*)(void*)> rgb(stbi_load(file, &picture.width, &picture.height, &channels, 3),
                                                      stbi_image_free);
  if (!rgb) return false;
  picture.rgb.assign(rgb.get(), rgb.get() + picture.width * picture.height * 3);
  return true;
}

bool readMade(const char* file, Picture& picture) {
  return std::string_view(file).ends_with(".bmp") ? readBmp(file, picture) : readPng(file, picture);
}

bool same(const char* madeFile, const char* png) {
  Picture made;
  Picture expected;
  if (!readMade(madeFile, made)) return std::printf("%s: cannot be read\n", madeFile), false;
  if (!readPng(png, expected)) return std::printf("%s: cannot be read\n", png), false;
  if (made.width != expected.width || made.height != expected.height)
    return std::printf("%s: %d x %d pixels, expected %d x %d\n", madeFile, made.width, made.height, expected.width,
                       expected.height),
           false;
  const auto place = std::mismatch(made.rgb.begin(), made.rgb.end(), expected.rgb.begin()).first - made.rgb.begin();
  if (place == static_cast<std::ptrdiff_t>(made.rgb.size())) return true;
  std::printf("%s: the first pixel that differs from %s is at %d, %d\n", madeFile, png,
              static_cast<int>(place / 3 % made.width), static_cast<int>(place / 3 / made.width));
  return false;
}

bool rewrite(const char* madeFile, const char* png) {
  Picture made;
  Picture present;
  if (!readMade(madeFile, made)) return false;
  if (readPng(png, present) && present.rgb == made.rgb && present.width == made.width) return true;
  if (!std::string_view(madeFile).ends_with(".bmp"))
    return std::filesystem::copy_file(madeFile, png, std::filesystem::copy_options::overwrite_existing);
  return stbi_write_png(png, made.width, made.height, 3, made.rgb.data(), made.width * 3) != 0;
}

}  // namespace

int main(int argc, char** argv) {
  const bool write = argc > 1 && std::strcmp(argv[1], "--write") == 0;
  int compared = 0;
  int failed = 0;
  for (int i = write ? 2 : 1; i + 1 < argc; i += 2, ++compared)
    if (!(write ? rewrite : same)(argv[i], argv[i + 1])) ++failed;
  std::printf("%d pictures, %d differ\n", compared, failed);
  return compared > 0 && failed == 0 ? 0 : 1;
}
