// SPDX-License-Identifier: MIT
#include "player.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "window.h"

namespace demo {

namespace {

/// The screen's functions have no table of the library's own, so the program fills one.
ScreenMethods* screenMethods() {
  static ScreenMethods table = {0x10000,
                                KX_getDriverTechnology,
                                KX_createScreen,
                                KX_deleteScreen,
                                KX_getVideoModeList,
                                KX_setMode,
                                KX_restoreMode,
                                KX_flip,
                                KX_isVerticalBlank,
                                KX_waitForVerticalBlankStart,
                                KX_waitForVerticalBlankEnd};
  return &table;
}

constexpr std::uint32_t windowed = 1;
constexpr std::uint32_t fullScreen = 2;
constexpr std::uint32_t bufferFlags[] = {0, 0x08, 0x10};

class Show {
public:
  Show(Window& window, const Image& picture, std::string_view pictureName)
      : window_(window), picture_(picture), pictureName_(pictureName) {
    KX_CHECK(KX_createScreen(&screen_, nullptr, 0, screenMethods()));
  }
  Show(const Show&) = delete;
  Show& operator=(const Show&) = delete;
  ~Show() { KX_deleteScreen(screen_); }

  void run(std::size_t index, int frames) {
    index_ = index;
    setMode();
    begin();
    for (int shown = 0; frames == 0 || shown < frames; ++shown) {
      const double started = secondsNow();
      const Events events = window_.poll();
      if (events.quit) return;
      obey(events);
      drawFrame();
      const double used = secondsNow() - started;
      frameTime_ = frameTime_ * 0.95 + used * 0.05;
      KX_CHECK(KX_flip(screen_, 0));
      if (!paused_) seconds_ += secondsAFrame;
      const int left = static_cast<int>((secondsAFrame - (secondsNow() - started)) * 1000);
      if (left > 0) sleepFor(left);
    }
  }

private:
  static constexpr double secondsAFrame = 1 / 60.0;

  void setMode() {
    VideoMode mode{frameWidth, frameHeight, 0, KX_FORMAT_555};
    const std::uint32_t flags = (full_ ? fullScreen : windowed) | bufferFlags[buffers_ - 1];
    const std::uint32_t code = KX_setMode(screen_, window_.handle(), flags, &mode);
    if (code != 0 && full_) {
      // A desktop without such a mode: stay in the window.
      full_ = false;
      setMode();
      return;
    }
    check(code, "KX_setMode");
  }

  void begin() {
    const SceneEntry& entry = scenes()[index_];
    const Material material{picture_, pictureName_, screen_->front->format & KX_FORMAT_CODE_MASK};
    scene_.reset();
    sheet_.reset();
    if (entry.moving != nullptr)
      scene_ = entry.moving(material);
    else
      sheet_ = converted(entry.sheet(material), material.format);
    seconds_ = 0;
    window_.setTitle((std::string("kxgraphic - ") + entry.caption).c_str());
  }

  void obey(const Events& events) {
    const std::size_t count = scenes().size();
    if (events.pause) paused_ = !paused_;
    if (events.next || events.previous) {
      index_ = (index_ + (events.next ? 1 : count - 1)) % count;
      begin();
    }
    if (events.buffers != 0 || events.fullScreen) {
      if (events.buffers != 0) buffers_ = events.buffers;
      if (events.fullScreen) full_ = !full_;
      setMode();
      begin();
    }
  }

  /// Scenes have one size; a larger buffer shows them in its middle, sheets shrink into it.
  void drawFrame() {
    Bitmap* back = screen_->back;
    const int width = std::min<int>(frameWidth, back->width);
    const int height = std::min<int>(frameHeight, back->height);
    const int left = (back->width - width) / 2;
    const int top = (back->height - height) / 2;
    if (!canvas_ || canvas_->format != (back->format & KX_FORMAT_CODE_MASK))
      canvas_ = makeImage(frameWidth, frameHeight, back->format & KX_FORMAT_CODE_MASK);
    Bitmap* canvas = canvas_.get();
    if (scene_) {
      scene_->draw(canvas, {seconds_, window_.mouseX - left, window_.mouseY - top, window_.mouseDown});
    } else {
      const double factor =
          std::min(frameWidth / static_cast<double>(sheet_->width), frameHeight / static_cast<double>(sheet_->height));
      const int w = static_cast<int>(sheet_->width * factor);
      const int h = static_cast<int>(sheet_->height * factor);
      KX_CHECK(KX_fillRect(canvas, 0, 0, frameWidth, frameHeight, 0));
      KX_CHECK(KX_bltStretch(canvas, (frameWidth - w) / 2, (frameHeight - h) / 2, w, h, sheet_.get(), 0, 0,
                             sheet_->width, sheet_->height));
    }
    char line[128];
    std::snprintf(line, sizeof line,
                  "%.2f ms a frame, %d buffers - arrows: scenes, space: pause, 1 2 3: buffers, F, Esc",
                  frameTime_ * 1000, screen_->bufferCount);
    drawText(canvas, 8, frameHeight - 14, line, colour(canvas, 255, 255, 255));
    KX_CHECK(KX_bltCopy(back, left, top, canvas, 0, 0, width, height));
  }

  Window& window_;
  const Image& picture_;
  std::string_view pictureName_;
  Screen* screen_ = nullptr;
  Image canvas_;
  Image sheet_;
  std::unique_ptr<Scene> scene_;
  std::size_t index_ = 0;
  int buffers_ = 2;
  bool full_ = false;
  bool paused_ = false;
  double seconds_ = 0;
  double frameTime_ = 0;
};

}  // namespace

bool play(std::size_t index, const Image& picture, std::string_view pictureName, int frames) {
  const std::unique_ptr<Window> window = openWindow(frameWidth, frameHeight);
  if (!window) return false;
  Show(*window, picture, pictureName).run(index, frames);
  return true;
}

}  // namespace demo
