// Addresses of rows and pixels of a plain bitmap; they are computed here only.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "kxgraphic/types.h"
#include "pixel/formats.h"
#include "pixel/memory_range.h"

namespace kx {

/// First byte of row y of a plain bitmap.
inline std::uint8_t* rowAddress(const Bitmap& bitmap, std::int32_t y) {
  return bitmap.pixels + static_cast<std::ptrdiff_t>(std::int64_t{bitmap.pitch} * y);
}

/// Byte of a plain bitmap that holds pixel (x, y), or its first byte.
inline std::uint8_t* pixelAddress(const Bitmap& bitmap, std::int32_t x, std::int32_t y) {
  return rowAddress(bitmap, y) + byteOffset(bitmap.format, x);
}

/// The memory of a plain bitmap's rows, the bytes between them included.
inline MemoryRange memoryOf(const Bitmap& bitmap) {
  const std::int64_t pitch = bitmap.pitch;
  return MemoryRange::ofRows(bitmap.pixels, std::max(pitch, -pitch), pitch, bitmap.height);
}

/// True when the rectangle lies wholly inside the bitmap. Sizes of 0 or less are the caller's business.
inline bool contains(const Bitmap& bitmap, std::int64_t x, std::int64_t y, std::int64_t w, std::int64_t h) {
  return x >= 0 && y >= 0 && x + w <= bitmap.width && y + h <= bitmap.height;
}

}  // namespace kx
