// SPDX-License-Identifier: MIT
#include "pictures.h"

#include <algorithm>

#include "random.h"

namespace kxbench {

namespace {

constexpr std::uintptr_t alignment = 64;

std::int32_t bytesOf(std::uint32_t format) { return format == 7 ? 3 : format >= 5 ? 2 : 1; }

/// Place in the 64 x 64 tile that the discs repeat, from its middle, in half pixels.
std::int32_t fromMiddle(std::int32_t x) { return 2 * (x % 64) - 63; }

std::int32_t squaredRadius(std::int32_t x, std::int32_t y) {
  return fromMiddle(x) * fromMiddle(x) + fromMiddle(y) * fromMiddle(y);
}

Picture makeBytes(std::uint32_t seed, std::int32_t width, std::int32_t height) {
  Picture picture(3, width, height);
  Random random(seed);
  for (std::int32_t y = 0; y < height; ++y)
    for (std::int32_t x = 0; x < width; ++x) picture.set(x, y, random.byte());
  return picture;
}

}  // namespace

Picture::Picture(std::uint32_t format, std::int32_t width, std::int32_t height)
    : format_(format),
      width_(width),
      height_(height),
      pixelBytes_(bytesOf(format)),
      pitch_((width * pixelBytes_ + 3) & ~3),
      block_(static_cast<std::size_t>(pitch_) * static_cast<std::size_t>(height + 1) + alignment),
      offset_(static_cast<std::size_t>(-reinterpret_cast<std::uintptr_t>(block_.data()) % alignment)) {}

void Picture::set(std::int32_t x, std::int32_t y, std::uint32_t value) {
  for (std::int32_t i = 0; i < pixelBytes_; ++i)
    row(y)[x * pixelBytes_ + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

const char* depthName(std::uint32_t format) {
  constexpr const char* names[] = {"8", "8", "555", "565", "24"};
  return names[format - 3];
}

std::uint32_t pixelOf(std::uint32_t format, std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  switch (format) {
    case 5:
      return red >> 3 << 10 | green >> 3 << 5 | blue >> 3;
    case 6:
      return red >> 3 << 11 | green >> 2 << 5 | blue >> 3;
    case 7:
      return red << 16 | green << 8 | blue;
    default:
      return (red + green + blue) / 3;
  }
}

bool insideDisc(std::int32_t x, std::int32_t y) { return squaredRadius(x, y) <= 2868; }

Picture makePicture(std::uint32_t format, std::uint32_t seed, std::int32_t width, std::int32_t height,
                    std::uint32_t key) {
  Picture picture(format, width, height);
  Random random(seed);
  for (std::int32_t y = 0; y < height; ++y)
    for (std::int32_t x = 0; x < width; ++x) {
      const std::int32_t noise = random.below(32);
      const auto red = static_cast<std::uint32_t>((3 * x + y) & 255);
      const auto green = static_cast<std::uint32_t>((x ^ y) & 255);
      const auto blue = static_cast<std::uint32_t>((x + 2 * y + noise) & 255);
      const std::uint32_t value = pixelOf(format, red, green, blue);
      picture.set(x, y, value == 0 || value == key ? 1 : value);
    }
  return picture;
}

Picture makeKeyedPicture(std::uint32_t format, std::uint32_t seed, std::int32_t width, std::int32_t height,
                         std::uint32_t key) {
  Picture picture = makePicture(format, seed, width, height, key);
  for (std::int32_t y = 0; y < height; ++y)
    for (std::int32_t x = 0; x < width; ++x)
      if (!insideDisc(x, y)) picture.set(x, y, key);
  return picture;
}

Picture makeAlphaMap(AlphaKind kind, std::int32_t width, std::int32_t height) {
  if (kind == AlphaKind::Random) return makeBytes(0xA1FA, width, height);
  Picture map(3, width, height);
  for (std::int32_t y = 0; y < height; ++y)
    for (std::int32_t x = 0; x < width; ++x) {
      const std::int32_t soft = std::clamp((squaredRadius(x, y) - 1936) * 255 / 1200, 0, 255);
      map.set(x, y, kind == AlphaKind::Mix ? static_cast<std::uint32_t>(soft) : kind == AlphaKind::Full ? 255 : 0);
    }
  return map;
}

Bytes makePalette() {
  Bytes palette(768);
  Random random(0xBA1);
  for (std::uint8_t& channel : palette) channel = random.byte();
  return palette;
}

Picture makeZBuffer() { return makeBytes(0x2B, frameWidth, frameHeight); }

Picture makeZMap(std::int32_t width, std::int32_t height) { return makeBytes(0x2C, width, height); }

}  // namespace kxbench
