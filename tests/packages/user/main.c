/* Draws something, reads it back, releases a block with the memory manager: 0 and a line when all is well.
 * SPDX-License-Identifier: MIT */
#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/mmgr.h>
#include <stdio.h>
#include <string.h>

int main(void) {
  static uint8_t greys[768] = {0, 0, 0, 255, 255, 255};
  BitmapMethods methods;
  Bitmap* bitmap;
  void* table;
  if (KX_getBitmapInterface(&methods, NULL, NULL, 0) != 1) return 1;
  if (methods.createBitmap(&bitmap, 32, 16, KX_FORMAT_565, 0, 0, &methods) != 0) return 2;
  if (methods.fillRect(bitmap, 0, 0, 32, 16, KX_toRGB(KX_FORMAT_565, 255, 0, 0)) != 0) return 3;
  if (methods.fillRectAlpha(bitmap, 0, 0, 32, 16, 0, 255) != 0) return 4;
  if (KX_getPixel(bitmap, 31, 15) != 0xF800) return 5;
  if (KX_createCachedPalette(&table, greys, KX_FORMAT_555) != 0) return 6;
  if (memcmp(table, "\0\0\xFF\x7F", 4) != 0 || Alpha8BPP_DivTable[510] != 2) return 7;
  mmgr_free(table);
  if (KX_deleteBitmap(bitmap) != 0) return 8;
  puts("kxgraphic works");
  return 0;
}
