// SDL's software blits: plain, and with the source run-length encoded (the contender "sdl_rle").
// SPDX-License-Identifier: MIT
#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <memory>

#include "../blits.h"

namespace {

using namespace kxbench;

struct Free {
  void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
};
using Surface = std::unique_ptr<SDL_Surface, Free>;

Uint32 sdlFormat(std::uint32_t format) {
  constexpr Uint32 formats[] = {SDL_PIXELFORMAT_INDEX8, SDL_PIXELFORMAT_INDEX8, SDL_PIXELFORMAT_RGB555,
                                SDL_PIXELFORMAT_RGB565, SDL_PIXELFORMAT_BGR24};
  return formats[format - 3];
}

struct SdlBlit {
  SdlBlit(const BlitWork& given, bool runLength)
      : work(given), targetPixels(work.makeTarget()), sourcePixels(work.makeSource()) {
    target = wrap(targetPixels);
    source = wrap(sourcePixels);
    if (work.source == 4) {
      const Bytes palette = makePalette();
      SDL_Color colours[256];
      for (std::size_t i = 0; i < 256; ++i) colours[i] = {palette[3 * i + 2], palette[3 * i + 1], palette[3 * i], 255};
      SDL_SetPaletteColors(source->format->palette, colours, 0, 256);
    }
    if (work.blend == Blend::Map) source = withAlpha();
    const bool blends = work.blend != Blend::None;
    SDL_SetSurfaceBlendMode(source.get(), blends ? SDL_BLENDMODE_BLEND : SDL_BLENDMODE_NONE);
    if (work.blend == Blend::Constant) SDL_SetSurfaceAlphaMod(source.get(), static_cast<Uint8>(255 - work.alpha));
    if (work.keyed) SDL_SetColorKey(source.get(), SDL_TRUE, 0);
    if (runLength) SDL_SetSurfaceRLE(source.get(), 1);
  }

  static Surface wrap(Picture& picture) {
    return Surface(SDL_CreateRGBSurfaceWithFormatFrom(picture.pixels(), picture.width(), picture.height(),
                                                      8 * picture.pixelBytes(), picture.pitch(),
                                                      sdlFormat(picture.format())));
  }

  /// The source with the alpha map as its own alpha.
  Surface withAlpha() {
    Surface argb(SDL_ConvertSurfaceFormat(source.get(), SDL_PIXELFORMAT_ARGB8888, 0));
    Picture map = makeAlphaMap(work.map, work.width, work.height);
    for (int y = 0; y < argb->h; ++y)
      for (int x = 0; x < argb->w; ++x)
        static_cast<Uint8*>(argb->pixels)[y * argb->pitch + 4 * x + 3] = static_cast<Uint8>(255 - map.row(y)[x]);
    return argb;
  }

  void run() {
    for (const Move& move : work.moves) {
      SDL_Rect from = {move.from.x, move.from.y, move.from.width, move.from.height};
      SDL_Rect to = {move.to.x, move.to.y, move.to.width, move.to.height};
      if (work.stretches())
        SDL_UpperBlitScaled(source.get(), &from, target.get(), &to);
      else
        SDL_UpperBlit(source.get(), &from, target.get(), &to);
    }
  }

  const BlitWork& work;
  Picture targetPixels, sourcePixels;
  Surface target, source;
};

template <bool RunLength>
std::function<void()> prepare(const BlitWork& work) {
  return [blit = std::make_shared<SdlBlit>(work, RunLength)] { blit->run(); };
}

bool canBlit(const BlitWork& work) {
  const bool isByte = work.target == 3;
  return work.depth == Depth::None && !(isByte && (work.blend != Blend::None || work.stretches()));
}

const Group peer([](std::vector<Row>& rows) {
  addWorks<BlitWork>(rows, blitWorks(), "sdl", canBlit, prepare<false>);
  addWorks<BlitWork>(
      rows, blitWorks(), "sdl_rle",
      [](const BlitWork& work) {
        // Whole frames with a map stand for pictures that change: nobody encodes those first.
        return canBlit(work) && !work.stretches() &&
               (work.keyed || (work.blend == Blend::Map && work.moves.size() > 1));
      },
      prepare<true>);
});

}  // namespace
