// Screens: how frames reach the display, shown as small displays; the list of modes is that of the real one.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <string>

#include "display.h"
#include "panels.h"

namespace demo {

namespace {

/// What a gallery shows in place of a display's modes.
constexpr VideoMode usualModes[] = {{320, 240, 0, 5},  {512, 384, 0, 5},   {640, 480, 0, 5},
                                    {800, 600, 0, 5},  {1024, 768, 0, 5},  {1280, 720, 0, 5},
                                    {1600, 900, 0, 5}, {1920, 1080, 0, 5}, {1920, 1200, 0, 5}};

class Screens final : public PanelScene {
public:
  explicit Screens(const Material& material)
      : PanelScene(material),
        picture_(material.covering(frameWide, frameHigh)),
        ball_(makeBall(ballSize, material.format, {250, 200, 40})) {
    Screen* screen = nullptr;
    KX_CHECK(KX_createScreen(&screen, nullptr, 0, screenMethods()));
    screen_.reset(screen);
  }

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;
    const int number = static_cast<int>(t * 3);     // of the frame that is drawn, three a second
    const double part = t * 3 - std::floor(t * 3);  // how much of it is
    const auto drawn = static_cast<int>(part * frameHigh);

    show("One buffer: seen while it is drawn", "KX_setMode, KX_MODE_WINDOWED", [&](Bitmap* field) {
      const Point at{middle, 30};
      monitor(field, at);
      paint(field, at, number - 1, frameHigh);
      paint(field, at, number, drawn);
    });

    show("Two: drawn behind the one that is seen", "KX_flip, KX_MODE_TWO_BUFFERS", [&](Bitmap* field) {
      buffers(field, number, drawn, {"seen", "drawn"});
    });

    show("Three: they go round", "KX_flip, KX_MODE_THREE_BUFFERS", [&](Bitmap* field) {
      buffers(field, number, drawn, {"seen", "drawn", "waits"});
    });

    show(frame.output != nullptr ? "The modes of this display" : "Modes, as a display may have them",
         "KX_getVideoModeList", [&](Bitmap* field) { modes(field, t, frame.output); });

    show("The whole display, and given back", "KX_MODE_FULL_SCREEN, KX_restoreMode",
         [&](Bitmap* field) { fullScreen(field, t); });

    show("Kept for old games: they do not wait", "KX_isVerticalBlank, KX_waitFor...Start, End",
         [&](Bitmap* field) { beam(field, t); });
  }

private:
  static constexpr int frameWide = 96;
  static constexpr int frameHigh = 72;
  static constexpr int ballSize = 22;
  static constexpr int middle = (width - frameWide) / 2;

  /// The first rows of a frame of an animation.
  void paint(Bitmap* field, Point at, int number, int rows) const {
    if (rows <= 0) return;
    KX_CHECK(KX_bltCopy(field, at.x, at.y, picture_.get(), 0, 0, frameWide, rows));
    const int x = 4 + (number % 7 + 7) % 7 * 11;
    const int y = 40 - static_cast<int>(std::lround(34 * std::sin((number % 7 + 7) % 7 * 0.52)));
    const int high = std::min(ballSize, rows - y);
    if (high > 0) KX_CHECK(KX_bltCopyTransparent(field, at.x + x, at.y + y, ball_.get(), 0, 0, ballSize, high));
  }

  /// A case around a frame, and a foot.
  void monitor(Bitmap* field, Point at) const {
    KX_CHECK(KX_fillRect(field, at.x - 7, at.y - 7, frameWide + 14, frameHigh + 14, colour(196, 190, 176)));
    KX_CHECK(KX_fillRect(field, at.x - 2, at.y - 2, frameWide + 4, frameHigh + 4, colour(20, 22, 26)));
    KX_CHECK(KX_fillRect(field, at.x + frameWide / 2 - 12, at.y + frameHigh + 7, 24, 12, colour(150, 144, 132)));
    KX_CHECK(KX_fillRect(field, at.x + frameWide / 2 - 30, at.y + frameHigh + 19, 60, 5, colour(196, 190, 176)));
  }

  /// Buffers below the display: each frame of the animation belongs to the next one.
  void buffers(Bitmap* field, int number, int drawn, std::initializer_list<const char*> roles) const {
    const Point at{middle, 10};
    monitor(field, at);
    paint(field, at, number - 1, frameHigh);
    const auto count = static_cast<int>(roles.size());
    constexpr int wide = 60;
    constexpr int high = 45;
    for (int i = 0; i < count; ++i) {
      // 0 is drawn now, 1 was drawn before and is seen, 2 was drawn before that.
      const int age = ((number - i) % count + count) % count;
      const int x = (width - count * wide - (count - 1) * 6) / 2 + i * (wide + 6);
      const bool seen = age == 1;
      KX_CHECK(KX_fillRect(field, x - 2, 118, wide + 4, high + 4, seen ? colour(255, 214, 110) : colour(90, 100, 120)));
      KX_CHECK(KX_fillRect(scratch_.get(), 0, 0, frameWide, frameHigh, colour(24, 27, 34)));
      if (age == 0 && number >= count) paint(scratch_.get(), {}, number - count, frameHigh);
      paint(scratch_.get(), {}, number - age, age == 0 ? drawn : frameHigh);
      KX_CHECK(KX_bltStretch(field, x, 120, wide, high, scratch_.get(), 0, 0, frameWide, frameHigh));
      const char* role = roles.begin()[seen ? 0 : age == 0 ? 1 : 2];
      drawText(field, x + (wide - textWidth(role)) / 2, 170, role,
               seen ? colour(255, 214, 110) : colour(205, 212, 224));
    }
  }

