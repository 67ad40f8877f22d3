// Allegro 4: copies, its colour key, nearest scaling, constant alpha of sprites.
// SPDX-License-Identifier: MIT
#define ALLEGRO_NO_MAGIC_MAIN
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"
#include <allegro.h>
#pragma GCC diagnostic pop

#include <cstring>
#include <memory>

#include "../blits.h"

namespace {

using namespace kxbench;

struct Destroy {
  void operator()(BITMAP* bitmap) const { destroy_bitmap(bitmap); }
};
using Owned = std::unique_ptr<BITMAP, Destroy>;

int depthOf(std::uint32_t format) {
  constexpr int depths[] = {8, 8, 15, 16, 24};
  return depths[format - 3];
}

void start() {
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

Owned makeBitmap(Picture picture) {
  Owned bitmap(create_bitmap_ex(depthOf(picture.format()), picture.width(), picture.height()));
  for (std::int32_t y = 0; y < picture.height(); ++y)
    std::memcpy(bitmap->line[y], picture.row(y), static_cast<std::size_t>(picture.width() * picture.pixelBytes()));
  return bitmap;
}

/// What Allegro skips: pink, 0 in 8 bits.
std::uint32_t keyOf(std::uint32_t format) { return format <= 4 ? 0 : pixelOf(format, 255, 0, 255); }

struct AllegroBlit {
  explicit AllegroBlit(const BlitWork& given) : work(given) {
    start();
    target = makeBitmap(work.makeTarget());
    source = makeBitmap(work.makeSource(keyOf(work.source)));
    if (work.source == 4) {
      const Bytes bytes = makePalette();
      for (std::size_t i = 0; i < 256; ++i)
        palette[i] = {static_cast<unsigned char>(bytes[3 * i + 2] / 4),
                      static_cast<unsigned char>(bytes[3 * i + 1] / 4), static_cast<unsigned char>(bytes[3 * i] / 4),
                      0};
    }
  }

  void run() {
    if (work.source == 4) select_palette(palette);
    set_color_depth(depthOf(work.target));
    if (work.blend == Blend::Constant) set_trans_blender(0, 0, 0, 255 - work.alpha);
    BITMAP *s = source.get(), *t = target.get();
    for (const Move& m : work.moves) {
      if (work.stretches()) {
        const auto blit = work.keyed ? masked_stretch_blit : stretch_blit;
        blit(s, t, 0, 0, m.from.width, m.from.height, 0, 0, m.to.width, m.to.height);
      } else if (work.blend == Blend::Constant) {
        draw_trans_sprite(t, s, m.to.x, m.to.y);
      } else {
        const auto blitter = work.keyed ? masked_blit : blit;
        blitter(s, t, 0, 0, m.to.x, m.to.y, m.to.width, m.to.height);
      }
    }
  }

  const BlitWork& work;
  Owned target, source;
  PALETTE palette = {};
};

const Group peer([](std::vector<Row>& rows) {
  addBlits(
      rows, "allegro",
      [](const BlitWork& work) {
        return work.depth == Depth::None && work.blend != Blend::Map &&
               !(work.blend == Blend::Constant && (work.stretches() || work.target == 3));
      },
      [](const BlitWork& work) -> std::function<void()> {
        return [blit = std::make_shared<AllegroBlit>(work)] { blit->run(); };
      });
});

}  // namespace
