// Pictures that the scenes make for themselves.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "image.h"

extern "C" void mmgr_free(void* block);

namespace demo {

/// A colour of three channels, 0 to 255 each.
struct Rgb {
  unsigned red, green, blue;
};

/// A shaded ball on transparent ground (pixel value 0), size x size pixels.
Image makeBall(int size, std::uint32_t format, Rgb colour);

/// The same ball as palette indices 1 to 63, dark to bright, on transparent ground. The palette, which runs to
/// `colour`, and its translation to 5-6-5 belong to this object; the bitmap refers to them.
class IndexedBall {
public:
  IndexedBall(int size, Rgb colour);
  IndexedBall(const IndexedBall&) = delete;
  IndexedBall& operator=(const IndexedBall&) = delete;

  [[nodiscard]] Bitmap* bitmap() const { return image_.get(); }

private:
  struct TableDelete {
    void operator()(std::uint16_t* table) const { mmgr_free(table); }
  };
  std::array<std::uint8_t, 768> palette_{};
  std::unique_ptr<std::uint16_t, TableDelete> table16_;
  Image image_;
};

/// Depths of a ball: `nearest` at its middle, growing to nearest + size / 2 at its rim; 255 around it.
Image makeBallDepth(int size, int nearest);

/// A weight for each pixel of a picture: 0 (picture) in the middle, 255 (ground) outside, soft between.
Image makeSoftDisc(int width, int height);

/// A checkered texture of stone, size x size pixels.
Image makeStone(int size, std::uint32_t format);

}  // namespace demo
