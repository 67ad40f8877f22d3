// Creating screens, listing and choosing modes, the order of refusals, and presenting.
// SPDX-License-Identifier: MIT
#include <functional>

#include "frame/heap.h"
#include "screen/screen_fixture.h"
#include "support/allocation_sweep.h"

namespace {

using kxtest::displayMode;
using kxtest::sameMode;
using kxtest::ScreenTest;

constexpr std::uint32_t windowed = KX_MODE_WINDOWED;
constexpr std::uint32_t fullScreen = KX_MODE_FULL_SCREEN;

void* badPointer() { return reinterpret_cast<void*>(std::uintptr_t{16}); }

TEST_F(ScreenTest, CreationChecksItsArgumentsAndMakesAnEmptyRecord) {
  Screen* screen = nullptr;
  int application = 0;
  auto wrongVersion = methods;
  wrongVersion.version = 0xFFFF;
  EXPECT_EQ(7u, KX_createScreen(nullptr, nullptr, 0, &wrongVersion));
  EXPECT_EQ(7u, KX_createScreen(&screen, nullptr, 0, nullptr));
  EXPECT_EQ(4u, KX_createScreen(&screen, nullptr, 0, &wrongVersion));
  EXPECT_EQ(nullptr, screen);

  EXPECT_EQ(0u, KX_createScreen(&screen, &application, 0xFFFFFFFF, &methods));
  EXPECT_EQ(&methods, screen->methods);
  EXPECT_EQ(0x10000u, screen->version);
  EXPECT_EQ(&application, screen->application);
  EXPECT_EQ(0, screen->modeFlags);
  EXPECT_EQ(nullptr, screen->front);
  ASSERT_NE(nullptr, screen->thirdBuffer);
  EXPECT_EQ(nullptr, *screen->thirdBuffer);
  EXPECT_EQ(0u, KX_deleteScreen(screen));

  screen = kxtest::garbagePointer<Screen>();
  kxtest::sweepAllocations({.call = [&] { return KX_createScreen(&screen, nullptr, 0, &methods); },
                            .release = [&] { KX_deleteScreen(screen); },
                            .untouched = {kxtest::bytesOf(screen)}});
}

TEST_F(ScreenTest, EveryFunctionChecksTheHandle) {
  VideoMode* list = nullptr;
  std::int32_t count = 0;
  const std::function<std::uint32_t(Screen*)> functions[] = {
      [](Screen* screen) { return KX_deleteScreen(screen); },
      [&](Screen* screen) { return KX_getVideoModeList(screen, &list, &count); },
      [&](Screen* screen) { return KX_setMode(screen, window(), windowed, nullptr); },
      [](Screen* screen) { return KX_restoreMode(screen); },
      [](Screen* screen) { return KX_flip(screen, 0); },
      [](Screen* screen) { return KX_waitForVerticalBlankStart(screen); },
      [](Screen* screen) { return KX_waitForVerticalBlankEnd(screen); },
  };
  Screen* screen = create();
  for (const auto& function : functions) {
    EXPECT_EQ(7u, function(nullptr));
    screen->version = 0x10001;
    EXPECT_EQ(3u, function(screen));
    screen->version = 0x10000;
  }
  EXPECT_EQ(0u, KX_waitForVerticalBlankStart(screen));
  EXPECT_EQ(0u, KX_waitForVerticalBlankEnd(screen));
  EXPECT_EQ(0, KX_isVerticalBlank(nullptr));
  EXPECT_EQ(0x4003u, KX_flip(screen, 0));
  EXPECT_EQ(0u, KX_restoreMode(screen));
  EXPECT_EQ(0, screen->restored);
  KX_deleteScreen(screen);
}

std::uint32_t KX_CALL refuseToRestore(Screen*) { return 0x77; }

TEST_F(ScreenTest, ARestoreThatFailsStopsDeletingAndSetting) {
  Screen* screen = create();
  EXPECT_EQ(0u, KX_setMode(screen, window(), windowed, nullptr));
  methods.restoreMode = refuseToRestore;
  EXPECT_EQ(0x77u, KX_deleteScreen(screen));
  EXPECT_EQ(0x77u, KX_setMode(screen, window(), 0, nullptr));
  EXPECT_EQ(windowed, screen->modeFlags);
  methods.restoreMode = &KX_restoreMode;
  EXPECT_EQ(0u, KX_deleteScreen(screen));
}

TEST_F(ScreenTest, TheListKeepsTheDisplaysOrder) {
  Screen* screen = create();
  VideoMode* list = nullptr;
  std::int32_t count = -1;
  EXPECT_EQ(7u, KX_getVideoModeList(screen, nullptr, &count));
  EXPECT_EQ(7u, KX_getVideoModeList(screen, &list, nullptr));

  // Other depths and modes with flags are left out, doubles stay.
  display.modes = {displayMode(800, 600, 75, 24), displayMode(640, 480, 60, 32),    displayMode(640, 480, 60, 16),
                   displayMode(640, 480, 60, 16), displayMode(640, 480, 60, 16, 2), displayMode(320, 200, 70, 15),
                   displayMode(320, 200, 70, 8),  displayMode(1280, 1024, 0, 16)};
  ASSERT_EQ(0u, KX_getVideoModeList(screen, &list, &count));
  constexpr VideoMode expected[] = {{800, 600, 75, 7}, {640, 480, 60, 5}, {640, 480, 60, 5}, {1280, 1024, 0, 5}};
  ASSERT_EQ(4, count);
  for (int i = 0; i < count; ++i) {
    EXPECT_EQ(expected[i].width, list[i].width);
    EXPECT_EQ(expected[i].height, list[i].height);
    EXPECT_EQ(expected[i].refresh, list[i].refresh);
    EXPECT_EQ(expected[i].format, list[i].format);
  }
  const auto release = [&] { mmgr_free(list); };
  release();

  list = kxtest::garbagePointer<VideoMode>();
  kxtest::sweepAllocations({.call = [&] { return KX_getVideoModeList(screen, &list, &count); },
                            .release = release,
                            .untouched = {kxtest::bytesOf(list)}});

  // The list ends with the first number that the display does not know, and after a thousand.
  display.fail(kxtest::ScriptedDisplay::Enumerate, 4);
  EXPECT_EQ(0u, KX_getVideoModeList(screen, &list, &count));
  EXPECT_EQ(2, count);
  release();
  display.modes.assign(1200, displayMode(640, 480, 60, 16));
  EXPECT_EQ(0u, KX_getVideoModeList(screen, &list, &count));
  EXPECT_EQ(1000, count);
  release();
  display.modes.clear();
  EXPECT_EQ(0u, KX_getVideoModeList(screen, &list, &count));
  EXPECT_EQ(0, count);
  EXPECT_NE(nullptr, list);
  release();
  KX_deleteScreen(screen);
}

TEST_F(ScreenTest, AFullScreenTakesTheFirstModeThatFits) {
  display.current = displayMode(1024, 768, 70, 32);
  display.modes = {
      displayMode(640, 480, 60, 16), displayMode(640, 480, 75, 16, 2),      displayMode(640, 480, 72, 24),
      displayMode(640, 480, 72, 16), displayMode(640, 480, 85, 16),         displayMode(800, 600, 43, 16),
      displayMode(800, 600, 60, 16), displayMode(640, 400, 0xFFFFFFFF, 24),
  };
  struct Case {
    VideoMode request;
    std::uint32_t code;
    std::size_t chosen;
  };
  constexpr Case cases[] = {
      {{640, 480, 0, 5}, 0, 3},                                       // the desktop's rate or more comes first
      {{640, 480, 0, 6}, 0, 3},                                       // 5-6-5 is sixteen bits too
      {{640, 480, 60, 5}, 0, 0},                                      // exactly the rate asked for
      {{640, 480, 75, 5}, 0x4004, 0},                                 // only as a mode with flags
      {{640, 480, 71, 5}, 0x4004, 0},                                 // no nearest rate
      {{800, 600, 0, 5}, 0, 5},                                       // else the first of any rate
      {{640, 480, 0, 7}, 0, 2},                                       // depth counts
      {{640, 400, 0, 7}, 0, 7},                                       // rates have no sign
      {{640, 400, 0, 5}, 0x4004, 0},  {{640, 480, 0, 3}, 0x4004, 0},  // no such buffer
  };
  Screen* screen = create();
  const auto desktop = display.current;
  for (Case test : cases) {
    SCOPED_TRACE(testing::Message() << test.request.width << "x" << test.request.height << " at "
                                    << test.request.refresh << ", format " << test.request.format);
    EXPECT_EQ(test.code, KX_setMode(screen, window(), fullScreen, &test.request));
    EXPECT_TRUE(sameMode(test.code == 0 ? display.modes[test.chosen] : desktop, display.current));
    EXPECT_EQ(0u, KX_restoreMode(screen));
    EXPECT_TRUE(sameMode(desktop, display.current));
  }
  KX_deleteScreen(screen);
}

// Faults in the order in which KX_setMode finds them. With the first n of them mended, the code is that of the next.
TEST_F(ScreenTest, FaultsAreFoundInOrder) {
  using kxtest::ScriptedDisplay;
  Screen* screen = create();
  Screen* other = create();
  ASSERT_EQ(0u, KX_setMode(screen, window(), windowed, nullptr));
  ASSERT_EQ(0u, KX_setMode(other, window(), windowed, nullptr));
  VideoMode request = {640, 480, 0, 4};
  Screen* handle = nullptr;
  auto* mode = static_cast<VideoMode*>(badPointer());
  void* target = window(1);
  screen->version = 1;
  methods.restoreMode = refuseToRestore;
  display.modes = {displayMode(640, 480, 60, 32)};

  struct Fault {
    std::uint32_t code;
    std::function<void()> mend;
  };
  const Fault faults[] = {
      {7, [&] { handle = screen; }},
      {3, [&] { screen->version = 0x10000; }},
      {7, [&] { mode = nullptr; }},
      {7, [&] { mode = &request; }},
      {7, [&] { target = window(); }},
      {0x77, [&] { methods.restoreMode = nullptr; }},
      {0x4004, [&] { request.format = 6, display.fail(ScriptedDisplay::Current, 1); }},
      {0x4001, [] {}},
      {0x4004, [&] { display.modes[0].depth = 16, display.fail(ScriptedDisplay::Change, 1); }},
      {0x4001, [&] { display.modes.front() = displayMode(640, 480, 60, 16); }},
      {0x4000, [&] { EXPECT_EQ(0u, KX_restoreMode(other)); }},
  };
  for (const Fault& fault : faults) {
    EXPECT_EQ(fault.code, KX_setMode(handle, target, fullScreen, mode));
    fault.mend();
  }
  kxtest::failAllocation(1);
  EXPECT_EQ(2u, KX_setMode(handle, target, fullScreen, mode));
  EXPECT_EQ(0u, KX_setMode(handle, target, fullScreen, mode));

  // A depth that no buffer has: without a change of the mode, as a change brings a depth of its own.
  EXPECT_EQ(0u, KX_restoreMode(screen));
  display.current.depth = 32;
  EXPECT_EQ(0x2000u, KX_setMode(screen, window(), 3, nullptr));
  KX_deleteScreen(screen);
  KX_deleteScreen(other);
}

TEST_F(ScreenTest, TheDesktopsModeSurvivesASetUpThatFailsInAnother) {
  const auto desktop = display.current;
  display.modes = {displayMode(640, 480, 60, 24)};
  VideoMode request = {640, 480, 0, 7};
  Screen* screen = create();
  Screen* other = create();
  EXPECT_EQ(0u, KX_setMode(other, window(), windowed, nullptr));
  EXPECT_EQ(0x4000u, KX_setMode(screen, window(), fullScreen, &request));
  EXPECT_TRUE(sameMode(display.modes[0], display.current));
  EXPECT_EQ(0u, KX_deleteScreen(other));
  EXPECT_EQ(0u, KX_setMode(screen, window(), fullScreen, &request));
  EXPECT_EQ(0u, KX_deleteScreen(screen));
  EXPECT_TRUE(sameMode(desktop, display.current));
}

std::uint32_t KX_CALL refuseLock(Bitmap*) { return 0x200A; }
std::uint32_t KX_CALL refuseUnlock(Bitmap*) { return 0x200B; }

TEST_F(ScreenTest, FlipHandsTheFrontBufferToTheDisplay) {
  Screen* screen = create();
  ASSERT_EQ(0u, KX_setMode(screen, window(), windowed | KX_MODE_TWO_BUFFERS, nullptr));
  Bitmap* drawn = screen->back;
  for (const std::uint32_t format : {0x85u, 6u, 7u}) {
    drawn->format = format;
    ASSERT_EQ(0u, KX_flip(screen, 0));
    const auto& [target, frame] = display.presented.back();
    EXPECT_EQ(window(), target);
    EXPECT_EQ(format & 15, frame.format);
    EXPECT_EQ(drawn->pixels, frame.pixels);
    EXPECT_EQ(windowWidth, frame.size.width);
    EXPECT_EQ(windowHeight, frame.size.height);
    EXPECT_EQ(windowWidth * 2, frame.pitch);
    EXPECT_EQ(0u, drawn->lockCount);
    ASSERT_EQ(0u, KX_flip(screen, 0));
  }
  BitmapMethods failing = *drawn->methods;
  BitmapMethods* own = drawn->methods;
  drawn->methods = &failing;
  const std::size_t before = display.presented.size();
  failing.lock = refuseLock;
  EXPECT_EQ(0x200Au, KX_flip(screen, 0));
  EXPECT_EQ(before, display.presented.size());
  failing.lock = own->lock;
  failing.unlock = refuseUnlock;
  EXPECT_EQ(0u, KX_flip(screen, 0));
  EXPECT_EQ(0x200Bu, KX_flip(screen, 0));
  EXPECT_EQ(before + 2, display.presented.size());
  drawn->methods = own;
  KX_deleteScreen(screen);
}

}  // namespace
