/* 08 Lines and patterns: solid, blended, dotted, stamped and clipped lines. SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

enum { WIDTH = 320, HEIGHT = 200, HORIZON = 118, FORMAT = KX_FORMAT_888 };

static BitmapMethods methods;
static Bitmap* picture;

static void check(uint32_t code) {
  if (code == 0) return;
  fprintf(stderr, "kxgraphic: %s\n", kxErrorText(code));
  exit(1);
}

/* Lines must lie inside the bitmap, so clip first; then a line and its glow. */
static void drawLine(int32_t x1, int32_t y1, int32_t x2, int32_t y2, uint32_t colour, int32_t alpha) {
  if (KX_clipLine(1, HORIZON, WIDTH - 2, HEIGHT - 2, &x1, &y1, &x2, &y2) == 0) return;
  if (x1 < 1 || x2 < 1 || x1 > WIDTH - 2 || x2 > WIDTH - 2) return; /* past a corner */
  check(KX_drawLineAlpha(picture, x1, y1, x2, y2, colour, alpha));
  for (int32_t side = -1; side <= 1; side += 2) {
    check(KX_drawLineAlpha(picture, x1 + side, y1, x2 + side, y2, colour, 255 - (255 - alpha) / 3));
    check(KX_drawLineAlpha(picture, x1, y1 + 1, x2, y2 + 1, colour, 255 - (255 - alpha) / 5));
  }
}

static void drawSky(void) {
  for (int32_t y = 0; y < HORIZON; ++y) {
    const uint32_t t = (uint32_t)y;
    check(KX_fillRect(picture, 0, y, WIDTH, 1, KX_toRGB(FORMAT, 18 + t * 5 / 4, 8 + t / 6, 48 + t * 2 / 3)));
  }
  for (int32_t i = 0; i < 70; ++i) /* a line of one point is a star */
    check(KX_drawLineAlpha(picture, i * 131 % 317, i * i * 7 % 83, i * 131 % 317, i * i * 7 % 83,
                           KX_toRGB(FORMAT, 255, 220, 255), 60 + i * 2));
  for (int32_t y = -52; y <= 14; ++y) { /* the sun, cut into stripes below */
    int32_t half = 0;
    while ((half + 1) * (half + 1) + y * y <= 52 * 52) ++half;
    if (y > -14 && (y + 52) % 9 < (y + 20) / 7) continue;
    check(KX_fillRect(picture, 160 - half, 104 + y, 2 * half + 1, 1,
                      KX_toRGB(FORMAT, 255, (uint32_t)(130 - y * 3 / 2), 90)));
  }
}

/* Mountains of wire: a ridge, and lines from its points down to the plain. */
static void drawMountains(int32_t left, int32_t right, uint32_t seed) {
  const uint32_t wire = KX_toRGB(FORMAT, 90, 220, 255);
  int32_t before = HORIZON;
  for (int32_t x = left; x < right; x += 12) {
    seed = seed * 1664525 + 1013904223;
    const int32_t fromEnd = x - left < right - x ? x - left : right - x;
    const int32_t top = HORIZON - fromEnd * 2 / 3 - (int32_t)(seed >> 27) * fromEnd / 90;
    for (int32_t i = 0; i < 12; ++i) {
      const int32_t y = before + (top - before) * i / 12;
      check(KX_fillRect(picture, x + i, y, 1, HORIZON - y + 1, KX_toRGB(FORMAT, 26, 10, 52)));
    }
    check(KX_drawLineAlpha(picture, x, before, x + 12, top, wire, 40));
    check(KX_drawLineAlpha(picture, x, before, x + 6, HORIZON, wire, 150));
    check(KX_drawLineAlpha(picture, x + 12, top, x + 6, HORIZON, wire, 150));
    check(KX_drawDottedLineAlpha(picture, x + 12, top, x + 12, HORIZON, wire, 3, 120));
    before = top;
  }
  check(KX_drawLineAlpha(picture, right, before, right, HORIZON, wire, 40));
}

int main(void) {
  KX_getBitmapInterface(&methods, NULL, NULL, 0);
  check(KX_createBitmap(&picture, WIDTH, HEIGHT, FORMAT, 0, 0, &methods));
  drawSky();
  drawMountains(2, 122, 5);
  drawMountains(198, 318, 77);
  /* The plain: rows closer together far away, columns that meet behind the horizon. */
  const uint32_t pink = KX_toRGB(FORMAT, 255, 60, 190), white = KX_toRGB(FORMAT, 255, 240, 255);
  check(KX_fillRect(picture, 0, HORIZON, WIDTH, HEIGHT - HORIZON, KX_toRGB(FORMAT, 22, 6, 44)));
  for (int32_t i = 0; i < 16; ++i)
    drawLine(1, HORIZON + i * i * 2 / 5, WIDTH - 2, HORIZON + i * i * 2 / 5, pink, 150 - i * 8);
  for (int32_t i = -24; i <= 24; ++i)
    if (i * i > 1) drawLine(160 + i * 9, HORIZON, 160 + i * 44, HEIGHT - 2, pink, 110);

  /* The road's edges: a ball of light stamped along lines. Its pixels of value 0 are left out. */
  for (int32_t radius = 1; radius <= 3; ++radius) {
    Bitmap* stamp;
    const int32_t size = 2 * radius + 1;
    check(KX_createBitmap(&stamp, size, size, FORMAT, 0, 0, &methods));
    for (int32_t i = 0; i < size * size; ++i) {
      const int32_t x = i % size - radius, y = i / size - radius;
      check(KX_setPixel(stamp, x + radius, y + radius, x * x + y * y <= radius * radius ? white : 0));
    }
    for (int32_t side = -1; side <= 1; side += 2)
      check(KX_drawPatternLineTransparentAlpha(picture, 160 + side * (radius * 13 - 4), HORIZON + 2 + (radius - 1) * 27,
                                               160 + side * (radius * 13 + 7), HORIZON + 26 + (radius - 1) * 27,
                                               4 + 4 * radius, stamp, 30));
    check(KX_deleteBitmap(stamp));
  }
  for (int32_t y = HORIZON + 4, gap = 3; y + gap < HEIGHT - 2; y += 2 * gap, gap += 2)
    check(KX_drawLine(picture, 160, y, 160, y + gap, white));
  check(kxSaveBmp(picture, "08_lines.bmp"));
  return KX_deleteBitmap(picture) != 0;
}
