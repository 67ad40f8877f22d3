// Drawing a frame into pixel memory of another layout and size: one conversion on the way to the display.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "platform/display.h"

namespace kx::platform {

/// Where one channel stands in a pixel: its eight bits lose the low `loss` ones and move up by `shift`.
struct ChannelPlace {
  std::uint8_t shift, loss;
};

/// Pixel memory to draw into.
struct Canvas {
  std::uint8_t* pixels;
  Extent size;
  std::int32_t pitch;          ///< bytes from row to row
  std::int32_t bytesPerPixel;  ///< 2, 3 or 4
  ChannelPlace red, green, blue;
};

struct Area {
  std::int32_t x, y;
  Extent size;
};

/// Where a frame goes that is to fill an area: enlarged by the greatest whole factor that fits, or reduced in
/// proportion where it does not fit; centred in both cases. No size is below 1.
Area fitFrame(Extent frame, Extent area);

/// Draws the frame into `place`, taking the nearest pixels. What lies outside of the canvas is left out. A place may
/// have up to 65535 pixels each way.
void drawFrame(const Canvas& canvas, const Frame& frame, const Area& place);

/// Blackens the canvas outside of an area within it.
void blackenAround(const Canvas& canvas, const Area& area);

}  // namespace kx::platform
