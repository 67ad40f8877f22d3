// kxdemo: shows what the library does.
//   kxdemo [SCENE] [--picture FILE]     opens a window: arrows lead through the scenes, escape ends
//   kxdemo --sheet FOLDER [PICTURE]     writes every scene as a PNG file into the folder
//   kxdemo --list                       names the scenes
// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "player.h"
#include "scene.h"

namespace {

constexpr int exitUsage = 2;
constexpr int exitNoDisplay = 7;

struct Options {
  std::string scene;
  std::string sheetFolder;
  std::string picture = KXDEMO_PICTURE;
  int frames = 0;
  bool list = false;
};

std::optional<Options> parse(const std::vector<std::string>& arguments) {
  Options options;
  bool pictureGiven = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    const bool hasValue = i + 1 < arguments.size();
    if (argument == "--list") {
      options.list = true;
    } else if (argument == "--sheet" && hasValue) {
      options.sheetFolder = arguments[++i];
    } else if (argument == "--picture" && hasValue) {
      options.picture = arguments[++i];
    } else if (argument == "--frames" && hasValue) {
      options.frames = std::atoi(arguments[++i].c_str());
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

void writeSheets(const std::string& folder, const demo::Image& picture, const std::string& pictureName) {
  std::filesystem::create_directories(folder);
  constexpr double filmSeconds = 2.5;
  for (const demo::SceneEntry& entry : demo::scenes()) {
    const demo::Material material{picture, pictureName, KX_FORMAT_565};
    const demo::Image image =
        entry.sheet != nullptr ? entry.sheet(material) : demo::filmed(entry, material, filmSeconds);
    const std::string file = (std::filesystem::path(folder) / entry.name).string() + ".png";
    demo::savePicture(image, file);
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);
  }
}

int run(const Options& options) {
  if (options.list) {
    for (const demo::SceneEntry& entry : demo::scenes()) std::printf("%-10s %s\n", entry.name, entry.caption);
    return 0;
  }
  const std::string pictureName = std::filesystem::path(options.picture).filename().string();
  const demo::Image picture = demo::loadPicture(options.picture);
  if (!options.sheetFolder.empty()) {
    writeSheets(options.sheetFolder, picture, pictureName);
    return 0;
  }
  std::size_t index = 0;
  const auto scenes = demo::scenes();
  while (!options.scene.empty() && index < scenes.size() && options.scene != scenes[index].name) ++index;
  if (index == scenes.size()) throw demo::Error(exitUsage, "no scene " + options.scene + "; --list names them");
  if (!demo::play(index, picture, pictureName, options.frames))
    throw demo::Error(exitNoDisplay, "no display; --sheet FOLDER writes the scenes as pictures");
  return 0;
}

}  // namespace

int main(int argc, char** argv) try {
  const std::optional<Options> options = parse({argv + 1, argv + argc});
  if (!options) {
    std::fputs(
        "usage: kxdemo [SCENE] [--picture FILE] [--frames COUNT]\n"
        "       kxdemo --sheet FOLDER [PICTURE]\n"
        "       kxdemo --list\n",
        stderr);
    return exitUsage;
  }
  return run(*options);
} catch (const demo::Error& error) {
  std::fprintf(stderr, "kxdemo: %s\n", error.what());
  return error.exitCode();
} catch (const std::exception& error) {
  std::fprintf(stderr, "kxdemo: %s\n", error.what());
  return 1;
}
