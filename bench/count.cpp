// kxcount: one small piece of work of each family, to be run under callgrind, which counts its instructions
// (tools/check_counts.sh). Counts do not depend on what else the machine does, so that a slow-down shows at once.
// SPDX-License-Identifier: MIT
#include <valgrind/callgrind.h>

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "own_bitmaps.h"
#include "pixel/cpu.h"
#include "platform/display.h"
#include "scenes.h"
#include "smallest_calls.h"

namespace {

using namespace kxbench;

constexpr std::uint32_t grey = KX_FORMAT_GREY, indexed = KX_FORMAT_PALETTE, rgb16 = KX_FORMAT_565,
                        rgb24 = KX_FORMAT_888;
constexpr std::int32_t width = 203, height = 119;  // nothing round
constexpr std::int32_t side = 61;

using Work = std::function<std::uint32_t()>;

struct Operation {
  std::string name;
  Work work;
};

OwnedBitmap frame(std::uint32_t format) { return makeBitmap(makePicture(format, 2, width, height)); }
OwnedBitmap sprite(std::uint32_t format) { return makeBitmap(makeKeyedPicture(format, 1, side, side)); }

OwnedBitmap packed(std::uint32_t format) {
  Bitmap* bitmap = nullptr;
  require(KX_createBitmap(&bitmap, side, side, format | KX_STORAGE_PACKED, 0, 0, ownMethods()), "packed");
  OwnedBitmap made(bitmap);
  require(KX_bltCopy(bitmap, 0, 0, sprite(format).get(), 0, 0, side, side), "pack");
  return made;
}

/// Everything that the operations work on.
struct Scene {
  OwnedBitmap target8 = frame(grey), target16 = frame(rgb16), target24 = frame(rgb24), picture24 = frame(rgb24);
  OwnedBitmap sprite16 = sprite(rgb16), sprite24 = sprite(rgb24), sprite8 = sprite(indexed), packed16 = packed(rgb16);
  OwnedBitmap map = makeBitmap(makeAlphaMap(AlphaKind::Mix, side, side)),
              zBuffer = makeBitmap(makeAlphaMap(AlphaKind::Random, width, height)),
              zMap = makeBitmap(makeZMap(side, side));
  Bytes maze = makeMaze(), palette = makePalette(), stream = Bytes(20000), packedStream, plain;
  std::vector<std::int16_t> water = std::vector<std::int16_t>(std::size_t{width} * height), waves = water;
  Device3D* device = nullptr;
  Texture* texture = nullptr;
  Landscape* landscape = nullptr;
  std::int32_t count = 0;

