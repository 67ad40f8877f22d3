// Direct dots: one cursor of addresses, one plot for each pixel size and each blend.
// SPDX-License-Identifier: MIT
#include "draw/line_dots.h"

#include <cstddef>

#include "bitmap/view.h"
#include "draw/colour_formats.h"
#include "pixel/colour_blend.h"

namespace kx {

namespace {

/// The address of the current pixel of a plain bitmap. Kept as an offset, since a walk ends one step past its line.
class PixelCursor {
public:
  PixelCursor(const Bitmap& bitmap, const Line& line)
      : base_(bitmap.pixels),
        offset_(pixelAddress(bitmap, line.from.x, line.from.y) - bitmap.pixels),
        stepX_(line.stepX() * static_cast<std::ptrdiff_t>(bytesPerPixel(bitmap.format))),
        stepY_(line.stepY() * static_cast<std::ptrdiff_t>(bitmap.pitch)) {}

  [[nodiscard]] std::uint8_t* address() const { return base_ + offset_; }

  void moveX(bool moves) { offset_ += moves ? stepX_ : 0; }
  void moveY(bool moves) { offset_ += moves ? stepY_ : 0; }

private:
  std::uint8_t* base_;
  std::ptrdiff_t offset_, stepX_, stepY_;
};

/// The same with the pixel's depth.
struct DeepCursor {
  PixelCursor pixel, depth;

  void moveX(bool moves) {
    pixel.moveX(moves);
    depth.moveX(moves);
  }
  void moveY(bool moves) {
    pixel.moveY(moves);
    depth.moveY(moves);
  }
};

/// `plot(address)` on every dot that passes the depth test.
template <typename Plot>
void plotDots(const Bitmap& target, const Line& line, const Blend& blend, Plot plot) {
  const PixelCursor pixels(target, line);
  if (!blend.hasDepth) {
    static_cast<void>(walkLine(line, pixels, [=](const PixelCursor& cursor) {
      plot(cursor.address());
      return Result::Ok;
    }));
    return;
  }
  const DeepCursor start{pixels, PixelCursor(*blend.zBuffer, line)};
  const auto z = static_cast<std::uint8_t>(blend.z);
  static_cast<void>(walkLine(line, start, [=](const DeepCursor& cursor) {
    std::uint8_t& stored = *cursor.depth.address();
    if (depthPasses(z, stored)) {
      stored = z;
      plot(cursor.pixel.address());
    }
    return Result::Ok;
  }));
}

}  // namespace

void drawDotsDirectly(const Bitmap& target, const Line& line, std::uint32_t colour, const Blend& blend) {
  withByteFormat(target.format, [&](auto format) {
    using Format = decltype(format);
    if (blend.hasAlpha) {
      const ColourBlend<Format> blended(colour, static_cast<std::uint32_t>(blend.alpha));
      plotDots(target, line, blend, [=](std::uint8_t* pixel) {
        storePixel<Format::bytes>(pixel, blended(loadPixel<Format::bytes>(pixel)));
      });
    } else {
      plotDots(target, line, blend, [=](std::uint8_t* pixel) { storePixel<Format::bytes>(pixel, colour); });
    }
  });
}

}  // namespace kx
