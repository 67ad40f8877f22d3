// SDL's software renderer: textured triangles, unlit, with a colour at each corner, and blended half and half.
// SPDX-License-Identifier: MIT
#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <memory>
#include <vector>

#include "../draws.h"

namespace {

using namespace kxbench;

class SdlTriangles {
public:
  explicit SdlTriangles(const DrawWork& work)
      : pixels_(work.makeTarget()), texels_(makePicture(work.target, 3, textureSide, textureSide)) {
    target_ = wrap(pixels_);
    renderer_ = SDL_CreateSoftwareRenderer(target_);
    SDL_Surface* picture = wrap(texels_);
    texture_ = SDL_CreateTextureFromSurface(renderer_, picture);
    SDL_FreeSurface(picture);
    SDL_SetTextureBlendMode(texture_, work.alpha >= 0 ? SDL_BLENDMODE_BLEND : SDL_BLENDMODE_NONE);
    const auto alpha = static_cast<Uint8>(work.alpha >= 0 ? 255 - work.alpha : 255);
    for (const Triangle& triangle : work.triangles())
      for (const Corner& corner : triangle.corners) {
        SDL_Color colour = {255, 255, 255, alpha};
        if (work.lit && work.alpha < 0)
          colour = {static_cast<Uint8>(corner.shade >> 16), static_cast<Uint8>(corner.shade >> 8),
                    static_cast<Uint8>(corner.shade), alpha};
        vertices_.push_back({{float(corner.x), float(corner.y)},
                             colour,
                             {float(corner.u) / textureSide, float(corner.v) / textureSide}});
      }
  }

  ~SdlTriangles() {
    SDL_DestroyTexture(texture_);
    SDL_DestroyRenderer(renderer_);
    SDL_FreeSurface(target_);
  }

  SdlTriangles(const SdlTriangles&) = delete;
  SdlTriangles& operator=(const SdlTriangles&) = delete;

  void run() {
    SDL_RenderGeometry(renderer_, texture_, vertices_.data(), static_cast<int>(vertices_.size()), nullptr, 0);
    SDL_RenderFlush(renderer_);
  }

private:
  static SDL_Surface* wrap(Picture& picture) {
    return SDL_CreateRGBSurfaceWithFormatFrom(picture.pixels(), picture.width(), picture.height(), 16, picture.pitch(),
                                              SDL_PIXELFORMAT_RGB565);
  }

  Picture pixels_, texels_;
  SDL_Surface* target_ = nullptr;
  SDL_Renderer* renderer_ = nullptr;
  SDL_Texture* texture_ = nullptr;
  std::vector<SDL_Vertex> vertices_;
};

const Group peer([](std::vector<Row>& rows) {
  addWorks<DrawWork>(
      rows, drawWorks(), "sdl_geometry", [](const DrawWork& work) { return work.isTriangles(); },
      [](const DrawWork& work) -> std::function<void()> {
        return [drawing = std::make_shared<SdlTriangles>(work)] { drawing->run(); };
      });
});

}  // namespace
