// The display where there is no Windows: SDL2's first display and the caller's SDL windows. SDL converts and scales
// what it presents, so every size is offered at 16 and at 24 bits, and full screen is a window over the desktop.
// SPDX-License-Identifier: MIT
#include "platform/display.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <iterator>

#include "frame_scaler.h"
#include "pointer_probe.h"
#include "sdl_library.h"

namespace kx::platform {

namespace {

constexpr int firstDisplay = 0;
constexpr std::uint32_t offeredDepths[] = {16, 24};

/// Reading from p does not fault. One system call; window handles are tested rarely.
bool isMapped(const void* p) {
  const auto address = reinterpret_cast<std::uintptr_t>(p);
  const auto pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  unsigned char resident = 0;
  return isReadable(p) && mincore(reinterpret_cast<void*>(address & ~(pageSize - 1)), 1, &resident) == 0;
}

/// What to put back when a window stops being full screen.
struct TakenWindow {
  SDL_Window* window = nullptr;  ///< perhaps gone by now: SDL finds it by its number, or it does not
  Uint32 id = 0;                 ///< 0: none
  Uint32 fullScreenFlags = 0;
  int x = 0, y = 0;
  int width = 0, height = 0;
};

class SdlDisplay final : public Display {
public:
  bool enumerateMode(std::uint32_t number, DisplayMode& mode) override;
  bool currentMode(DisplayMode& mode) override;
  bool changeMode(const DisplayMode& mode, void* window) override;
  bool isWindow(void* window) override;
  Extent clientSize(void* window) override;
  DisplayFormat format() override;
  void present(void* window, const Frame& frame) override;

private:
  struct Size {
    std::int32_t width, height;
    std::uint32_t refresh;
  };

  static constexpr int mostSizes = 500;

  void readSizes();
  bool takeWindow(SDL_Window* window);
  void giveWindowBack();

