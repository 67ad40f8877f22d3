// Random sequences of setting, restoring and flipping over several screens, with failures at any call, compared with a
// model that keeps the rules in the plainest form.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <optional>
#include <random>

#include "screen/screen_fixture.h"

namespace {

using kx::platform::DisplayMode;
using kx::platform::Extent;
using kxtest::displayMode;
using kxtest::sameMode;
using kxtest::ScriptedDisplay;

constexpr int screenCount = 4;
constexpr int windowCount = 4;

/// One call of KX_setMode and what is to fail in it.
struct Request {
  std::uint32_t flags;
  int window;  ///< windowCount: not a window
  std::optional<VideoMode> mode;
  unsigned failingAllocation;  ///< 0: none
  bool currentFails, changeFails;
};

/// What the library and one screen of it should hold.
struct ScreenModel {
  std::uint32_t flags = 0;
  bool restored = false;
  int window = windowCount;
  int buffers = 0;
  int flips = 0;
  VideoMode mode{};
  Extent size{};
  std::uint32_t format = 0;
};

struct LibraryModel {
  bool taken = false;
  int users = 0;
  bool modeChanged = false;
  DisplayMode saved{};
  Extent lastWindow{};
};

class RandomModes : public kxtest::ScreenTest {
protected:
  static constexpr Extent sizes[windowCount] = {{32, 20}, {7, 3}, {0, 11}, {5, -2}};

  RandomModes() {
    for (int i = 0; i < windowCount; ++i) display.windows[window(i)] = sizes[i];
    display.modes = {displayMode(64, 48, 60, 16), displayMode(64, 48, 75, 24), displayMode(32, 24, 60, 16),
                     displayMode(32, 24, 70, 24), displayMode(64, 48, 60, 32)};
    display.current = displayMode(40, 30, 65, 24);
    expectedDisplay = display.current;
    for (Screen*& screen : screens) screen = create();
    // A known last window size.
    EXPECT_EQ(0u, KX_setMode(screens[0], window(0), KX_MODE_WINDOWED, nullptr));
    EXPECT_EQ(0u, KX_restoreMode(screens[0]));
    models[0].restored = true;
    models[0].window = 0;
    library.lastWindow = sizes[0];
  }

  int pick(int count) { return std::uniform_int_distribution<>(0, count - 1)(random); }

  Request pickRequest() {
    Request request{};
    // Mostly the two kinds that programs use, sometimes any word.
    request.flags =
        pick(4) == 0 ? static_cast<std::uint32_t>(random()) : static_cast<std::uint32_t>(1 + pick(2) + 8 * pick(4));
    request.window = pick(12) == 0 ? windowCount : pick(windowCount);
    if (pick(3) != 0)
      request.mode = VideoMode{32 * (1 + pick(2)), 24 * (1 + pick(2)), pick(3) == 0 ? 60u : 0u, 5 + pick(4)};
    if (pick(6) == 0) request.failingAllocation = static_cast<unsigned>(1 + pick(6));
    request.currentFails = pick(20) == 0;
    request.changeFails = pick(10) == 0;
    return request;
  }

  std::uint32_t call(Screen* screen, Request request) {
    kxtest::failAllocation(request.failingAllocation);
    display.fail(ScriptedDisplay::Current, request.currentFails ? 1 : 0);
    display.fail(ScriptedDisplay::Change, request.changeFails ? 1 : 0);
    VideoMode* mode = request.mode ? &*request.mode : nullptr;
    const std::uint32_t code = KX_setMode(screen, window(request.window), request.flags, mode);
    kxtest::failAllocation(0);
    display.fail(ScriptedDisplay::Current, 0);
    display.fail(ScriptedDisplay::Change, 0);
    return code;
  }

  void expectRestore(ScreenModel& model, bool& changeFails) {
    const std::uint32_t kind = model.flags & 7;
    if (kind == 0) return;
    if ((kind & 2) != 0) {
      library.users = 0;
    } else {
      library.users = std::max(library.users - 1, 0);
    }
    if (library.users == 0) library.taken = false;
    if (kind == 2) {
      if (!changeFails) expectedDisplay = library.saved;
      changeFails = false;
      library.modeChanged = false;
    }
    const int lastWindow = model.window;
    model = {};
    model.restored = true;
    model.window = lastWindow;
  }

  /// The first of the script's modes that a request accepts.
  std::optional<DisplayMode> wantedMode(const VideoMode& request) {
    const std::uint32_t depth = request.format == 7 ? 24 : 16;
    for (const bool anyRate : {false, true})
      for (const DisplayMode& mode : display.modes) {
        if (mode.depth != depth || mode.width != request.width || mode.height != request.height) continue;
        if (request.refresh == 0 ? anyRate || mode.refresh >= library.saved.refresh : mode.refresh == request.refresh)
          return mode;
      }
    return {};
  }

