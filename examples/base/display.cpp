// SPDX-License-Identifier: MIT
#include "display.h"

#include <algorithm>

#include <kxgraphic/mmgr.h>

namespace demo {

namespace {

constexpr std::uint32_t bufferFlags[] = {0, KX_MODE_TWO_BUFFERS, KX_MODE_THREE_BUFFERS};

}  // namespace

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

Display::Display(Window& window) : window_(window) { KX_CHECK(KX_createScreen(&screen_, nullptr, 0, screenMethods())); }

Display::~Display() { KX_deleteScreen(screen_); }

void Display::setMode(int buffers, bool full) {
  VideoMode mode{640, 480, 0, KX_FORMAT_555};
  const std::uint32_t kind = full ? KX_MODE_FULL_SCREEN : KX_MODE_WINDOWED;
  const std::uint32_t code = KX_setMode(screen_, window_.handle(), kind | bufferFlags[buffers - 1], &mode);
  if (code != 0 && full) return setMode(buffers, false);
  check(code, "KX_setMode");
  full_ = full;
}

void Display::present(const Image& image, int left, int top, int width, int height) {
  Bitmap* back = screen_->back;
  factor_ = std::max(1, std::min(back->width / width, back->height / height));
  shownWidth_ = std::min(width, back->width / factor_);
  shownHeight_ = std::min(height, back->height / factor_);
  shownLeft_ = (back->width - shownWidth_ * factor_) / 2;
  shownTop_ = (back->height - shownHeight_ * factor_) / 2;
  if (factor_ == 1)
    KX_CHECK(KX_bltCopy(back, shownLeft_, shownTop_, image.get(), left, top, shownWidth_, shownHeight_));
  else
    KX_CHECK(KX_bltStretch(back, shownLeft_, shownTop_, shownWidth_ * factor_, shownHeight_ * factor_, image.get(),
                           left, top, shownWidth_, shownHeight_));
  KX_CHECK(KX_flip(screen_, 0));
}

void Display::place(int& x, int& y) const {
  x = std::clamp((x - shownLeft_) / factor_, 0, shownWidth_ - 1);
  y = std::clamp((y - shownTop_) / factor_, 0, shownHeight_ - 1);
}

std::vector<VideoMode> Display::modes() const {
  VideoMode* list = nullptr;
  std::int32_t count = 0;
  KX_CHECK(KX_getVideoModeList(screen_, &list, &count));
  std::vector<VideoMode> modes(list, list + count);
  mmgr_free(list);
  return modes;
}

}  // namespace demo