  Scene() {
    static DeviceMethods methods;
    KX_get3DDeviceInterface(&methods, nullptr, nullptr, 1);
    require(KX_create3DDevice(&device, target16.get(), 0, 0, 0, &methods), "device");
    require(KX_createTexture(&texture, device, 64, 64, rgb16, 1), "texture");
    require(LS_createLandscape(&landscape, device, width, height, 0), "landscape");
    require(LS_createHeightMap(landscape, 5, nullptr, 9, 0, 255), "height map");
    Bitmap* const level = texture->levels[0];
    require(KX_bltCopy(level, 0, 0, target16.get(), 0, 0, 64, 64), "texels");
    for (std::int32_t y = 0; y < height; ++y)
      for (std::int32_t x = 0; x < width; ++x)
        water[static_cast<std::size_t>(y * width + x)] = static_cast<std::int16_t>((x * y) % 97 - 48);
    for (std::size_t i = 0; i < stream.size(); ++i)
      stream[i] = static_cast<std::uint8_t>(i % 640 < 200 ? 32 : "etaoin shrdlu"[i * i / 7 % 13]);
    packedStream.resize(2 * stream.size() + 8);
    plain.resize(stream.size() + 128);
  }
  ~Scene() {
    LS_deleteLandscape(landscape);
    KX_deleteTexture(texture);
    KX_delete3DDevice(device);
  }
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;
};

/// `call(x, y)` for a fan of places where a sprite fits, odd and even.
template <typename Call>
Work places(Call call) {
  return [call] {
    std::uint32_t code = 0;
    for (std::int32_t i = 0; i < 8; ++i) code |= call(i * 17, i * 7);
    return code;
  };
}

template <typename Call>
Work times(std::int32_t count, Call call) {
  return [=] {
    std::uint32_t code = 0;
    for (std::int32_t i = 0; i < count; ++i) code |= call(i);
    return code;
  };
}

Work triangles(Scene& s, std::int32_t alpha) {
  return times(8, [&s, alpha](std::int32_t i) {
    const VertexInt corners[] = {{3 + i, 5, 0, 0, 0, 0xFF8040},
                                 {50 + 15 * i, 20 + i, 0, 60, 5, 0x40FF80},
                                 {30, 60 + 6 * i, 0, 10, 63, 0x8040FF}};
    return alpha < 0 ? KX_drawTexturedTriangleGouraudShade(s.device, s.texture, corners, 1)
                     : KX_drawTexturedTriangleGouraudShadeAlpha(s.device, s.texture, alpha, corners, 1);
  });
}

std::vector<Operation> blits(Scene& s) {
  Bitmap *const t16 = s.target16.get(), *const t24 = s.target24.get(), *const s16 = s.sprite16.get(),
                *const s24 = s.sprite24.get(), *const s8 = s.sprite8.get(), *const p16 = s.packed16.get(),
                *const map = s.map.get(), *const z = s.zBuffer.get(), *const zMap = s.zMap.get(),
                *const picture = s.picture24.get();
  const auto at = [](auto call) { return places(call); };
  return {
      {"copy.565", at([=](auto x, auto y) { return KX_bltCopy(t16, x, y, s16, 0, 0, side, side); })},
      {"copy.24to565", at([=](auto x, auto y) { return KX_bltCopy(t16, x, y, s24, 0, 0, side, side); })},
      {"key.565", at([=](auto x, auto y) { return KX_bltCopyTransparent(t16, x, y, s16, 0, 0, side, side); })},
      {"key.24", at([=](auto x, auto y) { return KX_bltCopyTransparent(t24, x, y, s24, 0, 0, side, side); })},
      {"key.packed565", at([=](auto x, auto y) { return KX_bltCopyTransparent(t16, x, y, p16, 0, 0, side, side); })},
      {"key.palette565", at([=](auto x, auto y) { return KX_bltCopyTransparent(t16, x, y, s8, 0, 0, side, side); })},
      {"alpha.565", at([=](auto x, auto y) { return KX_bltCopyAlpha(t16, x, y, s16, 0, 0, side, side, 100); })},
      {"alpha.24", at([=](auto x, auto y) { return KX_bltCopyAlpha(t24, x, y, s24, 0, 0, side, side, 100); })},
      {"keyalpha.565",
       at([=](auto x, auto y) { return KX_bltCopyTransparentAlpha(t16, x, y, s16, 0, 0, side, side, 100); })},
      {"alphamap.565", at([=](auto x, auto y) { return KX_bltCopyAlphamap(t16, x, y, s16, 0, 0, side, side, map); })},
      {"alphamap.24", at([=](auto x, auto y) { return KX_bltCopyAlphamap(t24, x, y, s24, 0, 0, side, side, map); })},
      {"zbuffer.565", at([=](auto x, auto y) { return KX_bltCopyZBuffer(t16, z, x, y, s16, 0, 0, side, side, 128); })},
      {"zmap.565", at([=](auto x, auto y) { return KX_bltCopyZMap(t16, z, x, y, s16, 0, 0, side, side, zMap, 9); })},
      {"stretch.up565", [=] { return KX_bltStretch(t16, 0, 0, width, height, s16, 0, 0, side, side); }},
      {"stretch.down24", [=] { return KX_bltStretch(t24, 3, 2, 81, 47, picture, 0, 0, width, height); }},
      {"stretch.key24", [=] { return KX_bltStretchTransparent(t24, 0, 0, width, height, s24, 0, 0, side, side); }},
  };
}

std::vector<Operation> drawing(Scene& s) {
  Bitmap *const t8 = s.target8.get(), *const t16 = s.target16.get(), *const t24 = s.target24.get();
  const auto fan = [](auto call) { return times(12, [=](std::int32_t i) { return call(i * 16, 118 - i * 9); }); };
  return {
      {"line.565", fan([=](auto x, auto y) { return KX_drawLine(t16, 3, 4, x, y, 0x1234); })},
      {"line.24", fan([=](auto x, auto y) { return KX_drawLine(t24, 3, 4, x, y, 0x1234); })},
      {"linealpha.565", fan([=](auto x, auto y) { return KX_drawLineAlpha(t16, 3, 4, x, y, 0x1234, 100); })},
      {"fill.24", fan([=](auto x, auto y) { return KX_fillRect(t24, 1, 1, x + 1, y, 0x1234); })},
      {"fillalpha.565", fan([=](auto x, auto y) { return KX_fillRectAlpha(t16, 1, 1, x + 1, y, 0x1234, 100); })},
      {"fillalpha.24", fan([=](auto x, auto y) { return KX_fillRectAlpha(t24, 1, 1, x + 1, y, 0x1234, 100); })},
      {"flood.8",
       [=, &s] {
         for (std::int32_t y = 0; y < height; ++y)
           for (std::int32_t x = 0; x < width; ++x)
             t8->pixels[y * t8->pitch + x] = s.maze[static_cast<std::size_t>(y * frameWidth + x)];
         return KX_floodFill(t8, 3, 3, 0, mazeFill);
       }},
      {"triangle.565", triangles(s, -1)},
      {"trianglealpha.565", triangles(s, 100)},
  };
}

std::vector<Operation> images(Scene& s) {
  Bitmap *const t8 = s.target8.get(), *const t16 = s.target16.get(), *const t24 = s.target24.get();
  return {
      {"grey.24", [=] { return KX_grayScale(t24); }},
      {"grey.565", [=] { return KX_grayScale(t16); }},
      {"bright.24", [=] { return KX_changeBrightnessContrast(t24, 24, 20, 128); }},
      {"bright.8", [=] { return KX_changeBrightnessContrast(t8, 24, 20, 128); }},
      {"invert.565", [=] { return KX_invertBitmap(t16); }},
      {"mirrorX.24", [=] { return KX_mirrorBitmapX(t24); }},
      {"mirrorY.24", [=] { return KX_mirrorBitmapY(t24); }},
      {"luminance.565", [=] { return KX_getAverageLuminance(t16) & 0; }},
  };
}

/// Cells of one pixel; shift 0: not shaded.
Work water(Scene& s, std::int32_t shift) {
  return [&s, shift] {
    constexpr std::int8_t tint[3] = {-3, 2, 5};
    const Bitmap &to = *s.target16, &image = *s.sprite16;
    return KX_drawWaterBitmap(reinterpret_cast<std::uint16_t*>(to.pixels), 0, 0, to.pitch, s.water.data(), width * 2, 1,
                              1, 0, width - 2, height - 1, reinterpret_cast<const std::uint16_t*>(image.pixels), 0, 0,
                              side, side, image.pitch, 5, shift, tint);
  };
}

std::vector<Operation> streams(Scene& s) {
  const auto size = static_cast<std::uint32_t>(s.stream.size());
  const auto kept = [&s](std::uint32_t written) {
    s.count = static_cast<std::int32_t>(written);
    return written == 0 ? 1u : 0u;
  };
  return {
      {"wave",
       [&s] { return KX_calculateWaterMap(s.waves.data(), width, s.water.data(), width, width, height, 1, 5); }},
      {"refract", water(s, 0)},
      {"shade", water(s, 3)},
      {"soften", [&s] { return LS_softenHeightMap(s.landscape, 0, 0, -1, -1); }},
      {"lzw.compress", [=, &s] { return kept(LZ_compress(s.packedStream.data(), s.stream.data(), size)); }},
      {"lzw.decompress",
       [=, &s] {
         return LZ_decompress(s.plain.data(), s.packedStream.data(), static_cast<std::uint32_t>(s.count), size) - size;
       }},
      {"rle.compress", [=, &s] { return kept(RLE_compress(s.packedStream.data(), s.stream.data(), size)); }},
      {"rle.decompress",
       [=, &s] { return RLE_decompress(s.plain.data(), s.packedStream.data(), s.count, size, nullptr) - size; }},
      {"crc", [&s] { return KX_calculateCRC(s.stream.data(), static_cast<std::int32_t>(s.stream.size())) & 0; }},
  };
}

/// A display that shows nothing, so that presenting costs what the library does.
class NoDisplay final : public kx::platform::Display {
public:
  NoDisplay() { kx::platform::replaceDisplay(this); }
  ~NoDisplay() { kx::platform::replaceDisplay(nullptr); }
  NoDisplay(const NoDisplay&) = delete;
  NoDisplay& operator=(const NoDisplay&) = delete;

