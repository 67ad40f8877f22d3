/* kxgraphic: pictures in files: writes BMP, reads BMP and PCX. For examples, tools and bug reports. Inline functions
 * for C11 and C++17 that need kxgraphic and the C library only; a program that includes this header pays for what it
 * calls.
 *
 * A bitmap is written as it is: format 0 with 1 bit a pixel (black and white), 3 and 4 with 8 and a palette, 5 and 6
 * with 16 (5-5-5, 5-6-5), 7 with 24. Packed rows are expanded. What was written reads back as the same pixels in the
 * same format, with one exception: a palette of the grey ramp 0 to 255 reads as format 3.
 *
 * Read: BMP of 1, 4, 8 (plain or RLE8), 16, 24 and 32 bits a pixel, of all header sizes, bottom up or top down; PCX of
 * 1, 2 and 4 bits in up to four planes (16 colours), of 8 bits, and of 24. Two colours, black and white, give format 0,
 * a grey ramp format 3, other palettes format 4, 5-5-5 and 5-6-5 formats 5 and 6, all else format 7. A fourth channel
 * is dropped. Files are not trusted: sizes are checked against the file's length before memory is taken. Width and
 * height are limited to 32767 pixels. SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_PICTURE_H
#define KXGRAPHIC_PICTURE_H

#include <stdio.h>
#include <stdlib.h>

#include "picture/bmp.h"
#include "picture/pcx.h"

#if defined(__cplusplus) && defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wzero-as-null-pointer-constant"
#endif

/** Makes a bitmap from the bytes of a BMP or PCX file.
 *  @param result receives the bitmap; release it with KX_deleteBitmap.
 *  @param data, size the file's bytes.
 *  @param methods the bitmap's method table, which must outlive it; the bitmap is made through it.
 *  @return 0; 7 a null pointer; 0x1005 neither BMP nor PCX, or a damaged header; 0x1002 the file is too short; 0x2000
 * an unknown number of bits; 8 an unknown compression; 0x2003 PCX of 8 bits without palette; 2; the code of a function
 * of the table. Nothing is left behind. */
static inline uint32_t kxDecodePicture(Bitmap** result, const void* data, size_t size, BitmapMethods* methods) {
  KxPictureFile file;
  if (result == NULL || data == NULL || methods == NULL) return KX_ERROR_IllegalParameter;
  memset(&file, 0, sizeof file);
  file.data = (const uint8_t*)data;
  file.size = size;
  if (size >= 2 && file.data[0] == 'B' && file.data[1] == 'M') return kxBmpRead(result, &file, methods);
  if (size >= 2 && file.data[0] == 10 && file.data[1] <= 5) return kxPcxRead(result, &file, methods);
  return KX_ERROR_FileHeaderDestroyed;
}

/** Reads a BMP or PCX file.
 *  @param result, methods as for kxDecodePicture.
 *  @param fileName the file.
 *  @return 0; 7 a null pointer; 0x1000 the file cannot be opened; 2; 0x1002 it cannot be read; the codes of
 *          kxDecodePicture. */
static inline uint32_t kxLoadPicture(Bitmap** result, const char* fileName, BitmapMethods* methods) {
  FILE* file;
  uint8_t* data = NULL;
  long size;
  uint32_t code = 0;
  if (result == NULL || fileName == NULL || methods == NULL) return KX_ERROR_IllegalParameter;
  file = fopen(fileName, "rb");
  if (file == NULL) return KX_ERROR_FileNotFound;
  if (fseek(file, 0, SEEK_END) != 0 || (size = ftell(file)) < 0 || size > INT32_MAX || fseek(file, 0, SEEK_SET) != 0) {
    code = KX_ERROR_FileReadError;
  } else {
    data = (uint8_t*)malloc((size_t)size + 1);
    if (data == NULL)
      code = KX_ERROR_OutOfMemory;
    else if (fread(data, 1, (size_t)size, file) != (size_t)size)
      code = KX_ERROR_FileReadError;
    else
      code = kxDecodePicture(result, data, (size_t)size, methods);
  }
  free(data);
  fclose(file);
  return code;
}

/** Writes a bitmap as a BMP file. The bitmap is locked meanwhile.
 *  @param bitmap any bitmap; packed rows must be whole.
 *  @param fileName an existing file is replaced.
 *  @return 0; 7 a null pointer; 0x2000 an unknown format; what the bitmap's lock returned; 0x2001 no pixels, or packed
 *          without a row table; 0x2002 format 4 without a palette; 2; 0x1004 the file cannot be made; 0x1001 it cannot
 *          be written, and is removed. */
static inline uint32_t kxSaveBmp(Bitmap* bitmap, const char* fileName) {
  FILE* file;
  uint8_t* row;
  uint32_t bits, code;
  size_t rowBytes;
  int written;
  if (bitmap == NULL || fileName == NULL) return KX_ERROR_IllegalParameter;
  bits = KX_getBytesPerPixel(bitmap->format) >> 13; /* an eighth of a byte in 16.16 */
  if (bits == 0) return KX_ERROR_ColorFormatNotSupported;
  code = bitmap->methods->lock(bitmap);
  if (code != 0) return code;
  rowBytes = ((size_t)bitmap->width * bits + 31) / 32 * 4;
  row = (uint8_t*)malloc(rowBytes + 128 * 3); /* the last packet of a packed row may pass its end */
  if (bitmap->pixels == NULL || ((bitmap->format & KX_STORAGE_MASK) != 0 && (bitmap->rowTable == NULL || bits < 8)))
    code = KX_ERROR_BitmapDestroyed;
  else if ((bitmap->format & KX_FORMAT_CODE_MASK) == KX_FORMAT_PALETTE && bitmap->palette == NULL)
    code = KX_ERROR_PaletteDestroyed;
  else if (row == NULL)
    code = KX_ERROR_OutOfMemory;
  else if ((file = fopen(fileName, "wb")) == NULL)
    code = KX_ERROR_FileCreateError;
  else {
    written = kxBmpWrite(file, bitmap, row, rowBytes, bits);
    if (fclose(file) != 0 || !written) {
      code = KX_ERROR_FileWriteError;
      remove(fileName);
    }
  }
  free(row);
  bitmap->methods->unlock(bitmap);
  return code;
}

#if defined(__cplusplus) && defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
