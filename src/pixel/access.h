// Reading and writing one pixel of a plain row in any format.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "pixel/formats.h"
#include "pixel/memory.h"

namespace kx {

/// The pixel's value; 0 for unknown formats.
inline std::uint32_t readPixel(const std::uint8_t* row, std::uint32_t format, std::int32_t x) {
  const std::uint8_t* pixel = row + byteOffset(format, x);
  switch (formatCode(format)) {
    case KX_FORMAT_MONO:
      return *pixel >> (7 - (x & 7)) & 1u;
    case KX_FORMAT_GREY:
    case KX_FORMAT_PALETTE:
      return *pixel;
    case KX_FORMAT_555:
    case KX_FORMAT_565:
      return load16(pixel);
    case KX_FORMAT_888:
      return load24(pixel);
    default:
      return 0;
  }
}

/// Does nothing for unknown formats. One bit per pixel takes values of 0 and 1 only; others spill into the neighbours
/// of the same byte.
inline void writePixel(std::uint8_t* row, std::uint32_t format, std::int32_t x, std::uint32_t value) {
  std::uint8_t* pixel = row + byteOffset(format, x);
  switch (formatCode(format)) {
    case KX_FORMAT_MONO: {
      const int shift = 7 - (x & 7);
      *pixel = static_cast<std::uint8_t>((*pixel & ~(1u << shift)) | value << shift);
      break;
    }
    case KX_FORMAT_GREY:
    case KX_FORMAT_PALETTE:
      *pixel = static_cast<std::uint8_t>(value);
      break;
    case KX_FORMAT_555:
    case KX_FORMAT_565:
      store16(pixel, value);
      break;
    case KX_FORMAT_888:
      store24(pixel, value);
      break;
    default:
      break;
  }
}

}  // namespace kx
