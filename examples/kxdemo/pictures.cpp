// The pictures of the documents.
// SPDX-License-Identifier: MIT
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <string_view>

#include "animation.h"
#include "gallery.h"
#include "panels.h"

namespace demo {

namespace {

namespace fs = std::filesystem;

constexpr const char* thumbnails[] = {"island", "depth", "sprites", "solid", "water"};

/// Three fields of scenes side by side, with their captions.
struct Strip {
  const char* file;
  struct Field {
    const char* scene;
    int number;  ///< from 0, row by row
  } fields[3];
};
constexpr Strip strips[] = {
    {"alpha.png", {{"copies", 1}, {"copies", 2}, {"copies", 3}}},
    {"blits.png", {{"stretches", 0}, {"copies", 4}, {"copies", 5}}},
    {"depth.png", {{"depth", 0}, {"depth", 1}, {"depth", 2}}},
};

Image stillOf(std::string_view name, const Material& material) {
  std::size_t index = 0;
  while (name != scenes()[index].name) ++index;
  return played(index, material, stillFrames, [](int, const Image&) {});
}

/// Half the size, and with a palette, which makes the file small.
void saveThumbnail(const Image& image, const fs::path& file) {
  Animation single(image->width, image->height, 2, 1000);
  single.sample(image);
  single.add(image);
  single.save(file.string());
}

Image stripOf(const Strip& strip, const Material& material) {
  constexpr int edge = PanelScene::gap / 2;
  constexpr int wide = PanelScene::width + PanelScene::gap;
  constexpr int high = PanelScene::height + PanelScene::captionHeight;
  Image image = makeImage(3 * wide, high + edge, material.format);
  KX_CHECK(KX_fillRect(image.get(), 0, 0, image->width, image->height, colour(image.get(), 24, 27, 34)));
  for (int i = 0; i < 3; ++i) {
    const Strip::Field& field = strip.fields[i];
    const Image still = stillOf(field.scene, material);
    const Point from = PanelScene::fieldAt(field.number) - Point{edge, 0};
    KX_CHECK(KX_bltCopy(image.get(), i * wide, edge, still.get(), from.x, from.y, wide, high));
  }
  return image;
}

}  // namespace

void writePictures(const std::string& folder, const Image& picture, std::string_view pictureName) {
  const fs::path root(folder);
  fs::create_directories(root / "tour");
  const Material material{picture, pictureName, KX_FORMAT_555};
  for (const char* name : thumbnails)
    saveThumbnail(stillOf(name, material), root / "tour" / (std::string(name) + ".png"));
  for (const Strip& strip : strips) savePicture(stripOf(strip, material), (root / strip.file).string());
  savePicture(formatSheet(material), (root / "formats.png").string());
  std::printf("%u pictures in %s\n", static_cast<unsigned>(std::size(thumbnails) + std::size(strips) + 1),
              folder.c_str());
}

}  // namespace demo
