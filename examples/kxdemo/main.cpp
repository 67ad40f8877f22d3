// kxdemo: a tour of what the library does.
//   kxdemo [SCENE]                    opens a window: arrows lead through the scenes, escape ends
//   kxdemo --gallery FOLDER           writes every scene as a picture, and a page that shows them
//   kxdemo --pictures FOLDER          writes the pictures of the documents
//   kxdemo --sheet FOLDER [PICTURE]   writes a picture in every bitmap format, as one PNG file
//   kxdemo --list, --measure          names the scenes; tells what their frames take
//   --keys WORDS plays the part of the visitor in the window: "right right space mouse:320,240 wait:30 escape"
//   --picture FILE shows another picture; --frames COUNT ends after that many, in the gallery of each scene
// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "gallery.h"
#include "measure.h"
#include "player.h"
#include "program.h"
#include "scene.h"

namespace {

/// examples/pictures/spheres.png, so that the program runs wherever it is copied.
constexpr std::uint8_t ownPicture[] = {
#include "own_picture.inc"
};

struct Options {
  std::string scene;
  std::string galleryFolder;
  std::string picturesFolder;
  std::string sheetFolder;
  std::string picture;  ///< a file, or nothing for the demo's own
  std::optional<demo::Script> keys;
  int frames = 0;
  bool list = false;
  bool measure = false;
};

std::optional<Options> parse(const std::vector<std::string>& arguments) {
  Options options;
  bool pictureGiven = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const bool hasValue = i + 1 < arguments.size();
    if (argument == "--list") {
      options.list = true;
    } else if (argument == "--measure") {
      options.measure = true;
    } else if (argument == "--gallery" && hasValue) {
      options.galleryFolder = arguments[++i];
    } else if (argument == "--pictures" && hasValue) {
      options.picturesFolder = arguments[++i];
    } else if (argument == "--sheet" && hasValue) {
      options.sheetFolder = arguments[++i];
    } else if (argument == "--picture" && hasValue) {
      options.picture = arguments[++i];
    } else if (argument == "--keys" && hasValue) {
      options.keys.emplace(arguments[++i]);
    } else if (argument == "--frames" && hasValue) {
      options.frames = demo::numberOf(argument, arguments[++i], 1);
    } else if (argument.starts_with("--")) {
      return std::nullopt;
    } else if (!options.sheetFolder.empty() && !pictureGiven) {
      options.picture = argument;
      pictureGiven = true;
    } else if (options.sheetFolder.empty() && options.scene.empty()) {
      options.scene = argument;
    } else {
      return std::nullopt;
    }
  }
  return options;
}

int run(Options& options) {
  if (options.list) {
    for (const demo::SceneEntry& entry : demo::scenes()) std::printf("%-12s %s\n", entry.name, entry.title);
    return 0;
  }
  const bool own = options.picture.empty();
  const std::string pictureName = own ? "spheres.png" : std::filesystem::path(options.picture).filename().string();
  const demo::Image picture = own ? demo::decodePicture(ownPicture, pictureName) : demo::loadPicture(options.picture);
  if (options.measure) {
    demo::measureScenes(picture, pictureName);
    return 0;
  }
  if (!options.sheetFolder.empty()) {
    demo::writeSheet(options.sheetFolder, picture, pictureName);
    return 0;
  }
  if (!options.picturesFolder.empty()) {
    demo::writePictures(options.picturesFolder, picture, pictureName);
    return 0;
  }
  if (!options.galleryFolder.empty()) {
    demo::writeGallery(options.galleryFolder, picture, pictureName, options.frames);
    return 0;
  }
  std::size_t index = 0;
  const auto scenes = demo::scenes();
  while (!options.scene.empty() && index < scenes.size() && options.scene != scenes[index].name) ++index;
  if (index == scenes.size()) throw demo::Error(demo::exitUsage, "no scene " + options.scene + "; --list names them");
  if (!demo::play(index, picture, pictureName, options.frames, options.keys ? &*options.keys : nullptr))
    throw demo::Error(demo::exitNoDisplay, "no display; --gallery FOLDER writes the scenes as pictures");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  return demo::guarded("kxdemo", [&] {
    std::optional<Options> options = parse({argv + 1, argv + argc});
    if (options) return run(*options);
    std::fputs(
        "usage: kxdemo [SCENE] [--picture FILE] [--frames COUNT] [--keys WORDS]\n"
        "       kxdemo --gallery FOLDER [--picture FILE] [--frames COUNT]\n"
        "       kxdemo --pictures FOLDER\n"
        "       kxdemo --sheet FOLDER [PICTURE]\n"
        "       kxdemo --list | --measure\n",
        stderr);
    return demo::exitUsage;
  });
}
