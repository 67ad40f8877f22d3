// A user made of words, for tests: "right right space mouse:320,240 button:down wait:30 button:up escape".
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "window.h"

namespace demo {

/// A word presses a key and lets it go (left, f, 1...), or holds it (hold:up), frees it (free:up), moves the mouse
/// (mouse:X,Y), presses or frees its button (button:down, button:up), or lets frames go by (wait:COUNT).
class Script {
public:
  /// Throws an Error for a word that means nothing.
  explicit Script(const std::string& words);

  [[nodiscard]] bool over() const { return next_ == steps_.size(); }

  /// Does what the next word says, once a frame. Its text; nothing while a wait lasts and after the last one.
  std::string play(Window& window);

private:
  enum class Kind { Press, Hold, Free, Mouse, Button, Wait };
  struct Step {
    std::string word;
    Kind kind;
    Key key;      ///< of the first three
    Point place;  ///< of the mouse; else x: 1 for a button that goes down, or the frames to wait
  };
  static Step stepOf(const std::string& word);

  std::vector<Step> steps_;
  std::size_t next_ = 0;
  Point mouse_;
};

}  // namespace demo
