// The drawing workloads, and the library's own rows.
// SPDX-License-Identifier: MIT
#include "draws.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "own_bitmaps.h"

namespace kxbench {

namespace {

std::vector<DrawWork> makeWorks() {
  constexpr std::uint32_t grey = KX_FORMAT_GREY, rgb16 = KX_FORMAT_565, rgb24 = KX_FORMAT_888;
  const struct {
    const char* name;
    std::vector<std::uint32_t> formats;
    Drawing drawing;
    std::int32_t alpha = -1;
  } families[] = {
      {"h.lines", {rgb16, rgb24, grey}, Drawing::Lines},
      {"h.linesalpha128", {rgb16, rgb24}, Drawing::Lines, 128},
      {"h.points", {rgb16}, Drawing::Points},
      {"i.fill", {rgb16, rgb24, grey}, Drawing::Rectangles},
      {"i.fillalpha128", {rgb16, rgb24}, Drawing::Rectangles, 128},
      {"j.maze", {rgb16, rgb24, grey}, Drawing::Maze},
      {"j.solid", {rgb16, rgb24, grey}, Drawing::Solid},
      {"l.gray", {rgb16, rgb24}, Drawing::Grey},
      {"l.bright", {rgb24, grey}, Drawing::Brighten},
      {"l.invert", {rgb16, rgb24, grey}, Drawing::Invert},
      {"l.mirrorX", {rgb16, rgb24, grey}, Drawing::MirrorX},
      {"l.mirrorY", {rgb16, rgb24, grey}, Drawing::MirrorY},
      {"l.luminance", {rgb16, grey}, Drawing::Luminance},
  };
  std::vector<DrawWork> works;
  for (const auto& family : families)
    for (const std::uint32_t format : family.formats)
      works.push_back({std::string(family.name) + '.' + depthName(format), family.drawing, format, family.alpha});
  for (const auto& [size, drawing] :
       {std::pair{"small", Drawing::SmallTriangles}, {"large", Drawing::LargeTriangles}}) {
    works.push_back({std::string("k.plain_") + size, drawing, rgb16, -1, false});
    works.push_back({std::string("k.lit_") + size, drawing, rgb16});
    works.push_back({std::string("k.alpha_") + size, drawing, rgb16, 128});
    works.push_back({std::string("g.tri_") + size, drawing, rgb16, -1, false, true});
  }
  return works;
}

/// Draws a workload with the library. Triangles go through a device on the target.
class OwnDrawing {
public:
  explicit OwnDrawing(const DrawWork& work)
      : work_(work),
        target_(makeBitmap(work.makeTarget())),
        lines_(makeLines()),
        points_(makePoints()),
        rectangles_(makeRectangles()) {
    if (work.isTriangles()) prepareTriangles();
  }

  ~OwnDrawing() {
    if (texture_ != nullptr) KX_deleteTexture(texture_);
    if (device_ != nullptr) KX_delete3DDevice(device_);
  }

  OwnDrawing(const OwnDrawing&) = delete;
  OwnDrawing& operator=(const OwnDrawing&) = delete;

