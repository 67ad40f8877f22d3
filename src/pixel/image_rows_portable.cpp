// The image kernels in plain C++: the meaning that the vector kernels keep to.
// SPDX-License-Identifier: MIT
#include <utility>

#include "pixel/blend_rules.h"
#include "pixel/image_rows.h"
#include "pixel/image_rules.h"

namespace kx {

namespace {

template <std::size_t Bytes, typename Change>
void changeRow(std::uint8_t* row, std::size_t count, Change change) {
  for (std::size_t i = 0; i < count; ++i) storePixel<Bytes>(row + i * Bytes, change(loadPixel<Bytes>(row + i * Bytes)));
}

template <std::size_t Bytes, typename Measure>
std::uint32_t sumRow(const std::uint8_t* row, std::size_t count, Measure measure) {
  std::uint32_t sum = 0;
  for (std::size_t i = 0; i < count; ++i) sum += measure(loadPixel<Bytes>(row + i * Bytes));
  return sum;
}

template <bool SixBitGreen>
void grey16(std::uint8_t* row, std::size_t count) {
  changeRow<2>(row, count, [](std::uint32_t value) {
    const std::uint32_t grey = imageGrey(widen<SixBitGreen>(value));
    return narrow<SixBitGreen>({grey, grey, grey});
  });
}

constexpr Channels channels24(std::uint32_t value) { return {value >> 16 & 0xFF, value >> 8 & 0xFF, value & 0xFF}; }

void grey24(std::uint8_t* row, std::size_t count) {
  changeRow<3>(row, count, [](std::uint32_t value) { return imageGrey(channels24(value)) * 0x010101; });
}

void brightenRow8(std::uint8_t* row, std::size_t count, const BrightnessRule& rule) {
  changeRow<1>(row, count, [rule](std::uint32_t value) { return brighten8(rule, value); });
}

template <bool SixBitGreen>
void brightenRow16(std::uint8_t* row, std::size_t count, const BrightnessRule& rule) {
  changeRow<2>(row, count, [rule](std::uint32_t value) { return brighten16<SixBitGreen>(rule, value); });
}

void brightenRow24(std::uint8_t* row, std::size_t count, const BrightnessRule& rule) {
  changeRow<3>(row, count, [rule](std::uint32_t value) { return brighten24(rule, value); });
}

std::uint32_t sum8(const std::uint8_t* row, std::size_t count) {
  return sumRow<1>(row, count, [](std::uint32_t value) { return value; });
}

template <bool SixBitGreen>
std::uint32_t sum16(const std::uint8_t* row, std::size_t count) {
  return sumRow<2>(row, count, [](std::uint32_t value) { return lightness(widen<SixBitGreen>(value)); });
}

std::uint32_t sum24(const std::uint8_t* row, std::size_t count) {
  return sumRow<3>(row, count, [](std::uint32_t value) { return lightness(channels24(value)); });
}

void invertBytes(std::uint8_t* bytes, std::size_t size, std::uint16_t mask) {
  std::size_t i = 0;
  for (; i + 2 <= size; i += 2) store16(bytes + i, ~std::uint32_t{load16(bytes + i)} & mask);
  if (i < size) bytes[i] = static_cast<std::uint8_t>(~bytes[i] & mask);
}

template <std::size_t Bytes>
void reverseRow(std::uint8_t* row, std::size_t count) {
  for (std::size_t left = 0, right = count; left + 1 < right; ++left) {
    --right;
    const std::uint32_t value = loadPixel<Bytes>(row + left * Bytes);
    storePixel<Bytes>(row + left * Bytes, loadPixel<Bytes>(row + right * Bytes));
    storePixel<Bytes>(row + right * Bytes, value);
  }
}

}  // namespace

ImageKernels portableImageRows() {
  return {
      .grey = {nullptr, grey16<false>, grey16<true>, grey24},
      .brighten = {brightenRow8, brightenRow16<false>, brightenRow16<true>, brightenRow24},
      .sumLightness = {sum8, sum16<false>, sum16<true>, sum24},
      .invert = invertBytes,
      .reverse = {reverseRow<1>, reverseRow<2>, reverseRow<3>},
  };
}

}  // namespace kx
