// SPDX-License-Identifier: MIT
#include "script.h"

#include <algorithm>

#include "image.h"
#include "program.h"

namespace demo {

Script::Script(const std::string& words) {
  for (std::size_t begin = words.find_first_not_of(' '); begin != std::string::npos;) {
    const std::size_t end = std::min(words.find(' ', begin), words.size());
    steps_.push_back(stepOf(words.substr(begin, end - begin)));
    begin = words.find_first_not_of(' ', end);
  }
}

Script::Step Script::stepOf(const std::string& word) {
  const std::size_t colon = word.find(':');
  const std::string verb = word.substr(0, colon);
  const std::string object = colon == std::string::npos ? "" : word.substr(colon + 1);
  const auto number = [&](const std::string& text) { return numberOf(verb, text, 0); };
  if (verb == "wait") return {word, Kind::Wait, {}, {number(object), 0}};
  if (verb == "button" && (object == "down" || object == "up"))
    return {word, Kind::Button, {}, {object == "down" ? 1 : 0, 0}};
  const std::size_t comma = object.find(',');
  if (verb == "mouse" && comma != std::string::npos)
    return {word, Kind::Mouse, {}, {number(object.substr(0, comma)), number(object.substr(comma + 1))}};
  const Kind kind = verb == "hold" ? Kind::Hold : verb == "free" ? Kind::Free : Kind::Press;
  const std::optional<Key> key = keyOf(kind == Kind::Press ? word : object);
  if (!key) throw Error(exitUsage, "no key or action " + word);
  return {word, kind, *key, {}};
}

std::string Script::play(Window& window) {
  if (over()) return "";
  Step& step = steps_[next_];
  switch (step.kind) {
    case Kind::Press:
      window.sendKey(step.key, true);
      window.sendKey(step.key, false);
      break;
    case Kind::Hold:
    case Kind::Free:
      window.sendKey(step.key, step.kind == Kind::Hold);
      break;
    case Kind::Mouse:
      mouse_ = step.place;
      window.sendMouse(mouse_);
      break;
    case Kind::Button:
      window.sendButton(mouse_, step.place.x != 0);
      break;
    case Kind::Wait:
      if (--step.place.x > 0) return "";
      break;
  }
  ++next_;
  return step.word;
}

}  // namespace demo
