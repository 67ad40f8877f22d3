/* Bitmaps for a debugger to look at. SPDX-License-Identifier: MIT */
#include <kxgraphic/kxgraphic.h>
#include <stddef.h>

void lookHere(Bitmap* frame, Bitmap* sprite);
void lookHere(Bitmap* frame, Bitmap* sprite) {
  KX_unlock(frame);
  KX_deleteBitmap(frame);
  KX_deleteBitmap(sprite);
}

int main(void) {
  static uint8_t palette[768] = {1, 2, 3, 0xFE, 0xDC, 0xBA};
  static BitmapMethods methods;
  Bitmap *frame = NULL, *sprite = NULL;
  KX_getBitmapInterface(&methods, NULL, NULL, 0);
  KX_createBitmap(&frame, 320, 200, KX_FORMAT_565 | 0x80, 0, 0, &methods);
  KX_createBitmap(&sprite, 64, 48, KX_FORMAT_PALETTE | KX_STORAGE_PACKED, 7, 0, &methods);
  KX_setPaletteReference(sprite, palette, NULL, NULL, NULL);
  KX_lock(frame);
  lookHere(frame, sprite);
  return 0;
}
