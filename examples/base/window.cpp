// What keys mean, whoever tells of them.
// SPDX-License-Identifier: MIT
#include "window.h"

#include <algorithm>
#include <array>
#include <utility>

namespace demo {

std::optional<Key> keyOf(std::string_view name) {
  static constexpr std::array<std::string_view, keyCount> names{"escape", "enter", "left", "right", "up", "down",
                                                                "space",  "f",     "1",    "2",     "3"};
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) return std::nullopt;
  return static_cast<Key>(found - names.begin());
}

Events Window::poll() {
  receive();
  return std::exchange(events_, {});
}

void Window::press(Key key, bool repeated) {
  hold(key, true);
  if (repeated) return;
  switch (key) {
    case Key::Escape:
      events_.quit = true;
      break;
    case Key::Enter:
    case Key::Right:
      events_.next = true;
      break;
    case Key::Left:
      events_.previous = true;
      break;
    case Key::Space:
      events_.pause = true;
      break;
    case Key::F:
      events_.fullScreen = true;
      break;
    case Key::One:
    case Key::Two:
    case Key::Three:
      events_.buffers = 1 + static_cast<int>(key) - static_cast<int>(Key::One);
      break;
    case Key::Up:
    case Key::Down:
      break;
  }
}

void Window::hold(Key key, bool down) {
  switch (key) {
    case Key::Left:
      keys.left = down;
      break;
    case Key::Right:
      keys.right = down;
      break;
    case Key::Up:
      keys.up = down;
      break;
    case Key::Down:
      keys.down = down;
      break;
    case Key::Space:
      keys.space = down;
      break;
    default:
      break;
  }
}

}  // namespace demo
