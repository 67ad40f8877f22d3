/* A program as a user writes it, in the common part of C11 and C++17: a bitmap made, drawn on and deleted through a
 * method table.
 * SPDX-License-Identifier: MIT */
#include <kxgraphic/kxgraphic.h>
#include <stdio.h>
#include <string.h>

static int check(int holds, const char* what) {
  if (!holds) printf("failed: %s\n", what);
  return holds ? 0 : 1;
}

int main(void) {
  BitmapMethods methods;
  Bitmap* bitmap = NULL;
  uint32_t size = 0;
  int failures = 0;

  failures += check(KX_getBitmapInterface(&methods, NULL, NULL, 0) == 1, "the table is filled");
  failures += check(methods.createBitmap(&bitmap, 3, 2, KX_FORMAT_888, 5, 6, &methods) == 0, "a bitmap is made");
  failures += check(bitmap != NULL && bitmap->methods == &methods && bitmap->extra2 == 6, "the record is filled");
  failures += check(methods.setPixel(bitmap, 1, 1, 0x123456) == 0, "a pixel is set");
  failures += check(methods.getPixel(bitmap, 1, 1) == 0x123456, "the pixel is read");
  failures += check(methods.getBitmapSize(bitmap, &size) == 0 && size != 0, "the size is known");
  failures += check(methods.setPixel(NULL, 0, 0, 0) == KX_ERROR_IllegalParameter, "a null bitmap is refused");
  failures += check(methods.deleteBitmap(bitmap) == 0, "the bitmap is deleted");
  failures += check(Alpha8BPP_Color8BPP[3][5] == 15, "the tables are filled");
  failures += check(memcmp(&methods.version, "\0\0\1\0", 4) == 0, "the version is 0x10000");
  printf("%s\n", failures == 0 ? "ok" : "FAILED");
  return failures;
}
