// What frames of the scenes take.
// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

#include "image.h"

namespace demo {

/// Draws some seconds of every scene as fast as it goes, in a window where there is a display, and prints what a frame
/// takes: drawn, and brought to the display.
void measureScenes(const Image& picture, std::string_view pictureName);

}  // namespace demo
