// SPDX-License-Identifier: MIT
#include <windows.h>

#include "window.h"

namespace demo {

namespace {

class Win32Window final : public Window {
public:
  Win32Window(int width, int height) {
    WNDCLASSA description{};
    description.lpfnWndProc = receive;
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

  Events poll() override {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
      TranslateMessage(&message);
      DispatchMessageA(&message);
    }
    const Events seen = events_;
    events_ = {};
    return seen;
  }

private:
  static LRESULT CALLBACK receive(HWND window, UINT message, WPARAM word, LPARAM data) {
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
        events_.quit = true;
        return true;
      case WM_LBUTTONDOWN:
        mouseDown = true;
        return true;
      case WM_LBUTTONUP:
        mouseDown = false;
        return true;
      case WM_MOUSEMOVE:
        mouseX = static_cast<short>(LOWORD(data));
        mouseY = static_cast<short>(HIWORD(data));
        return true;
      case WM_KEYDOWN:
        if ((data & (1 << 30)) == 0) key(word);
        hold(word, true);
        return true;
      case WM_KEYUP:
        hold(word, false);
        return true;
      case WM_KILLFOCUS:
        keys = {};
        return true;
      default:
        return false;
    }
  }

  void hold(WPARAM code, bool down) {
    switch (code) {
      case VK_LEFT:
        keys.left = down;
        break;
      case VK_RIGHT:
        keys.right = down;
        break;
      case VK_UP:
        keys.up = down;
        break;
      case VK_DOWN:
        keys.down = down;
        break;
      case VK_SPACE:
        keys.space = down;
        break;
      default:
        break;
    }
  }

  void key(WPARAM code) {
    switch (code) {
      case VK_ESCAPE:
        events_.quit = true;
        break;
      case VK_RIGHT:
      case VK_RETURN:
        events_.next = true;
        break;
      case VK_LEFT:
        events_.previous = true;
        break;
      case VK_SPACE:
        events_.pause = true;
        break;
      case 'F':
        events_.fullScreen = true;
        break;
      case '1':
      case '2':
      case '3':
        events_.buffers = static_cast<int>(code) - '0';
        break;
      default:
        break;
    }
  }

  HWND window_ = nullptr;
  Events events_;
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
