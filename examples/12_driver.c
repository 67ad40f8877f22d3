/* 12 A driver library: this file is built twice. With SKETCH_DRIVER it is a library that fills rectangles and draws
 * lines like a pencil; without, a program that draws one scene with the library's own functions and one through the
 * driver. SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

#ifdef SKETCH_DRIVER
static uint32_t seed = 3;

static int32_t shake(void) {
  seed = seed * 1664525 + 1013904223;
  return (int32_t)(seed >> 30) - 1 - (int32_t)(seed >> 29 & 1);
}

/* The library finds these by their names: "_", the prefix, "_", the slot's name (and "@24" on Windows). What a driver
 * lacks the library fills in, and a driver may rest on the library. */
uint32_t KX_CALL _SKETCH_drawLine(Bitmap* bitmap, int32_t x1, int32_t y1, int32_t x2, int32_t y2, uint32_t colour) {
  uint32_t code = 0;
  for (int32_t i = 0; code == 0 && i < 3; ++i) { /* three strokes, none of them straight */
    int32_t fromX = x1 + shake(), fromY = y1 + shake(), toX = x2 + shake(), toY = y2 + shake();
    if (KX_clipLine(0, 0, bitmap->width - 1, bitmap->height - 1, &fromX, &fromY, &toX, &toY) != 0)
      code = KX_drawLineAlpha(bitmap, fromX, fromY, toX, toY, colour, 110);
    if (code == KX_ERROR_CoordinateOutOfRange) code = 0; /* a stroke beside the paper */
  }
  return code;
}

uint32_t KX_CALL _SKETCH_fillRect(Bitmap* bitmap, int32_t x, int32_t y, int32_t w, int32_t h, uint32_t colour) {
  uint32_t code = KX_fillRectAlpha(bitmap, x, y, w, h, colour, 205);
  for (int32_t i = 3; code == 0 && i < w + h; i += 3 + (shake() > 0)) { /* hatching */
    int32_t fromX = x + i - h, fromY = y + h - 1, toX = x + i, toY = y;
    if (KX_clipLine(x, y, x + w - 1, y + h - 1, &fromX, &fromY, &toX, &toY) != 0)
      code = KX_drawLineAlpha(bitmap, fromX, fromY, toX, toY, colour, 90 + 20 * shake());
    if (code == KX_ERROR_CoordinateOutOfRange) code = 0;
  }
  return code;
}

#else
enum { WIDTH = 160, HEIGHT = 200 };
#ifdef _WIN32
static const char driver[] = "./sketch_driver.dll";
#else
static const char driver[] = "./sketch_driver.so";
#endif

static void check(uint32_t code) {
  if (code == 0) return;
  fprintf(stderr, "kxgraphic: %s\n", kxErrorText(code));
  exit(1);
}

/* Calls go through the bitmap's own table, whoever filled it. */
static void box(Bitmap* b, int32_t x, int32_t y, int32_t w, int32_t h, uint32_t colour, uint32_t ink) {
  check(b->methods->fillRect(b, x, y, w, h, colour));
  const int32_t right = x + w - 1, bottom = y + h - 1;
  check(b->methods->drawLine(b, x, y, right, y, ink));
  check(b->methods->drawLine(b, right, y, right, bottom, ink));
  check(b->methods->drawLine(b, right, bottom, x, bottom, ink));
  check(b->methods->drawLine(b, x, bottom, x, y, ink));
}

static void drawScene(Bitmap* b) {
  const uint32_t ink = 0x30241C, sky = 0x7EB6E6, sun = 0xF6C33C, grass = 0x6FAE4A, wall = 0xE9C79A, roof = 0xC0473A,
                 glass = 0x9FD4EE, wood = 0x8A5A34, leaf = 0x3E8B45;
  check(KX_fillRect(b, 0, 0, WIDTH, HEIGHT, 0xF6F1E4)); /* paper, with the library's own function */
  box(b, 4, 4, WIDTH - 8, 126, sky, ink);
  box(b, 4, 130, WIDTH - 8, 66, grass, ink);
  for (int32_t y = -14; y <= 14; y += 4) /* the sun, in bars */
    check(b->methods->fillRect(b, 124 - 14 + y * y / 16, 30 + y, 28 - y * y / 8, 4, sun));
  box(b, 24, 88, 76, 72, wall, ink);
  for (int32_t i = 0; i < 9; ++i) box(b, 18 + i * 5, 84 - i * 5, 88 - i * 10, 6, roof, ink);
  for (int32_t x = 34; x < 90; x += 34) box(b, x, 100, 20, 18, glass, ink);
  box(b, 52, 126, 20, 34, wood, ink);
  box(b, 122, 112, 8, 50, wood, ink);
  box(b, 110, 66, 34, 50, leaf, ink);
  for (int32_t x = 6; x < WIDTH - 12; x += 11) box(b, x, 172, 6, 20, wood, ink);
  check(b->methods->drawLine(b, 6, 178, WIDTH - 8, 178, ink));
}

int main(void) {
  BitmapMethods own, sketch;
  Bitmap *picture, *half;
  KX_getBitmapInterface(&own, NULL, NULL, 0);
  if (KX_getBitmapInterface(&sketch, driver, "SKETCH", 0) == 0) return fprintf(stderr, "%s is missing\n", driver), 1;
  check(KX_createBitmap(&picture, 2 * WIDTH, HEIGHT, KX_FORMAT_888, 0, 0, &own));
  for (int32_t i = 0; i < 2; ++i) {
    check(KX_createBitmap(&half, WIDTH, HEIGHT, KX_FORMAT_888, 0, 0, i == 0 ? &own : &sketch));
    drawScene(half);
    check(KX_bltCopy(picture, i * WIDTH, 0, half, 0, 0, WIDTH, HEIGHT));
    check(KX_deleteBitmap(half));
  }
  check(kxSaveBmp(picture, "12_driver.bmp"));
  return KX_deleteBitmap(picture) != 0;
}
#endif
