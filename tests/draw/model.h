// Images as plain arrays of pixel values, with the rules of drawing written out one pixel at a time: what the drawing
// functions are compared with. Nothing here uses code of the library but to make bitmaps and to read them.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kxgraphic/kxgraphic.h"
#include "support/random.h"

namespace kxtest {

/// Formats that can be drawn on; those of whole bytes also with packed rows.
inline constexpr std::uint32_t drawingFormats[] = {0, 3, 4, 5, 6, 7, 0x13, 0x14, 0x15, 0x16, 0x17};

/// Formats that weights can be applied to.
inline bool canBlend(std::uint32_t format) { return (format & 15) == 3 || (format & 15) >= 5; }

std::uint32_t valueMask(std::uint32_t format);

/// The channels of eight bits of a pixel value: blue, green, red (one of them for intensities and indices).
std::vector<int> channelsOf(std::uint32_t format, std::uint32_t value);

struct Model {
  std::uint32_t format;  ///< format word
  std::int32_t width, height;
  std::vector<std::uint32_t> values =
      std::vector<std::uint32_t>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));

  std::uint32_t& at(std::int32_t x, std::int32_t y) {
    return values.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
  }

  /// Noise, from a few values only where `kinds` is not 0.
  void fillWithNoise(Random& random, std::uint32_t kinds = 0);
};

/// A weight, a depth test, both or none.
struct Ink {
  std::uint32_t colour = 0;
  int alpha = -1;           ///< weight of the target, or -1
  Model* depths = nullptr;  ///< the Z buffer, or null
  int z = 0;
};

/// One point by the rules.
void plot(Model& target, std::int32_t x, std::int32_t y, const Ink& ink);

/// A bitmap of the library with the model's pixels, deleted with its scope.
class Image {
public:
  explicit Image(Model& model, BitmapMethods* methods = nullptr);
  ~Image();
  Image(const Image&) = delete;
  Image& operator=(const Image&) = delete;

  operator Bitmap*() const { return bitmap_; }  // NOLINT: used as the handle it stands for
  Bitmap* operator->() const { return bitmap_; }

  /// The pixels as they are now.
  [[nodiscard]] std::vector<std::uint32_t> values() const;

private:
  Bitmap* bitmap_ = nullptr;
};

}  // namespace kxtest
