// pixman: copies, blends by a mask, nearest scaling. It has no colour key.
// SPDX-License-Identifier: MIT
#include <pixman.h>

#include <algorithm>
#include <memory>

#include "../blits.h"
#include "../draws.h"

namespace {

using namespace kxbench;

struct Release {
  void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
};
using Image = std::unique_ptr<pixman_image_t, Release>;

Image wrap(Picture& picture) {
  constexpr pixman_format_code_t formats[] = {PIXMAN_a8, PIXMAN_a8, PIXMAN_x1r5g5b5, PIXMAN_r5g6b5, PIXMAN_r8g8b8};
  return Image(pixman_image_create_bits(formats[picture.format() - 3], picture.width(), picture.height(),
                                        reinterpret_cast<std::uint32_t*>(picture.pixels()), picture.pitch()));
}

struct PixmanBlit {
  PixmanBlit(const BlitWork& given, bool ownAlpha)
      : work(given),
        targetPixels(work.makeTarget()),
        sourcePixels(work.makeSource()),
        target(wrap(targetPixels)),
        source(wrap(sourcePixels)) {
    if (work.blend == Blend::Constant) {
      const pixman_color_t weight = {0, 0, 0, static_cast<std::uint16_t>((255 - work.alpha) * 257)};
      mask = Image(pixman_image_create_solid_fill(&weight));
    }
    if (work.blend == Blend::Map) {
      maskPixels = std::make_unique<Picture>(makeAlphaMap(work.map, work.width, work.height));
      for (std::int32_t y = 0; y < work.height; ++y)
        for (std::int32_t x = 0; x < work.width; ++x) maskPixels->set(x, y, 255u - maskPixels->row(y)[x]);
      mask = wrap(*maskPixels);
      if (ownAlpha) {
        Image argb(pixman_image_create_bits(PIXMAN_a8r8g8b8, work.width, work.height, nullptr, 0));
        pixman_image_composite32(PIXMAN_OP_SRC, source.get(), mask.get(), argb.get(), 0, 0, 0, 0, 0, 0, work.width,
                                 work.height);
        source = std::move(argb);
        mask = nullptr;
      }
    }
    if (work.stretches()) {
      const Move& move = work.moves[0];
      pixman_transform_t scale;
      pixman_transform_init_scale(&scale, pixman_double_to_fixed(double(move.from.width) / move.to.width),
                                  pixman_double_to_fixed(double(move.from.height) / move.to.height));
      pixman_image_set_transform(source.get(), &scale);
      pixman_image_set_filter(source.get(), PIXMAN_FILTER_NEAREST, nullptr, 0);
    }
  }

  void run() {
    const pixman_op_t op = work.blend == Blend::None ? PIXMAN_OP_SRC : PIXMAN_OP_OVER;
    for (const Move& move : work.moves)
      pixman_image_composite32(op, source.get(), mask.get(), target.get(), move.from.x, move.from.y, move.from.x,
                               move.from.y, move.to.x, move.to.y, move.to.width, move.to.height);
  }

  const BlitWork& work;
  Picture targetPixels, sourcePixels;
  std::unique_ptr<Picture> maskPixels;
  Image target, source, mask;
};

template <bool OwnAlpha>
std::function<void()> prepare(const BlitWork& work) {
  return [blit = std::make_shared<PixmanBlit>(work, OwnAlpha)] { blit->run(); };
}

std::function<void()> prepareFills(const DrawWork& work) {
  struct Fills {
    explicit Fills(const DrawWork& given) : work(given), pixels(work.makeTarget()), target(wrap(pixels)) {}
    void run() {
      const pixman_op_t op = work.alpha < 0 ? PIXMAN_OP_SRC : PIXMAN_OP_OVER;
      const pixman_color_t colour = {0, 0x5A5A, 0, static_cast<std::uint16_t>((255 - std::max(work.alpha, 0)) * 257)};
      for (const Rectangle& r : rectangles) {
        const pixman_box32_t box = {r.x, r.y, r.x + r.width, r.y + r.height};
        pixman_image_fill_boxes(op, target.get(), &colour, 1, &box);
      }
    }
    const DrawWork& work;
    Picture pixels;
    Image target;
    std::vector<Rectangle> rectangles = makeRectangles();
  };
  return [fills = std::make_shared<Fills>(work)] { fills->run(); };
}

bool canBlit(const BlitWork& work) {
  return !work.keyed && work.depth == Depth::None && work.source == work.target &&
         (work.target != 3 || work.blend == Blend::None);
}

const Group peer([](std::vector<Row>& rows) {
  addWorks<BlitWork>(rows, blitWorks(), "pixman", canBlit, prepare<false>);
  addWorks<BlitWork>(
      rows, blitWorks(), "pixman_argb", [](const BlitWork& work) { return canBlit(work) && work.blend == Blend::Map; },
      prepare<true>);
  addWorks<DrawWork>(
      rows, drawWorks(), "pixman", [](const DrawWork& work) { return work.drawing == Drawing::Rectangles; },
      prepareFills);
});

}  // namespace
