// Shows scenes in a window, through the library's screen.
// SPDX-License-Identifier: MIT
#pragma once

#include "scene.h"

namespace demo {

/// Shows the scene of an index and lets the keys lead through the others. False when there is no display.
/// `frames` above 0 ends the show after that many.
bool play(std::size_t index, const Image& picture, std::string_view pictureName, int frames);

}  // namespace demo
