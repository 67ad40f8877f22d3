// Dots of a line straight into the pixels, where a call per point would do nothing else.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "draw/line_stepper.h"
#include "draw/target.h"
#include "pixel/formats.h"

namespace kx {

/// True for the formats that drawDotsDirectly() knows: those of whole bytes.
constexpr bool hasDirectDots(std::uint32_t format) { return bytesPerPixel(format) != 0; }

/// Draws what the library's own point operation would, dot by dot, into a plain bitmap. Everything has been tested and
/// locked before.
void drawDotsDirectly(const Bitmap& target, const Line& line, std::uint32_t colour, const Blend& blend);

}  // namespace kx
