/* 05 Alpha map: a weight for every pixel. Torches light a wall: the bright wall is copied onto a dark one through maps
 * of soft discs. 0 takes the source, 255 keeps what is there. SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

enum { WIDTH = 320, HEIGHT = 200, FLOOR = 160, FORMAT = KX_FORMAT_555 };

static BitmapMethods methods;

static void check(uint32_t code) {
  if (code == 0) return;
  fprintf(stderr, "kxgraphic: %s\n", kxErrorText(code));
  exit(1);
}

static Bitmap* makeBitmap(int32_t width, int32_t height, uint32_t format, uint32_t colour) {
  Bitmap* bitmap;
  check(KX_createBitmap(&bitmap, width, height, format, 0, 0, &methods));
  check(KX_fillRect(bitmap, 0, 0, width, height, colour));
  return bitmap;
}

static double noise(int32_t x, int32_t y) {
  uint32_t i = (uint32_t)x * 0x9E3779B1U ^ (uint32_t)y * 0x85EBCA6BU;
  i = (i ^ i >> 15) * 0xC2B2AE35U;
  return ((i ^ i >> 13) & 0xFFFF) / 65536.0;
}

/* Bricks, slabs in front of them, and an arch in their middle. */
static Bitmap* makeWall(void) {
  Bitmap* wall = makeBitmap(WIDTH, HEIGHT, FORMAT, 0);
  for (int32_t y = 0; y < HEIGHT; ++y)
    for (int32_t x = 0; x < WIDTH; ++x) {
      const int32_t high = y < FLOOR ? 16 : 10 + (y - FLOOR) / 4, wide = y < FLOOR ? 34 : 52;
      const int32_t row = y < FLOOR ? y / high : 40 + (y - FLOOR) / 13;
      const int32_t column = (x + row % 2 * wide / 2) / wide;
      const int32_t inX = (x + row % 2 * wide / 2) % wide, inY = y < FLOOR ? y % high : (y - FLOOR) % 13;
      const int32_t arch = (x - 160) * (x - 160) + (y < 96 ? (y - 96) * (y - 96) : 0);
      double light = 0.64 + 0.28 * noise(column, row) + 0.06 * noise(x / 3, y);
      if (inX < 2 || inY < 2)
        light *= 0.45; /* mortar */
      else if (inX == 2 || inY == 2)
        light *= 1.12;
      if (y < FLOOR && arch < 46 * 46) light *= arch > 36 * 36 ? 1.12 : 0.10 + 0.10 * ((x / 9) % 2 == 0);
      check(KX_setPixel(wall, x, y,
                        KX_toRGB(FORMAT, (uint32_t)(200 * light), (uint32_t)((y < FLOOR ? 165 : 150) * light),
                                 (uint32_t)((y < FLOOR ? 130 : 150) * light))));
    }
  return wall;
}

/* Lowers the weights of an ellipse, down to `inner` in its middle; they rise to 255 at its rim. */
static void addGlow(Bitmap* map, int32_t centreX, int32_t centreY, int32_t radiusX, int32_t radiusY, double inner) {
  for (int32_t y = -radiusY; y < radiusY; ++y)
    for (int32_t x = -radiusX; x < radiusX; ++x) {
      const double fall = 1 - (double)(x * x) / (radiusX * radiusX) - (double)(y * y) / (radiusY * radiusY);
      if (fall <= 0) continue;
      const uint32_t old = KX_getPixel(map, centreX + x, centreY + y);
      check(KX_setPixel(map, centreX + x, centreY + y, (uint32_t)(old - (old - inner) * fall * fall)));
    }
}

int main(void) {
  KX_getBitmapInterface(&methods, NULL, NULL, 0);
  Bitmap* picture = makeBitmap(WIDTH, HEIGHT, FORMAT, KX_toRGB(FORMAT, 6, 8, 22));
  Bitmap* wall = makeWall();
  Bitmap* orange = makeBitmap(WIDTH, HEIGHT, FORMAT, KX_toRGB(FORMAT, 255, 120, 20));
  Bitmap* yellow = makeBitmap(WIDTH, HEIGHT, FORMAT, KX_toRGB(FORMAT, 255, 225, 110));
  Bitmap* light = makeBitmap(WIDTH, HEIGHT, KX_FORMAT_GREY, 255);
  Bitmap* haze = makeBitmap(WIDTH, HEIGHT, KX_FORMAT_GREY, 255);
  Bitmap* flame = makeBitmap(WIDTH, HEIGHT, KX_FORMAT_GREY, 255);

  check(KX_bltCopyAlpha(picture, 0, 0, wall, 0, 0, WIDTH, HEIGHT, 215)); /* night: a trace of the wall */
  for (int32_t x = 86; x <= 234; x += 148) {
    addGlow(light, x, 96, 84, 94, 0);
    addGlow(haze, x, 92, 80, 90, 185);
    addGlow(haze, x, 84, 20, 28, 70);
    addGlow(flame, x, 82, 7, 17, 0);
    check(KX_fillRect(wall, x - 2, 98, 5, 34, KX_toRGB(FORMAT, 70, 42, 24))); /* the torch itself */
    check(KX_fillRect(wall, x - 5, 96, 11, 5, KX_toRGB(FORMAT, 40, 36, 40)));
  }
  /* The map is read at the place of the source pixel: here both are as large as the picture. */
  check(KX_bltCopyAlphamap(picture, 0, 0, wall, 0, 0, WIDTH, HEIGHT, light));
  check(KX_bltCopyAlphamap(picture, 0, 0, orange, 0, 0, WIDTH, HEIGHT, haze));
  check(KX_bltCopyAlphamap(picture, 0, 0, yellow, 0, 0, WIDTH, HEIGHT, flame));
  check(kxSaveBmp(picture, "05_alpha_map.bmp"));
  Bitmap* const all[] = {picture, wall, orange, yellow, light, haze, flame};
  for (size_t i = 0; i < sizeof all / sizeof *all; ++i) check(KX_deleteBitmap(all[i]));
  return 0;
}
