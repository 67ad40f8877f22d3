// A call of each family of exports, on objects large enough for its vector code. What watches a call from outside (the
// stack, the control words of the processor) goes over this one list; a family that lands adds its lines.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <vector>

#include "kxgraphic/kxgraphic.h"
#include "kxgraphic/mmgr.h"

namespace kxtest {

/// The same objects with the same contents every time.
class Scene {
public:
  Scene() {
    KX_getBitmapInterface(&methods, nullptr, nullptr, 0);
    for (std::size_t i = 0; i < palette.size(); ++i) palette[i] = static_cast<std::uint8_t>(i * 37 + i / 7);
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<std::uint8_t>(i * i / 5 + i % 3);
    target = make(KX_FORMAT_565, 1);
    source = make(KX_FORMAT_565, 2);
    indexed = make(KX_FORMAT_PALETTE, 3);
    depth = make(KX_FORMAT_GREY, 4);
    weights = make(KX_FORMAT_GREY, 5);
    colours = make(KX_FORMAT_888, 6);
    if (indexed != nullptr) KX_setPalette(indexed, palette.data());
    for (std::size_t i = 0; i < water.size(); ++i) water[i] = static_cast<std::int16_t>(i * i % 400);

    KX_get3DDeviceInterface(&deviceMethods, nullptr, nullptr, 0);
    KX_create3DDevice(&device, target, 0, 0, 0, &deviceMethods);
    KX_createTexture(&texture, device, 16, 16, KX_FORMAT_565, 1);
    KX_createCamera(&camera, device);
    LS_createLandscape(&landscape, device, mapWidth, mapHeight, 1);
    for (std::int32_t i = 0; texture != nullptr && i < 256; ++i)
      KX_setPixel(texture->levels[0], i % 16, i / 16, static_cast<std::uint32_t>(i * 259));
  }

  ~Scene() {
    if (LS_deleteLandscape(landscape) == 0) mmgr_free(landscape);  // it leaves the record
    KX_deleteCamera(camera);
    KX_deleteTexture(texture);
    KX_delete3DDevice(device);
    for (Bitmap* bitmap : {target, source, indexed, depth, weights, colours})
      if (bitmap != nullptr) KX_deleteBitmap(bitmap);
  }

  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  /// A number that every pixel and every output hangs on.
  [[nodiscard]] std::uint32_t sum() const {
    std::uint32_t sum = 1;
    const auto add = [&sum](std::uint32_t value) { sum = (sum ^ value) * 0x01000193; };
    for (const Bitmap* bitmap : {target, source, indexed, depth, weights, colours})
      for (std::int32_t i = 0; bitmap != nullptr && i < bitmap->pitch * bitmap->height; ++i) add(bitmap->pixels[i]);
    for (const std::uint8_t byte : output) add(byte);
    for (const std::uint8_t byte : palette) add(byte);
    for (const std::int16_t cell : water) add(static_cast<std::uint32_t>(cell));
    for (int i = 0; landscape != nullptr && i < mapWidth * mapHeight; ++i) add(landscape->heightMap[i]);
    for (const std::uint32_t coordinate : place) add(coordinate);
    for (const float coordinate : point) add(std::bit_cast<std::uint32_t>(coordinate));
    return sum;
  }

  static constexpr std::int32_t width = 67, height = 9;

  static constexpr std::int32_t mapWidth = 33, mapHeight = 17;
  static constexpr std::int32_t cellsX = 20, cellsY = 12, waterPitch = 2 * cellsX;

