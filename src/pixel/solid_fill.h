// Filling a rectangle of whole-byte pixels with one value.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace kx {

/// Writes `value` (its low `pixelBytes` bytes: 1, 2 or 3) to `rows` rows of `count` pixels that begin `pitch` bytes
/// apart.
void fillSolid(std::uint8_t* pixels, std::ptrdiff_t pitch, std::size_t rows, std::size_t count,
               std::uint32_t pixelBytes, std::uint32_t value);

}  // namespace kx
