// Allegro 4: lines, points, rectangles, flood fill, affine textured triangles.
// SPDX-License-Identifier: MIT
#include "../draws.h"
#include "allegro_bitmaps.h"

namespace {

using namespace kxbench;

class AllegroDrawing {
public:
  explicit AllegroDrawing(const DrawWork& work)
      : work_(work), lines_(makeLines()), points_(makePoints()), rectangles_(makeRectangles()) {
    startAllegro();
    target_ = makeAllegroBitmap(work.makeTarget());
    if (!work.isTriangles()) return;
    texture_ = makeAllegroBitmap(makePicture(work.target, 3, textureSide, textureSide));
    const std::vector<Triangle> triangles = work.triangles();
    for (std::size_t i = 0; i < triangles.size(); ++i)
      for (const Corner& corner : triangles[i].corners)
        vertices_.push_back({float(corner.x), float(corner.y), 1 + triangleDepth(i), float(corner.u), float(corner.v),
                             static_cast<int>(corner.shade & 255)});
    if (work.deep) depths_ = create_zbuffer(target_.get());
  }

  ~AllegroDrawing() {
    if (depths_ != nullptr) destroy_zbuffer(depths_);
  }
  AllegroDrawing(const AllegroDrawing&) = delete;
  AllegroDrawing& operator=(const AllegroDrawing&) = delete;

  void run() {
    BITMAP* t = target_.get();
    constexpr int colour = drawColour;
    set_color_depth(depthOf(work_.target));
    const bool blends = work_.alpha >= 0;
    set_trans_blender(0, 0, 0, blends ? 255 - work_.alpha : 255);
    drawing_mode(blends ? DRAW_MODE_TRANS : DRAW_MODE_SOLID, nullptr, 0, 0);
    switch (work_.drawing) {
      case Drawing::Lines:
        for (const Line& each : lines_) line(t, each.x1, each.y1, each.x2, each.y2, colour);
        break;
      case Drawing::Points:
        for (const Point at : points_) putpixel(t, at.x, at.y, colour);
        break;
      case Drawing::Rectangles:
        for (const Rectangle& r : rectangles_) rectfill(t, r.x, r.y, r.x + r.width - 1, r.y + r.height - 1, colour);
        break;
      case Drawing::Maze:
      case Drawing::Solid:
        flip_ = !flip_;
        floodfill(t, mazeStart.x, mazeStart.y, flip_ ? mazeFill : mazeOpen);
        break;
      default: {
        int type = blends ? POLYTYPE_ATEX_TRANS : work_.lit ? POLYTYPE_ATEX_LIT : POLYTYPE_ATEX;
        if (work_.deep) {
          set_zbuffer(depths_);
          clear_zbuffer(depths_, 0);
          type |= POLYTYPE_ZBUF;
        }
        for (std::size_t i = 0; i < vertices_.size(); i += 3)
          triangle3d_f(t, type, texture_.get(), &vertices_[i], &vertices_[i + 1], &vertices_[i + 2]);
      }
    }
    drawing_mode(DRAW_MODE_SOLID, nullptr, 0, 0);
  }

private:
  const DrawWork& work_;
  AllegroBitmap target_, texture_;
  ZBUFFER* depths_ = nullptr;
  std::vector<Line> lines_;
  std::vector<Point> points_;
  std::vector<Rectangle> rectangles_;
  std::vector<V3D_f> vertices_;
  bool flip_ = false;
};

const Group peer([](std::vector<Row>& rows) {
  addWorks<DrawWork>(
      rows, drawWorks(), "allegro", [](const DrawWork& work) { return work.drawing < Drawing::Grey; },
      [](const DrawWork& work) -> std::function<void()> {
        return [drawing = std::make_shared<AllegroDrawing>(work)] { drawing->run(); };
      });
});

}  // namespace
