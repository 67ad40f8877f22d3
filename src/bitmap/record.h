// What the functions that make bitmaps share.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "frame/checks.h"
#include "frame/heap.h"
#include "frame/result.h"
#include "kxgraphic/types.h"

namespace kx {

/// Bytes of a palette: 256 entries of blue, green, red.
constexpr std::uint32_t paletteBytes = 768;

/// Newer method tables are refused; the pointer has been tested before.
inline Result checkVersion(const BitmapMethods* methods) {
  return methods->version > currentVersion ? Result::UnsupportedMethodsVersion : Result::Ok;
}

/// A zeroed bitmap record with its method table and version, or null.
inline HeapRecord<Bitmap> makeBitmapRecord(BitmapMethods* methods) {
  HeapRecord<Bitmap> bitmap = makeRecord<Bitmap>();
  if (bitmap) {
    bitmap->methods = methods;
    bitmap->version = currentVersion;
  }
  return bitmap;
}

/// Size of a plain pixel block of height + 1 rows; beyond any allocation when the record's numbers make no sense.
inline std::uint64_t plainBlockBytes(std::int32_t height, std::int64_t pitch) {
  return static_cast<std::uint64_t>((std::int64_t{height} + 1) * pitch);
}

/// True when the block exists and belongs to the bitmap; `borrowedFlag` is its bit in the flags word.
inline bool owns(const Bitmap& bitmap, const void* block, std::uint32_t borrowedFlag) {
  return block != nullptr && (bitmap.flags & borrowedFlag) == 0;
}

}  // namespace kx
