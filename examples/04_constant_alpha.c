/* 04 Constant alpha: lights out of focus, a pane of glass and a veil. Alpha is the weight of what is already there: 0
 * covers, 255 changes nothing.
 * SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

enum { WIDTH = 320, HEIGHT = 200, LARGEST = 29, FORMAT = KX_FORMAT_888 };

static BitmapMethods methods;
static uint32_t seed = 4;

static void check(uint32_t code) {
  if (code == 0) return;
  fprintf(stderr, "kxgraphic: %s\n", kxErrorText(code));
  exit(1);
}

static int32_t dice(int32_t low, int32_t high) {
  seed = seed * 1664525 + 1013904223;
  return low + (int32_t)((uint64_t)seed * (uint32_t)(high - low + 1) >> 32);
}

/* A disc with a brighter rim on ground of value 0, which transparent blits skip. */
static Bitmap* makeLight(int32_t radius, uint32_t colour, uint32_t rim) {
  Bitmap* light;
  check(KX_createBitmap(&light, 2 * radius + 1, 2 * radius + 1, FORMAT, 0, 0, &methods));
  check(KX_fillRect(light, 0, 0, light->width, light->height, 0));
  for (int32_t y = -radius; y <= radius; ++y)
    for (int32_t x = -radius; x <= radius; ++x) {
      const int32_t square = x * x + y * y;
      if (square <= radius * radius)
        check(KX_setPixel(light, x + radius, y + radius, square > (radius - 2) * (radius - 2) ? rim : colour));
    }
  return light;
}

static void drawLight(Bitmap* picture, int32_t x, int32_t y, int32_t radius, int32_t kind, int32_t alpha) {
  static const uint8_t colours[5][3] = {
      {255, 190, 90}, {255, 120, 60}, {250, 225, 170}, {90, 160, 255}, {255, 70, 110}};
  const uint8_t* c = colours[kind];
  Bitmap* light = makeLight(radius, KX_toRGB(FORMAT, c[0], c[1], c[2]),
                            KX_toRGB(FORMAT, 255, (c[1] + 255U) / 2, (c[2] + 255U) / 2));
  int32_t fromX = 0, fromY = 0, width = light->width, height = light->height;
  x -= radius;
  y -= radius;
  if (KX_clipTwoRects(0, 0, width - 1, height - 1, &fromX, &fromY, &width, &height, 0, 0, WIDTH - 1, HEIGHT - 1, &x,
                      &y))
    check(KX_bltCopyTransparentAlpha(picture, x, y, light, fromX, fromY, width, height, alpha));
  check(KX_deleteBitmap(light));
}

int main(void) {
  Bitmap* picture;
  KX_getBitmapInterface(&methods, NULL, NULL, 0);
  check(KX_createBitmap(&picture, WIDTH, HEIGHT, FORMAT, 0, 0, &methods));
  for (int32_t y = 0; y < HEIGHT; ++y) {
    const uint32_t t = (uint32_t)y;
    check(KX_fillRect(picture, 0, y, WIDTH, 1, KX_toRGB(FORMAT, 10 + t / 5, 12 + t / 10, 42 + t / 8)));
  }
  for (int32_t x = 0; x < WIDTH;) { /* houses against the sky */
    const int32_t width = dice(12, 34), top = dice(50, 120);
    check(KX_fillRectAlpha(picture, x, top, x + width > WIDTH ? WIDTH - x : width, HEIGHT - top, 0, 140));
    x += width + dice(0, 5);
  }
  for (int32_t i = 0; i < 90; ++i) { /* small and far ones first */
    const int32_t alpha = 165 + dice(0, 35) + i / 3, kind = dice(0, 4), high = dice(-60, 60), low = dice(-30, 30);
    drawLight(picture, dice(0, WIDTH), 120 + high + low, 3 + i * (LARGEST - 3) / 90, kind, alpha);
  }
  for (int32_t i = 0; i < 8; ++i) /* one that moves: older images are weaker */
    drawLight(picture, 40 + 12 * i, 30 + (i - 4) * (i - 4), 9, 2, 245 - 30 * i);

  /* A pane of glass: a light rectangle, its edges, and its shadow. */
  check(KX_fillRectAlpha(picture, 186, 36, 116, 132, KX_toRGB(FORMAT, 0, 0, 20), 130));
  check(KX_fillRectAlpha(picture, 180, 30, 116, 132, KX_toRGB(FORMAT, 190, 215, 255), 175));
  for (int32_t i = 0; i < 116; ++i) {
    const int32_t y = 30 + (i * 9) % 70;
    if (i < 60)
      check(KX_drawLineAlpha(picture, 180 + i, 161, 236 + i, 30, KX_toRGB(FORMAT, 255, 255, 255), 235 - y / 9));
  }
  check(KX_drawLineAlpha(picture, 180, 30, 295, 30, KX_toRGB(FORMAT, 255, 255, 255), 90));
  check(KX_drawLineAlpha(picture, 180, 30, 180, 161, KX_toRGB(FORMAT, 255, 255, 255), 90));
  check(KX_drawLineAlpha(picture, 295, 30, 295, 161, KX_toRGB(FORMAT, 255, 255, 255), 170));
  check(kxSaveBmp(picture, "04_constant_alpha.bmp"));
  return KX_deleteBitmap(picture) != 0;
}
