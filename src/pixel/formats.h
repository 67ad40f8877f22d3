// What a format word says, and the facts of each pixel format: one table, and the same as types for templates.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "kxgraphic/types.h"

namespace kx {

/// One or more bits per channel, in place within the pixel value. Formats without colour channels have zero masks.
struct FormatInfo {
  std::uint32_t bytesFixed;  ///< bytes per pixel, 16.16 fixed point; 0: not supported
  std::uint32_t redMask, greenMask, blueMask;
};

constexpr FormatInfo formatTable[16] = {
    {0x02000, 0, 0, 0},                       // 0: one bit
    {},                                       // 1
    {},                                       // 2
    {0x10000, 0, 0, 0},                       // 3: intensity
    {0x10000, 0, 0, 0},                       // 4: palette index
    {0x20000, 0x7C00, 0x03E0, 0x001F},        // 5: 5-5-5
    {0x20000, 0xF800, 0x07E0, 0x001F},        // 6: 5-6-5
    {0x30000, 0xFF0000, 0x00FF00, 0x0000FF},  // 7: blue, green, red in memory
};

/// The format code of a format word.
constexpr std::uint32_t formatCode(std::uint32_t word) { return word & KX_FORMAT_CODE_MASK; }

constexpr const FormatInfo& formatInfo(std::uint32_t word) { return formatTable[formatCode(word)]; }

/// Whole bytes per pixel; 0 for one bit per pixel and for unknown formats.
constexpr std::uint32_t bytesPerPixel(std::uint32_t word) { return formatInfo(word).bytesFixed >> 16; }

/// False for formats that are not supported: their bitmaps may have any number of rows, all of them without a byte.
constexpr bool hasBytes(std::uint32_t word) { return formatInfo(word).bytesFixed != 0; }

/// True when either storage bit is set, which is how blits and lines see packed rows.
constexpr bool hasPackedRows(std::uint32_t word) { return (word & KX_STORAGE_MASK) != 0; }

/// True for the one layout of packed rows that is laid out at creation, which is how points and fills see them.
/// Settled: the two tests differ, and each keeps its users.
constexpr bool hasRunLengthRows(std::uint32_t word) { return (word & KX_STORAGE_MASK) == KX_STORAGE_PACKED; }

/// Bytes from row to row of plain storage: the row's bytes rounded up to whole words.
constexpr std::uint64_t plainPitch(std::uint32_t word, std::int64_t width) {
  const std::uint64_t bytes = (formatInfo(word).bytesFixed * static_cast<std::uint64_t>(width) + 0xFFFF) >> 16;
  return (bytes + 3) & ~std::uint64_t{3};
}

/// Byte of the row that holds pixel x.
constexpr std::uint64_t byteOffset(std::uint32_t word, std::int64_t x) {
  return (formatInfo(word).bytesFixed * static_cast<std::uint64_t>(x)) >> 16;
}

}  // namespace kx