  void run() {
    Bitmap* t = target_.get();
    std::uint32_t code = 0;
    switch (work_.drawing) {
      case Drawing::Lines:
        for (const Line& line : lines_)
          code |= work_.alpha < 0 ? KX_drawLine(t, line.x1, line.y1, line.x2, line.y2, drawColour)
                                  : KX_drawLineAlpha(t, line.x1, line.y1, line.x2, line.y2, drawColour, work_.alpha);
        break;
      case Drawing::Points:
        for (const Point at : points_) code |= KX_setPixel(t, at.x, at.y, drawColour);
        break;
      case Drawing::Rectangles:
        for (const Rectangle& r : rectangles_)
          code |= work_.alpha < 0 ? KX_fillRect(t, r.x, r.y, r.width, r.height, drawColour)
                                  : KX_fillRectAlpha(t, r.x, r.y, r.width, r.height, drawColour, work_.alpha);
        break;
      case Drawing::Maze:
      case Drawing::Solid:
        flip_ = !flip_;
        code = KX_floodFill(t, mazeStart.x, mazeStart.y, 0, flip_ ? mazeFill : mazeOpen);
        break;
      case Drawing::SmallTriangles:
      case Drawing::LargeTriangles:
        for (const auto& triangle : vertices_)
          code |= work_.alpha < 0
                      ? KX_drawTexturedTriangleGouraudShade(device_, texture_, triangle.data(), 1)
                      : KX_drawTexturedTriangleGouraudShadeAlpha(device_, texture_, work_.alpha, triangle.data(), 1);
        break;
      case Drawing::Grey:
        code = KX_grayScale(t);
        break;
      case Drawing::Brighten:
        code = KX_changeBrightnessContrast(t, 24, 20, 128);
        break;
      case Drawing::Invert:
        code = KX_invertBitmap(t);
        break;
      case Drawing::MirrorX:
        code = KX_mirrorBitmapX(t);
        break;
      case Drawing::MirrorY:
        code = KX_mirrorBitmapY(t);
        break;
      case Drawing::Luminance:
        keep(KX_getAverageLuminance(t));
        break;
    }
    require(code, work_.name.c_str());
  }

private:
  void prepareTriangles() {
    static DeviceMethods methods;
    KX_get3DDeviceInterface(&methods, nullptr, nullptr, 1);
    require(KX_create3DDevice(&device_, target_.get(), 0, 0, 0, &methods), "device");
    require(KX_createTexture(&texture_, device_, textureSide, textureSide, work_.target, 1), "texture");
    Picture picture = makePicture(work_.target, 3, textureSide, textureSide);
    Bitmap* level = texture_->levels[0];
    for (std::int32_t y = 0; y < textureSide; ++y)
      std::memcpy(level->pixels + std::ptrdiff_t{y} * level->pitch, picture.row(y),
                  static_cast<std::size_t>(textureSide * picture.pixelBytes()));
    for (const Triangle& triangle : work_.triangles()) {
      std::array<VertexInt, 3> corners;
      for (std::size_t i = 0; i < 3; ++i) {
        const Corner& corner = triangle.corners[i];
        corners[i] = {corner.x, corner.y, 0, corner.u, corner.v, work_.lit ? corner.shade : 0};
      }
      vertices_.push_back(corners);
    }
  }

  const DrawWork& work_;
  OwnedBitmap target_;
  std::vector<Line> lines_;
  std::vector<Point> points_;
  std::vector<Rectangle> rectangles_;
  std::vector<std::array<VertexInt, 3>> vertices_;
  Device3D* device_ = nullptr;
  Texture* texture_ = nullptr;
  bool flip_ = false;
};

const Group own([](std::vector<Row>& rows) {
  addWorks<DrawWork>(
      rows, drawWorks(), "kx", [](const DrawWork& work) { return !work.deep; },
      [](const DrawWork& work) -> std::function<void()> {
        return [drawing = std::make_shared<OwnDrawing>(work)] { drawing->run(); };
      });
});

}  // namespace

std::int64_t DrawWork::pixels() const {
  switch (drawing) {
    case Drawing::Lines:
      return pixelsOf(makeLines());
    case Drawing::Points:
      return static_cast<std::int64_t>(makePoints().size());
    case Drawing::Rectangles:
      return pixelsOf(makeRectangles());
    case Drawing::Maze: {
      const Bytes maze = makeMaze();
      return std::count(maze.begin(), maze.end(), mazeOpen);
    }
    case Drawing::SmallTriangles:
    case Drawing::LargeTriangles:
      return pixelsOf(triangles());
    default:
      return std::int64_t{frameWidth} * frameHeight;
  }
}

Picture DrawWork::makeTarget() const {
  if (drawing != Drawing::Maze && drawing != Drawing::Solid) return makePicture(target, 2);
  Picture picture(target, frameWidth, frameHeight);
  const Bytes maze = makeMaze();
  for (std::int32_t y = 0; y < frameHeight; ++y)
    for (std::int32_t x = 0; x < frameWidth; ++x)
      picture.set(x, y, drawing == Drawing::Maze ? maze[static_cast<std::size_t>(y * frameWidth + x)] : mazeOpen);
  return picture;
}

const std::vector<DrawWork>& drawWorks() {
  static const std::vector<DrawWork> works = makeWorks();
  return works;
}

}  // namespace kxbench
