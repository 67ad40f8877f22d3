// Rows of pixels from one format into another by the colour rules.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "bitmap/nearest.h"

namespace kx {

/// Nearest entries of one palette, with the answers for recent colours. To be made only where it is used.
class NearestEntries {
public:
  explicit NearestEntries(const std::uint8_t* palette);

  std::uint8_t find(Rgb colour);

private:
  static constexpr std::uint32_t slots = 256;

  PalettePlanes planes_;
  std::uint32_t recent_[slots];  ///< the colour in the low 24 bits, its entry above
};

/// Converts `count` pixels; one-bit pixels are bytes of 0 and 1. `entries` serves palettes as targets only.
using ConvertRow = void (*)(std::uint8_t* dst, const std::uint8_t* src, std::size_t count, NearestEntries* entries);

/// The conversion between two formats by their words, null when the target format is not supported. Pixels of formats
/// that are not supported are bytes, and black. From format 4 the source is the palette's bytes, as of format 7.
ConvertRow convertRow(std::uint32_t from, std::uint32_t to);

}  // namespace kx
