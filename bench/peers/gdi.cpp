// Windows' own drawing on bitmaps in memory: BitBlt, TransparentBlt, AlphaBlend, StretchBlt, lines, pixels, fills.
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <array>
#include <cstring>
#include <memory>

#include "../blits.h"
#include "../draws.h"

namespace {

using namespace kxbench;

/// A bitmap in memory with a device context of its own. Premultiplied pixels with an alpha channel have 32 bits.
class Surface {
public:
  Surface(std::uint32_t format, std::int32_t width, std::int32_t height, bool hasAlpha = false)
      : context_(CreateCompatibleDC(nullptr)) {
    struct {
      BITMAPINFOHEADER header;
      std::array<DWORD, 256> colours;  // masks of channels or a palette of greys
    } info = {};
    const WORD bits = hasAlpha ? 32 : format == 7 ? 24 : format >= 5 ? 16 : 8;
    info.header = {sizeof(BITMAPINFOHEADER), width, -height, 1, bits, BI_RGB, 0, 0, 0, 0, 0};
    if (format == 6 && !hasAlpha) {
      info.header.biCompression = BI_BITFIELDS;
      info.colours = {0xF800, 0x07E0, 0x001F};
    }
    if (bits == 8)
      for (std::size_t i = 0; i < 256; ++i) info.colours[i] = static_cast<DWORD>(i * 0x010101);
    void* memory = nullptr;
    bitmap_ = CreateDIBSection(context_, static_cast<const BITMAPINFO*>(static_cast<const void*>(&info)),
                               DIB_RGB_COLORS, &memory, nullptr, 0);
    bits_ = static_cast<std::uint8_t*>(memory);
    SelectObject(context_, bitmap_);
  }

  explicit Surface(Picture picture) : Surface(picture.format(), picture.width(), picture.height()) {
    std::memcpy(bits_, picture.pixels(),
                static_cast<std::size_t>(picture.pitch()) * static_cast<std::size_t>(picture.height()));
  }

  ~Surface() {
    DeleteDC(context_);
    DeleteObject(bitmap_);
  }
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  [[nodiscard]] HDC context() const { return context_; }
  [[nodiscard]] std::uint8_t* bits() const { return bits_; }

private:
  HDC context_;
  HBITMAP bitmap_ = nullptr;
  std::uint8_t* bits_ = nullptr;
};

/// The source of a blend under a map: its colours times the weight of the source, and that weight.
std::unique_ptr<Surface> makePremultiplied(const BlitWork& work) {
  const Surface colours(work.makeSource());
  auto surface = std::make_unique<Surface>(work.source, work.width, work.height, true);
  BitBlt(surface->context(), 0, 0, work.width, work.height, colours.context(), 0, 0, SRCCOPY);
  GdiFlush();
  Picture map = makeAlphaMap(work.map, work.width, work.height);
  std::uint8_t* pixel = surface->bits();
  for (std::int32_t y = 0; y < work.height; ++y)
    for (std::int32_t x = 0; x < work.width; ++x, pixel += 4) {
      const unsigned weight = 255u - map.row(y)[x];
      for (int k = 0; k < 3; ++k) pixel[k] = static_cast<std::uint8_t>(pixel[k] * weight / 255);
      pixel[3] = static_cast<std::uint8_t>(weight);
    }
  return surface;
}

struct GdiBlit {
  explicit GdiBlit(const BlitWork& given)
      : work(given),
        target(work.makeTarget()),
        source(work.blend == Blend::Map ? makePremultiplied(work) : std::make_unique<Surface>(work.makeSource())) {
    SetStretchBltMode(target.context(), COLORONCOLOR);
  }

  void run() const {
    const BLENDFUNCTION blend = {AC_SRC_OVER, 0,
                                 static_cast<BYTE>(work.blend == Blend::Constant ? 255 - work.alpha : 255),
                                 static_cast<BYTE>(work.blend == Blend::Map ? AC_SRC_ALPHA : 0)};
    HDC t = target.context(), s = source->context();
    for (const auto& [to, from] : work.moves) {
      if (work.blend != Blend::None)
        AlphaBlend(t, to.x, to.y, to.width, to.height, s, from.x, from.y, from.width, from.height, blend);
      else if (work.keyed)
        TransparentBlt(t, to.x, to.y, to.width, to.height, s, from.x, from.y, from.width, from.height, RGB(0, 0, 0));
      else if (work.stretches())
        StretchBlt(t, to.x, to.y, to.width, to.height, s, from.x, from.y, from.width, from.height, SRCCOPY);
      else
        BitBlt(t, to.x, to.y, to.width, to.height, s, from.x, from.y, SRCCOPY);
    }
    GdiFlush();
  }

  const BlitWork& work;
  Surface target;
  std::unique_ptr<Surface> source;
};

class GdiDrawing {
public:
  explicit GdiDrawing(const DrawWork& work)
      : work_(work),
        target_(work.makeTarget()),
        pen_(CreatePen(PS_SOLID, 0, colour)),
        brush_(CreateSolidBrush(colour)),
        lines_(makeLines()),
        points_(makePoints()),
        rectangles_(makeRectangles()) {
    SelectObject(target_.context(), pen_);
  }
  ~GdiDrawing() {
    SelectObject(target_.context(), GetStockObject(BLACK_PEN));
    DeleteObject(pen_);
    DeleteObject(brush_);
  }
  GdiDrawing(const GdiDrawing&) = delete;
  GdiDrawing& operator=(const GdiDrawing&) = delete;

  void run() const {
    HDC t = target_.context();
    switch (work_.drawing) {
      case Drawing::Lines:
        for (const Line& line : lines_) {
          MoveToEx(t, line.x1, line.y1, nullptr);
          LineTo(t, line.x2, line.y2);
        }
        break;
      case Drawing::Points:
        for (const Point at : points_) SetPixelV(t, at.x, at.y, colour);
        break;
      case Drawing::Rectangles:
        for (const kxbench::Rectangle& r : rectangles_) {
          const RECT area = {r.x, r.y, r.x + r.width, r.y + r.height};
          FillRect(t, &area, brush_);
        }
        break;
      default:
        PatBlt(t, 0, 0, frameWidth, frameHeight, DSTINVERT);
    }
    GdiFlush();
  }

private:
  static constexpr COLORREF colour = RGB(0, 0x58, 0xD0);

  const DrawWork& work_;
  Surface target_;
  HPEN pen_;
  HBRUSH brush_;
  std::vector<Line> lines_;
  std::vector<Point> points_;
  std::vector<kxbench::Rectangle> rectangles_;
};

const Group peer([](std::vector<Row>& rows) {
  addWorks<BlitWork>(
      rows, blitWorks(), "gdi",
      [](const BlitWork& work) {
        return work.depth == Depth::None && work.source != 4 && !(work.keyed && work.blend != Blend::None) &&
               !(work.target == 3 && work.blend != Blend::None);
      },
      [](const BlitWork& work) -> std::function<void()> {
        return [blit = std::make_shared<GdiBlit>(work)] { blit->run(); };
      });
  addWorks<DrawWork>(
      rows, drawWorks(), "gdi",
      [](const DrawWork& work) {
        const bool solid = work.alpha < 0 && (work.drawing == Drawing::Lines || work.drawing == Drawing::Points ||
                                              work.drawing == Drawing::Rectangles);
        return solid || work.drawing == Drawing::Invert;
      },
      [](const DrawWork& work) -> std::function<void()> {
        return [drawing = std::make_shared<GdiDrawing>(work)] { drawing->run(); };
      });
});

}  // namespace
