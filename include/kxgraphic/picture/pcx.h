/* kxgraphic: PCX files. For picture.h alone.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_PICTURE_PCX_H
#define KXGRAPHIC_PICTURE_PCX_H

#include <stdlib.h>

#include "file.h"

#if defined(__cplusplus) && defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wzero-as-null-pointer-constant"
#endif

static inline uint32_t kxPcxHeader(KxPictureFile* file, uint32_t* format) {
  const uint8_t* data = file->data;
  const uint8_t* palette = data + 16;
  uint32_t i, kind;
  size_t planeBytes;
  if (file->size < 128) return KX_ERROR_FileReadError;
  file->width = (int32_t)kxPicture16(data + 8) - (int32_t)kxPicture16(data + 4) + 1;
  file->height = (int32_t)kxPicture16(data + 10) - (int32_t)kxPicture16(data + 6) + 1;
  file->bits = data[3];
  file->planes = data[65];
  planeBytes = kxPicture16(data + 66);
  file->rowBytes = planeBytes * file->planes;
  file->pixels = 128;
  if (data[2] > 1 || file->width < 1 || file->width > 32767 || file->height < 1 || file->height > 32767)
    return KX_ERROR_FileHeaderDestroyed;
  kind = file->bits << 8 | file->planes;
  if (kind == 0x803) {
    *format = KX_FORMAT_888;
  } else if (kind == 0x801) {
    const int hasPalette = file->size >= 128 + 769 && file->data[file->size - 769] == 12;
    if (!hasPalette && kxPicture16(data + 68) != 2) return KX_ERROR_PaletteNeeded;
    *format = KX_FORMAT_GREY;
    if (hasPalette) {
      palette = data + file->size - 768;
      file->colours = 256;
      file->size -= 769;
    }
  } else if ((file->bits == 1 || file->bits == 2 || file->bits == 4) && file->planes >= 1 &&
             file->bits * file->planes <= 4) {
    file->colours = 1U << file->bits * file->planes;
  } else {
    return KX_ERROR_ColorFormatNotSupported;
  }
  for (i = 0; i < file->colours; ++i) {
    file->palette[3 * i] = palette[3 * i + 2];
    file->palette[3 * i + 1] = palette[3 * i + 1];
    file->palette[3 * i + 2] = palette[3 * i];
  }
  /* Without colours of its own a picture of one bit is black and white. */
  if (kind == 0x101 && memcmp(file->palette, file->palette + 3, 3) == 0) {
    memset(file->palette, 0, 3);
    memset(file->palette + 3, 255, 3);
  }
  if (file->colours != 0) *format = kxPictureFormat(file);
  if ((uint64_t)planeBytes * 8 < (uint64_t)file->width * file->bits) return KX_ERROR_FileHeaderDestroyed;
  return 0;
}

/* Turns the planes of a row into pixels. */
static inline void kxPcxReadRow(uint8_t* to, const uint8_t* row, const KxPictureFile* file, uint32_t format) {
  const size_t planeBytes = file->rowBytes / file->planes;
  uint32_t plane;
  int32_t x;
  if (format == KX_FORMAT_MONO) {
    memcpy(to, row, ((size_t)file->width + 7) / 8);
    return;
  }
  for (x = 0; x < file->width; ++x)
    for (plane = 0; plane < file->planes; ++plane) {
      const uint32_t value = kxPictureIndex(row + planeBytes * plane, x, file->bits);
      if (format == KX_FORMAT_888)
        to[3 * x + 2 - (int32_t)plane] = (uint8_t)value;
      else
        to[x] = (uint8_t)(to[x] | value << plane * file->bits);
    }
}

static inline uint32_t kxPcxRead(Bitmap** result, KxPictureFile* file, BitmapMethods* methods) {
  Bitmap* bitmap = NULL;
  uint8_t* row;
  size_t filled = 0, at = 128;
  uint32_t format = KX_FORMAT_PALETTE;
  int32_t y = 0;
  uint32_t code = kxPcxHeader(file, &format);
  if (code != 0) return code;
  /* Two bytes make 63 at most. */
  if ((uint64_t)file->rowBytes * (uint64_t)file->height > (uint64_t)file->size * 32) return KX_ERROR_FileReadError;
  row = (uint8_t*)malloc(file->rowBytes);
  if (row == NULL) return KX_ERROR_OutOfMemory;
  code = kxPictureCreate(&bitmap, file, format, methods);
  if (code != 0) {
    free(row);
    return code;
  }
  while (code == 0 && y < file->height) {
    uint32_t count = 1;
    uint8_t value = 0;
    if (at < file->size)
      value = file->data[at++];
    else
      code = KX_ERROR_FileReadError;
    if (file->data[2] == 1 && value >= 0xC0) { /* a run, which may go on in the next row */
      count = value & 0x3FU;
      if (at < file->size)
        value = file->data[at++];
      else
        code = KX_ERROR_FileReadError;
    }
    for (; code == 0 && count > 0 && y < file->height; --count) {
      row[filled++] = value;
      if (filled < file->rowBytes) continue;
      kxPcxReadRow(bitmap->pixels + (size_t)bitmap->pitch * (size_t)y, row, file, format);
      filled = 0;
      ++y;
    }
  }
  free(row);
  return kxPictureFinish(result, bitmap, code);
}

#if defined(__cplusplus) && defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
