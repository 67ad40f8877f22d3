// SPDX-License-Identifier: MIT
#include "smallest_calls.h"

#include <array>
#include <string>

#include "kxgraphic/mmgr.h"
#include "own_bitmaps.h"
#include "rows.h"

namespace kxbench {

namespace {

constexpr std::uint32_t indexed = KX_FORMAT_PALETTE, rgb16 = KX_FORMAT_565, rgb24 = KX_FORMAT_888;
constexpr std::int32_t side = 128;

OwnedBitmap square(std::uint32_t format, std::int32_t length) {
  return makeBitmap(makePicture(format, 1, length, length));
}

struct Things {
  OwnedBitmap target = square(rgb16, side), source = square(rgb16, 16), indices = square(indexed, 16),
              oneIndex = square(indexed, 1), map = makeBitmap(makeAlphaMap(AlphaKind::Mix, 16, 16)),
              zBuffer = makeBitmap(makeAlphaMap(AlphaKind::Random, side, side)), zMap = makeBitmap(makeZMap(16, 16)),
              packed = makePackedBitmap(makePicture(rgb16, 1, 16, 16)), one = square(rgb16, 1),
              one24 = square(rgb24, 1);
  Bytes palette = makePalette(), packedByte = Bytes(64), plain = Bytes(256);
  std::uint32_t lzLength = 0, rleLength = 0;
  std::array<std::int16_t, 9> water = {}, waves = {};
  std::array<std::uint16_t, 1> pixel = {};
  Device3D* device = nullptr;
  Texture* texture = nullptr;
  Camera* camera = nullptr;
  Landscape* landscape = nullptr;

