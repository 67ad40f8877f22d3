// SPDX-License-Identifier: MIT
#include <windows.h>

#include <algorithm>
#include <array>

#include "window.h"

namespace demo {

namespace {

/// In the order of Key.
constexpr std::array<WPARAM, keyCount> codes{VK_ESCAPE, VK_RETURN, VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN,
                                             VK_SPACE,  'F',       '1',     '2',      '3'};

/// A place as messages carry it.
LPARAM packed(Point at) { return MAKELPARAM(at.x, at.y); }
Point place(LPARAM data) { return {static_cast<short>(LOWORD(data)), static_cast<short>(HIWORD(data))}; }

class Win32Window final : public Window {
public:
  Win32Window(int width, int height) {
    WNDCLASSA description{};
    description.lpfnWndProc = receiveMessage;
    description.hInstance = GetModuleHandleA(nullptr);
    description.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    description.lpszClassName = "kxdemo";
    RegisterClassA(&description);
    constexpr DWORD style = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX;
    RECT outer{0, 0, width, height};
    AdjustWindowRect(&outer, style, FALSE);
    window_ = CreateWindowExA(0, "kxdemo", "kxgraphic", style | WS_VISIBLE, CW_USEDEFAULT, CW_USEDEFAULT,
                              outer.right - outer.left, outer.bottom - outer.top, nullptr, nullptr,
                              description.hInstance, this);
  }
  Win32Window(const Win32Window&) = delete;
  Win32Window& operator=(const Win32Window&) = delete;
  ~Win32Window() override { DestroyWindow(window_); }

  [[nodiscard]] bool opened() const { return window_ != nullptr; }
  [[nodiscard]] void* handle() const override { return window_; }
  void setTitle(const char* title) override { SetWindowTextA(window_, title); }

  void sendKey(Key key, bool down) override {
    PostMessageA(window_, down ? WM_KEYDOWN : WM_KEYUP, codes[static_cast<std::size_t>(key)], 0);
  }
  void sendMouse(Point at) override { PostMessageA(window_, WM_MOUSEMOVE, 0, packed(at)); }
  void sendButton(Point at, bool down) override {
    PostMessageA(window_, down ? WM_LBUTTONDOWN : WM_LBUTTONUP, 0, packed(at));
  }

private:
  void receive() override {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
  }

  static LRESULT CALLBACK receiveMessage(HWND window, UINT message, WPARAM word, LPARAM data) {
    if (message == WM_NCCREATE)
      SetWindowLongPtrA(window, GWLP_USERDATA,
                        reinterpret_cast<LONG_PTR>(reinterpret_cast<CREATESTRUCTA*>(data)->lpCreateParams));
    auto* self = reinterpret_cast<Win32Window*>(GetWindowLongPtrA(window, GWLP_USERDATA));
    if (self != nullptr && self->handleMessage(message, word, data)) return 0;
    return DefWindowProcA(window, message, word, data);
  }

  bool handleMessage(UINT message, WPARAM word, LPARAM data) {
    switch (message) {
      case WM_CLOSE:
        close();
        return true;
      case WM_LBUTTONDOWN:
      case WM_LBUTTONUP:
        mouseDown = message == WM_LBUTTONDOWN;
        mouse = place(data);
        return true;
      case WM_MOUSEMOVE:
        mouse = place(data);
        return true;
      case WM_KEYDOWN:
      case WM_KEYUP: {
        const auto found = std::find(codes.begin(), codes.end(), word);
        if (found == codes.end()) return false;
        const auto key = static_cast<Key>(found - codes.begin());
        if (message == WM_KEYDOWN)
          press(key, (data & (1 << 30)) != 0);
        else
          hold(key, false);
        return true;
      }
      case WM_KILLFOCUS:
        keys = {};
        return true;
      default:
        return false;
    }
  }

  HWND window_ = nullptr;
};

}  // namespace

std::unique_ptr<Window> openWindow(int width, int height) {
  auto window = std::make_unique<Win32Window>(width, height);
  if (!window->opened()) return nullptr;
  return window;
}

double secondsNow() {
  LARGE_INTEGER count;
  LARGE_INTEGER frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

void sleepFor(int milliseconds) { Sleep(static_cast<DWORD>(milliseconds)); }

}  // namespace demo
