// What the tests ask of an X server beside SDL: other modes, and what it shows. Apart, because Xlib has names of its
// own for displays and screens. SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

/// Adds a mode, not larger than the screen it was started with, to those that the virtual server of $DISPLAY offers.
/// False for other servers, larger modes, and tests built without Xlib.
bool offerX11Mode(int width, int height);

/// Makes this the desktop's size; false as above.
bool setX11Desktop(int width, int height);

struct Screenshot {
  int width = 0, height = 0;
  std::vector<std::uint32_t> pixels;  ///< in the server's own format

  [[nodiscard]] bool empty() const { return pixels.empty(); }
  [[nodiscard]] std::uint32_t at(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }
};

/// The whole screen of $DISPLAY; empty when the tests were built without Xlib or there is no server.
Screenshot takeX11Screenshot();
