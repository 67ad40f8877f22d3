// The display: its modes, windows, and putting a frame on it. The folder of the system (win32/ or sdl2/) supplies one;
// tests put a scripted one in its place.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace kx::platform {

/// One display mode, with the system's own record of it.
struct DisplayMode {
  std::int32_t width, height;  ///< pixels
  std::uint32_t refresh;       ///< Hz
  std::uint32_t depth;         ///< bits per pixel
  std::uint32_t flags;         ///< 0 for an ordinary colour mode
  alignas(8) std::byte native[152];
};

struct Extent {
  std::int32_t width, height;  ///< pixels
};

/// What the whole display shows now.
struct DisplayFormat {
  Extent size;
  std::uint32_t depth;  ///< bits per pixel
};

/// A finished picture, the top row first.
struct Frame {
  const std::uint8_t* pixels;
  Extent size;
  std::int32_t pitch;    ///< bytes from row to row
  std::uint32_t format;  ///< format code 5, 6 or 7
};

class Display {
public:
  /// The mode of this number, counted from 0; false past the last. Number 0 reads the list afresh.
  virtual bool enumerateMode(std::uint32_t number, DisplayMode& mode) = 0;

  virtual bool currentMode(DisplayMode& mode) = 0;

  /// Switches the display for this window, or back to an earlier current mode with a null window.
  virtual bool changeMode(const DisplayMode& mode, void* window) = 0;

  virtual bool isWindow(void* window) = 0;

  /// Zero when it cannot be told.
  virtual Extent clientSize(void* window) = 0;

  virtual DisplayFormat format() = 0;

  /// Puts the frame at the top left of the window's client area. Failures have no consequence.
  virtual void present(void* window, const Frame& frame) = 0;

protected:
  ~Display() = default;
};

/// The system's display.
Display& systemDisplay();

/// The display in use: the system's unless it was replaced.
Display& display();

/// Puts another display in place of the system's, for tests; null gives the system's back.
void replaceDisplay(Display* replacement);

}  // namespace kx::platform
