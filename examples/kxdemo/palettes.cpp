// Palettes: 8-bit pictures whose colours change under way.
// SPDX-License-Identifier: MIT
#include <array>
#include <cmath>

#include "panels.h"

namespace demo {

namespace {

constexpr double pi = 3.14159265358979;

void setEntry(Palette& palette, int index, Rgb colour) {
  const auto at = static_cast<std::size_t>(index) * 3;
  palette[at] = static_cast<std::uint8_t>(colour.blue);
  palette[at + 1] = static_cast<std::uint8_t>(colour.green);
  palette[at + 2] = static_cast<std::uint8_t>(colour.red);
}

Rgb entry(const Palette& palette, int index) {
  const auto at = static_cast<std::size_t>(index) * 3;
  return {palette[at + 2], palette[at + 1], palette[at]};
}

class Palettes final : public PanelScene {
public:
  explicit Palettes(const Material& material)
      : PanelScene(material),
        plasma_(drawnPlasma()),
        picture_(converted(material.covering(width, height), KX_FORMAT_PALETTE)),
        few_(makeImage(width, height, KX_FORMAT_PALETTE)),
        original_(picture_.palette()) {
    // Sixteen colours of a miniature, over and over.
    const Image picture = material.covering(width, height);
    const Image miniature = makeImage(4, 4, KX_FORMAT_888);
    KX_CHECK(KX_bltStretch(miniature.get(), 0, 0, 4, 4, material.picture.get(), 0, 0, material.picture->width,
                           material.picture->height));
    Palette sixteen{};
    for (int i = 0; i < 256; ++i) {
      const std::uint32_t pixel = KX_getPixel(miniature.get(), i % 4, i / 4 % 4);
      setEntry(sixteen, i,
               {KX_toRed(KX_FORMAT_888, pixel), KX_toGreen(KX_FORMAT_888, pixel), KX_toBlue(KX_FORMAT_888, pixel)});
    }
    few_.setPalette(sixteen);
    KX_CHECK(KX_bltCopy(few_.bitmap(), 0, 0, picture.get(), 0, 0, width, height));
  }

  void draw(Bitmap* target, const Frame& frame) override {
    begin(target);
    const double t = frame.seconds;
    Palette palette{};

    for (int i = 0; i < 256; ++i) {
      const double phase = (i / 256.0 + t * 0.15) * 2 * pi;
      const auto channel = [&](double shift) { return static_cast<unsigned>(128 + 120 * std::sin(phase + shift)); };
      setEntry(palette, i, {channel(0), channel(1.3), channel(2.9)});
    }
    plasma_.setPalette(palette);
    show("Cycled: no pixel changes", "KX_setPaletteReference", [&](Bitmap* field) { cover(field, plasma_.bitmap()); });

    const double light = 0.55 + 0.45 * std::cos(t * 0.9 - 1.9);
    for (std::size_t i = 0; i < palette.size(); ++i) palette[i] = static_cast<std::uint8_t>(original_[i] * light);
    picture_.setPalette(palette);
    show("Faded to black and back", "KX_calculatePalette", [&](Bitmap* field) { cover(field, picture_.bitmap()); });

    show("The palette of that picture", "KX_toRGB, KX_fillRect", [&](Bitmap* field) {
      for (int i = 0; i < 256; ++i) {
        const Rgb shown = entry(palette, i);
        KX_CHECK(
            KX_fillRect(field, 4 + i % 16 * 12, 3 + i / 16 * 11, 11, 10, colour(shown.red, shown.green, shown.blue)));
      }
    });

    show("Sixteen colours, the nearest for each", "KX_bltCopy into 8 bits",
         [&](Bitmap* field) { cover(field, few_.bitmap()); });

    show("The entry nearest to a colour", "KX_findNearestColor", [&](Bitmap* field) { nearest(field, t); });

    show("Shades of one picture, one table each", "KX_createCachedPalette", [&](Bitmap* field) {
      for (int i = 0; i < 3; ++i) {
        const Rgb shade = bright(static_cast<int>(t) + i);
        Palette tinted{};
        for (int k = 0; k < 256; ++k) {
          const Rgb from = entry(original_, k);
          const unsigned grey = (from.red + from.green + from.blue) / 3;
          setEntry(tinted, k, {grey * shade.red / 255, grey * shade.green / 255, grey * shade.blue / 255});
        }
        void* table = nullptr;
        KX_CHECK(KX_createCachedPalette(&table, tinted.data(), field->format & KX_FORMAT_CODE_MASK));
        translate(field, i * 66, 66, static_cast<const std::uint16_t*>(table));
        mmgr_free(table);
      }
    });
  }

private:
  /// Six colours over and over.
  static Rgb bright(int index) {
    static constexpr std::array<Rgb, 6> colours{
        {{255, 120, 90}, {255, 210, 100}, {130, 230, 120}, {110, 220, 240}, {140, 150, 255}, {240, 140, 230}}};
    return colours[static_cast<std::size_t>(index) % colours.size()];
  }

  static Image drawnPlasma() {
    Image image = makeImage(width, height, KX_FORMAT_PALETTE);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x) {
        const double value = std::sin(x * 0.045) + std::sin(y * 0.06 + 1) + std::sin((x + y) * 0.035) +
                             std::sin(std::hypot(x - 60, y - 120) * 0.07);
        KX_CHECK(KX_setPixel(image.get(), x, y, static_cast<unsigned>((value + 4) * 31.8) & 255));
      }
    return image;
  }

  /// A program can use the table by itself, as the library does.
  void translate(Bitmap* field, int left, int wide, const std::uint16_t* table) const {
    for (int y = 0; y < height; ++y) {
      const std::uint8_t* from = picture_.bitmap()->pixels + picture_.bitmap()->pitch * y + left;
      auto* to = reinterpret_cast<std::uint16_t*>(field->pixels + field->pitch * y) + left;
      for (int x = 0; x < wide; ++x) to[x] = table[from[x]];
    }
  }

  void nearest(Bitmap* field, double t) const {
    for (int i = 0; i < 12; ++i) {
      const double part = i / 12.0 + t * 0.05;
      const std::uint32_t wanted = rainbow(part);
      const std::uint32_t format = field->format & KX_FORMAT_CODE_MASK;
      const auto index = static_cast<int>(KX_findNearestColor(format, wanted, few_.palette().data()));
      const Rgb found = entry(few_.palette(), index);
      KX_CHECK(KX_fillRect(field, 4 + i * 16, 20, 14, 66, wanted));
      KX_CHECK(KX_fillRect(field, 4 + i * 16, 96, 14, 66, colour(found.red, found.green, found.blue)));
    }
  }

  Indexed plasma_;
  Indexed picture_;
  Indexed few_;
  Palette original_;
};

}  // namespace

std::unique_ptr<Scene> makePalettes(const Material& material) { return std::make_unique<Palettes>(material); }

}  // namespace demo
