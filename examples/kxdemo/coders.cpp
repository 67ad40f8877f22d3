// The coders at work on pictures of different kinds: sizes, and proof that what comes back is what went in.
// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "art.h"
#include "scene.h"
#include "text.h"

namespace demo {

namespace {

class Coders final : public Scene {
public:
  explicit Coders(const Material& material)
      : picture_(material.covering(fieldWidth, fieldHeight)), stone_(makeStone(64, material.format, 4)) {
    for (Image& field : fields_) field = makeImage(fieldWidth, fieldHeight, material.format);
    balls_ = makeBall(48, material.format, {250, 200, 40});
  }

  void draw(Bitmap* target, const Frame& frame) override {
    KX_CHECK(KX_fillRect(target, 0, 0, frameWidth, frameHeight, colour(target, 24, 27, 34)));
    paint(frame.seconds);
    static constexpr const char* captions[] = {"A picture of many colours", "Tiles", "Sprites on black"};
    for (std::size_t i = 0; i < fields_.size(); ++i) report(target, static_cast<int>(i), captions[i], fields_[i]);
  }

private:
  static constexpr int fieldWidth = 200;
  static constexpr int fieldHeight = 124;
  static constexpr int pixelCount = fieldWidth * fieldHeight;
  static constexpr std::uint32_t plainBytes = pixelCount * 2;

  void paint(double t) {
    KX_CHECK(KX_bltStretch(fields_[0].get(), 0, 0, fieldWidth, fieldHeight, picture_.get(),
                           static_cast<int>(20 + 19 * std::sin(t)), 0, fieldWidth - 40, fieldHeight));
    for (int i = 0; i < 8; ++i)
      KX_CHECK(
          KX_bltCopy(fields_[1].get(), i % 4 * 50, i / 4 * 62, stone_.get(), static_cast<int>(t * 12) % 14, 0, 50, 62));
    KX_CHECK(KX_fillRect(fields_[2].get(), 0, 0, fieldWidth, fieldHeight, 0));
    for (int i = 0; i < 4; ++i)
      KX_CHECK(KX_bltCopyTransparent(fields_[2].get(), 2 + i * 50, 38 + static_cast<int>(36 * std::sin(t * 2 + i)),
                                     balls_.get(), 0, 0, 48, 48));
  }

  void report(Bitmap* target, int index, const char* caption, const Image& field) {
    const int y = headHeight + 6 + index * (fieldHeight + 16);
    KX_CHECK(KX_bltCopy(target, 10, y, field.get(), 0, 0, fieldWidth, fieldHeight));
    drawText(target, 224, y, caption, colour(target, 255, 255, 255), 2);

    const std::uint32_t lzw = LZ_compress(coded_.data(), field->pixels, plainBytes);
    const std::uint32_t lzwBack = LZ_decompress(back_.data(), coded_.data(), lzw, plainBytes);
    const bool lzwWhole = lzwBack == plainBytes && std::memcmp(back_.data(), field->pixels, plainBytes) == 0;
    const std::uint32_t runs = RLE_compressWords(coded_.data(), field->pixels, pixelCount, 2);
    const std::uint32_t runsBack =
        RLE_decompressWords(back_.data(), coded_.data(), static_cast<std::int32_t>(runs), 2, pixelCount, nullptr);
    const bool runsWhole = runsBack == plainBytes && std::memcmp(back_.data(), field->pixels, plainBytes) == 0;

    bar(target, y + 26, "Plain pixels", plainBytes, true, {110, 120, 140});
    bar(target, y + 54, "LZ_compress", lzw, lzwWhole, {90, 180, 110});
    bar(target, y + 82, "RLE_compressWords", runs, runsWhole, {100, 150, 240});
    char text[64];
    static_cast<void>(std::snprintf(text, sizeof text, "KX_calculateCRC: %08X",
                                    KX_calculateCRC(field->pixels, static_cast<std::int32_t>(plainBytes))));
    drawText(target, 224, y + 112, text, colour(target, 255, 214, 110));
  }

  static void bar(Bitmap* target, int y, const char* name, std::uint32_t bytes, bool whole, Rgb shade) {
    char text[96];
    static_cast<void>(std::snprintf(text, sizeof text, "%s: %u bytes, %u%%%s", name, bytes, bytes * 100 / plainBytes,
                                    whole ? "" : " - NOT THE SAME AFTERWARDS"));
    drawText(target, 224, y, text, colour(target, 205, 212, 224));
    constexpr std::uint32_t longest = 396;
    const auto length = static_cast<int>(std::min(longest, bytes * longest / plainBytes + 1));
    KX_CHECK(KX_fillRect(target, 224, y + 10, static_cast<int>(longest), 10, colour(target, 44, 50, 62)));
    KX_CHECK(KX_fillRect(target, 224, y + 10, length, 10, colour(target, shade.red, shade.green, shade.blue)));
  }

  Image picture_;
  Image stone_;
  Image balls_;
  std::array<Image, 3> fields_;
  std::vector<std::uint8_t> coded_ = std::vector<std::uint8_t>(plainBytes * 2 + 16);
  std::vector<std::uint8_t> back_ = std::vector<std::uint8_t>(plainBytes + 512);
};

}  // namespace

std::unique_ptr<Scene> makeCoders(const Material& material) { return std::make_unique<Coders>(material); }

}  // namespace demo
