// The display on Windows: display settings and device contexts.
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <cstring>

#include "platform/display.h"

namespace kx::platform {

namespace {

/// The part of DEVMODEA that every version of Windows knows.
constexpr WORD devModeSize = 148;
static_assert(sizeof(DisplayMode::native) >= devModeSize && sizeof(DEVMODEA) >= devModeSize);

/// A mode by its number or ENUM_CURRENT_SETTINGS.
bool readMode(DWORD number, DisplayMode& mode) {
  DEVMODEA record{};
  record.dmSize = devModeSize;
  if (!EnumDisplaySettingsA(nullptr, number, &record)) return false;
  mode.width = static_cast<std::int32_t>(record.dmPelsWidth);
  mode.height = static_cast<std::int32_t>(record.dmPelsHeight);
  mode.refresh = record.dmDisplayFrequency;
  mode.depth = record.dmBitsPerPel;
  mode.flags = record.dmDisplayFlags;
  std::memcpy(mode.native, &record, devModeSize);
  return true;
}

/// The header that SetDIBitsToDevice reads, with the channel masks of 5-6-5.
struct FrameInfo {
  BITMAPINFOHEADER header;
  DWORD masks[3];
};

FrameInfo describe(const Frame& frame) {
  FrameInfo info{};
  info.header.biSize = sizeof info.header;
  info.header.biWidth = frame.size.width;
  info.header.biHeight = -frame.size.height;  // the top row comes first
  info.header.biPlanes = 1;
  info.header.biCompression = BI_RGB;
  switch (frame.format) {
    case 5:
      info.header.biBitCount = 16;
      break;
    case 6:
      info.header.biBitCount = 16;
      info.header.biCompression = BI_BITFIELDS;
      info.masks[0] = 0xF800;
      info.masks[1] = 0x07E0;
      info.masks[2] = 0x001F;
      break;
    case 7:
      info.header.biBitCount = 24;
      break;
    default:
      break;
  }
  return info;
}

class WindowsDisplay final : public Display {
public:
  bool enumerateMode(std::uint32_t number, DisplayMode& mode) override { return readMode(number, mode); }

  bool currentMode(DisplayMode& mode) override { return readMode(ENUM_CURRENT_SETTINGS, mode); }

  bool changeMode(const DisplayMode& mode, void*) override {
    DEVMODEA record{};
    std::memcpy(&record, mode.native, devModeSize);
    return ChangeDisplaySettingsA(&record, 0) == DISP_CHANGE_SUCCESSFUL;
  }

  bool isWindow(void* window) override { return IsWindow(static_cast<HWND>(window)); }

  Extent clientSize(void* window) override {
    RECT client{};
    if (!GetClientRect(static_cast<HWND>(window), &client)) return {};
    return {client.right - client.left, client.bottom - client.top};
  }

  DisplayFormat format() override {
    const HDC screen = GetDC(nullptr);
    const DisplayFormat format = {{GetDeviceCaps(screen, HORZRES), GetDeviceCaps(screen, VERTRES)},
                                  static_cast<std::uint32_t>(GetDeviceCaps(screen, BITSPIXEL))};
    ReleaseDC(nullptr, screen);
    return format;
  }

  void present(void* window, const Frame& frame) override {
    const FrameInfo info = describe(frame);
    const HDC context = GetDC(static_cast<HWND>(window));
    const auto width = static_cast<DWORD>(frame.size.width);
    const auto height = static_cast<DWORD>(frame.size.height);
    SetDIBitsToDevice(context, 0, 0, width, height, 0, 0, 0, height, frame.pixels,
                      reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS);
    ReleaseDC(static_cast<HWND>(window), context);
  }
};

constinit WindowsDisplay windowsDisplay;

}  // namespace

Display& systemDisplay() { return windowsDisplay; }

}  // namespace kx::platform
