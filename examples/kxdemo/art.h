// Pictures that the scenes make for themselves.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include <kxgraphic/mmgr.h>

#include "image.h"

namespace demo {

/// A shaded ball on transparent ground (pixel value 0), size x size pixels.
Image makeBall(int size, std::uint32_t format, Rgb colour);

/// A palette: 256 entries of blue, green, red.
using Palette = std::array<std::uint8_t, 768>;

/// A bitmap of 8-bit indices that refers to a palette of the program, and for 5-6-5 pixels to a translation that keeps
/// all six bits of green (one that the library makes by itself keeps five). Both belong to this object.
class Indexed {
public:
  explicit Indexed(Image image);

  /// All pixels follow at once.
  void setPalette(const Palette& palette);

  [[nodiscard]] const Palette& palette() const { return *palette_; }
  [[nodiscard]] Bitmap* bitmap() const { return image_.get(); }

private:
  struct TableDelete {
    void operator()(std::uint16_t* table) const { mmgr_free(table); }
  };
  std::unique_ptr<Palette> palette_ = std::make_unique<Palette>();  ///< where the bitmap looks for it
  std::unique_ptr<std::uint16_t, TableDelete> table16_;
  Image image_;
};

/// A ball as palette indices 1 to 63, dark to bright, on transparent ground.
Indexed makeIndexedBall(int size, Rgb colour);

/// Depths of a ball: `nearest` at its middle, growing to nearest + size / 2 at its rim; 255 around it.
Image makeBallDepth(int size, int nearest);

/// A weight for each pixel of a picture: 0 (picture) in the middle, 255 (ground) outside, soft between.
Image makeSoftDisc(int width, int height);

/// A checkered texture of stone, size x size pixels with `cells` fields each way.
Image makeStone(int size, std::uint32_t format, int cells = 8);

}  // namespace demo
