// SDL's software renderer: lines, points and rectangles; textured triangles, unlit, with a colour at each corner, and
// blended half and half.
// SPDX-License-Identifier: MIT
#define SDL_MAIN_HANDLED
#include <SDL.h>

#include <memory>
#include <vector>

#include "../draws.h"

namespace {

using namespace kxbench;

class SdlDrawing {
public:
  explicit SdlDrawing(const DrawWork& work)
      : work_(work), pixels_(work.makeTarget()), texels_(makePicture(work.target, 3, textureSide, textureSide)) {
    target_ = wrap(pixels_);
    renderer_ = SDL_CreateSoftwareRenderer(target_);
    const SDL_BlendMode mode = work.alpha >= 0 ? SDL_BLENDMODE_BLEND : SDL_BLENDMODE_NONE;
    const auto alpha = static_cast<Uint8>(work.alpha >= 0 ? 255 - work.alpha : 255);
    SDL_SetRenderDrawBlendMode(renderer_, mode);
    SDL_SetRenderDrawColor(renderer_, 0, 8 * (drawColour >> 5), 8 * (drawColour & 31), alpha);
    if (work.isTriangles()) {
      prepareTriangles(mode, alpha);
      return;
    }
    for (const Point at : makePoints()) points_.push_back({at.x, at.y});
    for (const Rectangle& r : makeRectangles()) rectangles_.push_back({r.x, r.y, r.width, r.height});
  }

  ~SdlDrawing() {
    if (texture_ != nullptr) SDL_DestroyTexture(texture_);
    SDL_DestroyRenderer(renderer_);
    SDL_FreeSurface(target_);
  }

  SdlDrawing(const SdlDrawing&) = delete;
  SdlDrawing& operator=(const SdlDrawing&) = delete;

  void run() {
    switch (work_.drawing) {
      case Drawing::Lines:
        for (const Line& line : lines_) SDL_RenderDrawLine(renderer_, line.x1, line.y1, line.x2, line.y2);
        break;
      case Drawing::Points:
        SDL_RenderDrawPoints(renderer_, points_.data(), static_cast<int>(points_.size()));
        break;
      case Drawing::Rectangles:
        SDL_RenderFillRects(renderer_, rectangles_.data(), static_cast<int>(rectangles_.size()));
        break;
      default:
        SDL_RenderGeometry(renderer_, texture_, vertices_.data(), static_cast<int>(vertices_.size()), nullptr, 0);
    }
    SDL_RenderFlush(renderer_);
  }

private:
  void prepareTriangles(SDL_BlendMode mode, Uint8 alpha) {
    SDL_Surface* picture = wrap(texels_);
    texture_ = SDL_CreateTextureFromSurface(renderer_, picture);
    SDL_FreeSurface(picture);
    SDL_SetTextureBlendMode(texture_, mode);
    for (const Triangle& triangle : work_.triangles())
      for (const Corner& corner : triangle.corners) {
        SDL_Color colour = {255, 255, 255, alpha};
        if (work_.lit && work_.alpha < 0)
          colour = {static_cast<Uint8>(corner.shade >> 16), static_cast<Uint8>(corner.shade >> 8),
                    static_cast<Uint8>(corner.shade), alpha};
        vertices_.push_back({{float(corner.x), float(corner.y)},
                             colour,
                             {float(corner.u) / textureSide, float(corner.v) / textureSide}});
      }
  }

  static SDL_Surface* wrap(Picture& picture) {
    return SDL_CreateRGBSurfaceWithFormatFrom(picture.pixels(), picture.width(), picture.height(), 16, picture.pitch(),
                                              SDL_PIXELFORMAT_RGB565);
  }

  const DrawWork& work_;
  Picture pixels_, texels_;
  SDL_Surface* target_ = nullptr;
  SDL_Renderer* renderer_ = nullptr;
  SDL_Texture* texture_ = nullptr;
  std::vector<SDL_Vertex> vertices_;
  std::vector<Line> lines_ = makeLines();
  std::vector<SDL_Point> points_;
  std::vector<SDL_Rect> rectangles_;
};

bool canDraw(const DrawWork& work) {
  return work.target == 6 && !work.deep &&
         (work.isTriangles() || work.drawing == Drawing::Lines || work.drawing == Drawing::Points ||
          work.drawing == Drawing::Rectangles);
}

const Group peer([](std::vector<Row>& rows) {
  addWorks<DrawWork>(rows, drawWorks(), "sdl_renderer", canDraw, [](const DrawWork& work) -> std::function<void()> {
    return [drawing = std::make_shared<SdlDrawing>(work)] { drawing->run(); };
  });
});

}  // namespace