  BitmapMethods methods;
  DeviceMethods deviceMethods;
  Device3D* device = nullptr;
  Texture* texture = nullptr;
  Camera* camera = nullptr;
  Landscape* landscape = nullptr;
  std::array<std::int16_t, 2 * cellsX * cellsY> water;
  std::array<float, 3> point{30, 20, 10};
  std::array<std::uint32_t, 2> place{};
  std::array<std::uint8_t, 768> palette;
  std::array<std::uint8_t, 1000> data;
  std::array<std::uint8_t, 4000> output{};
  Bitmap *target, *source, *indexed, *depth, *weights, *colours;

private:
  Bitmap* make(std::uint32_t format, std::uint32_t seed) {
    Bitmap* bitmap = nullptr;
    if (KX_createBitmap(&bitmap, width, height, format, 0, 0, &methods) != 0) return nullptr;
    for (std::int32_t i = 0; i < bitmap->pitch * height; ++i) {
      seed = seed * 1664525 + 1013904223;
      bitmap->pixels[i] = static_cast<std::uint8_t>(seed >> 24);
    }
    return bitmap;
  }
};

/// Triangles, cameras, landscapes and water.
template <typename Call>
void callOnThreeDimensions(Scene& s, Call&& call) {
  static const VertexInt corners[] = {
      {2, 0, 0, 0, 0, 0x102030}, {64, 2, 0, 15, 3, 0xE0F010}, {30, 8, 0, 4, 15, 0x404040}};
  static const float floats[] = {1, 2, 3, 4, 5, 6};
  static const std::int8_t tint[] = {1, -2, 3};
  const std::uint8_t on = 1, format = KX_FORMAT_565;
  const auto* image = reinterpret_cast<const std::uint16_t*>(s.source->pixels);
  std::int16_t* const next = s.water.data() + Scene::cellsX * Scene::cellsY;
  call("KX_calculateWaterMap", KX_calculateWaterMap, next, Scene::waterPitch, s.water.data(), Scene::waterPitch,
       Scene::cellsX, Scene::cellsY, on, 3);
  call("KX_drawWaterBitmap", KX_drawWaterBitmap, reinterpret_cast<std::uint16_t*>(s.target->pixels), 2, 1,
       s.target->pitch, next, Scene::waterPitch, 3, 1, 1, 18, 2, image, 0, 0, Scene::width, Scene::height,
       s.source->pitch, format, 5, tint);
  call("KX_drawTexturedTriangleGouraudShade", KX_drawTexturedTriangleGouraudShade, s.device, s.texture, corners, on);
  call("KX_drawTexturedTriangleGouraudShadeAlpha", KX_drawTexturedTriangleGouraudShadeAlpha, s.device, s.texture, 90,
       corners, on);
  call("KX_cameraSetPosition", KX_cameraSetPosition, s.camera, floats);
  call("KX_cameraSetRotation", KX_cameraSetRotation, s.camera, floats);
  call("KX_cameraSetParameter", KX_cameraSetParameter, s.camera, 2.5f, 4.0f, 3.0f, 640.0f, 480.0f);
  call("KX_cameraTransformAndProject", KX_cameraTransformAndProject, s.camera, s.point.data());
  call("LS_createHeightMap", LS_createHeightMap, s.landscape, 4711u, nullptr, 20, 10, 240);
  call("LS_softenHeightMap", LS_softenHeightMap, s.landscape, 1, 1, 30, 14);
  call("LS_findHillValley", LS_findHillValley, s.landscape, &s.place[0], &s.place[1], on, 0, 0, 33, 17);
}

/// Makes the calls as `call(name, function, arguments...)`.
template <typename Call>
void callEveryFamily(Scene& s, Call&& call) {
  const std::int32_t w = 61, h = 7;
  call("KX_setPixel", KX_setPixel, s.target, 3, 3, 0x1234u);
  call("KX_getPixel", KX_getPixel, s.target, 3, 3);
  call("KX_findNearestColor", KX_findNearestColor, 7u, 0x336699u, s.palette.data());
  call("KX_calculatePalette", KX_calculatePalette, s.palette.data(), s.colours);
  call("KX_convertTo32RGBA", KX_convertTo32RGBA, s.output.data(), 4 * w, s.data.data(), 3 * w, s.data.data(), w, w, 5);
  call("KX_bltCopy", KX_bltCopy, s.target, 1, 1, s.source, 2, 0, w, h);
  call("KX_bltCopy", KX_bltCopy, s.target, 1, 1, s.indexed, 2, 0, w, h);
  call("KX_bltCopyAlpha", KX_bltCopyAlpha, s.target, 1, 1, s.source, 2, 0, w, h, 100);
  call("KX_bltCopyTransparentZBuffer", KX_bltCopyTransparentZBuffer, s.target, s.depth, 1, 1, s.source, 2, 0, w, h, 99);
  call("KX_bltCopyAlphamapZMap", KX_bltCopyAlphamapZMap, s.target, s.depth, 1, 1, s.source, 2, 0, w, h, s.weights,
       s.weights, -20);
  call("KX_bltStretchAlpha", KX_bltStretchAlpha, s.target, 0, 0, 66, 8, s.colours, 2, 0, 31, 5, 100);
  call("KX_bltStretchTransparentAlphaZMap", KX_bltStretchTransparentAlphaZMap, s.target, s.depth, 0, 0, 66, 8, s.source,
       2, 0, 31, 5, 9, s.weights, 3);
  call("KX_drawLineAlpha", KX_drawLineAlpha, s.target, 0, 0, 66, 8, 0x5555u, 77);
  call("KX_drawPatternLine", KX_drawPatternLine, s.target, 0, 8, 66, 0, 2, s.source);
  call("KX_fillRectAlpha", KX_fillRectAlpha, s.target, 1, 1, w, h, 0xF00Fu, 128);
  call("KX_fillRectAlphaZBuffer", KX_fillRectAlphaZBuffer, s.target, s.depth, 1, 1, w, h, 0x0FF0u, 128, 100);
  call("KX_floodFill", KX_floodFill, s.target, 5, 5, 4, 0x7777u);
  call("KX_changeBrightnessContrast", KX_changeBrightnessContrast, s.colours, 10, 20, 128);
  call("KX_grayScale", KX_grayScale, s.colours);
  call("KX_mirrorBitmapX", KX_mirrorBitmapX, s.source);
  call("KX_invertBitmap", KX_invertBitmap, s.source);
  call("KX_getAverageLuminance", KX_getAverageLuminance, s.source);
  call("KX_calculateCRC", KX_calculateCRC, s.data.data(), 999);
  call("LZ_compress", LZ_compress, s.output.data(), s.data.data(), 999u);
  call("LZ_decompress", LZ_decompress, s.output.data() + 3000, s.output.data(), 800u, 900u);
  call("RLE_compress", RLE_compress, s.output.data(), s.data.data(), 999u);
  call("RLE_decompressWords", RLE_decompressWords, s.output.data() + 3000, s.output.data(), 700, 2u, 300u, nullptr);
  callOnThreeDimensions(s, call);
}

}  // namespace kxtest
