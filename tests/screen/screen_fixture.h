// What the tests of screens share: a scripted display, a method table, and a clean state of the library afterwards.
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include "kxgraphic/screen.h"
#include "support/scripted_display.h"
#include "support/test_heap.h"

namespace kxtest {

/// A screen method table as KX_getScreenInterface leaves it without a driver.
inline ScreenMethods emptyScreenMethods() {
  ScreenMethods methods{};
  methods.version = 0x10000;
  return methods;
}

class ScreenTest : public testing::Test {
protected:
  static constexpr std::int32_t windowWidth = 32, windowHeight = 20;

  ScreenTest() { display.windows[window()] = {windowWidth, windowHeight}; }

  ~ScreenTest() override {
    // Coming and going frees the buffers that failed set-ups left, and ends a change of the mode that they left.
    display.windows[window()] = {640, 480};
    Screen* last = create();
    EXPECT_EQ(0u, KX_setMode(last, window(), KX_MODE_WINDOWED, nullptr));
    display.modes = {displayMode(640, 480, 60, 16)};
    VideoMode mode = {640, 480, 0, 5};
    EXPECT_EQ(0u, KX_setMode(last, window(), KX_MODE_FULL_SCREEN, &mode));
    EXPECT_EQ(0u, KX_deleteScreen(last));
    EXPECT_EQ(blocksBefore, liveBlocks());
  }

  Screen* create() {
    Screen* screen = nullptr;
    EXPECT_EQ(0u, KX_createScreen(&screen, nullptr, 0, &methods));
    return screen;
  }

  /// The n-th window handle; number 0 is a window from the start.
  void* window(int n = 0) { return &handles[n]; }

  std::size_t blocksBefore = liveBlocks();
  ScriptedDisplay display;
  ScreenMethods methods = emptyScreenMethods();

private:
  std::uint64_t handles[8] = {};
};

}  // namespace kxtest
