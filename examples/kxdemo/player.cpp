// SPDX-License-Identifier: MIT
#include "player.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>

#include "display.h"
#include "text.h"

namespace demo {

namespace {

class Show {
public:
  Show(Window& window, const Image& picture, std::string_view pictureName)
      : window_(window), display_(window), picture_(picture), pictureName_(pictureName) {}

  /// Ends at the user's wish, after a number of frames above 0, or with a script, of which each step is told.
  void run(std::size_t index, int frames, Script* script) {
    index_ = index;
    display_.setMode(2, false);
    output_.modes = display_.modes();
    begin();
    double due = secondsNow();
    for (int shown = 0; frames == 0 || shown < frames; ++shown) {
      const double started = secondsNow();
      const std::string word = script != nullptr ? script->play(window_) : "";
      const Events events = window_.poll();
      if (events.quit) break;
      obey(events);
      drawFrame();
      const double drawn = secondsNow();
      display_.present(canvas_, 0, 0, frameWidth, frameHeight);
      count(drawn - started, secondsNow() - drawn);
      if (!word.empty()) tell(word);
      if (script != nullptr && script->over()) break;

      if (!paused_) seconds_ += secondsAFrame;
      // Frames are due at fixed times, so that a late one does not move the next.
      due = std::max(due + secondsAFrame, secondsNow() - secondsAFrame);
      const double left = due - secondsNow();
      if (left > 0) sleepFor(static_cast<int>(std::lround(left * 1000)));
      period_ = period_ * 0.95 + (secondsNow() - started) * 0.05;
    }
    if (frames > 0)
      std::printf("%s: %.2f ms drawing, %.2f ms presenting, %.1f frames a second\n", scenes()[index_].name,
                  drawTime_ * 1000, flipTime_ * 1000, 1 / period_);
  }

private:
  /// What came of a word of the script.
  void tell(const std::string& word) const {
    Point at = window_.mouse;
    display_.place(at.x, at.y);
    std::printf("%-16s %s, %s, %s, %d buffer%s, mouse %d,%d %s\n", word.c_str(), scenes()[index_].name,
                paused_ ? "paused" : "moving", display_.full() ? "full screen" : "window", display_.buffers(),
                display_.buffers() == 1 ? "" : "s", at.x, at.y, window_.mouseDown ? "down" : "up");
  }

  static constexpr double secondsAFrame = 1 / framesASecond;
  static constexpr double secondsAScene = 12;

  /// Averages that follow the last second or so.
  void count(double draw, double flip) {
    drawTime_ = drawTime_ * 0.95 + draw * 0.05;
    flipTime_ = flipTime_ * 0.95 + flip * 0.05;
  }

  void begin() {
    const SceneEntry& entry = scenes()[index_];
    const Material material{picture_, pictureName_, display_.format()};
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
      display_.setMode(events.buffers != 0 ? events.buffers : display_.buffers(), events.fullScreen != display_.full());
      begin();
    }
  }

  void drawFrame() {
    if (!canvas_ || canvas_->format != display_.format())
      canvas_ = makeImage(frameWidth, frameHeight, display_.format());
    Bitmap* canvas = canvas_.get();
    Frame frame{seconds_, window_.mouse.x, window_.mouse.y, window_.mouseDown, &output_};
    display_.place(frame.mouseX, frame.mouseY);
    drawTitled(*scene_, index_, canvas, frame);
    char line[160];
    static_cast<void>(std::snprintf(line, sizeof line, "draw %.2f ms, flip %.2f ms, %.0f frames/s, %d buffer%s",
                                    drawTime_ * 1000, flipTime_ * 1000, 1 / period_, display_.buffers(),
                                    display_.buffers() == 1 ? "" : "s"));
    static constexpr const char* keys = "arrows: scenes   space: pause   1 2 3: buffers   F: full screen   Esc";
    const int y = frameHeight - footHeight;
    KX_CHECK(KX_fillRectAlpha(canvas, 0, y, frameWidth, footHeight, 0, 110));
    drawText(canvas, 10, y + 4, line, colour(canvas, 255, 255, 255));
    drawText(canvas, frameWidth - 10 - textWidth(keys), y + 4, keys, colour(canvas, 170, 180, 200));
  }

  Window& window_;
  Display display_;
  Output output_;
  const Image& picture_;
  std::string_view pictureName_;
  Image canvas_;
  std::unique_ptr<Scene> scene_;
  std::size_t index_ = 0;
  bool paused_ = false;
  double seconds_ = 0;
  bool guided_ = true;
  double drawTime_ = 0;
  double flipTime_ = 0;
  double period_ = secondsAFrame;
};

}  // namespace

bool play(std::size_t index, const Image& picture, std::string_view pictureName, int frames, Script* script) {
  const std::unique_ptr<Window> window = openWindow(frameWidth, frameHeight);
  if (!window) return false;
  Show(*window, picture, pictureName).run(index, frames, script);
  return true;
}

}  // namespace demo
