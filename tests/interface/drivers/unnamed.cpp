// A driver without a prefix, with a function for each table.
// SPDX-License-Identifier: MIT
#include <cstdint>

#include "kxgraphic/types.h"

extern "C" {
std::uint32_t KX_CALL __createBitmap(Bitmap**, std::int32_t, std::int32_t, std::uint32_t, std::uint32_t, std::uint32_t,
                                     BitmapMethods*);
std::uint32_t KX_CALL __flip(Screen*, std::uint32_t);
std::uint32_t KX_CALL __cameraTransformAndProject(Camera*, float*);
}

std::uint32_t KX_CALL __createBitmap(Bitmap**, std::int32_t width, std::int32_t height, std::uint32_t, std::uint32_t,
                                     std::uint32_t, BitmapMethods*) {
  return static_cast<std::uint32_t>(width * height);
}
std::uint32_t KX_CALL __flip(Screen*, std::uint32_t ignored) { return ignored + 1; }
std::uint32_t KX_CALL __cameraTransformAndProject(Camera*, float* point) { return static_cast<std::uint32_t>(*point); }
