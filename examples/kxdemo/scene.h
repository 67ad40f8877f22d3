// A scene of the tour. Every scene is a row of the table in scenes.cpp.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "image.h"

namespace demo {

constexpr int frameWidth = 640;
constexpr int frameHeight = 480;
constexpr double framesASecond = 60;

/// What scenes are made from.
struct Material {
  const Image& picture;   ///< 24 bits
  std::string_view name;  ///< the picture's, for captions
  std::uint32_t format;   ///< format code of the frames: 5 or 6

  /// The picture stretched to a size, in the format of the frames.
  [[nodiscard]] Image covering(int width, int height) const;
};

/// The display that frames go to.
struct Output {
  std::vector<VideoMode> modes;
};

/// What a scene sees of the world when it draws.
struct Frame {
  double seconds = 0;  ///< since the scene began
  int mouseX = 0;      ///< pixels in the scene, inside it
  int mouseY = 0;
  bool mouseDown = false;
  const Output* output = nullptr;  ///< null where frames become pictures
};

class Scene {
public:
  Scene() = default;
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;
  virtual ~Scene() = default;

  /// Draws a frame of frameWidth x frameHeight pixels in the format of the material. The top headHeight rows get the
  /// scene's title afterwards, the bottom footHeight rows belong to the player.
  virtual void draw(Bitmap* target, const Frame& frame) = 0;
};

constexpr int headHeight = 36;
constexpr int footHeight = 14;

struct SceneEntry {
  const char* name;   ///< on the command line and as file name
  const char* title;  ///< what is seen
  const char* calls;  ///< which calls made it
  std::unique_ptr<Scene> (*make)(const Material& material);
  bool filmed;  ///< part of the gallery's animation
};

/// All scenes in the order of the tour.
std::span<const SceneEntry> scenes();

/// A frame of a scene with its title and calls.
void drawTitled(Scene& scene, std::size_t index, Bitmap* target, const Frame& frame);

/// What a visitor's mouse might do at a time: it circles, and its button is pressed now and then.
Frame visitedAt(double seconds);

/// Stills show a scene after so many frames.
constexpr int stillFrames = 156;

/// Draws a scene frame by frame from its beginning, as visited; `seen(number, image)` gets each, and the last one is
/// returned.
template <typename Seen>
Image played(std::size_t index, const Material& material, int frames, Seen seen) {
  const std::unique_ptr<Scene> scene = scenes()[index].make(material);
  Image image = makeImage(frameWidth, frameHeight, material.format);
  for (int i = 0; i <= frames; ++i) {
    drawTitled(*scene, index, image.get(), visitedAt(i / framesASecond));
    seen(i, image);
  }
  return image;
}

/// One picture in every format, with what it weighs: a sheet of its own.
Image formatSheet(const Material& material);

std::unique_ptr<Scene> makeFormats(const Material& material);
std::unique_ptr<Scene> makeBitmaps(const Material& material);
std::unique_ptr<Scene> makeCopies(const Material& material);
std::unique_ptr<Scene> makeWays(const Material& material);
std::unique_ptr<Scene> makeDepth(const Material& material);
std::unique_ptr<Scene> makeStretches(const Material& material);
std::unique_ptr<Scene> makeLines(const Material& material);
std::unique_ptr<Scene> makeFills(const Material& material);
std::unique_ptr<Scene> makeOperations(const Material& material);
std::unique_ptr<Scene> makePalettes(const Material& material);
std::unique_ptr<Scene> makeColours(const Material& material);
std::unique_ptr<Scene> makeSprites(const Material& material);
std::unique_ptr<Scene> makeCameras(const Material& material);
std::unique_ptr<Scene> makeSolid(const Material& material);
std::unique_ptr<Scene> makeRelief(const Material& material);
std::unique_ptr<Scene> makeIsland(const Material& material);
std::unique_ptr<Scene> makeWater(const Material& material);
std::unique_ptr<Scene> makeScreens(const Material& material);
std::unique_ptr<Scene> makeCoders(const Material& material);
std::unique_ptr<Scene> makeTables(const Material& material);

}  // namespace demo
