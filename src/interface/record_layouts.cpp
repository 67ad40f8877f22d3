// The exact layouts of the records, which games and drivers share: on 32-bit Windows since ever, elsewhere with 8-byte
// pointers as the C ABI lays the same fields out.
// SPDX-License-Identifier: MIT
#include <cstddef>

#include "kxgraphic/types.h"

namespace {

/// `wanted32` holds where pointers have four bytes, `wanted64` where they have eight.
constexpr bool holds(std::size_t actual, std::size_t wanted32, std::size_t wanted64) {
  return actual == (sizeof(void*) == 4 ? wanted32 : wanted64);
}

#define KX_AT(record, field, wanted32, wanted64) static_assert(holds(offsetof(record, field), wanted32, wanted64))
#define KX_SIZE(record, wanted32, wanted64) static_assert(holds(sizeof(record), wanted32, wanted64))

KX_AT(Bitmap, version, 4, 8);
KX_AT(Bitmap, lockCount, 8, 12);
KX_AT(Bitmap, width, 12, 16);
KX_AT(Bitmap, height, 16, 20);
KX_AT(Bitmap, format, 24, 28);
KX_AT(Bitmap, flags, 28, 32);
KX_AT(Bitmap, pitch, 36, 40);
KX_AT(Bitmap, pixels, 40, 48);
KX_AT(Bitmap, rowTable, 44, 56);
KX_AT(Bitmap, palette, 48, 64);
KX_AT(Bitmap, table15, 52, 72);
KX_AT(Bitmap, table16, 56, 80);
KX_AT(Bitmap, table8, 60, 88);
KX_AT(Bitmap, extra1, 72, 104);
KX_AT(Bitmap, extra2, 76, 108);
KX_SIZE(Bitmap, 88, 120);

KX_SIZE(VideoMode, 16, 16);

KX_AT(Screen, mode, 8, 12);
KX_AT(Screen, modeFlags, 24, 28);
KX_AT(Screen, restored, 25, 29);
KX_AT(Screen, frameIndex, 28, 32);
KX_AT(Screen, bufferCount, 32, 36);
KX_AT(Screen, window, 36, 40);
KX_AT(Screen, application, 40, 48);
KX_AT(Screen, thirdBuffer, 44, 56);
KX_AT(Screen, front, 48, 64);
KX_AT(Screen, back, 52, 72);
KX_SIZE(Screen, 56, 80);

KX_AT(Device3D, clipLeft, 8, 12);
KX_AT(Device3D, target, 24, 32);
KX_AT(Device3D, screen, 28, 40);
KX_AT(Device3D, zBuffer, 32, 48);
KX_AT(Device3D, parameter1, 36, 56);
KX_AT(Device3D, renderingDepth, 44, 64);
KX_AT(Device3D, savedControlWord, 48, 68);
KX_SIZE(Device3D, 52, 72);

KX_AT(Texture, levels, 4, 8);
KX_AT(Texture, widthCodes, 40, 80);
KX_AT(Texture, levelCount, 76, 116);
KX_SIZE(Texture, 80, 120);

KX_AT(Camera, position, 4, 8);
KX_AT(Camera, rotation, 28, 32);
KX_AT(Camera, parameters, 52, 56);
KX_AT(Camera, matrix, 72, 76);
KX_AT(Camera, scaleX, 108, 112);
KX_SIZE(Camera, 124, 128);

KX_AT(Landscape, position, 4, 8);
KX_AT(Landscape, scale, 28, 32);
KX_AT(Landscape, width, 52, 56);
KX_AT(Landscape, heightMap, 60, 64);
KX_AT(Landscape, lightMap, 64, 72);
KX_AT(Landscape, textureMap, 68, 80);
KX_AT(Landscape, colourLight, 72, 88);
KX_AT(Landscape, textureCount, 76, 92);
KX_AT(Landscape, textureHandles, 80, 96);
KX_AT(Landscape, textureFlags, 88, 112);
KX_AT(Landscape, drawingState, 92, 120);

KX_SIZE(TextureRef, 72, 80);
KX_SIZE(VertexFloat, 24, 24);
KX_SIZE(VertexInt, 24, 24);

KX_AT(BitmapMethods, createBitmap, 8, 16);
KX_SIZE(BitmapMethods, 79 * 4, 79 * 8);
KX_SIZE(ScreenMethods, 11 * 4, 11 * 8);
KX_SIZE(DeviceMethods, 46 * 4, 46 * 8);

#undef KX_AT
#undef KX_SIZE

}  // namespace
