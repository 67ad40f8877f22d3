// SPDX-License-Identifier: MIT
#include "player.h"

#include <algorithm>
#include <cstdio>
#include <string>

#include "text.h"
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
    double due = secondsNow();
    for (int shown = 0; frames == 0 || shown < frames; ++shown) {
      const double started = secondsNow();
      const Events events = window_.poll();
      if (events.quit) break;
      obey(events);
      drawFrame();
      const double drawn = secondsNow();
      KX_CHECK(KX_flip(screen_, 0));
      count(drawn - started, secondsNow() - drawn);
      if (!paused_) seconds_ += secondsAFrame;
      // Frames are due at fixed times, so that a late one does not move the next.
      due = std::max(due + secondsAFrame, secondsNow() - secondsAFrame);
      const double left = due - secondsNow();
      if (left > 0) sleepFor(static_cast<int>(left * 1000 + 0.5));
      period_ = period_ * 0.95 + (secondsNow() - started) * 0.05;
    }
    if (frames > 0)
      std::printf("%s: %.2f ms drawing, %.2f ms presenting, %.1f frames a second\n", scenes()[index_].name,
                  drawTime_ * 1000, flipTime_ * 1000, 1 / period_);
  }

private:
  static constexpr double secondsAFrame = 1 / framesASecond;
  static constexpr double secondsAScene = 12;

  /// Averages that follow the last second or so.
  void count(double draw, double flip) {
    drawTime_ = drawTime_ * 0.95 + draw * 0.05;
    flipTime_ = flipTime_ * 0.95 + flip * 0.05;
  }

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
    scene_ = entry.make(material);
    seconds_ = 0;
    window_.setTitle((std::string("kxgraphic - ") + entry.title).c_str());
  }

  void obey(const Events& events) {
    const std::size_t count = scenes().size();
    if (events.pause) paused_ = !paused_;
    // The tour moves on by itself until the visitor takes the lead.
    guided_ = guided_ && !(events.next || events.previous || events.pause || window_.mouseDown);
    const bool over = guided_ && seconds_ > secondsAScene;
    if (events.next || events.previous || over) {
      index_ = (index_ + (events.previous ? count - 1 : 1)) % count;
      begin();
    }
    if (events.buffers != 0 || events.fullScreen) {
      if (events.buffers != 0) buffers_ = events.buffers;
      if (events.fullScreen) full_ = !full_;
      setMode();
      begin();
    }
  }

  /// Scenes have one size; a larger buffer shows them in its middle.
  void drawFrame() {
    Bitmap* back = screen_->back;
    const int width = std::min<int>(frameWidth, back->width);
    const int height = std::min<int>(frameHeight, back->height);
    const int left = (back->width - width) / 2;
    const int top = (back->height - height) / 2;
    if (!canvas_ || canvas_->format != (back->format & KX_FORMAT_CODE_MASK))
      canvas_ = makeImage(frameWidth, frameHeight, back->format & KX_FORMAT_CODE_MASK);
    Bitmap* canvas = canvas_.get();
    drawTitled(*scene_, index_, canvas,
               {seconds_, std::clamp(window_.mouseX - left, 0, frameWidth - 1),
                std::clamp(window_.mouseY - top, 0, frameHeight - 1), window_.mouseDown});
    char line[160];
    std::snprintf(line, sizeof line, "draw %.2f ms, flip %.2f ms, %.0f frames/s, %d buffer%s", drawTime_ * 1000,
                  flipTime_ * 1000, 1 / period_, screen_->bufferCount, screen_->bufferCount == 1 ? "" : "s");
    static constexpr const char* keys = "arrows: scenes   space: pause   1 2 3: buffers   F: full screen   Esc";
    const int y = frameHeight - footHeight;
    KX_CHECK(KX_fillRectAlpha(canvas, 0, y, frameWidth, footHeight, 0, 110));
    drawText(canvas, 10, y + 4, line, colour(canvas, 255, 255, 255));
    drawText(canvas, frameWidth - 10 - textWidth(keys), y + 4, keys, colour(canvas, 170, 180, 200));
    KX_CHECK(KX_bltCopy(back, left, top, canvas, 0, 0, width, height));
  }

  Window& window_;
  const Image& picture_;
  std::string_view pictureName_;
  Screen* screen_ = nullptr;
  Image canvas_;
  std::unique_ptr<Scene> scene_;
  std::size_t index_ = 0;
  int buffers_ = 2;
  bool full_ = false;
  bool paused_ = false;
  double seconds_ = 0;
  bool guided_ = true;
  double drawTime_ = 0;
  double flipTime_ = 0;
  double period_ = secondsAFrame;
};

}  // namespace

bool play(std::size_t index, const Image& picture, std::string_view pictureName, int frames) {
  const std::unique_ptr<Window> window = openWindow(frameWidth, frameHeight);
  if (!window) return false;
  Show(*window, picture, pictureName).run(index, frames);
  return true;
}

}  // namespace demo
