/* 07 Scaling: a game of 96 x 60 pixels in a window of any size, each pixel a square of whole pixels, and the mouse
 * mapped back to the game. SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

enum { WIDTH = 96, HEIGHT = 60, TILE = 6, FORMAT = KX_FORMAT_565 };

static BitmapMethods methods;

static void check(uint32_t code) {
  if (code == 0) return;
  fprintf(stderr, "kxgraphic: %s\n", kxErrorText(code));
  exit(1);
}

/* Where the game lies in the window. */
typedef struct View {
  int32_t left, top, factor;
} View;

static View fit(const Bitmap* window) {
  View view;
  view.factor = window->width / WIDTH < window->height / HEIGHT ? window->width / WIDTH : window->height / HEIGHT;
  if (view.factor < 1) view.factor = 1;
  view.left = (window->width - WIDTH * view.factor) / 2;
  view.top = (window->height - HEIGHT * view.factor) / 2;
  return view;
}

/* A place in the window as a place in the game; 0 when it lies beside it. */
static int toGame(View view, int32_t* x, int32_t* y) {
  if (*x < view.left || *y < view.top) return 0;
  *x = (*x - view.left) / view.factor;
  *y = (*y - view.top) / view.factor;
  return *x < WIDTH && *y < HEIGHT;
}

static const char* const map[HEIGHT / TILE] = {
    "~~~~~~~~~~~~~~~~", "~~~~~..~~~~~~~~~", "~~~.,,,,..~~~~~~", "~~.,t^^tt,.~~~~~", "~~.tt^^^tt,,.~~~",
    "~~.,t,^^t,h,,.~~", "~~~.,,,,hh,,t.~~", "~~~~..,,,,tt.~~~", "~~~~~~.....~~~~~", "~~~~~~~~~~~~~~~~"};
/* Tiles; the last one marks what the mouse points at. */
static const char kinds[] = "~.,t^h#";
static const char* const tiles[][TILE] = {{"222222", "222222", "233222", "222222", "222233", "222222"},
                                          {"444444", "445444", "444444", "444454", "454444", "444444"},
                                          {"666666", "676666", "666666", "666676", "666666", "666766"},
                                          {"688866", "899986", "899986", "689866", "66a666", "66a666"},
                                          {"666b66", "66bcb6", "66bcbb", "6bcbbb", "6bbbdb", "bbdbbb"},
                                          {"66ee66", "6eeee6", "eeeeee", "6ffff6", "6f1ff6", "6f1ff6"},
                                          {"00..00", "0....0", "......", "......", "0....0", "00..00"}};
static const uint8_t colours[16][3] = {{255, 255, 255}, {40, 24, 30},    {38, 92, 168},  {92, 150, 214},
                                       {224, 200, 136}, {196, 168, 108}, {104, 168, 72}, {132, 192, 88},
                                       {24, 84, 48},    {48, 120, 64},   {92, 60, 40},   {112, 104, 108},
                                       {236, 236, 244}, {84, 76, 84},    {192, 64, 52},  {232, 212, 172}};

static void drawTile(Bitmap* game, int32_t left, int32_t top, char kind) {
  const char* const* rows = tiles[strchr(kinds, kind) - kinds];
  for (int32_t y = 0; y < TILE; ++y)
    for (int32_t x = 0; x < TILE; ++x) {
      const char letter = rows[y][x];
      if (letter == '.') continue;
      const uint8_t* c = colours[letter <= '9' ? letter - '0' : letter - 'a' + 10];
      check(KX_setPixel(game, left + x, top + y, KX_toRGB(FORMAT, c[0], c[1], c[2])));
    }
}

int main(void) {
  Bitmap *game, *window;
  const int32_t mouseX = 187, mouseY = 106;
  const uint32_t white = KX_toRGB(FORMAT, 255, 255, 255);
  KX_getBitmapInterface(&methods, NULL, NULL, 0);
  check(KX_createBitmap(&game, WIDTH, HEIGHT, FORMAT, 0, 0, &methods));
  check(KX_createBitmap(&window, 320, 200, FORMAT, 0, 0, &methods));
  const View view = fit(window);
  for (int32_t y = 0; y < HEIGHT / TILE; ++y)
    for (int32_t x = 0; x < WIDTH / TILE; ++x) drawTile(game, x * TILE, y * TILE, map[y][x]);
  int32_t x = mouseX, y = mouseY;
  if (toGame(view, &x, &y)) drawTile(game, x / TILE * TILE, y / TILE * TILE, '#');

  check(KX_fillRect(window, 0, 0, window->width, window->height, KX_toRGB(FORMAT, 20, 20, 32)));
  check(
      KX_bltStretch(window, view.left, view.top, WIDTH * view.factor, HEIGHT * view.factor, game, 0, 0, WIDTH, HEIGHT));
  for (int32_t i = 0; i < 18; ++i) { /* the pointer has the window's pixels */
    const int32_t width = i < 12 ? i + 1 : 18 - i;
    check(KX_fillRect(window, mouseX, mouseY + i, width, 1, 0));
    if (i > 1 && i < 16) check(KX_fillRect(window, mouseX + 1, mouseY + i, i < 11 ? width - 2 : width - 1, 1, white));
  }
  printf("%d, %d in the window is %d, %d in the game\n", (int)mouseX, (int)mouseY, (int)x, (int)y);
  check(kxSaveBmp(window, "07_scaling.bmp"));
  check(KX_deleteBitmap(game));
  return KX_deleteBitmap(window) != 0;
}
