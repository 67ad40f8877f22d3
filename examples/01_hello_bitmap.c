/* 01 Hello, bitmap: makes a bitmap, draws with points and rectangles, reads pixels back, and saves it.
 * SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

enum { WIDTH = 320, HEIGHT = 200, SHORE = 148 };

static Bitmap* picture;

/* Every function returns 0 or a code that says what is wrong. */
static void check(uint32_t code) {
  if (code == 0) return;
  fprintf(stderr, "kxgraphic: %s\n", kxErrorText(code));
  exit(1);
}

/* Colours are pixel values of the bitmap's format. */
static uint32_t rgb(double red, double green, double blue) {
  return KX_toRGB(picture->format, (uint32_t)red, (uint32_t)green, (uint32_t)blue);
}

/* The same random number from 0 to 1 for the same i, and a smooth curve through such numbers. */
static double noise(uint32_t i) {
  i = (i ^ 61) * 0x9E3779B1U;
  i = (i ^ i >> 15) * 0x85EBCA6BU;
  return (i >> 8) / 16777216.0;
}
static double curve(double x) {
  const uint32_t i = (uint32_t)x;
  const double f = x - i;
  return noise(i) + (noise(i + 1) - noise(i)) * f * f * (3 - 2 * f);
}

static void drawSky(void) {
  for (int32_t y = 0; y < SHORE; ++y) {
    const double t = (double)y / SHORE;
    check(KX_fillRect(picture, 0, y, WIDTH, 1, rgb(18 + 225 * t * t, 22 + 120 * t * t, 62 + 60 * t)));
  }
  for (uint32_t i = 0; i < 150; ++i) {
    const double light = noise(3 * i + 2);
    check(KX_setPixelAlpha(picture, (int32_t)(noise(3 * i) * WIDTH), (int32_t)(noise(3 * i + 1) * 90),
                           rgb(255, 250, 235), (int32_t)(60 + 180 * light)));
  }
}

static void drawMoon(int32_t centreX, int32_t centreY, int32_t radius) {
  for (int32_t y = -3 * radius; y <= 3 * radius; ++y)
    for (int32_t x = -3 * radius; x <= 3 * radius; ++x) {
      const int32_t square = x * x + y * y;
      if (centreY + y < 0 || square > 9 * radius * radius) continue;
      if (square > radius * radius) { /* the halo: alpha is the weight of what is there */
        const int32_t alpha = 255 - 90 * (9 * radius * radius - square) / (9 * radius * radius);
        check(KX_setPixelAlpha(picture, centreX + x, centreY + y, rgb(255, 235, 200), alpha));
      } else {
        const double spots =
            curve(40 + 0.1 * (x + 40) + 0.16 * (y + 40)) * curve(90 + 0.19 * (x + 40) - 0.07 * (y - 40));
        check(
            KX_setPixel(picture, centreX + x, centreY + y, rgb(255 - 60 * spots, 245 - 70 * spots, 220 - 80 * spots)));
      }
    }
}

static void drawMountains(uint32_t layer) {
  for (int32_t x = 0; x < WIDTH; ++x) {
    const double far = 2 - layer;
    const double at = x * (0.010 + 0.006 * layer) + 100 * (layer + 1);
    const double height = curve(at) * 60 + curve(at * 2.7) * 22 + curve(at * 8) * 8 + curve(at * 23) * 3;
    const int32_t top = SHORE - (int32_t)(height * (0.5 + 0.27 * far) + 4);
    const double snow = layer == 0 ? 20 : 0;
    check(KX_fillRect(picture, x, top, 1, SHORE - top, rgb(24 + 50 * far, 26 + 28 * far, 52 + 30 * far)));
    if (layer == 0)
      check(KX_fillRectAlpha(picture, x, top, 1, (int32_t)(2 + snow * curve(at * 12)), rgb(250, 200, 190), 90));
  }
}

int main(void) {
  BitmapMethods methods;
  KX_getBitmapInterface(&methods, NULL, NULL, 0); /* the library's own functions; bitmaps keep this table */
  check(KX_createBitmap(&picture, WIDTH, HEIGHT, KX_FORMAT_888, 0, 0, &methods));
  drawSky();
  drawMoon(236, 48, 19);
  for (uint32_t layer = 0; layer < 3; ++layer) drawMountains(layer);
  /* The lake: each row is the one as far above the shore, shaken sideways and darkened. */
  for (int32_t y = SHORE; y < HEIGHT; ++y)
    for (int32_t x = 0; x < WIDTH; ++x) {
      const int32_t from = x + (int32_t)((curve(y * 0.9 + 7) - 0.5) * (y - SHORE) * 0.35 + WIDTH) % WIDTH;
      check(KX_setPixel(picture, x, y, KX_getPixel(picture, from % WIDTH, 2 * SHORE - y - 1 - (y - SHORE) / 2)));
      check(KX_setPixelAlpha(picture, x, y, rgb(20, 30, 70), 150 - (y - SHORE)));
    }
  check(kxSaveBmp(picture, "01_hello_bitmap.bmp"));
  return KX_deleteBitmap(picture) != 0;
}
