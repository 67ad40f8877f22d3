// The exact layouts of the records on 32-bit targets, where games and drivers share them.
// SPDX-License-Identifier: MIT
#include <cstddef>

#include "kxgraphic/types.h"

namespace {

constexpr bool is32Bit = sizeof(void*) == 4;

template <std::size_t Actual, std::size_t Wanted>
constexpr bool holds = !is32Bit || Actual == Wanted;

#define KX_AT(record, field, offset) static_assert(holds<offsetof(record, field), offset>)

KX_AT(Bitmap, lockCount, 8);
KX_AT(Bitmap, width, 12);
KX_AT(Bitmap, format, 24);
KX_AT(Bitmap, flags, 28);
KX_AT(Bitmap, pitch, 36);
KX_AT(Bitmap, pixels, 40);
KX_AT(Bitmap, rowTable, 44);
KX_AT(Bitmap, palette, 48);
KX_AT(Bitmap, table15, 52);
KX_AT(Bitmap, table16, 56);
KX_AT(Bitmap, table8, 60);
KX_AT(Bitmap, extra1, 72);
KX_AT(Bitmap, extra2, 76);
static_assert(holds<sizeof(Bitmap), 88>);

static_assert(sizeof(VideoMode) == 16);

KX_AT(Screen, mode, 8);
KX_AT(Screen, modeFlags, 24);
KX_AT(Screen, restored, 25);
KX_AT(Screen, frameIndex, 28);
KX_AT(Screen, bufferCount, 32);
KX_AT(Screen, window, 36);
KX_AT(Screen, thirdBuffer, 44);
KX_AT(Screen, front, 48);
static_assert(holds<sizeof(Screen), 56>);

KX_AT(Device3D, clipLeft, 8);
KX_AT(Device3D, target, 24);
KX_AT(Device3D, zBuffer, 32);
KX_AT(Device3D, renderingDepth, 44);
KX_AT(Device3D, savedControlWord, 48);

KX_AT(Texture, levels, 4);
KX_AT(Texture, widthCodes, 40);
KX_AT(Texture, levelCount, 76);
static_assert(holds<sizeof(Texture), 80>);

KX_AT(Camera, position, 4);
KX_AT(Camera, rotation, 28);
KX_AT(Camera, parameters, 52);
KX_AT(Camera, matrix, 72);
KX_AT(Camera, scaleX, 108);
static_assert(holds<sizeof(Camera), 124>);

KX_AT(Landscape, position, 4);
KX_AT(Landscape, scale, 28);
KX_AT(Landscape, width, 52);
KX_AT(Landscape, heightMap, 60);
KX_AT(Landscape, colourLight, 72);
KX_AT(Landscape, textureHandles, 80);
KX_AT(Landscape, drawingState, 92);

static_assert(holds<sizeof(TextureRef), 72>);
static_assert(sizeof(VertexFloat) == 24 && sizeof(VertexInt) == 24);

#undef KX_AT

}  // namespace
