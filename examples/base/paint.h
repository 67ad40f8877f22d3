// What pictures made by code are painted with.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "image.h"
#include "point.h"

namespace demo {

/// A colour of three channels; light may push them outside 0 to 255, where pixelOf cuts them.
struct Tone {
  int red, green, blue;
};

constexpr Tone lighter(Tone tone, int by) { return {tone.red + by, tone.green + by, tone.blue + by}; }

/// Never 0, which is transparent.
inline std::uint32_t pixelOf(std::uint32_t format, Tone tone) {
  const auto channel = [](int value) { return static_cast<unsigned>(std::clamp(value, 0, 255)); };
  return std::max(1U, KX_toRGB(format, channel(tone.red), channel(tone.green), channel(tone.blue)));
}

/// 0 to 255, the same for the same place.
inline int grain(int x, int y) {
  auto hash = static_cast<std::uint32_t>(x) * 0x9E3779B1U ^ static_cast<std::uint32_t>(y) * 0x85EBCA77U;
  hash = (hash ^ hash >> 15) * 0x2C1B3C6DU;
  return static_cast<int>((hash ^ hash >> 13) & 255);
}

/// From -1 to 1 across a picture.
inline double place(int pixel, int size) { return (pixel + 0.5) * 2 / size - 1; }

/// A bitmap of what `pixelAt(x, y)` returns: pixel values, 0 for transparent.
template <typename PixelAt>
Image painted(int width, int height, std::uint32_t format, PixelAt pixelAt) {
  Image image = makeImage(width, height, format);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (const std::uint32_t value = pixelAt(x, y); value != 0) KX_CHECK(KX_setPixel(image.get(), x, y, value));
  return image;
}

/// A thing seen from a bit above, made of flat slices that lie on each other. `sliceAt(height, ahead, side)` is the
/// tone at a place of a slice, in pixels from its middle, or one without green where there is nothing; `angle` turns
/// it.
template <typename SliceAt>
Image stacked(int size, int slices, double angle, std::uint32_t format, SliceAt sliceAt) {
  return painted(size, size, format, [&](int x, int y) {
    for (int height = slices - 1; height >= 0; --height) {
      const double dx = x + 0.5 - size / 2.0;
      const double dy = (y + 0.5 - size / 2.0 - slices / 2.0 + height) * 1.3;  // seen aslant: rows lie closer
      const Tone tone =
          sliceAt(height, dx * std::cos(angle) + dy * std::sin(angle), dy * std::cos(angle) - dx * std::sin(angle));
      if (tone.green != 0) return pixelOf(format, lighter(tone, grain(x, y) / 24 - 5));
    }
    return 0U;
  });
}

/// Pictures of a thing: one, one for each variant, or one for each direction.
using Pictures = std::vector<Image>;

/// They are packed: what is transparent costs nothing. `paint(index)` makes them.
template <typename Paint>
Pictures packed(int count, std::uint32_t format, Paint paint) {
  Pictures pictures;
  for (int i = 0; i < count; ++i) pictures.push_back(converted(paint(i), format | KX_STORAGE_PACKED));
  return pictures;
}

/// Variants of a thing: `pixelAt(variant, x, y)` is as that of painted().
template <typename PixelAt>
Pictures sprites(int count, int width, int height, std::uint32_t format, PixelAt pixelAt) {
  return packed(count, format, [&](int variant) {
    return painted(width, height, format, [&](int x, int y) { return pixelAt(variant, x, y); });
  });
}

/// A thing of slices in equally many directions, beginning with the right, clockwise: `sliceAt` is as that of
/// stacked().
template <typename SliceAt>
Pictures turned(int directions, int size, int slices, std::uint32_t format, SliceAt sliceAt) {
  return packed(directions, format, [&](int direction) {
    return stacked(size, slices, direction * 2 * std::numbers::pi / directions, format, sliceAt);
  });
}

/// An ellipse, a bit lighter at its top: a shadow, a pebble.
Pictures ellipse(int width, int height, std::uint32_t format, Tone tone);

/// Palms, 40 x 48 pixels: the trunk stands at the bottom middle. Rocks, 24 x 18 pixels.
Pictures palms(int variants, std::uint32_t format);
Pictures rocks(int variants, std::uint32_t format);

/// Transparent blits that are cut at the edges of the target, with left and top at a place: plain, blended (`alpha` is
/// the weight of what is there), or with a depth.
void stamp(Bitmap* target, Point at, const Image& image);
void stampAlpha(Bitmap* target, Point at, const Image& image, int alpha);
void stampDepth(Bitmap* target, Bitmap* zBuffer, Point at, const Image& image, int depth);

}  // namespace demo