  Size sizes_[mostSizes] = {};
  int sizeCount_ = 0;
  TakenWindow taken_;
  DisplayMode forced_{};  ///< the mode in force while a window is taken
};

void SdlDisplay::readSizes() {
  sizeCount_ = 0;
  const VideoSession video;
  if (!video.running()) return;
  const SdlLibrary& sdl = *sdlLibrary();
  const int count = sdl.SDL_GetNumDisplayModes(firstDisplay);
  for (int i = 0; i < count && sizeCount_ < mostSizes; ++i) {
    SDL_DisplayMode mode;
    if (sdl.SDL_GetDisplayMode(firstDisplay, i, &mode) != 0 || mode.w <= 0 || mode.h <= 0) continue;
    const Size size = {mode.w, mode.h, static_cast<std::uint32_t>(mode.refresh_rate)};
    // SDL lists a size once for each of its pixel formats.
    const auto isSame = [&](const Size& other) {
      return other.width == size.width && other.height == size.height && other.refresh == size.refresh;
    };
    if (std::none_of(sizes_, sizes_ + sizeCount_, isSame)) sizes_[sizeCount_++] = size;
  }
}

bool SdlDisplay::enumerateMode(std::uint32_t number, DisplayMode& mode) {
  if (number == 0) readSizes();
  constexpr std::uint32_t depths = std::size(offeredDepths);
  if (number / depths >= static_cast<std::uint32_t>(sizeCount_)) return false;
  const Size& size = sizes_[number / depths];
  mode = {size.width, size.height, size.refresh, offeredDepths[number % depths], 0, {}};
  return true;
}

bool SdlDisplay::currentMode(DisplayMode& mode) {
  if (taken_.id != 0) {
    mode = forced_;
    return true;
  }
  const VideoSession video;
  SDL_DisplayMode desktop;
  if (!video.running() || sdlLibrary()->SDL_GetDesktopDisplayMode(firstDisplay, &desktop) != 0) return false;
  const std::uint32_t depth = SDL_BITSPERPIXEL(desktop.format) <= 16 ? 16 : 24;
  mode = {desktop.w, desktop.h, static_cast<std::uint32_t>(desktop.refresh_rate), depth, 0, {}};
  return true;
}

bool SdlDisplay::changeMode(const DisplayMode& mode, void* window) {
  giveWindowBack();
  if (window == nullptr) return true;
  if (!takeWindow(static_cast<SDL_Window*>(window))) return false;
  forced_ = mode;
  return true;
}

/// A window on its own is put over the desktop, and put back, by hand as well: an X server without a window manager
/// makes nothing full screen, and not every driver goes back to the old size.
bool movesAlone(const SdlLibrary& sdl, SDL_Window* window, const TakenWindow& before) {
  return before.fullScreenFlags == 0 && (sdl.SDL_GetWindowFlags(window) & SDL_WINDOW_MAXIMIZED) == 0;
}

bool SdlDisplay::takeWindow(SDL_Window* window) {
  const SdlLibrary& sdl = *sdlLibrary();
  TakenWindow before;
  before.fullScreenFlags = sdl.SDL_GetWindowFlags(window) & SDL_WINDOW_FULLSCREEN_DESKTOP;
  sdl.SDL_GetWindowPosition(window, &before.x, &before.y);
  sdl.SDL_GetWindowSize(window, &before.width, &before.height);
  before.window = window;
  before.id = sdl.SDL_GetWindowID(window);
  taken_ = before;
  SDL_Rect desktop;
  if (movesAlone(sdl, window, before) && sdl.SDL_GetDisplayBounds(firstDisplay, &desktop) == 0) {
    sdl.SDL_SetWindowPosition(window, desktop.x, desktop.y);
    sdl.SDL_SetWindowSize(window, desktop.w, desktop.h);
  }
  if (sdl.SDL_SetWindowFullscreen(window, SDL_WINDOW_FULLSCREEN_DESKTOP) == 0) return true;
  giveWindowBack();
  return false;
}

void SdlDisplay::giveWindowBack() {
  const TakenWindow before = taken_;
  taken_ = {};
  if (before.id == 0) return;
  const SdlLibrary& sdl = *sdlLibrary();
  if (sdl.SDL_GetCurrentVideoDriver() == nullptr) return;
  SDL_Window* window = before.window;
  if (sdl.SDL_GetWindowFromID(before.id) != window) return;
  sdl.SDL_SetWindowFullscreen(window, before.fullScreenFlags);
  if (!movesAlone(sdl, window, before)) return;
  sdl.SDL_SetWindowSize(window, before.width, before.height);
  sdl.SDL_SetWindowPosition(window, before.x, before.y);
}

bool SdlDisplay::isWindow(void* window) {
  // SDL looks for a mark at the start of the record, so this must be readable.
  const SdlLibrary* sdl = sdlLibrary();
  if (sdl == nullptr || sdl->SDL_GetCurrentVideoDriver() == nullptr || !isMapped(window)) return false;
  const Uint32 id = sdl->SDL_GetWindowID(static_cast<SDL_Window*>(window));
  return id != 0 && sdl->SDL_GetWindowFromID(id) == window;
}

Extent SdlDisplay::clientSize(void* window) {
  Extent size{};
  sdlLibrary()->SDL_GetWindowSize(static_cast<SDL_Window*>(window), &size.width, &size.height);
  return size;
}

DisplayFormat SdlDisplay::format() {
  DisplayMode mode{};
  if (!currentMode(mode)) return {};
  return {{mode.width, mode.height}, mode.depth};
}

/// The window's surface in shared memory where the system has it: the renderer that SDL would put behind it otherwise
/// makes some systems create the caller's window anew.
SDL_Surface* plainSurface(const SdlLibrary& sdl, SDL_Window* window) {
  const char* before = sdl.SDL_GetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION);
  if (before == nullptr) sdl.SDL_SetHintWithPriority(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0", SDL_HINT_DEFAULT);
  SDL_Surface* surface = sdl.SDL_GetWindowSurface(window);
  if (before == nullptr) sdl.SDL_SetHintWithPriority(SDL_HINT_FRAMEBUFFER_ACCELERATION, nullptr, SDL_HINT_DEFAULT);
  return surface;
}

void SdlDisplay::present(void* handle, const Frame& frame) {
  if (!isWindow(handle)) return;
  const SdlLibrary& sdl = *sdlLibrary();
  auto* window = static_cast<SDL_Window*>(handle);
  SDL_Surface* surface = plainSurface(sdl, window);
  if (surface == nullptr || surface->w <= 0 || surface->h <= 0) return;

  const SDL_PixelFormat& layout = *surface->format;
  const Canvas canvas = {.pixels = static_cast<std::uint8_t*>(surface->pixels),
                         .size = {surface->w, surface->h},
                         .pitch = surface->pitch,
                         .bytesPerPixel = layout.BytesPerPixel,
                         .red = {layout.Rshift, layout.Rloss},
                         .green = {layout.Gshift, layout.Gloss},
                         .blue = {layout.Bshift, layout.Bloss}};
  SDL_Rect touched = {0, 0, surface->w, surface->h};
  if (sdl.SDL_GetWindowFromID(taken_.id) == window) {
    const Area place = fitFrame(frame.size, canvas.size);
    blackenAround(canvas, place);
    drawFrame(canvas, frame, place);
  } else {
    drawFrame(canvas, frame, {0, 0, frame.size});
    touched.w = std::min(touched.w, frame.size.width);
    touched.h = std::min(touched.h, frame.size.height);
  }
  sdl.SDL_UpdateWindowSurfaceRects(window, &touched, 1);
}

constinit SdlDisplay sdlDisplay;

}  // namespace

Display& systemDisplay() { return sdlDisplay; }

}  // namespace kx::platform