  /// Sizes as nested rectangles; one after the other is named.
  void modes(Bitmap* field, double t, const Output* output) const {
    std::vector<VideoMode> sizes;
    const auto begin = output != nullptr ? output->modes.data() : usualModes;
    const auto end = output != nullptr ? begin + output->modes.size() : std::end(usualModes);
    for (const VideoMode* mode = begin; mode != end; ++mode)
      if (std::none_of(sizes.begin(), sizes.end(), [&](const VideoMode& other) {
            return other.width == mode->width && other.height == mode->height;
          }))
        sizes.push_back(*mode);
    if (sizes.empty()) return drawText(field, 10, 80, "none of 16 or 24 bits", colour(205, 212, 224));
    std::sort(sizes.begin(), sizes.end(),
              [](const VideoMode& a, const VideoMode& b) { return a.width * a.height > b.width * b.height; });
    const double scale = std::min(184.0 / sizes[0].width, 140.0 / sizes[0].height);
    const std::size_t named = static_cast<std::size_t>(t * 1.5) % sizes.size();
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      const auto w = static_cast<int>(sizes[i].width * scale);
      const auto h = static_cast<int>(sizes[i].height * scale);
      const std::uint32_t shade = rainbow(static_cast<double>(i) / static_cast<double>(sizes.size()));
      KX_CHECK(KX_fillRect(field, 8, 8, w, h, shade));
      KX_CHECK(KX_fillRectAlpha(field, 9, 9, w - 2, h - 2, colour(24, 27, 34), i == named ? 40 : 60));
    }
    const auto w = static_cast<int>(sizes[named].width * scale);
    const auto h = static_cast<int>(sizes[named].height * scale);
    KX_CHECK(KX_fillRectAlpha(field, 8, 8, w, h, colour(255, 255, 255), 150));
    char text[48];
    static_cast<void>(std::snprintf(text, sizeof text, "%d x %d, %u of %u", static_cast<int>(sizes[named].width),
                                    static_cast<int>(sizes[named].height), static_cast<unsigned>(sizes.size() - named),
                                    static_cast<unsigned>(sizes.size())));
    drawText(field, 10, 160, text, colour(255, 255, 255), 2);
  }

  /// A window on a desk that grows over all of it, by a whole factor, and back.
  void fullScreen(Bitmap* field, double t) const {
    constexpr int left = 6, top = 18, wide = 188, high = 141;
    const bool full = std::fmod(t, 4) < 2;
    KX_CHECK(KX_fillRect(field, left - 4, top - 4, wide + 8, high + 8, colour(196, 190, 176)));
    if (full) {
      KX_CHECK(KX_fillRect(field, left, top, wide, high, 0));
      const Point at{left + (wide - frameWide * 3 / 2) / 2, top + (high - frameHigh * 3 / 2) / 2};
      paint(scratch_.get(), {}, static_cast<int>(t * 8), frameHigh);
      KX_CHECK(KX_bltStretch(field, at.x, at.y, frameWide * 3 / 2, frameHigh * 3 / 2, scratch_.get(), 0, 0, frameWide,
                             frameHigh));
      return;
    }
    KX_CHECK(KX_fillRect(field, left, top, wide, high, colour(46, 110, 122)));
    const Point at{left + 58, top + 40};
    for (int i = 0; i < 4; ++i) {
      KX_CHECK(KX_fillRect(field, left + 10, top + 10 + i * 30, 18, 14, colour(226, 214, 170)));
      KX_CHECK(KX_fillRect(field, left + 8, top + 26 + i * 30, 22, 3, colour(214, 224, 230)));
    }
    KX_CHECK(KX_fillRect(field, at.x - 2, at.y - 12, frameWide + 4, frameHigh + 14, colour(205, 200, 190)));
    KX_CHECK(KX_fillRect(field, at.x - 1, at.y - 11, frameWide + 2, 10, colour(36, 60, 130)));
    paint(field, at, static_cast<int>(t * 8), frameHigh);
  }

  /// A beam that writes rows; nobody asks it.
  void beam(Bitmap* field, double t) const {
    const Point at{middle, 30};
    monitor(field, at);
    const double turn = t * 1.5;
    const auto row = static_cast<int>((turn - std::floor(turn)) * (frameHigh + 20));
    paint(field, at, static_cast<int>(turn) - 1, frameHigh);
    paint(field, at, static_cast<int>(turn), std::min(row, frameHigh));
    if (row < frameHigh) KX_CHECK(KX_fillRect(field, at.x, at.y + row, frameWide, 1, colour(255, 255, 255)));
    char text[64];
    static_cast<void>(
        std::snprintf(text, sizeof text, "blank: %u, start: %u, end: %u", unsigned{KX_isVerticalBlank(screen_.get())},
                      KX_waitForVerticalBlankStart(screen_.get()), KX_waitForVerticalBlankEnd(screen_.get())));
    drawText(field, (width - textWidth(text)) / 2, 144, text, colour(255, 214, 110));
  }

  struct ScreenDelete {
    void operator()(Screen* screen) const { KX_deleteScreen(screen); }
  };

  Image picture_;
  Image ball_;
  Image scratch_ = makeImage(frameWide, frameHigh, picture_->format);
  std::unique_ptr<Screen, ScreenDelete> screen_;  ///< without a mode: only to be asked
};

}  // namespace

std::unique_ptr<Scene> makeScreens(const Material& material) { return std::make_unique<Screens>(material); }

}  // namespace demo
