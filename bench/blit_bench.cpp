// The blit workloads, and the library's own rows.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <memory>

#include "blits.h"
#include "own_bitmaps.h"
#include "random.h"

namespace kxbench {

namespace {

constexpr std::uint32_t grey = KX_FORMAT_GREY, indexed = KX_FORMAT_PALETTE, rgb15 = KX_FORMAT_555,
                        rgb16 = KX_FORMAT_565, rgb24 = KX_FORMAT_888;

std::vector<Move> wholeFrame() {
  const Rectangle frame{0, 0, frameWidth, frameHeight};
  return {{frame, frame}};
}

/// One rectangle of a size at 200 places, from an odd column of the source where there is one.
std::vector<Move> patches(std::int32_t width, std::int32_t height, std::int32_t targetWidth,
                          std::int32_t targetHeight) {
  std::vector<Move> moves(200);
  Random random(0x0DD5);
  for (Move& move : moves)
    move = {{random.below(targetWidth - width + 1), random.below(targetHeight - height + 1), width, height},
            {1, 0, width, height}};
  return moves;
}

std::vector<Move> sprites() {
  std::vector<Move> moves;
  for (const Point at : makeSpritePositions())
    moves.push_back({{at.x, at.y, spriteSize, spriteSize}, {0, 0, spriteSize, spriteSize}});
  return moves;
}

std::vector<Move> stretch(std::int32_t sourceWidth, std::int32_t sourceHeight, std::int32_t width,
                          std::int32_t height) {
  return {{{0, 0, width, height}, {0, 0, sourceWidth, sourceHeight}}};
}

/// Appends a workload for each format, its name ending in the depth.
class Works {
public:
  void add(const std::string& name, std::initializer_list<std::uint32_t> formats, const BlitWork& like) {
    for (const std::uint32_t format : formats) {
      BlitWork work = like;
      work.name = name + '.' + depthName(format);
      work.target = format;
      if (work.source != indexed) work.source = format;
      works_.push_back(std::move(work));
    }
  }
  std::vector<BlitWork> take() { return std::move(works_); }

private:
  std::vector<BlitWork> works_;
};

std::vector<BlitWork> makeWorks() {
  Works works;
  BlitWork frame{};
  frame.moves = wholeFrame();
  const auto like = [](BlitWork work, bool keyed, Blend blend = Blend::None, std::int32_t alpha = 0,
                       AlphaKind map = AlphaKind::Mix) {
    work.keyed = keyed;
    work.blend = blend;
    work.alpha = alpha;
    work.map = map;
    return work;
  };
  works.add("a.copy", {rgb16, rgb15, rgb24, grey}, frame);
  works.add("a.key", {rgb16, rgb15, rgb24, grey}, like(frame, true));
  works.add("d.alpha128", {rgb16, rgb15, rgb24, grey}, like(frame, false, Blend::Constant, 128));
  works.add("d.alpha100", {rgb16, rgb15}, like(frame, false, Blend::Constant, 100));
  works.add("e.amap_rand", {rgb16, rgb15, rgb24, grey}, like(frame, false, Blend::Map, 0, AlphaKind::Random));
  works.add("e.amap_mix", {rgb16, rgb24}, like(frame, false, Blend::Map, 0, AlphaKind::Mix));
  works.add("e.amap_zero", {rgb16}, like(frame, false, Blend::Map, 0, AlphaKind::Zero));
  works.add("e.amap_full", {rgb16}, like(frame, false, Blend::Map, 0, AlphaKind::Full));

  BlitWork sprite{};
  sprite.width = sprite.height = spriteSize;
  sprite.moves = sprites();
  works.add("b.copy", {rgb16, rgb24, grey}, sprite);
  works.add("b.key", {rgb16, rgb15, rgb24, grey}, like(sprite, true));
  works.add("b.alpha128", {rgb16, rgb24}, like(sprite, false, Blend::Constant, 128));
  works.add("b.keyalpha128", {rgb16, rgb15, rgb24}, like(sprite, true, Blend::Constant, 128));
  works.add("b.amap_mix", {rgb16, rgb15, rgb24}, like(sprite, false, Blend::Map));
  sprite.source = indexed;
  works.add("b.pal8key", {rgb16}, like(sprite, true));

  BlitWork palettised = frame;
  palettised.source = indexed;
  works.add("f.pal8", {rgb16, rgb24}, palettised);
  works.add("f.pal8key", {rgb16, rgb24}, like(palettised, true));

  BlitWork up{};
  up.width = 320;
  up.height = 240;
  up.moves = stretch(320, 240, frameWidth, frameHeight);
  works.add("c.up", {rgb16, rgb24, grey}, up);
  works.add("c.upkey", {rgb16, rgb24}, like(up, true));
  works.add("c.upalpha128", {rgb16}, like(up, false, Blend::Constant, 128));
  BlitWork down{};
  down.moves = stretch(frameWidth, frameHeight, 213, 160);
  works.add("c.down", {rgb16, rgb24, grey}, down);
  works.add("c.downkey", {rgb16}, like(down, true));

  const auto deep = [](BlitWork work, Depth depth) {
    work.depth = depth;
    return work;
  };
  works.add("g.copyz", {rgb16}, deep(frame, Depth::Buffer));
  works.add("g.copyzkey", {rgb16}, deep(like(frame, true), Depth::Buffer));
  works.add("g.copyzalpha128", {rgb16}, deep(like(frame, false, Blend::Constant, 128), Depth::Buffer));
  works.add("g.copyzamap_mix", {rgb16}, deep(like(frame, false, Blend::Map), Depth::Buffer));
  works.add("g.copyzmap", {rgb16}, deep(frame, Depth::Map));
  works.add("g.copyzmapkey", {rgb16}, deep(like(frame, true), Depth::Map));

  const auto packed = [](BlitWork work) {
    work.packed = true;
    return work;
  };
  sprite.source = rgb16;
  works.add("a.key_packed", {rgb16, rgb15, rgb24, grey}, packed(like(frame, true)));
  works.add("b.copy_packed", {rgb16, rgb24, grey}, packed(sprite));
  works.add("b.key_packed", {rgb16, rgb15, rgb24, grey}, packed(like(sprite, true)));
  works.add("b.alpha128_packed", {rgb16, rgb24}, packed(like(sprite, false, Blend::Constant, 128)));
  works.add("b.keyalpha128_packed", {rgb16, rgb15, rgb24}, packed(like(sprite, true, Blend::Constant, 128)));

  // No size is like another: the smallest calls, odd sprites, single rows and columns, and growth.
  const auto sized = [&](std::initializer_list<std::uint32_t> formats, std::int32_t width, std::int32_t height) {
    BlitWork patch{};
    patch.width = width + 1;
    patch.height = height;
    patch.targetWidth = std::max(width, frameWidth);
    patch.targetHeight = std::max(height, frameHeight);
    patch.moves = patches(width, height, patch.targetWidth, patch.targetHeight);
    // Frames and larger are drawn once a round.
    if (width * height > frameWidth * frameHeight / 2) patch.moves.resize(1);
    const std::string size = '_' + std::to_string(width) + 'x' + std::to_string(height);
    works.add("n.copy" + size, formats, patch);
    works.add("n.key" + size, formats, like(patch, true));
    works.add("n.alpha128" + size, formats, like(patch, false, Blend::Constant, 128));
  };
  sized({rgb16}, 1, 1);
  sized({rgb16}, 16, 16);
  sized({rgb16, rgb24, grey}, 37, 53);
  sized({rgb16}, 1, 480);
  sized({rgb16}, 640, 1);
  sized({rgb16, rgb24}, 1920, 1080);
  for (const std::int32_t side : {64, 256, 1024, 4096}) sized({rgb16}, side, side);
  return works.take();
}

/// A workload's bitmaps and the call that its variant needs.
struct OwnBlit {
  explicit OwnBlit(const BlitWork& given)
      : work(given),
        target(makeBitmap(work.makeTarget())),
        source(work.packed ? makePackedBitmap(work.makeSource()) : makeBitmap(work.makeSource())) {
    if (work.blend == Blend::Map) map = makeBitmap(makeAlphaMap(work.map, work.width, work.height));
    if (work.depth != Depth::None) zBuffer = makeBitmap(makeZBuffer());
    if (work.depth == Depth::Map) zMap = makeBitmap(makeZMap());
  }

