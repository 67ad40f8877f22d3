// libyuv: planes of bytes blended under a map, planes of bytes and words scaled, 32-bit pixels made grey.
// SPDX-License-Identifier: MIT
#include <libyuv/planar_functions.h>
#include <libyuv/scale.h>

#include <cstddef>
#include <memory>

#include "../blits.h"
#include "../draws.h"
#include "kxgraphic/types.h"

namespace {

using namespace kxbench;

/// libyuv wants the weight of the source, and a constant one as a map too.
Picture makeWeights(const BlitWork& work) {
  Picture weights = makeAlphaMap(work.map, work.width, work.height);
  for (std::int32_t y = 0; y < work.height; ++y)
    for (std::int32_t x = 0; x < work.width; ++x) {
      const std::int32_t weight = work.blend == Blend::Map ? weights.row(y)[x] : work.alpha;
      weights.set(x, y, static_cast<std::uint32_t>(255 - weight));
    }
  return weights;
}

struct YuvBlit {
  explicit YuvBlit(const BlitWork& given)
      : work(given), target(work.makeTarget()), source(work.makeSource()), weights(makeWeights(work)) {}

  void run() {
    for (const Move& m : work.moves) {
      std::uint8_t* const to = target.row(m.to.y) + std::ptrdiff_t{m.to.x} * target.pixelBytes();
      const std::uint8_t* const from = source.row(m.from.y) + std::ptrdiff_t{m.from.x} * source.pixelBytes();
      if (!work.stretches())
        libyuv::BlendPlane(from, source.pitch(), to, target.pitch(), weights.row(m.from.y) + m.from.x, weights.pitch(),
                           to, target.pitch(), m.to.width, m.to.height);
      else if (source.pixelBytes() == 1)
        libyuv::ScalePlane(from, source.pitch(), m.from.width, m.from.height, to, target.pitch(), m.to.width,
                           m.to.height, libyuv::kFilterNone);
      else
        libyuv::ScalePlane_16(reinterpret_cast<const std::uint16_t*>(from), source.pitch() / 2, m.from.width,
                              m.from.height, reinterpret_cast<std::uint16_t*>(to), target.pitch() / 2, m.to.width,
                              m.to.height, libyuv::kFilterNone);
    }
  }

  const BlitWork& work;
  Picture target, source, weights;
};

bool canBlit(const BlitWork& work) {
  if (work.depth != Depth::None || work.keyed || work.packed || work.source != work.target) return false;
  if (work.stretches()) return work.blend == Blend::None && work.target != KX_FORMAT_888;
  return work.blend != Blend::None && work.target == KX_FORMAT_GREY;
}

const Group peer([](std::vector<Row>& rows) {
  addWorks<BlitWork>(rows, blitWorks(), "libyuv", canBlit, [](const BlitWork& work) -> std::function<void()> {
    return [blit = std::make_shared<YuvBlit>(work)] { blit->run(); };
  });
  addWorks<DrawWork>(
      rows, drawWorks(), "libyuv_argb",
      [](const DrawWork& work) { return work.drawing == Drawing::Grey && work.target == KX_FORMAT_888; },
      [](const DrawWork&) -> std::function<void()> {
        constexpr std::int32_t pitch = frameWidth * 4;
        return [pixels = std::make_shared<Bytes>(std::size_t{pitch} * frameHeight, std::uint8_t{0x5A})] {
          libyuv::ARGBGray(pixels->data(), pitch, 0, 0, frameWidth, frameHeight);
        };
      });
});

}  // namespace
