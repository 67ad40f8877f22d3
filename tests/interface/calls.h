// A call of each family of exports, on objects large enough for its vector code. What watches a call from outside (the
// stack, the control words of the processor) goes over this one list; a family that lands adds its lines.
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "kxgraphic/kxgraphic.h"

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
  }

  ~Scene() {
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
    return sum;
  }

  static constexpr std::int32_t width = 67, height = 9;

  BitmapMethods methods;
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
  call("RLE_compress", RLE_compress, s.output.data(), s.data.data(), 999u);
}

}  // namespace kxtest
