/* 11 Water: a pond seen through its waves. Two maps of wave heights take turns. SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

/* A cell of waves is 2 x 2 pixels; one more on each side gives every cell that is drawn its neighbours. */
enum { WIDTH = 320, HEIGHT = 200, CELL = 2, CELLS_X = WIDTH / CELL, CELLS_Y = HEIGHT / CELL };
enum { MAP_WIDTH = CELLS_X + 2, MAP_HEIGHT = CELLS_Y + 2, PITCH = MAP_WIDTH * 2, FORMAT = KX_FORMAT_555 };

static Bitmap *pond, *picture;
static const uint8_t grey[3] = {75, 128, 138}, green[3] = {70, 150, 62};
static int16_t maps[2][MAP_HEIGHT][MAP_WIDTH], (*state)[MAP_WIDTH] = maps[0], (*before)[MAP_WIDTH] = maps[1];

static void check(uint32_t code) {
  if (code == 0) return;
  fprintf(stderr, "kxgraphic: %s\n", kxErrorText(code));
  exit(1);
}

static double noise(int32_t x, int32_t y) {
  const uint32_t i = ((uint32_t)x * 0x9E3779B1U ^ (uint32_t)y * 0x85EBCA6BU) * 0xC2B2AE35U;
  return ((i ^ i >> 13) & 0xFFFF) / 65536.0;
}

static void dot(int32_t x, int32_t y, const uint8_t* c, double light) {
  const uint32_t l = (uint32_t)(light * 256);
  if (x < 0 || y < 0 || x >= WIDTH || y >= HEIGHT) return;
  check(KX_setPixel(pond, x, y, KX_toRGB(FORMAT, c[0] * l >> 8, c[1] * l >> 8, c[2] * l >> 8)));
}

/* Pebbles: the nearest of the random points in the neighbouring squares. */
static void drawBottom(void) {
  for (int32_t y = 0; y < HEIGHT; ++y)
    for (int32_t x = 0; x < WIDTH; ++x) {
      double nearest = 1e9, second = 1e9, tone = 0;
      for (int32_t i = 0; i < 9; ++i) {
        const int32_t column = x / 14 + i % 3 - 1, row = y / 14 + i / 3 - 1;
        const double dx = (column + noise(column, row)) * 14 - x, dy = (row + noise(row + 77, column)) * 14 - y;
        const double distance = dx * dx + dy * dy;
        second = distance < nearest ? nearest : distance < second ? distance : second;
        if (distance < nearest) nearest = distance, tone = noise(column + 9, row + 5);
      }
      const double edge = second - nearest < 30 ? 0.62 : second - nearest < 60 ? 0.85 : 1;
      dot(x, y, grey, edge * (0.6 + 0.35 * tone) * (1 - 0.0012 * y));
    }
}

/* A carp from above, its head at (x, y), its body along (dx, dy) and bent. */
static void drawFish(int32_t x, int32_t y, double dx, double dy, int32_t kind) {
  static const uint8_t colours[][3] = {{240, 120, 40}, {250, 190, 90}, {230, 80, 40}, {245, 235, 220}};
  for (double side = -9; side <= 9; side += 0.5)
    for (double along = 0; along < 56; along += 0.5) {
      const double t = along / 56, bend = side + (t - 0.4) * (t - 0.4) * 14;
      const double half = t < 0.72 ? 26 * (t + 0.06) * (0.8 - t) + 1.2 : (t - 0.72) * 24 + 1;
      const double light = 1 - 0.04 * (side < 0 ? -side : side);
      const uint8_t* c = colours[noise((int32_t)along / 9 + kind, (int32_t)side / 5) > 0.5 ? kind : 3];
      if (side * side < half * half || (t > 0.22 && t < 0.36))
        dot(x + (int32_t)(along * dx - bend * dy), y + (int32_t)(along * dy + bend * dx), c, light);
    }
}

static void drawLeaf(int32_t centreX, int32_t centreY, int32_t radius) {
  for (int32_t y = -radius; y <= radius; ++y)
    for (int32_t x = -radius; x <= radius; ++x) {
      const int32_t square = x * x + y * y;
      if (square > radius * radius || (x > 0 && y * y * 6 < x * x)) continue;
      dot(centreX + x, centreY + y, green, 0.7 + 0.3 * noise(x * 9 / radius, y * 9 / radius));
    }
}

static void drop(int32_t x, int32_t y) { /* deepest in its middle */
  for (int32_t i = -5; i <= 5; ++i)
    for (int32_t j = -5; j <= 5; ++j)
      if (i * i + j * j < 26) state[y / CELL + i][x / CELL + j] = (int16_t)(-20 * (26 - i * i - j * j));
}

int main(void) {
  BitmapMethods methods;
  KX_getBitmapInterface(&methods, NULL, NULL, 0);
  check(KX_createBitmap(&pond, WIDTH, HEIGHT, FORMAT, 0, 0, &methods));
  check(KX_createBitmap(&picture, WIDTH, HEIGHT, FORMAT, 0, 0, &methods));
  drawBottom(), drawFish(110, 96, 0.96, 0.28, 0), drawFish(214, 84, -0.6, -0.8, 0), drawFish(176, 178, 0.8, -0.6, 2);
  drawFish(40, 110, 0.28, -0.96, 1), drawLeaf(284, 176, 26), drawLeaf(246, 190, 17), drawLeaf(30, 24, 22);
  for (int32_t step = 0; step < 38; ++step) {
    if (step % 9 == 0) drop(84 + step * 17 % 200, 60 + step * 37 % 110);
    check(KX_calculateWaterMap(before[0], PITCH, state[0], PITCH, MAP_WIDTH, MAP_HEIGHT, 1, 5));
    state = before; /* which now holds the newest state */
    before = state == maps[0] ? maps[1] : maps[0];
  }
  check(KX_drawWaterBitmap((uint16_t*)picture->pixels, 0, 0, picture->pitch, state[0], PITCH, CELL, 1, 0, CELLS_X,
                           CELLS_Y, (const uint16_t*)pond->pixels, 0, 0, WIDTH, HEIGHT, pond->pitch, FORMAT, 0, NULL));
  for (int32_t y = 0; y < CELLS_Y; ++y) /* slopes catch the light of the sky */
    for (int32_t x = 0; x < CELLS_X; ++x) {
      const int32_t slope = state[y][x + 1] - state[y + 1][x], alpha = slope > 90 ? 120 : 255 - slope * 3 / 2;
      if (slope > 5) check(KX_fillRectAlpha(picture, x * CELL, y * CELL, CELL, CELL, 0x6FBF, alpha));
    }
  check(kxSaveBmp(picture, "11_water.bmp"));
  return KX_deleteBitmap(pond) != 0 || KX_deleteBitmap(picture) != 0;
}
