// A window's screen: mode, buffers, and how a picture gets onto it.
// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "image.h"
#include "window.h"

namespace demo {

/// The screen's functions have no table of the library's own, so the program fills one.
ScreenMethods* screenMethods();

class Display {
public:
  explicit Display(Window& window);
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;
  ~Display();

  /// 1 to 3 buffers, in the window or on the full screen; a desktop without such a mode stays with the window.
  void setMode(int buffers, bool full);

  [[nodiscard]] int buffers() const { return screen_->bufferCount; }
  [[nodiscard]] bool full() const { return full_; }

  /// What KX_getVideoModeList tells.
  [[nodiscard]] std::vector<VideoMode> modes() const;

  /// Format code of the buffers.
  [[nodiscard]] std::uint32_t format() const { return screen_->front->format & KX_FORMAT_CODE_MASK; }

  /// Shows a part of an image in the middle, as large as whole factors allow. Tells where it went: `place` takes a
  /// point of the window to one of the part.
  void present(const Image& image, int left, int top, int width, int height);
  void place(int& x, int& y) const;

private:
  Window& window_;
  Screen* screen_ = nullptr;
  bool full_ = false;
  int shownLeft_ = 0, shownTop_ = 0, shownWidth_ = 1, shownHeight_ = 1, factor_ = 1;
};

}  // namespace demo
