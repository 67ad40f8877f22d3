// SPDX-License-Identifier: MIT
#include "gallery.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "animation.h"
#include "scene.h"

namespace demo {

namespace {

namespace fs = std::filesystem;

/// The animation shows the time before the stills.
constexpr int filmedFrames = 96;
constexpr int framesAPicture = 6;  // of the film: ten a second
constexpr int filmFactor = 2;

constexpr const char* pageHead = R"(<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>kxgraphic: the tour</title>
<style>
body { margin: 2em auto; max-width: 84em; padding: 0 1em; background: #181b22; color: #d8dce4; font: 16px sans-serif }
h1 { font-weight: normal; color: #fff }
figure { display: inline-block; width: 640px; max-width: 100%; margin: 0 1em 2em 0; vertical-align: top }
figure.wide { width: auto }
img { max-width: 100%; background: #000 }
figcaption b { color: #ffd66e }
code { color: #9fc0ff }
</style>
<h1>kxgraphic: the tour</h1>
<p>Every pixel here was drawn by the library, on the processor. The same scenes move in a window where there is a display.
)";

std::string escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (c == '&')
      out += "&amp;";
    else if (c == '<')
      out += "&lt;";
    else
      out += c;
  }
  return out;
}

void figure(std::string& page, std::string_view file, std::string_view title, std::string_view calls,
            const char* kind = "") {
  page += std::string("<figure") + kind + "><img src=\"" + std::string(file) + "\" alt=\"" + escaped(title) +
          "\">\n<figcaption><b>" + escaped(title) + "</b><br><code>" + escaped(calls) +
          "</code></figcaption></figure>\n";
}

}  // namespace

void writeSheet(const std::string& folder, const Image& picture, std::string_view pictureName) {
  fs::create_directories(folder);
  const std::string file = (fs::path(folder) / "sheet.png").string();
  savePicture(formatSheet({picture, pictureName, KX_FORMAT_565}), file);
  std::printf("%s\n", file.c_str());
}

void writeGallery(const std::string& folder, const Image& picture, std::string_view pictureName, int frames) {
  fs::create_directories(folder);
  const Material material{picture, pictureName, KX_FORMAT_555};
  const auto path = [&](const std::string& name) { return (fs::path(folder) / name).string(); };
  const std::size_t count = scenes().size();
  const auto tell = [](const char* text, const std::string& rest) {
    std::printf("   %s%s\n", text, rest.c_str());
    std::fflush(stdout);
  };
  savePicture(formatSheet(material), path("sheet.png"));

  Animation film(frameWidth, frameHeight, filmFactor, static_cast<int>(framesAPicture * 1000 / framesASecond));
  const int last = frames > 0 ? frames : stillFrames;
  const int firstFilmed = std::max(0, last - filmedFrames);
  std::vector<Image> filmFrames;
  for (std::size_t i = 0; i < count; ++i) {
    const SceneEntry& entry = scenes()[i];
    char number[32];
    static_cast<void>(
        std::snprintf(number, sizeof number, "%2u/%u  ", static_cast<unsigned>(i + 1), static_cast<unsigned>(count)));
    tell(number, std::string(entry.name) + ": " + entry.title);
    const Image still = played(i, material, last, [&](int frame, const Image& image) {
      if (entry.filmed && frame >= firstFilmed && (frame - firstFilmed) % framesAPicture == 0)
        filmFrames.push_back(converted(image, image->format));
    });
    savePicture(still, path(std::string(entry.name) + ".png"));
    if (entry.filmed) film.sample(still);
  }
  tell("the animation of ", std::to_string(filmFrames.size()) + " frames");
  for (const Image& frame : filmFrames) film.add(frame);
  film.save(path("tour.png"));

  std::string page = pageHead;
  figure(page, "tour.png", "The moving scenes", "ten frames a second and half the size of the window");
  for (const SceneEntry& entry : scenes()) figure(page, std::string(entry.name) + ".png", entry.title, entry.calls);
  figure(page, "sheet.png", "A picture in every bitmap format", "plain, packed and LZW sizes, and CRC-32 of the pixels",
         " class=\"wide\"");
  const std::string file = path("index.html");
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> opened(std::fopen(file.c_str(), "wb"), std::fclose);
  if (!opened || std::fwrite(page.data(), 1, page.size(), opened.get()) != page.size())
    throw Error(exitNotWritten, file + ": cannot be written");
  std::printf("%s\n", file.c_str());
}

}  // namespace demo
