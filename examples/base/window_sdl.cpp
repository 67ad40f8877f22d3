// SPDX-License-Identifier: MIT
#include <SDL.h>

#include <cstdlib>
#include <string_view>

#include "window.h"

namespace demo {

namespace {

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

  Events poll() override {
    Events events;
    SDL_Event event;
    while (SDL_PollEvent(&event) != 0) {
      if (event.type == SDL_QUIT) events.quit = true;
      if (event.type == SDL_KEYDOWN && event.key.repeat == 0) key(event.key.keysym.sym, events);
    }
    mouseDown = (SDL_GetMouseState(&mouseX, &mouseY) & SDL_BUTTON_LMASK) != 0;
    const Uint8* held = SDL_GetKeyboardState(nullptr);
    keys = {held[SDL_SCANCODE_LEFT] != 0, held[SDL_SCANCODE_RIGHT] != 0, held[SDL_SCANCODE_UP] != 0,
            held[SDL_SCANCODE_DOWN] != 0, held[SDL_SCANCODE_SPACE] != 0};
    return events;
  }

private:
  static void key(SDL_Keycode code, Events& events) {
    switch (code) {
      case SDLK_ESCAPE:
        events.quit = true;
        break;
      case SDLK_RIGHT:
      case SDLK_RETURN:
        events.next = true;
        break;
      case SDLK_LEFT:
        events.previous = true;
        break;
      case SDLK_SPACE:
        events.pause = true;
        break;
      case SDLK_f:
        events.fullScreen = true;
        break;
      case SDLK_1:
        events.buffers = 1;
        break;
      case SDLK_2:
        events.buffers = 2;
        break;
      case SDLK_3:
        events.buffers = 3;
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
