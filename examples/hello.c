/* Draws a sun over the sea and saves it as hello.tga. SPDX-License-Identifier: MIT */
#include <kxgraphic/kxgraphic.h>
#include <stdio.h>

enum { WIDTH = 320, HEIGHT = 200 };

int main(void) {
  BitmapMethods methods;
  Bitmap* picture;
  uint32_t code;
  KX_getBitmapInterface(&methods, NULL, NULL, 0); /* the library's own functions */
  code = KX_createBitmap(&picture, WIDTH, HEIGHT, KX_FORMAT_888, 0, 0, &methods);
  for (int32_t y = 0; code == 0 && y < HEIGHT; ++y) {
    for (int32_t x = 0; code == 0 && x < WIDTH; ++x) {
      const uint32_t glow = y < 120 ? (uint32_t)y : (uint32_t)(240 - y);
      const int32_t fromSun = (x - 160) * (x - 160) + (y - 110) * (y - 110);
      uint32_t colour = KX_toRGB(KX_FORMAT_888, 60 + glow, 20 + glow / 2, 90);
      if (y < 120 && fromSun < 2500) colour = KX_toRGB(KX_FORMAT_888, 255, 220 - glow / 2, 120);
      code = KX_setPixel(picture, x, y, colour);
    }
  }
  if (code != 0) return fprintf(stderr, "kxgraphic: code 0x%X\n", (unsigned)code), 1;

  /* An uncompressed TGA has the library's own byte order, and 320 pixels of 3 bytes leave no gap between rows. */
  const unsigned char head[18] = {0, 0, 2, [12] = WIDTH & 255, WIDTH >> 8, HEIGHT & 255, HEIGHT >> 8, 24, 32};
  FILE* file = fopen("hello.tga", "wb");
  const size_t bytes = (size_t)picture->pitch * HEIGHT;
  if (file == NULL || fwrite(head, 1, 18, file) != 18 || fwrite(picture->pixels, 1, bytes, file) != bytes) return 2;
  printf("hello.tga: %d x %d pixels, CRC %08X\n", WIDTH, HEIGHT,
         (unsigned)KX_calculateCRC(picture->pixels, (int32_t)bytes));
  return fclose(file) != 0 || KX_deleteBitmap(picture) != 0;
}
