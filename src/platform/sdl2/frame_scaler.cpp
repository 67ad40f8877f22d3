// Converting rows of the three frame formats to pixels of 2, 3 or 4 bytes, by templates of reading and storing.
// SPDX-License-Identifier: MIT
#include "frame_scaler.h"

#include <algorithm>
#include <cstring>

namespace kx::platform {

namespace {

struct Channels {
  std::uint32_t red, green, blue;  ///< eight bits each
};

/// Five or six bits widened to eight so that full stays full.
constexpr std::uint32_t widen5(std::uint32_t value) { return value << 3 | value >> 2; }
constexpr std::uint32_t widen6(std::uint32_t value) { return value << 2 | value >> 4; }

inline std::uint32_t read16(const std::uint8_t* row, std::int32_t x) {
  std::uint16_t pixel;
  std::memcpy(&pixel, row + std::ptrdiff_t{x} * 2, sizeof pixel);
  return pixel;
}

struct Read555 {
  Channels operator()(const std::uint8_t* row, std::int32_t x) const {
    const std::uint32_t pixel = read16(row, x);
    return {widen5(pixel >> 10 & 31), widen5(pixel >> 5 & 31), widen5(pixel & 31)};
  }
};

struct Read565 {
  Channels operator()(const std::uint8_t* row, std::int32_t x) const {
    const std::uint32_t pixel = read16(row, x);
    return {widen5(pixel >> 11), widen6(pixel >> 5 & 63), widen5(pixel & 31)};
  }
};

struct Read888 {
  Channels operator()(const std::uint8_t* row, std::int32_t x) const {
    const std::uint8_t* pixel = row + std::ptrdiff_t{x} * 3;
    return {pixel[2], pixel[1], pixel[0]};
  }
};

/// Which pixel of the frame a target pixel shows, in steps with 32 fractional bits. Rounded up, the step makes the
/// result exact for up to 65535 target pixels.
class Steps {
public:
  Steps(std::int32_t from, std::int32_t to)
      : step_(((static_cast<std::uint64_t>(from) << 32) + static_cast<std::uint64_t>(to) - 1) /
              static_cast<std::uint64_t>(to)) {}

  [[nodiscard]] std::int32_t operator()(std::int32_t target) const {
    return static_cast<std::int32_t>(static_cast<std::uint64_t>(target) * step_ >> 32);
  }

  [[nodiscard]] bool unscaled() const { return step_ == std::uint64_t{1} << 32; }

private:
  std::uint64_t step_;
};

/// What nearly every desktop has: four bytes, blue in the lowest. Its constants let compilers make vector code.
struct StoreXrgb {
  static constexpr int bytes = 4;
  explicit StoreXrgb(const Canvas&) {}

  static bool suits(const Canvas& canvas) {
    const auto is = [](ChannelPlace place, int shift) { return place.shift == shift && place.loss == 0; };
    return canvas.bytesPerPixel == bytes && is(canvas.red, 16) && is(canvas.green, 8) && is(canvas.blue, 0);
  }

  [[nodiscard]] std::uint32_t operator()(Channels colour) const {
    return colour.red << 16 | colour.green << 8 | colour.blue;
  }
};

template <int Bytes>
struct StoreAny {
  static constexpr int bytes = Bytes;
  ChannelPlace red, green, blue;

  explicit StoreAny(const Canvas& canvas) : red(canvas.red), green(canvas.green), blue(canvas.blue) {}

