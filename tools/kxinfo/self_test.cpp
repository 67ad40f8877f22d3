// Each family of functions draws on pictures in every format, and the checksum of all of them is taken.
// SPDX-License-Identifier: MIT
#include "self_test.h"

#include <array>
#include <cstddef>
#include <cstring>

#include "kxgraphic/kxgraphic.h"
#include "kxgraphic/mmgr.h"

namespace kxinfo {

namespace {

constexpr std::int32_t width = 93, height = 41;
constexpr std::uint32_t formats[] = {KX_FORMAT_MONO, KX_FORMAT_GREY, KX_FORMAT_PALETTE,
                                     KX_FORMAT_555,  KX_FORMAT_565,  KX_FORMAT_888};

/// Pictures of all formats, plain and packed, and what goes with them.
class Desk {
public:
  Desk() {
    KX_getBitmapInterface(&methods_, nullptr, nullptr, 0);
    KX_get3DDeviceInterface(&deviceMethods_, nullptr, nullptr, 0);
    for (std::size_t i = 0; i < palette.size(); ++i) palette[i] = static_cast<std::uint8_t>(i * 37 + i / 7);
    for (const std::uint32_t format : formats) {
      pictures.push_back(make(format));
      if (format != KX_FORMAT_MONO) pictures.push_back(make(format | KX_STORAGE_PACKED));
    }
    for (const std::uint32_t format : {KX_FORMAT_888, KX_FORMAT_PALETTE, KX_FORMAT_565})
      sprites.push_back(make(format));
    depth = make(KX_FORMAT_GREY);
    weights = make(KX_FORMAT_GREY);
    for (Bitmap* sprite : sprites) scribble(sprite);
    scribble(weights);
    KX_fillRect(depth, 0, 0, width, height, 200);
  }

  ~Desk() {
    for (Bitmap* bitmap : pictures) KX_deleteBitmap(bitmap);
    for (Bitmap* bitmap : sprites) KX_deleteBitmap(bitmap);
    KX_deleteBitmap(depth);
    KX_deleteBitmap(weights);
  }

  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  /// Counts a result code and what the program itself computed.
  void note(std::uint32_t value) { noted_ = KX_calculateCRC(&value, sizeof value) ^ (noted_ << 1 | noted_ >> 31); }

  [[nodiscard]] std::uint32_t checksum() {
    for (Bitmap* bitmap : pictures)
      for (std::int32_t y = 0; y < height; ++y)
        for (std::int32_t x = 0; x < width; ++x) note(KX_getPixel(bitmap, x, y));
    for (std::int32_t y = 0; y < height; ++y)
      note(KX_calculateCRC(depth->pixels + std::ptrdiff_t{y} * depth->pitch, width));
    return noted_;
  }

  [[nodiscard]] DeviceMethods* deviceMethods() { return &deviceMethods_; }

  std::array<std::uint8_t, 768> palette;
  std::vector<Bitmap*> pictures, sprites;
  Bitmap *depth = nullptr, *weights = nullptr;

private:
  Bitmap* make(std::uint32_t format) {
    Bitmap* bitmap = nullptr;
    note(KX_createBitmap(&bitmap, width, height, format, 0, 0, &methods_));
    KX_setPalette(bitmap, palette.data());
    KX_fillRect(bitmap, 0, 0, width, height, 0);
    return bitmap;
  }

  /// Something in every pixel; a quarter of them stay 0, which transparent blits skip.
  static void scribble(Bitmap* bitmap) {
    std::uint32_t random = 12345;
    for (std::int32_t y = 0; y < height; ++y)
      for (std::int32_t x = 0; x < width; ++x) {
        random = random * 1664525 + 1013904223;
        KX_setPixel(bitmap, x, y, (random >> 30) == 0 ? 0 : random >> 7);
      }
  }

