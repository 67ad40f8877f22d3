// SPDX-License-Identifier: MIT
#include "support/scripted_display.h"

#include <cstring>

namespace kxtest {

using kx::platform::DisplayMode;

DisplayMode displayMode(std::int32_t width, std::int32_t height, std::uint32_t refresh, std::uint32_t depth,
                        std::uint32_t flags) {
  static unsigned char serial = 0;
  DisplayMode mode = {width, height, refresh, depth, flags, {}};
  std::memset(mode.native, ++serial, sizeof mode.native);
  return mode;
}

bool sameMode(const DisplayMode& a, const DisplayMode& b) {
  return a.width == b.width && a.height == b.height && a.refresh == b.refresh && a.depth == b.depth &&
         a.flags == b.flags && std::memcmp(a.native, b.native, sizeof a.native) == 0;
}

ScriptedDisplay::ScriptedDisplay() : current(displayMode(800, 600, 60, 16)) { kx::platform::replaceDisplay(this); }

ScriptedDisplay::~ScriptedDisplay() { kx::platform::replaceDisplay(nullptr); }

bool ScriptedDisplay::fails(Call call) {
  ++calls[call];
  return untilFailure_[call] != 0 && --untilFailure_[call] == 0;
}

bool ScriptedDisplay::enumerateMode(std::uint32_t number, DisplayMode& mode) {
  if (fails(Enumerate) || number >= modes.size()) return false;
  mode = modes[number];
  return true;
}

bool ScriptedDisplay::currentMode(DisplayMode& mode) {
  if (fails(Current)) return false;
  mode = current;
  return true;
}

bool ScriptedDisplay::changeMode(const DisplayMode& mode, void*) {
  if (fails(Change)) return false;
  current = mode;
  return true;
}

bool ScriptedDisplay::isWindow(void* window) { return windows.contains(window); }

kx::platform::Extent ScriptedDisplay::clientSize(void* window) { return windows.at(window); }

kx::platform::DisplayFormat ScriptedDisplay::format() { return {{current.width, current.height}, current.depth}; }

void ScriptedDisplay::present(void* window, const kx::platform::Frame& frame) { presented.push_back({window, frame}); }

}  // namespace kxtest
