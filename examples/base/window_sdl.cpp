// SPDX-License-Identifier: MIT
#include <SDL.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "window.h"

namespace demo {

namespace {

/// In the order of Key.
constexpr std::array<SDL_Keycode, keyCount> codes{SDLK_ESCAPE, SDLK_RETURN, SDLK_LEFT, SDLK_RIGHT, SDLK_UP, SDLK_DOWN,
                                                  SDLK_SPACE,  SDLK_f,      SDLK_1,    SDLK_2,     SDLK_3};

class SdlWindow final : public Window {
public:
  explicit SdlWindow(SDL_Window* window) : window_(window) {}
  SdlWindow(const SdlWindow&) = delete;
  SdlWindow& operator=(const SdlWindow&) = delete;
  ~SdlWindow() override {
    SDL_DestroyWindow(window_);
    SDL_Quit();
  }

  [[nodiscard]] void* handle() const override { return window_; }
  void setTitle(const char* title) override { SDL_SetWindowTitle(window_, title); }

  void sendKey(Key key, bool down) override {
    SDL_Event event{};
    event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
    event.key.keysym.sym = codes[static_cast<std::size_t>(key)];
    SDL_PushEvent(&event);
  }
  void sendMouse(Point at) override {
    SDL_Event event{};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = at.x;
    event.motion.y = at.y;
    SDL_PushEvent(&event);
  }
  void sendButton(Point at, bool down) override {
    SDL_Event event{};
    event.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
    event.button.button = SDL_BUTTON_LEFT;
    event.button.x = at.x;
    event.button.y = at.y;
    SDL_PushEvent(&event);
  }

private:
  void receive() override {
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) handle(event);
  }

  void handle(const SDL_Event& event) {
    switch (event.type) {
      case SDL_QUIT:
        close();
        break;
      case SDL_KEYDOWN:
      case SDL_KEYUP: {
        const auto found = std::find(codes.begin(), codes.end(), event.key.keysym.sym);
        if (found == codes.end()) break;
        const auto key = static_cast<Key>(found - codes.begin());
        if (event.type == SDL_KEYDOWN)
          press(key, event.key.repeat != 0);
        else
          hold(key, false);
        break;
      }
      case SDL_MOUSEMOTION:
        mouse = {event.motion.x, event.motion.y};
        break;
      case SDL_MOUSEBUTTONDOWN:
      case SDL_MOUSEBUTTONUP:
        mouse = {event.button.x, event.button.y};
        if (event.button.button == SDL_BUTTON_LEFT) mouseDown = event.type == SDL_MOUSEBUTTONDOWN;
        break;
      case SDL_WINDOWEVENT:
        if (event.window.event == SDL_WINDOWEVENT_FOCUS_LOST) keys = {};
        break;
      default:
        break;
    }
  }

  SDL_Window* window_;
};

}  // namespace

std::unique_ptr<Window> openWindow(int width, int height) {
  if (SDL_Init(SDL_INIT_VIDEO) != 0) return nullptr;
  // Without a display SDL2 may draw where nobody sees it. That is for those who asked for it by name.
  if (std::getenv("SDL_VIDEODRIVER") == nullptr && std::string_view(SDL_GetCurrentVideoDriver()) == "offscreen") {
    SDL_Quit();
    return nullptr;
  }
  SDL_Window* window = SDL_CreateWindow("kxgraphic", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, width, height, 0);
  if (window == nullptr) return nullptr;
  return std::make_unique<SdlWindow>(window);
}

double secondsNow() {
  return static_cast<double>(SDL_GetPerformanceCounter()) / static_cast<double>(SDL_GetPerformanceFrequency());
}

void sleepFor(int milliseconds) { SDL_Delay(static_cast<Uint32>(milliseconds)); }

}  // namespace demo