  [[nodiscard]] std::uint32_t operator()(Channels colour) const {
    return colour.red >> red.loss << red.shift | colour.green >> green.loss << green.shift |
           colour.blue >> blue.loss << blue.shift;
  }
};

/// One row of `count` pixels, the x-th from pixel source(x) of the frame's row, which lies in other memory.
template <typename Read, typename Store, typename Source>
void drawRow(Store store, std::uint8_t* __restrict target, const std::uint8_t* __restrict row, std::int32_t count,
             Source source) {
  for (std::int32_t x = 0; x < count; ++x) {
    const std::uint32_t pixel = store(Read{}(row, source(x)));
    std::memcpy(target + static_cast<std::size_t>(x) * Store::bytes, &pixel, Store::bytes);
  }
}

/// The part of a place's pixels that lies within the canvas, counted from the place's edge.
struct Visible {
  std::int32_t first, end;
};

Visible clip(std::int32_t position, std::int32_t size, std::int32_t limit) {
  return {std::max(0, -position), std::min(size, limit - position)};
}

template <typename Store, typename Read>
void drawRows(const Canvas& canvas, const Frame& frame, const Area& place) {
  const Visible columns = clip(place.x, place.size.width, canvas.size.width);
  const Visible rows = clip(place.y, place.size.height, canvas.size.height);
  const std::int32_t count = columns.end - columns.first;
  if (count <= 0) return;
  constexpr int bytes = Store::bytes;
  const Store store(canvas);
  const Steps stepX(frame.size.width, place.size.width);
  const Steps stepY(frame.size.height, place.size.height);

  const std::uint8_t* drawn = nullptr;  // the row above
  std::int32_t drawnFrom = 0;
  for (std::int32_t y = rows.first; y < rows.end; ++y) {
    std::uint8_t* target =
        canvas.pixels + std::ptrdiff_t{place.y + y} * canvas.pitch + std::ptrdiff_t{place.x + columns.first} * bytes;
    const std::int32_t from = stepY(y);
    const std::uint8_t* row = frame.pixels + std::ptrdiff_t{from} * frame.pitch;
    if (drawn != nullptr && from == drawnFrom)
      std::memcpy(target, drawn, static_cast<std::size_t>(count) * bytes);
    else if (stepX.unscaled())
      drawRow<Read>(store, target, row, count, [first = columns.first](std::int32_t x) { return first + x; });
    else
      drawRow<Read>(store, target, row, count,
                    [stepX, first = columns.first](std::int32_t x) { return stepX(first + x); });
    drawn = target;
    drawnFrom = from;
  }
}

template <typename Store>
void drawAnyFormat(const Canvas& canvas, const Frame& frame, const Area& place) {
  switch (frame.format) {
    case 5:
      return drawRows<Store, Read555>(canvas, frame, place);
    case 6:
      return drawRows<Store, Read565>(canvas, frame, place);
    case 7:
      return drawRows<Store, Read888>(canvas, frame, place);
    default:
      return;
  }
}

}  // namespace

Area fitFrame(Extent frame, Extent area) {
  Extent size;
  const std::int32_t factor = std::min(area.width / frame.width, area.height / frame.height);
  if (factor >= 1) {
    size = {frame.width * factor, frame.height * factor};
  } else if (std::int64_t{frame.width} * area.height > std::int64_t{frame.height} * area.width) {
    size = {area.width, static_cast<std::int32_t>(std::int64_t{frame.height} * area.width / frame.width)};
  } else {
    size = {static_cast<std::int32_t>(std::int64_t{frame.width} * area.height / frame.height), area.height};
  }
  size = {std::max(size.width, 1), std::max(size.height, 1)};
  return {(area.width - size.width) / 2, (area.height - size.height) / 2, size};
}

void drawFrame(const Canvas& canvas, const Frame& frame, const Area& place) {
  if (StoreXrgb::suits(canvas)) return drawAnyFormat<StoreXrgb>(canvas, frame, place);
  switch (canvas.bytesPerPixel) {
    case 2:
      return drawAnyFormat<StoreAny<2>>(canvas, frame, place);
    case 3:
      return drawAnyFormat<StoreAny<3>>(canvas, frame, place);
    case 4:
      return drawAnyFormat<StoreAny<4>>(canvas, frame, place);
    default:
      return;
  }
}

void blackenAround(const Canvas& canvas, const Area& area) {
  const auto bytes = [&](std::int32_t pixels) { return static_cast<std::size_t>(pixels * canvas.bytesPerPixel); };
  const std::int32_t right = area.x + area.size.width;
  for (std::int32_t y = 0; y < canvas.size.height; ++y) {
    std::uint8_t* row = canvas.pixels + std::ptrdiff_t{y} * canvas.pitch;
    if (y < area.y || y >= area.y + area.size.height) {
      std::memset(row, 0, bytes(canvas.size.width));
    } else {
      std::memset(row, 0, bytes(area.x));
      std::memset(row + bytes(right), 0, bytes(canvas.size.width - right));
    }
  }
}

}  // namespace kx::platform
