// Reading back what an X server shows. Apart, because Xlib has names of its own for displays and screens.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

struct Screenshot {
  int width = 0, height = 0;
  std::vector<std::uint32_t> pixels;  ///< in the server's own format

  [[nodiscard]] bool empty() const { return pixels.empty(); }
  [[nodiscard]] std::uint32_t at(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }
};

/// The whole screen of $DISPLAY; empty when the tests were built without Xlib or there is no server.
Screenshot takeX11Screenshot();
