// The window that the examples open: by SDL2 or by Windows itself.
// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "point.h"

namespace demo {

/// Keys that mean something.
enum class Key { Escape, Enter, Left, Right, Up, Down, Space, F, One, Two, Three };
constexpr int keyCount = 11;

/// The key of a name in small letters: "left", "f", "1".
std::optional<Key> keyOf(std::string_view name);

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

  virtual void setTitle(const char* title) = 0;

  /// Looks at what the system has to tell.
  Events poll();

  /// Tells the system what a user would: the same way that real keys and mice take. poll() sees it.
  virtual void sendKey(Key key, bool down) = 0;
  virtual void sendMouse(Point at) = 0;
  virtual void sendButton(Point at, bool down) = 0;

  Point mouse;
  bool mouseDown = false;
  Keys keys;

protected:
  /// Hands what the system tells to the functions below.
  virtual void receive() = 0;

  void close() { events_.quit = true; }
  void press(Key key, bool repeated);
  void hold(Key key, bool down);

private:
  Events events_;
};

/// Null when there is no display.
std::unique_ptr<Window> openWindow(int width, int height);

/// Seconds since some point in time.
double secondsNow();

/// Gives the processor away for some milliseconds.
void sleepFor(int milliseconds);

}  // namespace demo
