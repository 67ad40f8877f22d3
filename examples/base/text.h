// Text in a small bitmap font of the program's own. Every glyph is a transparent blit.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

#include <kxgraphic/kxgraphic.h>

namespace demo {

/// Rows from line to line.
constexpr int lineHeight = 10;

/// Text of ASCII characters; a line feed begins a new line. What lies outside the target is cut off. `colour` is a
/// pixel value of the target's format (0, which is transparent, is drawn as 1); `scale` enlarges by whole factors.
void drawText(Bitmap* target, int x, int y, std::string_view text, std::uint32_t colour, int scale = 1);

/// Pixels that a line covers from left to right.
int textWidth(std::string_view text, int scale = 1);

}  // namespace demo
