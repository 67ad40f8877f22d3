// SPDX-License-Identifier: MIT
#include "text.h"

#include <algorithm>
#include <array>
#include <vector>

#include "image.h"

namespace demo {

namespace {

constexpr int glyphWidth = 5;
constexpr int glyphHeight = 8;
constexpr int glyphsInBand = 16;
constexpr int bands = 6;
constexpr std::size_t glyphCount = 96;
constexpr char firstCharacter = ' ';
constexpr int spaceWidth = 3;
constexpr int bandLength = glyphsInBand * (glyphWidth + 1) - 1;

/// The characters from the space to the tilde: six bands of sixteen glyphs, eight rows each. The last row is for what
/// hangs below the line.
constexpr const char* glyphRows[bands * glyphHeight] = {
    // clang-format off
    "..... #.... #.#.. .#.#. ..#.. ##..# .##.. #.... .#... #.... ..... ..... ..... ..... ..... ...#.",
    "..... #.... #.#.. .#.#. .#### ##..# #..#. #.... #.... .#... ..#.. ..#.. ..... ..... ..... ...#.",
    "..... #.... #.#.. ##### #.#.. ...#. #.#.. #.... #.... .#... #.#.# ..#.. ..... ..... ..... ..#..",
    "..... #.... ..... .#.#. .###. ..#.. .#... ..... #.... .#... .###. ##### ..... ###.. ..... ..#..",
    "..... #.... ..... ##### ..#.# .#... #.#.# ..... #.... .#... #.#.# ..#.. ..... ..... ..... .#...",
    "..... ..... ..... .#.#. ####. #..## #..#. ..... #.... .#... ..#.. ..#.. .#... ..... ..... .#...",
    "..... #.... ..... .#.#. ..#.. #..## .##.# ..... .#... #.... ..... ..... .#... ..... #.... #....",
    "..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... #.... ..... ..... .....",

    ".###. .#... .###. .###. ...#. ##### ..##. ##### .###. .###. ..... ..... ..... ..... ..... .###.",
    "#...# ##... #...# #...# ..##. #.... .#... ....# #...# #...# ..... ..... ..#.. ..... #.... #...#",
    "#..## .#... ....# ....# .#.#. ####. #.... ...#. #...# #...# #.... .#... .#... ####. .#... ....#",
    "#.#.# .#... ...#. ..##. #..#. ....# ####. ..#.. .###. .#### ..... ..... #.... ..... ..#.. ...#.",
    "##..# .#... ..#.. ....# ##### ....# #...# .#... #...# ....# ..... ..... .#... ####. .#... ..#..",
    "#...# .#... .#... #...# ...#. #...# #...# .#... #...# ...#. ..... .#... ..#.. ..... #.... .....",
    ".###. ###.. ##### .###. ...#. .###. .###. .#... .###. .##.. #.... .#... ..... ..... ..... ..#..",
    "..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... #.... ..... ..... ..... .....",

    ".###. .###. ####. .###. ####. ##### ##### .###. #...# ###.. ...## #...# #.... #...# #...# .###.",
    "#...# #...# #...# #...# #...# #.... #.... #...# #...# .#... ....# #..#. #.... ##.## ##..# #...#",
    "#.### #...# #...# #.... #...# #.... #.... #.... #...# .#... ....# #.#.. #.... #.#.# #.#.# #...#",
    "#.#.# ##### ####. #.... #...# ####. ####. #.### ##### .#... ....# ##... #.... #.#.# #..## #...#",
    "#.### #...# #...# #.... #...# #.... #.... #...# #...# .#... ....# #.#.. #.... #...# #...# #...#",
    "#.... #...# #...# #...# #...# #.... #.... #...# #...# .#... #...# #..#. #.... #...# #...# #...#",
    ".###. #...# ####. .###. ####. ##### #.... .#### #...# ###.. .###. #...# ##### #...# #...# .###.",
    "..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... .....",

    "####. .###. ####. .#### ##### #...# #...# #...# #...# #...# ##### ##... #.... ##... ..#.. .....",
    "#...# #...# #...# #.... ..#.. #...# #...# #...# #...# #...# ....# #.... #.... .#... .#.#. .....",
    "#...# #...# #...# #.... ..#.. #...# #...# #...# .#.#. .#.#. ...#. #.... .#... .#... #...# .....",
    "####. #...# ####. .###. ..#.. #...# #...# #.#.# ..#.. ..#.. ..#.. #.... .#... .#... ..... .....",
    "#.... #.#.# #.#.. ....# ..#.. #...# .#.#. #.#.# .#.#. ..#.. .#... #.... ..#.. .#... ..... .....",
    "#.... #..#. #..#. ....# ..#.. #...# .#.#. ##.## #...# ..#.. #.... #.... ..#.. .#... ..... .....",
    "#.... .##.# #...# ####. ..#.. .###. ..#.. #...# #...# ..#.. ##### ##... ...#. ##... ..... #####",
    "..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... ..... .....",

    "#.... ..... #.... ..... ....# ..... .##.. ..... #.... #.... .#... #.... #.... ..... ..... .....",
    ".#... ..... #.... ..... ....# ..... #.... ..... #.... ..... ..... #.... #.... ..... ..... .....",
    "..... .###. ####. .###. .#### .###. ###.. .#### ####. #.... .#... #..#. #.... ##.#. ####. .###.",
    "..... ....# #...# #.... #...# #...# #.... #...# #...# #.... .#... #.#.. #.... #.#.# #...# #...#",
    "..... .#### #...# #.... #...# ##### #.... #...# #...# #.... .#... ##... #.... #.#.# #...# #...#",
    "..... #...# #...# #.... #...# #.... #.... .#### #...# #.... .#... #.#.. #.... #.#.# #...# #...#",
    "..... .#### ####. .###. .#### .###. #.... ....# #...# #.... .#... #..#. .#... #.#.# #...# .###.",
    "..... ..... ..... ..... ..... ..... ..... .###. ..... ..... #.... ..... ..... ..... ..... .....",

    "..... ..... ..... ..... .#... ..... ..... ..... ..... ..... ..... .##.. #.... ##... ..... .....",
    "..... ..... ..... ..... .#... ..... ..... ..... ..... ..... ..... .#... #.... .#... ..... .....",
    "####. .#### #.##. .###. ###.. #...# #...# #...# #...# #...# ##### .#... #.... .#... .#... .....",
    "#...# #...# ##... #.... .#... #...# #...# #...# .#.#. #...# ...#. #.... #.... ..#.. #.#.# .....",
    "#...# #...# #.... .###. .#... #...# #...# #.#.# ..#.. #...# ..#.. .#... #.... .#... ...#. .....",
    "####. .#### #.... ....# .#... #...# .#.#. #.#.# .#.#. .#### .#... .#... #.... .#... ..... .....",
    "#.... ....# #.... ####. ..#.. .#### ..#.. .#.#. #...# ....# ##### .##.. #.... ##... ..... .....",
    "#.... ....# ..... ..... ..... ..... ..... ..... ..... .###. ..... ..... ..... ..... ..... .....",  // clang-format on
};

struct Glyph {
  int x, y, width;
};

constexpr bool inked(int glyph, int column, int row) {
  return glyphRows[glyph / glyphsInBand * glyphHeight + row][glyph % glyphsInBand * (glyphWidth + 1) + column] == '#';
}

/// Where each glyph stands on a page, and how wide its ink is.
constexpr auto glyphs = [] {
  std::array<Glyph, glyphCount> table{};
  for (int i = 0; i < bands * glyphsInBand; ++i) {
    Glyph& glyph = table[static_cast<std::size_t>(i)];
    glyph = {i % glyphsInBand * (glyphWidth + 1), i / glyphsInBand * glyphHeight, i == 0 ? spaceWidth : 1};
    for (int row = 0; row < glyphHeight; ++row)
      for (int column = glyph.width; column < glyphWidth; ++column)
        if (inked(i, column, row)) glyph.width = column + 1;
  }
  return table;
}();

const Glyph& glyphOf(char character) {
  const int index = character - firstCharacter;
  constexpr int unknown = '?' - firstCharacter;
  return glyphs[static_cast<std::size_t>(index >= 0 && index < bands * glyphsInBand ? index : unknown)];
}

/// All glyphs in one colour, on transparent ground.
struct Page {
  std::uint32_t format;
  std::uint32_t colour;
  Image image;
};

Bitmap* pageOf(std::uint32_t format, std::uint32_t colour) {
  static std::vector<Page> pages;
  for (const Page& page : pages)
    if (page.format == format && page.colour == colour) return page.image.get();
  // Programs use few colours; one that fades text through many does not fill the memory.
  constexpr std::size_t most = 32;
  if (pages.size() == most) pages.erase(pages.begin());
  Image image = makeImage(bandLength, bands * glyphHeight, format);
  for (int row = 0; row < bands * glyphHeight; ++row)
    for (int column = 0; column < bandLength; ++column)
      if (glyphRows[row][column] == '#') KX_CHECK(KX_setPixel(image.get(), column, row, colour));
  pages.push_back({format, colour, std::move(image)});
  return pages.back().image.get();
}

void drawGlyph(Bitmap* target, int x, int y, Bitmap* page, const Glyph& glyph, int scale) {
  int left = glyph.x;
  int top = glyph.y;
  int width = glyph.width;
  int height = glyphHeight;
  if (scale == 1) {
    if (KX_clipTwoRects(0, 0, page->width - 1, page->height - 1, &left, &top, &width, &height, 0, 0, target->width - 1,
                        target->height - 1, &x, &y) != 0)
      KX_CHECK(KX_bltCopyTransparent(target, x, y, page, left, top, width, height));
    return;
  }
  int wide = width * scale;
  int high = height * scale;
  if (KX_clipStretchRect(0, 0, page->width - 1, page->height - 1, &left, &top, &width, &height, 0, 0, target->width - 1,
                         target->height - 1, &x, &y, &wide, &high) != 0)
    KX_CHECK(KX_bltStretchTransparent(target, x, y, wide, high, page, left, top, width, height));
}

}  // namespace

void drawText(Bitmap* target, int x, int y, std::string_view text, std::uint32_t colour, int scale) {
  Bitmap* page = pageOf(target->format & KX_FORMAT_CODE_MASK, std::max(colour, 1U));
  const int left = x;
  for (const char character : text) {
    if (character == '\n') {
      x = left;
      y += lineHeight * scale;
      continue;
    }
    const Glyph& glyph = glyphOf(character);
    if (character != ' ') drawGlyph(target, x, y, page, glyph, scale);
    x += (glyph.width + 1) * scale;
  }
}

int textWidth(std::string_view text, int scale) {
  int width = 0;
  for (const char character : text) width += (glyphOf(character).width + 1) * scale;
  return width;
}

}  // namespace demo
