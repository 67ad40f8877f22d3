/* 02 Sprites and key: pictures whose pixels of value 0 are skipped, clipped at the picture's edge, plain or packed.
 * SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

enum { WIDTH = 160, HEIGHT = 100, SIZE = 16, FORMAT = KX_FORMAT_565 };

/* The left halves of symmetric sprites; a dot is the key. */
static const char* const tree[SIZE] = {"......dd", "....ddgg", "...dgggl", "..dgglgg", "..dggggg", ".dglggdg",
                                       ".dgglggg", "ddggggll", "dgglggld", "dggdgggg", ".dggggdg", "..dddggd",
                                       ".....dbb", "......bB", "......bB", ".....bbB"};
static const char* const toadstool[SIZE] = {"........", "........", "........", "......kk", "....kkrr", "...krwwr",
                                            "..krrwwr", "..krrrrr", ".kwwrrrr", ".kwwrrww", ".krrrrww", "..kkkkcc",
                                            "....kccc", "....kccc", "....kcCc", ".....kkk"};
static const char* const slime[SIZE] = {"........", "........", "........", "........", "......ss", "....sspp",
                                        "...spphp", "..spphpp", "..sppppp", ".sppwwpp", ".sppwkpp", ".spppppp",
                                        "spppppkk", "spqppppp", "sqqqqqpp", ".sssssss"};
static const struct {
  char letter;
  uint8_t red, green, blue;
} colours[] = {{'d', 16, 60, 40},    {'g', 40, 120, 50},   {'l', 120, 190, 70}, {'b', 80, 50, 30},
               {'B', 120, 80, 45},   {'k', 50, 20, 30},    {'r', 215, 50, 45},  {'w', 250, 245, 230},
               {'c', 240, 220, 180}, {'C', 200, 170, 130}, {'s', 40, 40, 110},  {'p', 90, 120, 230},
               {'q', 65, 80, 180},   {'h', 190, 215, 255}};

static BitmapMethods methods;
static uint32_t seed = 7;

static void check(uint32_t code) {
  if (code == 0) return;
  fprintf(stderr, "kxgraphic: %s\n", kxErrorText(code));
  exit(1);
}

static int32_t dice(int32_t sides) {
  seed = seed * 1664525 + 1013904223;
  return (int32_t)((uint64_t)seed * (uint32_t)sides >> 32);
}

static Bitmap* makeSprite(const char* const* rows, uint32_t storage) {
  Bitmap* sprite;
  check(KX_createBitmap(&sprite, SIZE, SIZE, FORMAT | storage, 0, 0, &methods));
  check(KX_fillRect(sprite, 0, 0, SIZE, SIZE, 0));
  for (int32_t y = 0; y < SIZE; ++y)
    for (int32_t x = 0; x < SIZE; ++x)
      for (size_t i = 0; i < sizeof colours / sizeof *colours; ++i)
        if (colours[i].letter == rows[y][x < SIZE / 2 ? x : SIZE - 1 - x])
          check(KX_setPixel(sprite, x, y, KX_toRGB(FORMAT, colours[i].red, colours[i].green, colours[i].blue)));
  return sprite;
}

/* Blits refuse rectangles that leave their bitmap, so clip first. */
static void drawSprite(Bitmap* target, Bitmap* sprite, int32_t x, int32_t y) {
  int32_t fromX = 0, fromY = 0, width = SIZE, height = SIZE;
  if (KX_clipTwoRects(0, 0, SIZE - 1, SIZE - 1, &fromX, &fromY, &width, &height, 0, 0, target->width - 1,
                      target->height - 1, &x, &y))
    check(KX_bltCopyTransparent(target, x, y, sprite, fromX, fromY, width, height));
}

int main(void) {
  Bitmap *meadow, *window;
  KX_getBitmapInterface(&methods, NULL, NULL, 0);
  check(KX_createBitmap(&meadow, WIDTH, HEIGHT, FORMAT, 0, 0, &methods));
  check(KX_createBitmap(&window, 2 * WIDTH, 2 * HEIGHT, FORMAT, 0, 0, &methods));
  Bitmap* sprites[] = {makeSprite(tree, KX_STORAGE_PACKED), makeSprite(toadstool, 0), makeSprite(slime, 0)};

  for (int32_t y = 0; y < HEIGHT; ++y) /* grass, and a path that bends */
    for (int32_t x = 0; x < WIDTH; ++x) {
      const int32_t bend = (y - 50) * (y - 50) / 40 + 55 + y / 3 - x + dice(3);
      const uint32_t light = (uint32_t)(dice(14) + (x / 8 + y / 8) % 2 * 6);
      check(KX_setPixel(meadow, x, y,
                        bend > 0 && bend < 22 ? KX_toRGB(FORMAT, 200 + light, 170 + light, 120)
                                              : KX_toRGB(FORMAT, 80 + light, 150 + light, 60)));
    }
  for (int32_t y = -8; y < HEIGHT; y += 6) /* from back to front */
    for (int32_t i = 0; i < 4; ++i) {
      const int32_t x = dice(WIDTH + SIZE) - SIZE, middle = (y - 40) * (y - 40) / 40 + 36 + y / 3;
      if (x < middle - 12 || x > middle + 22) drawSprite(meadow, sprites[dice(9) / 7], x, y);
      if (i == 3 && y % 4 == 0) drawSprite(meadow, sprites[2], middle + dice(8), y);
    }
  check(KX_bltStretch(window, 0, 0, 2 * WIDTH, 2 * HEIGHT, meadow, 0, 0, WIDTH, HEIGHT));
  check(kxSaveBmp(window, "02_sprites.bmp"));
  for (int i = 0; i < 3; ++i) check(KX_deleteBitmap(sprites[i]));
  check(KX_deleteBitmap(meadow));
  return KX_deleteBitmap(window) != 0;
}
