/* kxgraphic: what the readers of picture files share. For picture.h alone.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_PICTURE_FILE_H
#define KXGRAPHIC_PICTURE_FILE_H

#include <string.h>

#include "../bitmap.h"
#include "../errors.h"

#if defined(__cplusplus) && defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wzero-as-null-pointer-constant"
#endif

/* What the header of a file says, and a file's bytes. */
typedef struct KxPictureFile {
  const uint8_t* data;
  size_t size;
  int32_t width, height;
  uint32_t bits, planes; /* bits a pixel in a plane */
  size_t pixels;         /* offset of the first pixel */
  size_t rowBytes;       /* from row to row, all planes */
  int topDown;
  uint32_t masks[3]; /* red, green, blue of 16 and 32 bits */
  uint8_t palette[768];
  uint32_t colours; /* entries of the palette that the file gives */
} KxPictureFile;

static inline uint32_t kxPicture16(const uint8_t* p) { return p[0] | (uint32_t)p[1] << 8; }
static inline uint32_t kxPicture32(const uint8_t* p) { return kxPicture16(p) | kxPicture16(p + 2) << 16; }

static inline uint8_t* kxPicturePut(uint8_t* to, uint32_t value, int bytes) {
  for (; bytes > 0; --bytes, value >>= 8) *to++ = (uint8_t)value;
  return to;
}

/* Pixel x of a row of 1, 2, 4 or 8 bits a pixel, the leftmost in the highest bits. */
static inline uint32_t kxPictureIndex(const uint8_t* row, int32_t x, uint32_t bits) {
  const uint32_t at = (uint32_t)x * bits;
  return row[at >> 3] >> (8 - bits - (at & 7)) & ((1U << bits) - 1);
}

/* The channel of a pixel that a mask picks, widened to 8 bits. */
static inline uint8_t kxPictureChannel(uint32_t value, uint32_t mask) {
  if (mask == 0) return 0;
  while ((mask & 1) == 0) {
    mask >>= 1;
    value >>= 1;
  }
  return (uint8_t)((uint64_t)(value & mask) * 255 / mask);
}

/* The bitmap format for the palette of a file: two colours, a grey ramp, or any. */
static inline uint32_t kxPictureFormat(const KxPictureFile* file) {
  static const uint8_t blackWhite[6] = {0, 0, 0, 255, 255, 255};
  uint32_t i;
  if (file->bits * file->planes == 1 && memcmp(file->palette, blackWhite, 6) == 0) return KX_FORMAT_MONO;
  for (i = 0; i < 768; ++i)
    if (file->colours < 256 || file->palette[i] != i / 3) return KX_FORMAT_PALETTE;
  return KX_FORMAT_GREY;
}

/* Makes the bitmap that a file is read into, locked. */
static inline uint32_t kxPictureCreate(Bitmap** bitmap, const KxPictureFile* file, uint32_t format,
                                       BitmapMethods* methods) {
  uint32_t code = methods->createBitmap(bitmap, file->width, file->height, format, 0, 0, methods);
  if (code != 0) return code;
  if (format == KX_FORMAT_PALETTE) code = methods->setPalette(*bitmap, file->palette);
  if (code == 0) code = methods->lock(*bitmap);
  if (code == 0 && (*bitmap)->pixels == NULL) code = KX_ERROR_BitmapDestroyed;
  if (code != 0)
    methods->deleteBitmap(*bitmap);
  else
    memset((*bitmap)->pixels, 0, (size_t)(*bitmap)->pitch * (size_t)file->height);
  return code;
}

/* Gives the bitmap to the caller, or releases it after a fault. */
static inline uint32_t kxPictureFinish(Bitmap** result, Bitmap* bitmap, uint32_t code) {
  BitmapMethods* methods = bitmap->methods;
  methods->unlock(bitmap);
  if (code == 0)
    *result = bitmap;
  else
    methods->deleteBitmap(bitmap);
  return code;
}

#if defined(__cplusplus) && defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
