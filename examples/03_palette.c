/* 03 Palette cycling and fading: one picture of indices, four palettes. Water flows and the day ends although no pixel
 * changes.
 * SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

enum { WIDTH = 160, HEIGHT = 100, POOL = 76, SKY = 0, ROCK = 64, WATER = 96, FLOW = 32, LEAF = 128, SUN = 160 };

static void check(uint32_t code) {
  if (code == 0) return;
  fprintf(stderr, "kxgraphic: %s\n", kxErrorText(code));
  exit(1);
}

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

/* What stands at a place: a range of the palette and a shade within it. */
static uint32_t indexAt(int32_t x, int32_t y) {
  const uint32_t ux = (uint32_t)x, uy = (uint32_t)y;
  const double top = 22 + 16 * curve(x * 0.05 + 3) + 9 * curve(x * 0.2) + (x - 80) * (x - 80) * -0.002;
  const double bank = 66 + 10 * curve(x * 0.12 + 50) + (x - 80) * (x - 80) * -0.004;
  const int32_t fall = x - 80 - (int32_t)(6 * curve(y * 0.04 + 9)) + 4;
  const int32_t sunX = x - 128, sunY = y - 17;
  if (y < top) return sunX * sunX + sunY * sunY < 90 ? SUN : SKY + uy;
  if (fall > -11 - y / 12 && fall < 11 + y / 12 && y < POOL) /* falling water: streaks */
    return WATER + (64 * 4 - uy + (uint32_t)(noise(ux) * FLOW)) % FLOW;
  if (y >= POOL) { /* rings around the foot of the fall */
    const int32_t dx = (x - 80) / 2, dy = (y - POOL) * 2;
    return WATER + (200 * FLOW - (uint32_t)((dx * dx + dy * dy) / 24) - (uint32_t)(3 * noise(ux * 7 + uy))) % FLOW;
  }
  if (y > bank) return LEAF + (uint32_t)(31 * curve(x * 0.9 + y * 0.4) * (0.4 + 0.6 * noise(ux + 200 * uy)));
  return ROCK + (uint32_t)(31 * curve(x * 0.25 + 40) * (0.55 + 0.45 * curve(y * 0.6 + x * 0.1 + 20)));
}

/* The colours of the ranges, the water's moved on by `phase`, all of them faded to a tint. */
static void makePalette(uint8_t* palette, uint32_t phase, double light, double red, double green, double blue) {
  for (uint32_t i = 0; i < 256; ++i) {
    const double t = i % 32 / 31.0, s = i / 63.0;
    const uint32_t step = (i + FLOW - phase) % FLOW;
    const double foam = step < 16 ? step / 15.0 : (31 - step) / 15.0;
    double r = 255, g = 240, b = 170; /* the sun */
    if (i < ROCK)
      r = 90 + 110 * s, g = 150 + 80 * s, b = 235 + 10 * s;
    else if (i < WATER)
      r = 50 + 130 * t, g = 42 + 105 * t, b = 48 + 80 * t;
    else if (i < LEAF)
      r = 30 + 200 * foam * foam, g = 90 + 150 * foam, b = 170 + 80 * foam;
    else if (i < SUN)
      r = 20 + 100 * t, g = 50 + 130 * t, b = 30 + 40 * t;
    palette[3 * i] = (uint8_t)(b * light + blue * (1 - light));
    palette[3 * i + 1] = (uint8_t)(g * light + green * (1 - light));
    palette[3 * i + 2] = (uint8_t)(r * light + red * (1 - light));
  }
}

int main(void) {
  BitmapMethods methods;
  Bitmap *picture, *sheet;
  uint8_t palette[768];
  KX_getBitmapInterface(&methods, NULL, NULL, 0);
  check(KX_createBitmap(&picture, WIDTH, HEIGHT, KX_FORMAT_PALETTE, 0, 0, &methods));
  check(KX_createBitmap(&sheet, 2 * WIDTH, 2 * HEIGHT, KX_FORMAT_888, 0, 0, &methods));
  for (int32_t y = 0; y < HEIGHT; ++y)
    for (int32_t x = 0; x < WIDTH; ++x) check(KX_setPixel(picture, x, y, indexAt(x, y)));

  for (int32_t panel = 0; panel < 4; ++panel) {
    if (panel < 2) makePalette(palette, 12 * (uint32_t)panel, 1, 0, 0, 0);
    if (panel == 2) makePalette(palette, 24, 0.55, 215, 80, 40);
    if (panel == 3) makePalette(palette, 28, 0.3, 10, 14, 60);
    check(KX_setPalette(picture, palette)); /* 768 bytes change every pixel */
    check(KX_bltCopy(sheet, panel % 2 * WIDTH, panel / 2 * HEIGHT, picture, 0, 0, WIDTH, HEIGHT));
  }
  check(kxSaveBmp(sheet, "03_palette.bmp"));
  check(KX_deleteBitmap(picture));
  return KX_deleteBitmap(sheet) != 0;
}