  BitmapMethods methods_;
  DeviceMethods deviceMethods_;
  std::uint32_t noted_ = 0;
};

void drawFills(Desk& desk) {
  for (Bitmap* bitmap : desk.pictures) {
    const std::uint32_t colour = KX_toRGB(bitmap->format, 200, 90, 30);
    desk.note(KX_fillRect(bitmap, 3, 2, 80, 30, colour));
    desk.note(KX_fillRectAlpha(bitmap, 10, 5, 60, 34, 0x1234567, 77));
    desk.note(KX_fillRectZBuffer(bitmap, desk.depth, 50, 1, 41, 39, 0x654321, 99));
    desk.note(KX_fillRectAlphaZBuffer(bitmap, desk.depth, 0, 20, 93, 20, 0xABCDEF, 150, 98));
    desk.note(KX_floodFill(bitmap, 5, 4, 8, 0x55AA55));
  }
}

void drawLines(Desk& desk) {
  for (Bitmap* bitmap : desk.pictures) {
    desk.note(KX_drawLine(bitmap, 0, 40, 92, 3, 0x777777));
    desk.note(KX_drawLineAlpha(bitmap, 92, 40, 0, 0, 0xF0F0F, 128));
    desk.note(KX_drawDottedLineZBuffer(bitmap, desk.depth, 5, 0, 9, 40, 0xFFFFFF, 3, 50));
    desk.note(KX_drawPatternLineTransparentAlpha(bitmap, 1, 1, 91, 22, 2, bitmap, 60));
    desk.note(KX_setPixelAlpha(bitmap, 46, 20, 0x808080, 30));
  }
}

void copy(Desk& desk) {
  for (Bitmap* bitmap : desk.pictures)
    for (Bitmap* sprite : desk.sprites) {
      desk.note(KX_bltCopy(bitmap, 1, 1, sprite, 2, 3, 31, 17));
      desk.note(KX_bltCopyTransparent(bitmap, 40, 3, sprite, 1, 1, 50, 30));
      desk.note(KX_bltCopyAlpha(bitmap, 0, 20, sprite, 11, 3, 77, 19, 100));
      desk.note(KX_bltCopyAlphamap(bitmap, 20, 10, sprite, 5, 6, 64, 30, desk.weights));
      desk.note(KX_bltCopyTransparentAlphaZBuffer(bitmap, desk.depth, 2, 2, sprite, 0, 0, 80, 33, 60, 40));
      desk.note(KX_bltCopyZMap(bitmap, desk.depth, 30, 5, sprite, 7, 7, 40, 30, desk.weights, -90));
    }
}

void stretch(Desk& desk) {
  for (Bitmap* bitmap : desk.pictures)
    for (Bitmap* sprite : desk.sprites) {
      desk.note(KX_bltStretch(bitmap, 0, 0, 70, 40, sprite, 2, 3, 31, 17));
      desk.note(KX_bltStretchTransparentAlpha(bitmap, 40, 3, 30, 30, sprite, 1, 1, 90, 40, 33));
      desk.note(KX_bltStretchAlphamapZBuffer(bitmap, desk.depth, 9, 9, 80, 20, sprite, 5, 6, 64, 30, desk.weights, 20));
    }
}

void change(Desk& desk) {
  for (Bitmap* bitmap : desk.pictures) {
    desk.note(KX_changeBrightnessContrast(bitmap, 10, 20, 128));
    desk.note(KX_mirrorBitmapX(bitmap));
    desk.note(KX_mirrorBitmapY(bitmap));
    desk.note(KX_getAverageLuminance(bitmap));
    desk.note(KX_invertBitmap(bitmap));
    desk.note(KX_moveRect(bitmap, 10, 5, 3, 3, 70, 30));
  }
  desk.note(KX_grayScale(desk.pictures.back()));
  desk.note(KX_calculatePalette(desk.palette.data(), desk.sprites[2]));
  desk.note(KX_calculateCRC(desk.palette.data(), 768));
}

void drawTriangles(Desk& desk) {
  for (Bitmap* bitmap : desk.pictures) {
    Device3D* device = nullptr;
    Texture* texture = nullptr;
    desk.note(KX_create3DDevice(&device, bitmap, 0, 0, 1, desk.deviceMethods()));
    if (device == nullptr) continue;
    desk.note(KX_createTexture(&texture, device, 16, 16, bitmap->format & KX_FORMAT_CODE_MASK, 2));
    if (texture != nullptr) {
      for (std::int32_t i = 0; i < 256; ++i)
        KX_setPixel(texture->levels[0], i % 16, i / 16, static_cast<std::uint32_t>(i * 259));
      const VertexInt corners[] = {
          {5, 2, 0, 0, 0, 0x102030}, {88, 11, 0, 15, 3, 0xE0F010}, {33, 39, 0, 4, 15, 0x404040}};
      desk.note(KX_beginRendering(device));
      desk.note(KX_drawTexturedTriangleGouraudShade(device, texture, corners, 1));
      desk.note(KX_drawTexturedTriangleGouraudShadeAlpha(device, texture, 90, corners, 1));
      desk.note(KX_endRendering(device));
      KX_deleteTexture(texture);
    }
    KX_delete3DDevice(device);
  }
}

void shapeLandscape(Desk& desk) {
  Device3D* device = nullptr;
  Landscape* island = nullptr;
  for (Bitmap* bitmap : desk.pictures)
    if (device == nullptr) KX_create3DDevice(&device, bitmap, 0, 0, 0, desk.deviceMethods());
  desk.note(LS_createLandscape(&island, device, 65, 33, 0));
  if (island != nullptr) {
    desk.note(LS_createHeightMap(island, 4711, nullptr, 20, 10, 240));
    desk.note(LS_softenHeightMap(island, 5, 5, 40, 20));
    desk.note(LS_gradeHeightMapRound(island, 7, 30, 15, 5, 14, 4, 100));
    desk.note(KX_calculateCRC(island->heightMap, 65 * 33));
    LS_deleteLandscape(island);
    mmgr_free(island);  // the record itself stays
  }
  KX_delete3DDevice(device);
}

void moveWater(Desk& desk) {
  std::array<std::int16_t, std::size_t{32} * 20> before{}, now{};
  now[303] = 3000;
  now[135] = -2000;
  for (int step = 0; step < 6; ++step) {
    desk.note(KX_calculateWaterMap(before.data(), 64, now.data(), 64, 32, 20, step % 2 == 0, 4));
    before.swap(now);
  }
  desk.note(KX_calculateCRC(now.data(), sizeof now));
}

void code(Desk& desk) {
  std::array<std::uint8_t, 3000> plain;
  std::array<std::uint8_t, 8000> coded{}, decoded{};
  for (std::size_t i = 0; i < plain.size(); ++i) plain[i] = static_cast<std::uint8_t>(i * i / 977 + i % 3);
  const std::uint32_t count = plain.size();
  const auto noteBoth = [&](std::uint32_t codedBytes, std::uint32_t decodedBytes) {
    desk.note(codedBytes);
    desk.note(decodedBytes);
    desk.note(KX_calculateCRC(coded.data(), static_cast<std::int32_t>(codedBytes)));
    desk.note(static_cast<std::uint32_t>(std::memcmp(plain.data(), decoded.data(), count) != 0));
  };
  std::uint32_t bytes = LZ_compress(coded.data(), plain.data(), count);
  noteBoth(bytes, LZ_decompress(decoded.data(), coded.data(), bytes, count));
  bytes = RLE_compressWords(coded.data(), plain.data(), count / 2, 2);
  noteBoth(bytes,
           RLE_decompressWords(decoded.data(), coded.data(), static_cast<std::int32_t>(bytes), 2, count / 2, nullptr));
}

}  // namespace

std::vector<Finding> selfTest() {
  struct Family {
    const char* name;
    void (*draw)(Desk&);
    std::uint32_t wanted;
  };
  constexpr Family families[] = {
      {"points and fills", drawFills, 0x7F85FD92},
      {"lines", drawLines, 0x692E03A9},
      {"copy blits", copy, 0x47729DF7},
      {"stretch blits", stretch, 0xF89A90EC},
      {"image operations", change, 0x52FCC3B7},
      {"triangles", drawTriangles, 0xB29DE570},
      {"landscapes", shapeLandscape, 0x8C89906A},
      {"water", moveWater, 0x3F7FCA92},
      {"coders", code, 0x50AE7C57},
  };
  Desk desk;
  std::vector<Finding> findings;
  for (const Family& family : families) {
    family.draw(desk);
    findings.push_back({family.name, desk.checksum(), family.wanted});
  }
  return findings;
}

}  // namespace kxinfo