  std::uint32_t call(const Move& m) const {
    const Rectangle &t = m.to, &s = m.from;
    Bitmap *d = target.get(), *p = source.get(), *z = zBuffer.get();
    constexpr std::int32_t depth = 128;
    if (work.stretches()) {
      if (work.blend == Blend::Constant)
        return KX_bltStretchAlpha(d, t.x, t.y, t.width, t.height, p, s.x, s.y, s.width, s.height, work.alpha);
      const auto blit = work.keyed ? KX_bltStretchTransparent : KX_bltStretch;
      return blit(d, t.x, t.y, t.width, t.height, p, s.x, s.y, s.width, s.height);
    }
    if (work.depth == Depth::Map) {
      const auto blit = work.keyed ? KX_bltCopyTransparentZMap : KX_bltCopyZMap;
      return blit(d, z, t.x, t.y, p, s.x, s.y, t.width, t.height, zMap.get(), 0);
    }
    if (work.depth == Depth::Buffer) {
      if (work.blend == Blend::Constant)
        return KX_bltCopyAlphaZBuffer(d, z, t.x, t.y, p, s.x, s.y, t.width, t.height, work.alpha, depth);
      if (work.blend == Blend::Map)
        return KX_bltCopyAlphamapZBuffer(d, z, t.x, t.y, p, s.x, s.y, t.width, t.height, map.get(), depth);
      const auto blit = work.keyed ? KX_bltCopyTransparentZBuffer : KX_bltCopyZBuffer;
      return blit(d, z, t.x, t.y, p, s.x, s.y, t.width, t.height, depth);
    }
    if (work.blend == Blend::Map) return KX_bltCopyAlphamap(d, t.x, t.y, p, s.x, s.y, t.width, t.height, map.get());
    if (work.blend == Blend::Constant) {
      const auto blit = work.keyed ? KX_bltCopyTransparentAlpha : KX_bltCopyAlpha;
      return blit(d, t.x, t.y, p, s.x, s.y, t.width, t.height, work.alpha);
    }
    const auto blit = work.keyed ? KX_bltCopyTransparent : KX_bltCopy;
    return blit(d, t.x, t.y, p, s.x, s.y, t.width, t.height);
  }

  const BlitWork& work;
  OwnedBitmap target, source, map, zBuffer, zMap;
};

const Group own([](std::vector<Row>& rows) {
  addWorks<BlitWork>(
      rows, blitWorks(), "kx", [](const BlitWork&) { return true; },
      [](const BlitWork& work) -> std::function<void()> {
        return [blit = std::make_shared<OwnBlit>(work)] {
          for (const Move& move : blit->work.moves) require(blit->call(move), blit->work.name.c_str());
        };
      });
});

}  // namespace

std::int64_t BlitWork::pixels() const {
  std::int64_t pixels = 0;
  for (const Move& move : moves) pixels += std::int64_t{move.to.width} * move.to.height;
  return pixels;
}

const std::vector<BlitWork>& blitWorks() {
  static const std::vector<BlitWork> works = makeWorks();
  return works;
}

}  // namespace kxbench