  bool enumerateMode(std::uint32_t, kx::platform::DisplayMode&) override { return false; }
  bool currentMode(kx::platform::DisplayMode&) override { return false; }
  bool changeMode(const kx::platform::DisplayMode&, void*) override { return false; }
  bool isWindow(void*) override { return true; }
  kx::platform::Extent clientSize(void*) override { return {1, 1}; }
  kx::platform::DisplayFormat format() override { return {{1, 1}, 32}; }
  void present(void*, const kx::platform::Frame&) override {}
};

/// A screen of one pixel.
Work flips() {
  struct OnePixel {
    NoDisplay display;
    ScreenMethods methods{};
    Screen* screen = nullptr;

    OnePixel() {
      methods.version = 0x10000;
      require(KX_createScreen(&screen, nullptr, 0, &methods), "screen");
      require(KX_setMode(screen, this, KX_MODE_WINDOWED, nullptr), "mode");
    }
    ~OnePixel() { KX_deleteScreen(screen); }
    OnePixel(const OnePixel&) = delete;
    OnePixel& operator=(const OnePixel&) = delete;
  };
  return [pixel = std::make_shared<OnePixel>()] {
    std::uint32_t code = 0;
    for (std::int32_t i = 0; i < placesOfCalls; ++i) code |= KX_flip(pixel->screen, 0);
    return code;
  };
}

/// A hundred of the smallest calls of each family: what a call costs beside its pixels.
std::vector<Operation> calls(Scene&) {
  std::vector<Operation> operations;
  for (const SmallestCall& each : makeSmallestCalls())
    operations.push_back({std::string("call.") + each.name, times(placesOfCalls, each.call)});
  operations.push_back({"call.flip", flips()});
  return operations;
}

void count(const std::string& name, const Work& work) {
  require(work(), name.c_str());  // warms: what is bound or allocated at first use
  CALLGRIND_ZERO_STATS;
  CALLGRIND_TOGGLE_COLLECT;
  const std::uint32_t code = work();
  CALLGRIND_TOGGLE_COLLECT;
  CALLGRIND_DUMP_STATS_AT(name.c_str());
  require(code, name.c_str());
}

}  // namespace

int main() {
  const struct {
    kx::CpuLevel level;
    const char* suffix;
  } levels[] = {{kx::CpuLevel::Sse2, ".sse2"}, {kx::CpuLevel::Avx2, ".avx2"}};
  for (const auto& [level, suffix] : levels) {
    kx::limitCpuLevel(level);
    if (kx::cpuLevel() != level) {
      static_cast<void>(std::fprintf(stderr, "no %s here\n", suffix + 1));
      return 3;
    }
    Scene scene;
    for (const auto make : {blits, drawing, images, streams, calls})
      for (const Operation& operation : make(scene)) count(operation.name + suffix, operation.work);
  }
}
