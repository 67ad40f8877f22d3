// Shows scenes in a window, through the library's screen.
// SPDX-License-Identifier: MIT
#pragma once

#include "scene.h"
#include "script.h"

namespace demo {

/// Shows the scene of an index and lets the keys lead through the others. False when there is no display.
/// `frames` above 0 ends the show after that many. A script, if any, stands in for the visitor, and its end is the
/// show's; a line tells what came of each word.
bool play(std::size_t index, const Image& picture, std::string_view pictureName, int frames, Script* script);

}  // namespace demo
