// The library on real windows of Windows. What a display of 16 bits allows differs from what one of 32 bits does.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <vector>

#include "kxgraphic/kxgraphic.h"

extern "C" void mmgr_free(void* block);

namespace {

constexpr int windowWidth = 96, windowHeight = 64;

std::uint16_t picturePixel(int x, int y, int frame) {
  return static_cast<std::uint16_t>((x & 31) << 10 | (y & 31) << 5 | ((x + y + frame * 5) & 31));
}

void drawPicture(Bitmap* bitmap, int frame) {
  for (int y = 0; y < bitmap->height; ++y)
    for (int x = 0; x < bitmap->width; ++x) {
      const std::uint16_t pixel = picturePixel(x, y, frame);
      std::memcpy(bitmap->pixels + y * bitmap->pitch + x * 2, &pixel, sizeof pixel);
    }
}

int displayDepth() {
  const HDC screen = GetDC(nullptr);
  const int depth = GetDeviceCaps(screen, BITSPIXEL);
  ReleaseDC(nullptr, screen);
  return depth;
}

SIZE displaySize() {
  const HDC screen = GetDC(nullptr);
  const SIZE size = {GetDeviceCaps(screen, HORZRES), GetDeviceCaps(screen, VERTRES)};
  ReleaseDC(nullptr, screen);
  return size;
}

void handleMessages() {
  for (int i = 0; i < 10; ++i) {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    Sleep(5);
  }
}

/// What the window shows, as 5-5-5.
std::vector<std::uint16_t> readWindow(HWND window, int width, int height) {
  struct {
    BITMAPINFOHEADER header;
    DWORD masks[3];
  } info = {};
  info.header.biSize = sizeof info.header;
  info.header.biWidth = width;
  info.header.biHeight = -height;
  info.header.biPlanes = 1;
  info.header.biBitCount = 16;
  const HDC source = GetDC(window);
  const HDC memory = CreateCompatibleDC(source);
  void* pixels = nullptr;
  const HBITMAP section =
      CreateDIBSection(source, reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, &pixels, nullptr, 0);
  const HGDIOBJ before = SelectObject(memory, section);
  BitBlt(memory, 0, 0, width, height, source, 0, 0, SRCCOPY);
  GdiFlush();
  const auto rowPixels = static_cast<std::size_t>((width + 1) & ~1);
  std::vector<std::uint16_t> result;
  for (int y = 0; y < height; ++y) {
    const auto* row = static_cast<const std::uint16_t*>(pixels) + static_cast<std::size_t>(y) * rowPixels;
    result.insert(result.end(), row, row + width);
  }
  SelectObject(memory, before);
  DeleteObject(section);
  DeleteDC(memory);
  ReleaseDC(window, source);
  return result;
}

class WindowsDisplayTest : public testing::Test {
protected:
  void SetUp() override {
    methods.version = 0x10000;
    ASSERT_EQ(0u, KX_createScreen(&screen, nullptr, 0, &methods));
    window = CreateWindowExA(WS_EX_TOPMOST, "STATIC", "kxgraphic", WS_POPUP, 8, 8, windowWidth, windowHeight, nullptr,
                             nullptr, GetModuleHandleA(nullptr), nullptr);
    if (window == nullptr) GTEST_SKIP() << "no display";
    ShowWindow(window, SW_SHOWNOACTIVATE);
    handleMessages();
  }

  void TearDown() override {
    EXPECT_EQ(0u, KX_deleteScreen(screen));
    if (window != nullptr) DestroyWindow(window);
    handleMessages();
  }

  void expectFlipsShow(int width, int height) {
    for (int frame = 0; frame < 3; ++frame) {
      drawPicture(screen->back, frame);
      ASSERT_EQ(0u, KX_flip(screen, 0));
      const std::vector<std::uint16_t> shown = readWindow(window, width, height);
      int wrong = 0;
      for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
          wrong += (shown[static_cast<std::size_t>(y * width + x)] & 0x7FFF) != picturePixel(x, y, frame);
      EXPECT_EQ(0, wrong) << "pixels of " << width * height;
    }
  }