  Things() {
    static DeviceMethods methods;
    KX_get3DDeviceInterface(&methods, nullptr, nullptr, 1);
    require(KX_create3DDevice(&device, target.get(), 0, 0, 0, &methods), "device");
    require(KX_createTexture(&texture, device, 8, 8, rgb16, 1), "texture");
    require(KX_createCamera(&camera, device), "camera");
    constexpr float ahead[3] = {};
    require(KX_cameraSetRotation(camera, ahead), "rotation");
    require(KX_cameraSetParameter(camera, 100, 16, 16, side, side), "view");
    require(LS_createLandscape(&landscape, device, 4, 4, 0), "landscape");
    require(LS_createHeightMap(landscape, 5, nullptr, 9, 0, 255), "height map");
    lzLength = LZ_compress(packedByte.data(), plain.data(), 1);
    rleLength = RLE_compress(packedByte.data() + 32, plain.data(), 1);
  }
  ~Things() {
    LS_deleteLandscape(landscape);
    KX_deleteCamera(camera);
    KX_deleteTexture(texture);
    KX_delete3DDevice(device);
  }
  Things(const Things&) = delete;
  Things& operator=(const Things&) = delete;
};

using Calls = std::vector<SmallestCall>;
using Shared = std::shared_ptr<Things>;

void addBitmaps(Calls& calls, const Shared& things) {
  Bitmap *const t = things->target.get(), *const s = things->source.get(), *const oneIndex = things->oneIndex.get();
  const auto add = [&](const char* name, auto call) { calls.push_back({"bitmap_object", name, call}); };
  add("create", [](auto) {
    Bitmap* made = nullptr;
    const std::uint32_t code = KX_createBitmap(&made, 1, 1, rgb16, 0, 0, ownMethods());
    return code | KX_deleteBitmap(made);
  });
  add("clone", [s](auto) {
    Bitmap* made = nullptr;
    const std::uint32_t code = KX_cloneBitmap(&made, s, ownMethods());
    return code | KX_deleteBitmap(made);
  });
  add("palette", [=](auto) { return KX_setPalette(oneIndex, things->palette.data()); });
  add("size", [t](auto) {
    std::uint32_t size = 0;
    return KX_getBitmapSize(t, &size);
  });
  add("lock", [t](auto) {
    const std::uint32_t code = KX_lock(t);
    return code | KX_unlock(t);
  });
  calls.push_back({"bitmap_functions", "cachedPalette", [things](auto) {
                     void* table = nullptr;
                     const std::uint32_t code = KX_createCachedPalette(&table, things->palette.data(), rgb16);
                     mmgr_free(table);
                     return code;
                   }});
  calls.push_back({"common_methods", "technology", [](auto) { return KX_getDriverTechnology() & 0; }});
  calls.push_back({"interfaces", "bitmapTable", [](auto) {
                     BitmapMethods methods;
                     return KX_getBitmapInterface(&methods, nullptr, nullptr, 1) - 1u;
                   }});
}

void addDrawing(Calls& calls, const Shared& things) {
  Bitmap *const t = things->target.get(), *const s = things->source.get(), *const z = things->zBuffer.get(),
                *const one = things->one.get();
  const auto add = [&](const char* family, const char* name, auto call) { calls.push_back({family, name, call}); };
  add("points", "getPixel", [t](auto i) { return KX_getPixel(t, i, i) & 0; });
  add("points", "setPixel", [t](auto i) { return KX_setPixel(t, i, i, 7); });
  add("points", "setPixelAlpha", [t](auto i) { return KX_setPixelAlpha(t, i, i, 7, 9); });
  add("points", "setPixelZ", [=](auto i) { return KX_setPixelZBuffer(t, z, i, i, 7, 9); });
  add("lines", "line", [t](auto i) { return KX_drawLine(t, i, i, i, i, 7); });
  add("lines", "lineAlpha", [t](auto i) { return KX_drawLineAlpha(t, i, i, i, i, 7, 9); });
  add("lines", "patternLine", [=](auto i) { return KX_drawPatternLine(t, i + 8, i + 8, i + 8, i + 8, 1, s); });
  add("fills", "fill", [t](auto i) { return KX_fillRect(t, i, i, 1, 1, 7); });
  add("fills", "fillalpha", [t](auto i) { return KX_fillRectAlpha(t, i, i, 1, 1, 7, 9); });
  add("fills", "fillZ", [=](auto i) { return KX_fillRectZBuffer(t, z, i, i, 1, 1, 7, 9); });
  add("fills", "flood", [one](auto i) { return KX_floodFill(one, 0, 0, 0, static_cast<std::uint32_t>(i + 1)); });
  add("image_methods", "grey", [one](auto) { return KX_grayScale(one); });
  add("image_methods", "bright", [one](auto) { return KX_changeBrightnessContrast(one, 24, 20, 128); });
  add("image_functions", "invert", [one](auto) { return KX_invertBitmap(one); });
  add("image_functions", "mirrorX", [one](auto) { return KX_mirrorBitmapX(one); });
  add("image_functions", "mirrorY", [one](auto) { return KX_mirrorBitmapY(one); });
  add("image_functions", "luminance", [one](auto) { return KX_getAverageLuminance(one) & 0; });
}

void addBlits(Calls& calls, const Shared& things) {
  Bitmap *const t = things->target.get(), *const s = things->source.get(), *const z = things->zBuffer.get(),
                *const map = things->map.get(), *const zMap = things->zMap.get(), *const p = things->packed.get(),
                *const indices = things->indices.get();
  const auto add = [&](const char* name, auto call) { calls.push_back({"copy_blits", name, call}); };
  add("copy", [=](auto i) { return KX_bltCopy(t, i, i, s, 0, 0, 1, 1); });
  add("key", [=](auto i) { return KX_bltCopyTransparent(t, i, i, s, 0, 0, 1, 1); });
  add("alpha", [=](auto i) { return KX_bltCopyAlpha(t, i, i, s, 0, 0, 1, 1, 9); });
  add("keyalpha", [=](auto i) { return KX_bltCopyTransparentAlpha(t, i, i, s, 0, 0, 1, 1, 9); });
  add("alphamap", [=](auto i) { return KX_bltCopyAlphamap(t, i, i, s, 0, 0, 1, 1, map); });
  add("copyZ", [=](auto i) { return KX_bltCopyZBuffer(t, z, i, i, s, 0, 0, 1, 1, 9); });
  add("copyZMap", [=](auto i) { return KX_bltCopyZMap(t, z, i, i, s, 0, 0, 1, 1, zMap, 9); });
  add("copyPalette", [=](auto i) { return KX_bltCopy(t, i, i, indices, 0, 0, 1, 1); });
  add("keyPacked", [=](auto i) { return KX_bltCopyTransparent(t, i, i, p, 0, 0, 1, 1); });
  add("move", [t](auto i) { return KX_moveRect(t, i, i, i + 1, i, 1, 1); });
  const auto stretch = [&](const char* name, auto call) { calls.push_back({"stretch_blits", name, call}); };
  stretch("stretch", [=](auto i) { return KX_bltStretch(t, i, i, 1, 1, s, 0, 0, 1, 1); });
  stretch("stretchKey", [=](auto i) { return KX_bltStretchTransparent(t, i, i, 1, 1, s, 0, 0, 1, 1); });
  stretch("stretchAlpha", [=](auto i) { return KX_bltStretchAlpha(t, i, i, 1, 1, s, 0, 0, 1, 1, 9); });
  stretch("stretchZ", [=](auto i) { return KX_bltStretchZBuffer(t, z, i, i, 1, 1, s, 0, 0, 1, 1, 9); });
}

void addColours(Calls& calls, const Shared& things) {
  const auto add = [&](const char* family, const char* name, auto call) { calls.push_back({family, name, call}); };
  add("colours", "toRGB", [](auto i) { return KX_toRGB(rgb16, static_cast<std::uint32_t>(i), 99, 50) & 0; });
  add("colours", "nearest", [=](auto i) {
    return KX_findNearestColor(rgb24, static_cast<std::uint32_t>(i) * 0x20301, things->palette.data()) & 0;
  });
  add("colours", "makePalette", [=](auto) { return KX_calculatePalette(things->plain.data(), things->one24.get()); });
  add("colours", "split32", [=](auto) {
    std::uint8_t* const bytes = things->plain.data();
    return KX_convert32RGBA(bytes, 3, bytes + 4, 1, bytes + 8, 1, 1, 4);
  });
  add("clipping", "clipRects", [](auto i) {
    std::int32_t at[6] = {i - 50, 0, 60, 1, 0, 0};
    return static_cast<std::uint32_t>(
               KX_clipTwoRects(0, 0, 64, 64, at, at + 1, at + 2, at + 3, 0, 0, 64, 64, at + 4, at + 5)) &
           0;
  });
  add("clipping", "clipLine", [](auto i) {
    std::int32_t at[4] = {i - 50, 0, 60, 60};
    return static_cast<std::uint32_t>(KX_clipLine(0, 0, 64, 64, at, at + 1, at + 2, at + 3)) & 0;
  });
  std::uint8_t *const packed = things->packedByte.data(), *const plain = things->plain.data();
  add("codec", "lzCompress", [=](auto) { return LZ_compress(packed, plain, 1) - things->lzLength; });
  add("codec", "lzDecompress", [=](auto) { return LZ_decompress(plain, packed, things->lzLength, 1) - 1; });
  add("codec", "rleCompress", [=](auto) { return RLE_compress(packed + 32, plain, 1) - things->rleLength; });
  add("codec", "rleDecompress", [=](auto) {
    return RLE_decompress(plain, packed + 32, static_cast<std::int32_t>(things->rleLength), 1, nullptr) - 1;
  });
  add("codec", "crc", [=](auto) { return KX_calculateCRC(plain, 1) & 0; });
}

void addScenes(Calls& calls, const Shared& things) {
  const auto add = [&](const char* family, const char* name, auto call) { calls.push_back({family, name, call}); };
  add("device_object", "device", [=](auto) {
    Device3D* made = nullptr;
    const std::uint32_t code = KX_create3DDevice(&made, things->target.get(), 0, 0, 0, things->device->methods);
    return code | KX_delete3DDevice(made);
  });
  add("device_object", "texture", [=](auto) {
    Texture* made = nullptr;
    const std::uint32_t code = KX_createTexture(&made, things->device, 8, 8, rgb16, 1);
    return code | KX_deleteTexture(made);
  });
  add("device_object", "rendering", [=](auto) {
    const std::uint32_t code = KX_beginRendering(things->device);
    return code | KX_endRendering(things->device);
  });
  add("cameras", "camera", [=](auto) {
    Camera* made = nullptr;
    const std::uint32_t code = KX_createCamera(&made, things->device);
    return code | KX_deleteCamera(made);
  });
  add("cameras", "project", [=](auto i) {
    float point[] = {float(i), 20, 30};
    return KX_cameraTransformAndProject(things->camera, point);
  });
  add("triangles", "triangle", [=](auto i) {
    const VertexInt corners[] = {{i, i, 0, 0, 0, 0}, {i + 1, i, 0, 1, 0, 0}, {i, i + 1, 0, 0, 1, 0}};
    return KX_drawTexturedTriangleGouraudShade(things->device, things->texture, corners, 1);
  });
  add("triangles", "triangleAlpha", [=](auto i) {
    const VertexInt corners[] = {{i, i, 0, 0, 0, 0}, {i + 1, i, 0, 1, 0, 0}, {i, i + 1, 0, 0, 1, 0}};
    return KX_drawTexturedTriangleGouraudShadeAlpha(things->device, things->texture, 9, corners, 1);
  });
  add("landscape", "landscape", [=](auto) {
    Landscape* made = nullptr;
    const std::uint32_t code = LS_createLandscape(&made, things->device, 1, 1, 0);
    return code | LS_deleteLandscape(made);
  });
  add("height_map", "height", [=](auto) {
    std::uint32_t average = 0, lowest = 0, highest = 0;
    return LS_getAverageHeight(things->landscape, &average, &lowest, &highest, 1, 1, 1, 1);
  });
  add("height_map", "soften", [=](auto) { return LS_softenHeightMap(things->landscape, 1, 1, 1, 1); });
  add("water", "wave",
      [=](auto) { return KX_calculateWaterMap(things->waves.data(), 6, things->water.data(), 6, 3, 3, 0, 5); });
  const auto water = [=](std::int32_t shift) {
    return [=](auto) {
      constexpr std::int8_t tint[3] = {};
      return KX_drawWaterBitmap(things->pixel.data(), 0, 0, 2, things->water.data(), 6, 1, 1, 0, 1, 1,
                                reinterpret_cast<const std::uint16_t*>(things->one->pixels), 0, 0, 1, 1, 4, 5, shift,
                                tint);
    };
  };
  add("water", "refract", water(0));
  add("water", "shade", water(3));
}

const Group own([](std::vector<Row>& rows) {
  for (const SmallestCall& each : makeSmallestCalls())
    rows.push_back({std::string("n.call.") + each.name, "kx", placesOfCalls, placesOfCalls, [each] {
                      std::uint32_t code = 0;
                      for (std::int32_t i = 0; i < placesOfCalls; ++i) code |= each.call(i);
                      require(code, each.name);
                    }});
});

}  // namespace

std::vector<SmallestCall> makeSmallestCalls() {
  const auto things = std::make_shared<Things>();
  Calls calls;
  for (const auto add : {addBitmaps, addDrawing, addBlits, addColours, addScenes}) add(calls, things);
  return calls;
}

}  // namespace kxbench
