// An animated PNG of 256 colours.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "image.h"

namespace demo {

/// Frames of equal size. The colours are chosen from samples first, then every frame is added; what did not change
/// since the last frame takes little room.
class Animation {
public:
  /// Frames are shrunk by `factor` each way; every one is shown for `milliseconds`.
  Animation(int width, int height, int factor, int milliseconds);

  /// An image whose colours count, before the first frame.
  void sample(const Image& image);

  /// The next frame, of width x height pixels.
  void add(const Image& image);

  void save(const std::string& file) const;

private:
  struct Rgb8 {
    std::uint8_t red, green, blue;
  };

  [[nodiscard]] std::vector<Rgb8> shrunk(const Image& image) const;
  void choosePalette();
  std::uint8_t indexOf(Rgb8 colour);

  int width_, height_, factor_, milliseconds_;
  std::vector<Rgb8> samples_;
  std::vector<Rgb8> palette_;
  std::vector<std::int16_t> nearest_;              ///< for each colour of 15 bits, -1 while unknown
  std::vector<std::uint8_t> last_;                 ///< indices of the frame before
  std::vector<std::vector<std::uint8_t>> frames_;  ///< compressed
};

}  // namespace demo
