// SDL2 as loaded at run time: the library neither links nor needs it until a screen does.
// SPDX-License-Identifier: MIT
#pragma once

#include <SDL.h>

namespace kx::platform {

// clang-format off
#define KX_SDL_FUNCTIONS(use)       \
  use(SDL_GetCurrentVideoDriver)    \
  use(SDL_GetDesktopDisplayMode)    \
  use(SDL_GetDisplayBounds)         \
  use(SDL_GetDisplayMode)           \
  use(SDL_GetHint)                  \
  use(SDL_GetNumDisplayModes)       \
  use(SDL_GetWindowFlags)           \
  use(SDL_GetWindowFromID)          \
  use(SDL_GetWindowID)              \
  use(SDL_GetWindowPosition)        \
  use(SDL_GetWindowSize)            \
  use(SDL_GetWindowSurface)         \
  use(SDL_SetHintWithPriority)      \
  use(SDL_SetWindowFullscreen)      \
  use(SDL_SetWindowPosition)        \
  use(SDL_SetWindowSize)            \
  use(SDL_UpdateWindowSurfaceRects) \
  use(SDL_VideoInit)                \
  use(SDL_VideoQuit)
// clang-format on

/// The functions used, under their own names.
struct SdlLibrary {
#define KX_SDL_MEMBER(function) decltype(&::function) function;
  KX_SDL_FUNCTIONS(KX_SDL_MEMBER)
#undef KX_SDL_MEMBER
};

/// The process's SDL2, the application's own copy when it has one; null when there is none.
const SdlLibrary* sdlLibrary();

/// SDL's video subsystem for as long as this lives: the application's, or else one of our own that ends with it.
class VideoSession {
public:
  VideoSession();
  ~VideoSession();
  VideoSession(const VideoSession&) = delete;
  VideoSession& operator=(const VideoSession&) = delete;

  [[nodiscard]] bool running() const { return running_; }

private:
  bool own_ = false;
  bool running_ = false;
};

}  // namespace kx::platform