  std::vector<VideoMode> listModes() {
    VideoMode* list = nullptr;
    std::int32_t count = 0;
    EXPECT_EQ(0u, KX_getVideoModeList(screen, &list, &count));
    const std::vector<VideoMode> modes(list, list + count);
    mmgr_free(list);
    return modes;
  }

  ScreenMethods methods{};
  Screen* screen = nullptr;
  HWND window = nullptr;
};

// First of all, as the last window size is the library's.
TEST_F(WindowsDisplayTest, AWindowWithoutAClientAreaGetsTheLastSize) {
  SetWindowPos(window, nullptr, 0, 0, 0, 0, SWP_NOZORDER | SWP_NOACTIVATE);
  ASSERT_EQ(0u, KX_setMode(screen, window, KX_MODE_WINDOWED, nullptr));
  EXPECT_EQ(640, screen->front->width);
  EXPECT_EQ(480, screen->front->height);
}

TEST_F(WindowsDisplayTest, WindowedFramesShow) {
  EXPECT_EQ(7u, KX_setMode(screen, nullptr, KX_MODE_WINDOWED, nullptr));
  EXPECT_EQ(7u, KX_setMode(screen, reinterpret_cast<void*>(std::uintptr_t{0x123450}), KX_MODE_WINDOWED, nullptr));
  for (const std::uint32_t buffers : {0u, 0x08u, 0x10u}) {
    ASSERT_EQ(0u, KX_setMode(screen, window, KX_MODE_WINDOWED | buffers, nullptr));
    EXPECT_EQ(windowWidth, screen->front->width);
    EXPECT_EQ(windowHeight, screen->front->height);
    expectFlipsShow(windowWidth, windowHeight);
  }
  DestroyWindow(window);
  window = nullptr;
  EXPECT_EQ(0u, KX_flip(screen, 0));
}

TEST_F(WindowsDisplayTest, FullScreenSwitchesADisplayOf16Bits) {
  if (displayDepth() != 16) GTEST_SKIP() << "the display has " << displayDepth() << " bits";
  const SIZE desktop = displaySize();
  const std::vector<VideoMode> modes = listModes();
  ASSERT_FALSE(modes.empty());
  int tried = 0;
  for (VideoMode mode : modes) {
    if (mode.format != KX_FORMAT_555 || mode.width > desktop.cx || ++tried > 3) continue;
    SCOPED_TRACE(testing::Message() << mode.width << "x" << mode.height << " at " << mode.refresh);
    ASSERT_EQ(0u, KX_setMode(screen, window, KX_MODE_FULL_SCREEN | KX_MODE_THREE_BUFFERS, &mode));
    handleMessages();
    EXPECT_EQ(mode.width, displaySize().cx);
    EXPECT_EQ(mode.height, displaySize().cy);
    EXPECT_EQ(mode.width, screen->front->width);
    EXPECT_EQ(0xC5u, screen->front->format);
    SetWindowPos(window, HWND_TOPMOST, 0, 0, mode.width, mode.height, SWP_NOACTIVATE);
    handleMessages();
    expectFlipsShow(mode.width, mode.height);
    ASSERT_EQ(0u, KX_restoreMode(screen));
    handleMessages();
    EXPECT_EQ(desktop.cx, displaySize().cx);
    EXPECT_EQ(desktop.cy, displaySize().cy);
  }
  EXPECT_LT(0, tried);
}

TEST_F(WindowsDisplayTest, ADisplayOf32BitsRefusesFullScreen) {
  if (displayDepth() != 32) GTEST_SKIP() << "the display has " << displayDepth() << " bits";
  const SIZE desktop = displaySize();
  EXPECT_TRUE(listModes().empty());
  VideoMode mode = {desktop.cx, desktop.cy, 0, KX_FORMAT_565};
  EXPECT_EQ(0x4004u, KX_setMode(screen, window, KX_MODE_FULL_SCREEN, &mode));
  EXPECT_EQ(0x2000u, KX_setMode(screen, window, 3, nullptr));
  EXPECT_EQ(desktop.cx, displaySize().cx);
}

}  // namespace
