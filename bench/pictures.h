// The pictures, maps and buffers that the pixel benchmarks work on. All come from code and are the same in every run.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kxbench {

constexpr std::int32_t frameWidth = 640;
constexpr std::int32_t frameHeight = 480;

using Bytes = std::vector<std::uint8_t>;

/// Pixels in memory: rows of whole words, the block aligned to 64 bytes, a spare row below.
class Picture {
public:
  /// All pixels 0. `format` is a format code of the library: 3 to 7.
  Picture(std::uint32_t format, std::int32_t width, std::int32_t height);

  [[nodiscard]] std::uint32_t format() const { return format_; }
  [[nodiscard]] std::int32_t width() const { return width_; }
  [[nodiscard]] std::int32_t height() const { return height_; }
  [[nodiscard]] std::int32_t pitch() const { return pitch_; }
  [[nodiscard]] std::int32_t pixelBytes() const { return pixelBytes_; }
  [[nodiscard]] std::uint8_t* pixels() { return block_.data() + offset_; }
  [[nodiscard]] std::uint8_t* row(std::int32_t y) { return pixels() + std::ptrdiff_t{y} * pitch_; }
  void set(std::int32_t x, std::int32_t y, std::uint32_t value);

  Picture(Picture&&) = default;
  Picture& operator=(Picture&&) = default;
  Picture(const Picture&) = delete;
  Picture& operator=(const Picture&) = delete;

private:
  std::uint32_t format_;
  std::int32_t width_, height_, pixelBytes_, pitch_;
  Bytes block_;
  std::size_t offset_;
};

/// The name of a format in the workloads: 8, 555, 565 or 24.
const char* depthName(std::uint32_t format);

/// A colour as a pixel; 8 bits: the mean of the channels.
std::uint32_t pixelOf(std::uint32_t format, std::uint32_t red, std::uint32_t green, std::uint32_t blue);

/// Inside one of the discs that fill 55 % of a keyed picture.
bool insideDisc(std::int32_t x, std::int32_t y);

/// Colour ramps with noise; no pixel is 0 or `key`.
Picture makePicture(std::uint32_t format, std::uint32_t seed, std::int32_t width = frameWidth,
                    std::int32_t height = frameHeight, std::uint32_t key = 0);

/// The same with `key` outside the discs.
Picture makeKeyedPicture(std::uint32_t format, std::uint32_t seed, std::int32_t width = frameWidth,
                         std::int32_t height = frameHeight, std::uint32_t key = 0);

/// Weights of the destination.
enum class AlphaKind { Random, Zero, Full, Mix };
Picture makeAlphaMap(AlphaKind kind, std::int32_t width = frameWidth, std::int32_t height = frameHeight);

Bytes makePalette();

/// Random depths.
Picture makeZBuffer();
Picture makeZMap(std::int32_t width = frameWidth, std::int32_t height = frameHeight);

}  // namespace kxbench
