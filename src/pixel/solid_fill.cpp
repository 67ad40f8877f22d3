// Filling with one value: every pixel size repeats within 48 bytes, so that one loop of wide stores does for all.
// SPDX-License-Identifier: MIT
#include "pixel/solid_fill.h"

#include <cstring>

#include "pixel/blend_rules.h"

namespace kx {

namespace {

constexpr std::size_t block = 16;          ///< bytes of one store
constexpr std::size_t period = 3 * block;  ///< holds whole pixels of 1, 2 and 3 bytes

/// The pattern, and as much of its repetition as a store from any place of the first period reads.
struct Pattern {
  std::uint8_t bytes[period + block];

  Pattern(std::uint32_t pixelBytes, std::uint32_t value) {
    if (pixelBytes == 1)
      repeat<1>(value);
    else if (pixelBytes == 2)
      repeat<2>(value);
    else
      repeat<3>(value);
  }

private:
  template <std::size_t Bytes>
  void repeat(std::uint32_t value) {
    constexpr std::size_t start = 12;  // whole pixels of each size
    for (std::size_t i = 0; i < start; i += Bytes) storePixel<Bytes>(bytes + i, value);
    std::memcpy(bytes + start, bytes, start);
    std::memcpy(bytes + 2 * start, bytes, 2 * start);
    std::memcpy(bytes + period, bytes, block);
  }
};

void storeBlock(std::uint8_t* out, const std::uint8_t* from) { std::memcpy(out, from, block); }

/// Copies less than a block, in at most two pieces of equal size that may overlap.
void storeShort(std::uint8_t* out, const Pattern& pattern, std::size_t size) {
  if (size >= 8) {
    std::memcpy(out, pattern.bytes, 8);
    std::memcpy(out + size - 8, pattern.bytes + size - 8, 8);
  } else if (size >= 4) {
    std::memcpy(out, pattern.bytes, 4);
    std::memcpy(out + size - 4, pattern.bytes + size - 4, 4);
  } else {
    for (std::size_t i = 0; i < size; ++i) out[i] = pattern.bytes[i];
  }
}

void fillRow(std::uint8_t* out, const Pattern& pattern, std::size_t size) {
  if (size < block) return storeShort(out, pattern, size);
  std::uint8_t* const lastBlock = out + size - block;
  const std::size_t lastPhase = (size - block) % period;
  for (; size >= period; size -= period, out += period)
    for (std::size_t i = 0; i < period; i += block) storeBlock(out + i, pattern.bytes + i);
  for (std::size_t i = 0; i + block <= size; i += block) storeBlock(out + i, pattern.bytes + i);
  storeBlock(lastBlock, pattern.bytes + lastPhase);
}

}  // namespace

void fillSolid(std::uint8_t* pixels, std::ptrdiff_t pitch, std::size_t rows, std::size_t count,
               std::uint32_t pixelBytes, std::uint32_t value) {
  const Pattern pattern(pixelBytes, value);
  for (std::size_t y = 0; y < rows; ++y)
    fillRow(pixels + static_cast<std::ptrdiff_t>(y) * pitch, pattern, count * pixelBytes);
}

}  // namespace kx
