// Kernels over rows of pixels that change an image in place or measure it. Rows need no alignment.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace kx {

/// Pixel layouts as the image operations tell them apart; palettes go as Bgr24.
enum class ImageFormat : std::uint8_t { Grey8, Rgb555, Rgb565, Bgr24 };
constexpr std::size_t imageFormatCount = 4;

/// Brightness and contrast: factors in 256ths, 0 to 768, for pixels by their lightness.
struct BrightnessRule {
  std::int32_t pivot;  ///< 0 or more
  std::uint32_t below, at, above;
  bool transparent;  ///< keep pixels of value 0, and let no other become 0
};

/// The longest row that a sum is taken of at once.
constexpr std::size_t longestSumRow = 1 << 16;

/// The functions of one level of instruction sets; arrays go by ImageFormat.
struct ImageKernels {
  /// Each pixel becomes its grey; null for Grey8.
  void (*grey[imageFormatCount])(std::uint8_t* row, std::size_t count);

  void (*brighten[imageFormatCount])(std::uint8_t* row, std::size_t count, const BrightnessRule& rule);

  /// The sum of the pixels' lightness; at most longestSumRow pixels.
  std::uint32_t (*sumLightness[imageFormatCount])(const std::uint8_t* row, std::size_t count);

  /// byte = (byte ^ 0xFF) & mask, with the low byte of the mask first.
  void (*invert)(std::uint8_t* bytes, std::size_t size, std::uint16_t mask);

  /// Reverses the order of pixels of 1, 2 and 3 bytes.
  void (*reverse[3])(std::uint8_t* row, std::size_t count);
};

/// The kernels of the level in force.
const ImageKernels& imageKernels();

/// The meaning of each kernel, and the same with AVX2.
ImageKernels portableImageRows();
ImageKernels avx2ImageRows();

}  // namespace kx
