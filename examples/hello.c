/* Draws a sun over the sea and saves it as hello.bmp. SPDX-License-Identifier: MIT */
#include <kxgraphic/error_text.h>
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/picture.h>

int main(void) {
  BitmapMethods methods;
  Bitmap* picture;
  KX_getBitmapInterface(&methods, NULL, NULL, 0); /* the library's own functions */
  uint32_t code = KX_createBitmap(&picture, 320, 200, KX_FORMAT_888, 0, 0, &methods);
  for (int32_t y = 0; code == 0 && y < 200; ++y) {
    const uint32_t glow = y < 120 ? (uint32_t)y : (uint32_t)(240 - y);
    code = KX_fillRect(picture, 0, y, 320, 1, KX_toRGB(KX_FORMAT_888, 60 + glow, 20 + glow / 2, 90));
    for (int32_t x = 110; code == 0 && y < 120 && x < 210; ++x)
      if ((x - 160) * (x - 160) + (y - 110) * (y - 110) < 2500)
        code = KX_setPixel(picture, x, y, KX_toRGB(KX_FORMAT_888, 255, 220 - glow / 2, 120));
  }
  if (code == 0) code = kxSaveBmp(picture, "hello.bmp");
  printf("hello.bmp: %s\n", kxErrorText(code));
  return code != 0 || KX_deleteBitmap(picture) != 0;
}
