// Scenes of six fields, each with a caption and the call that made it.
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "art.h"
#include "point.h"
#include "scene.h"
#include "text.h"

namespace demo {

class PanelScene : public Scene {
public:
  static constexpr int width = 200;
  static constexpr int height = 182;
  static constexpr int columns = 3;
  static constexpr int gap = 10;
  static constexpr int captionHeight = 26;

  /// Where a field begins in the frame, by its number from 0; its caption stands below.
  static constexpr Point fieldAt(int number) {
    return {gap + number % columns * (width + gap), headHeight + 4 + number / columns * (height + captionHeight)};
  }

protected:
  explicit PanelScene(const Material& material);

  /// Starts a frame: the next field is the first.
  void begin(Bitmap* target);

  /// Fills a field: `draw` gets a bitmap of width x height pixels.
  template <typename Draw>
  void show(std::string_view caption, std::string_view call, Draw draw) {
    clear();
    draw(canvas_.get());
    place(caption, call);
  }

  /// The depths of a field, all far away.
  Bitmap* clearedDepth();

  [[nodiscard]] std::uint32_t colour(unsigned red, unsigned green, unsigned blue) const {
    return demo::colour(canvas_.get(), red, green, blue);
  }
  [[nodiscard]] std::uint32_t rainbow(double part) const;

  /// A point on a circle around the middle of a field; `part` 0.0 to 1.0 goes once around.
  static Point onCircle(double part, int radius);

  /// Copies all of an image to the top left of the field.
  static void cover(Bitmap* field, const Image& image);
  static void cover(Bitmap* field, Bitmap* image);

private:
  void clear();
  void place(std::string_view caption, std::string_view call);

  Image canvas_;
  Image depth_;
  Bitmap* target_ = nullptr;
  int index_ = 0;
};

}  // namespace demo
