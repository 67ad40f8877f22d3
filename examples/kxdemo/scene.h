// A scene of the demo: a still sheet or a moving picture. Every scene is a row of the table in scenes.cpp.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "image.h"

namespace demo {

/// What scenes are made from.
struct Material {
  const Image& picture;   ///< 24 bits
  std::string_view name;  ///< the picture's, for captions
  std::uint32_t format;   ///< format code of the frames of moving scenes: 5 or 6
};

/// What a moving scene sees of the world when it draws.
struct Frame {
  double seconds = 0;  ///< since the scene began
  int mouseX = 0;      ///< pixels in the scene
  int mouseY = 0;
  bool mouseDown = false;
};

class Scene {
public:
  Scene() = default;
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;
  virtual ~Scene() = default;

  /// Draws a frame of frameWidth x frameHeight pixels in the format of the material.
  virtual void draw(Bitmap* target, const Frame& frame) = 0;
};

constexpr int frameWidth = 640;
constexpr int frameHeight = 480;

/// Still sheets give an image, moving scenes an object; the other one is null.
struct SceneEntry {
  const char* name;     ///< on the command line and as file name
  const char* caption;  ///< what is seen and which calls made it
  Image (*sheet)(const Material& material);
  std::unique_ptr<Scene> (*moving)(const Material& material);
};

/// All scenes in the order of the tour.
std::span<const SceneEntry> scenes();

/// A moving scene as an image, `seconds` after it began, drawn at 60 frames a second.
Image filmed(const SceneEntry& entry, const Material& material, double seconds);

/// A sheet with a title line.
Image makeSheet(int width, int height, std::uint32_t format, std::string_view title);

/// Height of the title line in pixels.
constexpr int titleHeight = 40;

/// Fields of a sheet in rows, each with a caption below it.
class Panels {
public:
  static constexpr int width = 300;
  static constexpr int height = 200;
  static constexpr int gap = 12;
  static constexpr int captionHeight = 30;

  Panels(int count, int columns, std::uint32_t format, std::string_view title);

  /// The next field: its left and top are in x and y from now on. Captions have one or two lines.
  void next(std::string_view caption);

  [[nodiscard]] Bitmap* target() const { return sheet_.get(); }
  [[nodiscard]] std::uint32_t colour(unsigned red, unsigned green, unsigned blue) const {
    return demo::colour(sheet_.get(), red, green, blue);
  }

  /// Fills the field with a part of an image, enlarged or shrunk to its size.
  void cover(const Image& image) const;

  Image take() { return std::move(sheet_); }

  int x = 0;
  int y = 0;

private:
  Image sheet_;
  int columns_;
  int index_ = 0;
};

Image drawFormats(const Material& material);
Image drawBlits(const Material& material);
Image drawLines(const Material& material);
Image drawFills(const Material& material);
Image drawOperations(const Material& material);
Image drawRelief(const Material& material);
std::unique_ptr<Scene> makeSprites(const Material& material);
std::unique_ptr<Scene> makeSolid(const Material& material);
std::unique_ptr<Scene> makeIsland(const Material& material);
std::unique_ptr<Scene> makeWater(const Material& material);

}  // namespace demo
