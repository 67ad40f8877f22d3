// A display that is nothing but a script: lists of modes, windows of any size, and failures on request. It stands in
// for the system's display while it lives.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <map>
#include <vector>

#include "platform/display.h"

namespace kxtest {

/// A mode of the script. Its number travels in the native record, to tell whether that comes back whole.
kx::platform::DisplayMode displayMode(std::int32_t width, std::int32_t height, std::uint32_t refresh,
                                      std::uint32_t depth, std::uint32_t flags = 0);

bool sameMode(const kx::platform::DisplayMode& a, const kx::platform::DisplayMode& b);

class ScriptedDisplay final : public kx::platform::Display {
public:
  enum Call { Enumerate, Current, Change, callKinds };

  struct Presented {
    void* window;
    kx::platform::Frame frame;
  };

  ScriptedDisplay();
  ~ScriptedDisplay();
  ScriptedDisplay(const ScriptedDisplay&) = delete;
  ScriptedDisplay& operator=(const ScriptedDisplay&) = delete;

  std::vector<kx::platform::DisplayMode> modes;
  kx::platform::DisplayMode current;
  std::map<void*, kx::platform::Extent> windows;
  std::vector<Presented> presented;
  std::array<unsigned, callKinds> calls{};

  /// The `countdown`-th call of this kind from now on fails (1 is the next one), and only that one. 0: none.
  void fail(Call call, unsigned countdown) { untilFailure_[call] = countdown; }

  bool enumerateMode(std::uint32_t number, kx::platform::DisplayMode& mode) override;
  bool currentMode(kx::platform::DisplayMode& mode) override;
  bool changeMode(const kx::platform::DisplayMode& mode, void* window) override;
  bool isWindow(void* window) override;
  kx::platform::Extent clientSize(void* window) override;
  kx::platform::DisplayFormat format() override;
  void present(void* window, const kx::platform::Frame& frame) override;

private:
  bool fails(Call call);

  std::array<unsigned, callKinds> untilFailure_{};
};

}  // namespace kxtest
