// Presenting a frame in an SDL window: KX_flip, and SDL's own blit to the window's surface. With an X server the upload
// is real (its client's part is counted), with SDL's dummy driver only the conversion is. SPDX-License-Identifier: MIT
#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "../own_bitmaps.h"
#include "../rows.h"

namespace {

using namespace kxbench;

SDL_Window* makeWindow() {
  if (std::getenv("DISPLAY") == nullptr) setenv("SDL_VIDEODRIVER", "dummy", 0);
  if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0) return nullptr;
  return SDL_CreateWindow("kxbench", 0, 0, frameWidth, frameHeight, SDL_WINDOW_BORDERLESS);
}

/// The window of all rows, made when the first one runs; null without any video.
SDL_Window* window() {
  static SDL_Window* const made = makeWindow();
  return made;
}

class OwnPresenting {
public:
  explicit OwnPresenting(std::uint32_t format, std::int32_t width = frameWidth, std::int32_t height = frameHeight) {
    if (window() == nullptr) return;
    methods_.version = 0x10000;
    require(KX_createScreen(&screen_, nullptr, 0, &methods_), "screen");
    require(KX_setMode(screen_, window(), KX_MODE_WINDOWED, nullptr), "mode");
    // A window's buffers are always 5-5-5; presenting goes by what the front buffer says.
    picture_ = makeBitmap(makePicture(format, 1, width, height));
    windowBuffer_ = screen_->front;
    screen_->front = screen_->back = picture_.get();
  }

  ~OwnPresenting() {
    if (screen_ == nullptr) return;
    screen_->front = screen_->back = windowBuffer_;
    KX_deleteScreen(screen_);
  }

  OwnPresenting(const OwnPresenting&) = delete;
  OwnPresenting& operator=(const OwnPresenting&) = delete;

  void run() {
    if (screen_ != nullptr) require(KX_flip(screen_, 0), "flip");
  }

private:
  ScreenMethods methods_{};
  Screen* screen_ = nullptr;
  Bitmap* windowBuffer_ = nullptr;
  OwnedBitmap picture_;
};

class SdlPresenting {
public:
  explicit SdlPresenting(std::uint32_t format) : picture_(makePicture(format, 1)) {
    constexpr Uint32 formats[] = {SDL_PIXELFORMAT_RGB555, SDL_PIXELFORMAT_RGB565, SDL_PIXELFORMAT_BGR24};
    frame_ = SDL_CreateRGBSurfaceWithFormatFrom(picture_.pixels(), frameWidth, frameHeight, 8 * picture_.pixelBytes(),
                                                picture_.pitch(), formats[format - KX_FORMAT_555]);
  }

  ~SdlPresenting() { SDL_FreeSurface(frame_); }

  SdlPresenting(const SdlPresenting&) = delete;
  SdlPresenting& operator=(const SdlPresenting&) = delete;

  void run() {
    if (window() == nullptr) return;
    SDL_UpperBlit(frame_, nullptr, SDL_GetWindowSurface(window()), nullptr);
    SDL_UpdateWindowSurface(window());
  }

private:
  Picture picture_;
  SDL_Surface* frame_;
};

template <typename Presenting>
void addRow(std::vector<Row>& rows, const char* contender, std::uint32_t format) {
  constexpr std::int64_t pixels = std::int64_t{frameWidth} * frameHeight;
  rows.push_back({std::string("n.present.") + depthName(format), contender, pixels, pixels * 4,
                  [format, presenting = std::make_shared<std::unique_ptr<Presenting>>()] {
                    if (!*presenting) *presenting = std::make_unique<Presenting>(format);
                    (*presenting)->run();
                  }});
}

const Group present([](std::vector<Row>& rows) {
  for (const std::uint32_t format : {KX_FORMAT_555, KX_FORMAT_565, KX_FORMAT_888}) {
    addRow<OwnPresenting>(rows, "kx", format);
    addRow<SdlPresenting>(rows, "sdl", format);
  }
  rows.push_back({"n.call.flip", "kx", 1, 1, [presenting = std::make_shared<std::unique_ptr<OwnPresenting>>()] {
                    if (!*presenting) *presenting = std::make_unique<OwnPresenting>(KX_FORMAT_565, 1, 1);
                    (*presenting)->run();
                  }});
});

}  // namespace