  std::uint32_t expectSet(ScreenModel& model, Request request) {
    const std::uint32_t kind = request.flags & 7;
    if ((kind == 2 && !request.mode) || request.window == windowCount) return 7;
    expectRestore(model, request.changeFails);
    if (kind == 0) return 0;
    if (kind == 2) {
      if (request.mode->format > 7) return 0x4004;
      if (!library.modeChanged) {
        if (request.currentFails) return 0x4001;
        library.saved = expectedDisplay;
      }
      const std::optional<DisplayMode> wanted = wantedMode(*request.mode);
      if (!wanted) return 0x4004;
      if (request.changeFails) return 0x4001;
      library.modeChanged = true;
      expectedDisplay = *wanted;
    }
    const std::uint32_t buffering = request.flags >> 3 & 3;
    const int buffers = buffering == 1 ? 2 : buffering == 2 ? 3 : 1;
    // A buffer takes two allocations.
    const int failingBuffer = static_cast<int>(request.failingAllocation + 1) / 2;
    const bool fails = failingBuffer != 0 && failingBuffer <= buffers;
    ScreenModel set = {
        request.flags & 0xFF, false, request.window, buffers, 0, request.mode.value_or(VideoMode{}), {}, 0};
    if ((kind & 2) != 0) {
      if (expectedDisplay.depth == 32) return 0x2000;
      if (library.taken) return 0x4000;
      library.taken = !fails || failingBuffer > 1;
      if (fails) return 2;
      library.users = 1;
      set.size = {expectedDisplay.width, expectedDisplay.height};
      set.format = expectedDisplay.depth == 16 ? 0xC5 : 0xC7;
    } else {
      library.users = library.taken ? library.users + 1 : 1;
      library.taken = true;
      if (fails) {
        library.taken = --library.users != 0;
        return 2;
      }
      const Extent client = sizes[request.window];
      set.size = {client.width > 0 ? client.width : library.lastWindow.width,
                  client.height > 0 ? client.height : library.lastWindow.height};
      set.format = 0x85;
      library.lastWindow = set.size;
    }
    model = set;
    return 0;
  }

  void compare(int i) {
    const Screen& screen = *screens[i];
    const ScreenModel& model = models[i];
    EXPECT_EQ(model.flags, screen.modeFlags);
    EXPECT_EQ(model.restored, screen.restored);
    EXPECT_EQ(model.buffers, screen.bufferCount);
    EXPECT_EQ(model.buffers == 0 ? 0 : model.flips % model.buffers, screen.frameIndex);
    EXPECT_EQ(model.mode.width, screen.mode.width);
    EXPECT_EQ(model.mode.refresh, screen.mode.refresh);
    EXPECT_EQ(model.mode.format, screen.mode.format);
    EXPECT_EQ(model.window == windowCount ? nullptr : window(model.window), screen.window);
    EXPECT_TRUE(sameMode(expectedDisplay, display.current));
    Bitmap* const present[] = {screen.front, screen.back, *screen.thirdBuffer};
    if (model.buffers == 0) {
      for (Bitmap* buffer : present) EXPECT_EQ(nullptr, buffer);
      return;
    }
    for (int k = 0; k < 3; ++k) {
      const bool exists = k < std::max(model.buffers, 2);
      EXPECT_EQ(exists ? ring[i][(model.flips + k) % model.buffers] : nullptr, present[k]);
      if (!exists) continue;
      EXPECT_EQ(model.size.width, present[k]->width);
      EXPECT_EQ(model.size.height, present[k]->height);
      EXPECT_EQ(model.format, present[k]->format);
    }
  }

  std::mt19937 random{5};
  LibraryModel library;
  DisplayMode expectedDisplay;
  Screen* screens[screenCount];
  ScreenModel models[screenCount];
  Bitmap* ring[screenCount][3] = {};  ///< front, back and third as they were set
};

TEST_F(RandomModes, FollowTheModel) {
  for (int step = 0; step < 8000 && !HasFailure(); ++step) {
    const int i = pick(screenCount);
    Screen* screen = screens[i];
    ScreenModel& model = models[i];
    switch (pick(4)) {
      case 0: {
        const Request request = pickRequest();
        SCOPED_TRACE(testing::Message() << "step " << step << ": flags " << request.flags << ", window "
                                        << request.window << ", failing allocation " << request.failingAllocation);
        const std::uint32_t expected = expectSet(model, request);
        EXPECT_EQ(expected, call(screen, request));
        if (expected == 0 && model.buffers != 0) {
          ring[i][0] = screen->front;
          ring[i][1] = screen->back;
          ring[i][2] = *screen->thirdBuffer;
        }
        break;
      }
      case 1: {
        bool changeFails = pick(10) == 0;
        display.fail(ScriptedDisplay::Change, changeFails ? 1 : 0);
        EXPECT_EQ(0u, KX_restoreMode(screen));
        display.fail(ScriptedDisplay::Change, 0);
        expectRestore(model, changeFails);
        break;
      }
      default:
        EXPECT_EQ(model.buffers == 0 ? 0x4003u : 0u, KX_flip(screen, 0));
        if (model.buffers == 0) break;
        ++model.flips;
        EXPECT_EQ(screen->front->pixels, display.presented.back().frame.pixels);
        EXPECT_EQ(screen->window, display.presented.back().window);
        display.presented.clear();
    }
    for (int k = 0; k < screenCount; ++k) {
      SCOPED_TRACE(testing::Message() << "step " << step << ", screen " << k);
      compare(k);
    }
  }
  for (Screen* screen : screens) EXPECT_EQ(0u, KX_deleteScreen(screen));
}

}  // namespace
