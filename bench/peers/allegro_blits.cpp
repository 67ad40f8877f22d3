// Allegro 4: copies, its colour key, nearest scaling, constant alpha of sprites.
// SPDX-License-Identifier: MIT
#include "../blits.h"
#include "allegro_bitmaps.h"

namespace {

using namespace kxbench;

/// What Allegro skips: pink, 0 in 8 bits.
std::uint32_t keyOf(std::uint32_t format) { return format <= 4 ? 0 : pixelOf(format, 255, 0, 255); }

struct AllegroBlit {
  explicit AllegroBlit(const BlitWork& given) : work(given) {
    startAllegro();
    target = makeAllegroBitmap(work.makeTarget());
    source = makeAllegroBitmap(work.makeSource(keyOf(work.source)));
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
  AllegroBitmap target, source;
  PALETTE palette = {};
};

const Group peer([](std::vector<Row>& rows) {
  addWorks<BlitWork>(
      rows, blitWorks(), "allegro",
      [](const BlitWork& work) {
        return work.depth == Depth::None && work.blend != Blend::Map &&
               !(work.blend == Blend::Constant && (work.stretches() || work.target == 3));
      },
      [](const BlitWork& work) -> std::function<void()> {
        return [blit = std::make_shared<AllegroBlit>(work)] { blit->run(); };
      });
});

}  // namespace
