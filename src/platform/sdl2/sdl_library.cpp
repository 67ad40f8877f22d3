// Loading SDL2 and starting its video.
// SPDX-License-Identifier: MIT
#include "sdl_library.h"

#include <cstdlib>
#include <type_traits>

#include "platform/platform.h"

namespace kx::platform {

namespace {

bool loadFunctions(SdlLibrary& library) {
  // The loader hands out the copy that the application uses already.
  const Module module("libSDL2-2.0.so.0");
  if (!module.loaded()) return false;
  bool complete = true;
  const auto load = [&](auto& function, const char* name) {
    function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(module.symbol(name));
    complete = complete && function != nullptr;
  };
#define KX_SDL_LOAD(function) load(library.function, #function);
  KX_SDL_FUNCTIONS(KX_SDL_LOAD)
#undef KX_SDL_LOAD
  return complete;
}

bool isSet(const char* variable) { return std::getenv(variable) != nullptr; }

/// Starts video only with a driver that the environment names or has a display for: SDL's own search among all of its
/// drivers prints on the way.
bool startVideo(const SdlLibrary& sdl) {
  if (isSet("SDL_VIDEODRIVER")) return sdl.SDL_VideoInit(nullptr) == 0;
  return (isSet("DISPLAY") && sdl.SDL_VideoInit("x11") == 0) ||
         (isSet("WAYLAND_DISPLAY") && isSet("XDG_RUNTIME_DIR") && sdl.SDL_VideoInit("wayland") == 0);
}

}  // namespace

const SdlLibrary* sdlLibrary() {
  static SdlLibrary library{};
  static const bool complete = loadFunctions(library);
  return complete ? &library : nullptr;
}

VideoSession::VideoSession() {
  const SdlLibrary* sdl = sdlLibrary();
  if (sdl == nullptr) return;
  running_ = sdl->SDL_GetCurrentVideoDriver() != nullptr;
  if (running_) return;
  own_ = running_ = startVideo(*sdl);
}

VideoSession::~VideoSession() {
  if (own_) sdlLibrary()->SDL_VideoQuit();
}

}  // namespace kx::platform
