// The window that the demo opens: by SDL2 or by Windows itself.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace demo {

/// What happened since the last look.
struct Events {
  bool quit = false;  ///< escape, or the window was closed
  bool next = false;  ///< right or enter
  bool previous = false;
  bool pause = false;       ///< space
  bool fullScreen = false;  ///< F
  int buffers = 0;          ///< 1, 2 or 3 was pressed
};

/// Keys that are held down.
struct Keys {
  bool left = false, right = false, up = false, down = false, space = false;
};

class Window {
public:
  Window() = default;
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  virtual ~Window() = default;

  /// What KX_setMode takes.
  [[nodiscard]] virtual void* handle() const = 0;

  virtual Events poll() = 0;
  virtual void setTitle(const char* title) = 0;

  int mouseX = 0;
  int mouseY = 0;
  bool mouseDown = false;
  Keys keys;
};

/// Null when there is no display.
std::unique_ptr<Window> openWindow(int width, int height);

/// Seconds since some point in time.
double secondsNow();

/// Gives the processor away for some milliseconds.
void sleepFor(int milliseconds);

}  // namespace demo
