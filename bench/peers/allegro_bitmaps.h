// Allegro 4 without a display, and its bitmaps.
// SPDX-License-Identifier: MIT
#pragma once

#define ALLEGRO_NO_MAGIC_MAIN
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#include <allegro.h>
#pragma GCC diagnostic pop

#include <cstring>
#include <memory>

#include "../pictures.h"

namespace kxbench {

struct DestroyBitmap {
  void operator()(BITMAP* bitmap) const { destroy_bitmap(bitmap); }
};
using AllegroBitmap = std::unique_ptr<BITMAP, DestroyBitmap>;

inline int depthOf(std::uint32_t format) {
  constexpr int depths[] = {8, 8, 15, 16, 24};
  return depths[format - 3];
}

inline void startAllegro() {
  static const bool started = [] {
    if (install_allegro(SYSTEM_NONE, &errno, nullptr) != 0) return false;
    // The channels where the library has them; key colours follow.
    _rgb_r_shift_15 = 10, _rgb_g_shift_15 = 5, _rgb_b_shift_15 = 0;
    _rgb_r_shift_16 = 11, _rgb_g_shift_16 = 5, _rgb_b_shift_16 = 0;
    _rgb_r_shift_24 = 16, _rgb_g_shift_24 = 8, _rgb_b_shift_24 = 0;
    set_color_conversion(COLORCONV_TOTAL);
    return true;
  }();
  (void)started;
}

inline AllegroBitmap makeAllegroBitmap(Picture picture) {
  AllegroBitmap bitmap(create_bitmap_ex(depthOf(picture.format()), picture.width(), picture.height()));
  for (std::int32_t y = 0; y < picture.height(); ++y)
    std::memcpy(bitmap->line[y], picture.row(y), static_cast<std::size_t>(picture.width() * picture.pixelBytes()));
  return bitmap;
}

}  // namespace kxbench
