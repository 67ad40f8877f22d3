/* 06 Z buffer and Z map: a planet and its ring go through each other although each is drawn at once. A pixel is drawn
 * where its depth, 0 (near) to 255, is at most the one stored. SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>
#include <math.h>

enum { WIDTH = 320, HEIGHT = 200, FORMAT = KX_FORMAT_888, MIDDLE = 128 };

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

static double noise(uint32_t i) {
  i = ((i ^ 61) * 0x9E3779B1U ^ (i * 0x27D4EB2FU) >> 15) * 0x85EBCA6BU;
  return (i >> 8) / 16777216.0;
}
static double curve(double x) {
  const double f = x - (uint32_t)x;
  return noise((uint32_t)x) + (noise((uint32_t)x + 1) - noise((uint32_t)x)) * f * f * (3 - 2 * f);
}

static uint32_t shade(const uint8_t* colour, double light) {
  const uint32_t l = (uint32_t)(256 * (light < 0.06 ? 0.06 : light > 1 ? 1 : light));
  return KX_toRGB(FORMAT, colour[0] * l >> 8, colour[1] * l >> 8, colour[2] * l >> 8);
}

/* A ball lit from the upper left, with bands; its Z map is its front, seen from MIDDLE. */
static Bitmap* makeBall(int32_t radius, const uint8_t* colour, double bands, Bitmap** depth) {
  Bitmap* ball = makeBitmap(2 * radius + 1, 2 * radius + 1, FORMAT, 0);
  *depth = makeBitmap(2 * radius + 1, 2 * radius + 1, KX_FORMAT_GREY, 255);
  for (int32_t y = -radius; y <= radius; ++y)
    for (int32_t x = -radius; x <= radius; ++x) {
      const double front = sqrt(radius * radius - x * x - y * y + 0.5);
      if (x * x + y * y > radius * radius) continue;
      const double across = (y * 0.97 - x * 0.24 + 0.15 * front) / radius + 1.2;
      const double band = 1 - bands * curve(across * 7 + 2 + 0.5 * curve(x * 0.05 + 30));
      const double light = (-0.62 * x - 0.42 * y + 0.66 * front) / radius * band;
      check(KX_setPixel(ball, x + radius, y + radius, shade(colour, light)));
      check(KX_setPixel(*depth, x + radius, y + radius, (uint32_t)(MIDDLE - front * 0.8)));
    }
  return ball;
}

/* A flat ring seen at a slant, rolled a little; its lower half is near. */
static Bitmap* makeRing(Bitmap** depth) {
  static const uint8_t colour[3] = {235, 205, 165};
  Bitmap* ring = makeBitmap(WIDTH, HEIGHT, FORMAT, 0);
  *depth = makeBitmap(WIDTH, HEIGHT, KX_FORMAT_GREY, 255);
  for (int32_t y = 0; y < HEIGHT; ++y)
    for (int32_t x = 0; x < WIDTH; ++x) {
      const double along = (x - 160) * 0.97014 - (y - 100) * 0.24254;
      const double ahead = ((x - 160) * 0.24254 + (y - 100) * 0.97014) * 3.4;
      const double distance = sqrt(along * along + ahead * ahead);
      if (distance < 76 || distance > 146 || (distance > 116 && distance < 121)) continue;
      const double shadow = along > 0 && along * 0.3 - ahead > -30 && ahead * ahead < 3400 && ahead < 0 ? 0.25 : 1;
      const double light = 0.35 + 0.65 * curve(distance * 0.35) * curve(distance * 0.8 + 50);
      check(KX_setPixel(ring, x, y, shade(colour, shadow * light)));
      check(KX_setPixel(*depth, x, y, (uint32_t)(MIDDLE - ahead * 0.8)));
    }
  return ring;
}

int main(void) {
  static const uint8_t ochre[3] = {240, 190, 120}, blue[3] = {190, 200, 225};
  Bitmap *ballDepth, *ringDepth, *moonDepth;
  KX_getBitmapInterface(&methods, NULL, NULL, 0);
  Bitmap* picture = makeBitmap(WIDTH, HEIGHT, FORMAT, KX_toRGB(FORMAT, 7, 7, 20));
  Bitmap* zBuffer = makeBitmap(WIDTH, HEIGHT, KX_FORMAT_GREY, 255); /* as far as can be */
  Bitmap* ball = makeBall(58, ochre, 0.45, &ballDepth);
  Bitmap* ring = makeRing(&ringDepth);
  Bitmap* moon = makeBall(11, blue, 0.3, &moonDepth);
  for (uint32_t i = 0; i < 220; ++i) {
    const uint32_t light = (uint32_t)(60 + 190 * noise(3 * i + 1) * noise(3 * i + 2));
    const int32_t x = (int32_t)(noise(3 * i + 1000) * WIDTH), y = (int32_t)(noise(3 * i + 2000) * HEIGHT);
    check(KX_setPixel(picture, x, y, KX_toRGB(FORMAT, light, light, light + 5)));
  }
  /* A depth for each pixel: the Z map's byte plus an offset. */
  check(KX_bltCopyTransparentZMap(picture, zBuffer, 102, 42, ball, 0, 0, 117, 117, ballDepth, 0));
  check(KX_bltCopyTransparentAlphaZMap(picture, zBuffer, 0, 0, ring, 0, 0, WIDTH, HEIGHT, 40, ringDepth, 0));
  /* One depth for all pixels: before everything, behind the planet, between ring and planet. */
  check(KX_bltCopyTransparentZBuffer(picture, zBuffer, 128, 118, moon, 0, 0, 23, 23, 20));
  check(KX_bltCopyTransparentZBuffer(picture, zBuffer, 200, 36, moon, 0, 0, 23, 23, 180));
  check(KX_bltCopyTransparentZBuffer(picture, zBuffer, 14, 112, moon, 0, 0, 23, 23, 140));
  check(kxSaveBmp(picture, "06_depth.bmp"));
  Bitmap* const all[] = {picture, zBuffer, ball, ballDepth, ring, ringDepth, moon, moonDepth};
  for (size_t i = 0; i < sizeof all / sizeof *all; ++i) check(KX_deleteBitmap(all[i]));
  return 0;
}
