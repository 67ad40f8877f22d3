// Bitmaps made by hand for tests: memory at the edge of pages that nobody may touch, packed rows cut at random, every
// format and kind.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

#include "kxgraphic/kxgraphic.h"
#include "support/guard_pages.h"

namespace kxtest {

using Random = std::mt19937;

/// From `low` to `high`, both included.
inline std::int32_t between(Random& random, std::int32_t low, std::int32_t high) {
  return low + static_cast<std::int32_t>(random() % static_cast<std::uint32_t>(high - low + 1));
}

/// A picture in memory of its own. The record borrows or owns as it says; nothing is freed through it but what the
/// library put in.
class TestImage {
public:
  /// Random pixels: many of value 0, and runs of equal ones.
  TestImage(Random& random, std::uint32_t format, std::int32_t width, std::int32_t height, bool packed);
  ~TestImage();
  TestImage(const TestImage&) = delete;
  TestImage& operator=(const TestImage&) = delete;

  Bitmap* record() { return &record_; }
  const Bitmap& constRecord() const { return record_; }

  /// A copy of the whole memory: the pixel block or the packed stream, and the bytes on the side of it that has no page
  /// to guard it.
  std::vector<std::uint8_t> memory() const { return {memory_.begin(), memory_.end()}; }

  /// First byte of the pixel block within memory().
  std::size_t blockStart() const;

  /// Bytes of the pixel block that may be drawn on, with the spare row where there is one.
  std::size_t blockBytes() const;

  /// The pixels as they are now, row by row; through the library's unpacking for packed pictures.
  std::vector<std::uint32_t> pixels();

private:
  void allocate(Random& random, std::size_t blockBytes);
  void encodeRows(Random& random);

  Bitmap record_{};
  GuardedBlock memory_;
  GuardedBlock::Flush flush_{};
  std::vector<std::uint8_t> palette_, table8_;
  std::vector<std::uint16_t> table15_, table16_;
  std::vector<std::uint32_t> rowTable_;
};

/// The value of one pixel of a plain row.
std::uint32_t pixelAt(const std::uint8_t* row, std::uint32_t format, std::int64_t x);
void setPixelAt(std::uint8_t* row, std::uint32_t format, std::int64_t x, std::uint32_t value);

/// Whole bytes of a pixel; 0 for bits and unknown formats.
std::int64_t wholeBytes(std::uint32_t format);

/// The library's own method table.
BitmapMethods* methods();

}  // namespace kxtest
