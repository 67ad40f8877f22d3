/* kxgraphic: BMP files. For picture.h alone.
 * SPDX-License-Identifier: MIT */
#ifndef KXGRAPHIC_PICTURE_BMP_H
#define KXGRAPHIC_PICTURE_BMP_H

#include <stdio.h>

#include "file.h"
#include "../codec.h"

#if defined(__cplusplus) && defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wold-style-cast"
#pragma GCC diagnostic ignored "-Wzero-as-null-pointer-constant"
#endif

static inline uint32_t kxBmpHeader(KxPictureFile* file) {
  const uint8_t* data = file->data;
  uint32_t head, compression = 0, colours = 0, entry = 4, i;
  int64_t width, height;
  if (file->size < 26) return KX_ERROR_FileReadError;
  head = kxPicture32(data + 14);
  if (head != 12 && (head < 40 || head > 1024)) return KX_ERROR_FileHeaderDestroyed;
  if (file->size < 14 + (size_t)head) return KX_ERROR_FileReadError;
  if (head == 12) {
    width = kxPicture16(data + 18);
    height = kxPicture16(data + 20);
    file->bits = kxPicture16(data + 24);
    entry = 3;
  } else {
    width = (int32_t)kxPicture32(data + 18);
    height = (int32_t)kxPicture32(data + 22);
    file->bits = kxPicture16(data + 28);
    compression = kxPicture32(data + 30);
    colours = kxPicture32(data + 46);
  }
  file->topDown = height < 0;
  if (height < 0) height = -height;
  if (width < 1 || width > 32767 || height < 1 || height > 32767) return KX_ERROR_FileHeaderDestroyed;
  file->width = (int32_t)width;
  file->height = (int32_t)height;
  file->planes = 1;
  file->rowBytes = ((size_t)width * file->bits + 31) / 32 * 4;
  file->pixels = kxPicture32(data + 10);
  if (file->pixels > file->size) return KX_ERROR_FileReadError;

  switch (file->bits) {
    case 1:
    case 4:
    case 8:
    case 24:
      break;
    case 16:
      file->masks[0] = 0x7C00;
      file->masks[1] = 0x03E0;
      file->masks[2] = 0x001F;
      break;
    case 32:
      file->masks[0] = 0xFF0000;
      file->masks[1] = 0x00FF00;
      file->masks[2] = 0x0000FF;
      break;
    default:
      return KX_ERROR_ColorFormatNotSupported;
  }
  if ((compression == 3 || compression == 6) && (file->bits == 16 || file->bits == 32)) {
    if (file->size < 66) return KX_ERROR_FileReadError;
    for (i = 0; i < 3; ++i) file->masks[i] = kxPicture32(data + 54 + 4 * i);
  } else if (compression == 1 && file->bits == 8) {
    if (file->topDown) return KX_ERROR_FileHeaderDestroyed;
    file->rowBytes = 0; /* coded: no rows of a fixed length */
  } else if (compression != 0) {
    return KX_ERROR_PackerTypeNotSupported;
  }
  if (file->bits <= 8) {
    file->colours = colours == 0 || colours > 1U << file->bits ? 1U << file->bits : colours;
    if (file->size - 14 - head < (size_t)file->colours * entry) return KX_ERROR_FileReadError;
    for (i = 0; i < file->colours; ++i) memcpy(file->palette + 3 * i, data + 14 + head + (size_t)entry * i, 3);
  }
  return 0;
}

/* Bitmaps of 8 bits from runs, bottom up. */
static inline uint32_t kxBmpReadRuns(Bitmap* bitmap, const KxPictureFile* file) {
  const uint8_t* at = file->data + file->pixels;
  const uint8_t* end = file->data + file->size;
  size_t x = 0, y = 0, i;
  const size_t width = (size_t)file->width, height = (size_t)file->height;
  while (y < height) {
    const uint8_t* literals = NULL;
    size_t count, value;
    if (end - at < 2) return KX_ERROR_FileReadError;
    count = *at++;
    value = *at++;
    if (count == 0 && value == 0) { /* end of row */
      x = 0;
      ++y;
    } else if (count == 0 && value == 1) { /* end of picture */
      return 0;
    } else if (count == 0 && value == 2) { /* a step right and up */
      if (end - at < 2) return KX_ERROR_FileReadError;
      x += *at++;
      y += *at++;
    } else {
      if (count == 0) {
        count = value;
        literals = at;
        if ((size_t)(end - at) < count) return KX_ERROR_FileReadError;
        at += count;
        if ((count & 1) != 0 && at < end) ++at;
      }
      for (i = 0; i < count && x < width; ++i, ++x)
        bitmap->pixels[(size_t)bitmap->pitch * (height - 1 - y) + x] = literals != NULL ? literals[i] : (uint8_t)value;
    }
  }
  return 0;
}

static inline void kxBmpReadRow(uint8_t* to, const uint8_t* from, const KxPictureFile* file, uint32_t format) {
  const size_t wholeBytes = ((size_t)file->width * file->bits + 7) / 8;
  const uint32_t bytes = file->bits / 8;
  int32_t x;
  uint32_t i;
  if (file->bits <= 8 && format != KX_FORMAT_MONO) {
    for (x = 0; x < file->width; ++x) to[x] = (uint8_t)kxPictureIndex(from, x, file->bits);
  } else if (file->bits != 32 && !(file->bits == 16 && format == KX_FORMAT_888)) {
    memcpy(to, from, wholeBytes);
  } else {
    for (x = 0; x < file->width; ++x, from += bytes, to += 3)
      for (i = 0; i < 3; ++i)
        to[i] = kxPictureChannel(bytes == 2 ? kxPicture16(from) : kxPicture32(from), file->masks[2 - i]);
  }
}

static inline uint32_t kxBmpRead(Bitmap** result, KxPictureFile* file, BitmapMethods* methods) {
  Bitmap* bitmap = NULL;
  uint32_t format = KX_FORMAT_888;
  uint64_t needed;
  int32_t y;
  uint32_t code = kxBmpHeader(file);
  if (code != 0) return code;
  if (file->bits <= 8)
    format = kxPictureFormat(file);
  else if (file->bits == 16 && file->masks[2] == 0x1F && file->masks[1] == 0x3E0 && file->masks[0] == 0x7C00)
    format = KX_FORMAT_555;
  else if (file->bits == 16 && file->masks[2] == 0x1F && file->masks[1] == 0x7E0 && file->masks[0] == 0xF800)
    format = KX_FORMAT_565;
  /* Two bytes of runs make 255 pixels at most; the last row may lack its padding. */
  needed = file->rowBytes == 0
               ? (uint64_t)file->width * (uint64_t)file->height / 128
               : (uint64_t)file->rowBytes * (uint64_t)(file->height - 1) + ((uint64_t)file->width * file->bits + 7) / 8;
  if (needed > file->size - file->pixels) return KX_ERROR_FileReadError;
  code = kxPictureCreate(&bitmap, file, format, methods);
  if (code != 0) return code;
  if (file->rowBytes == 0) {
    code = kxBmpReadRuns(bitmap, file);
  } else {
    for (y = 0; y < file->height; ++y)
      kxBmpReadRow(bitmap->pixels + (size_t)bitmap->pitch * (size_t)(file->topDown ? y : file->height - 1 - y),
                   file->data + file->pixels + file->rowBytes * (size_t)y, file, format);
  }
  return kxPictureFinish(result, bitmap, code);
}

static inline int kxBmpWriteRows(FILE* file, const Bitmap* bitmap, uint8_t* row, size_t rowBytes, uint32_t bits) {
  const size_t wholeBytes = ((size_t)bitmap->width * bits + 7) / 8;
  int32_t y;
  for (y = bitmap->height - 1; y >= 0; --y) {
    if ((bitmap->format & KX_STORAGE_MASK) != 0)
      RLE_decompressWords(row, bitmap->pixels + bitmap->rowTable[y], -1, bits / 8, (uint32_t)bitmap->width, NULL);
    else
      memcpy(row, bitmap->pixels + (size_t)bitmap->pitch * (size_t)y, wholeBytes);
    if (bits == 1 && bitmap->width % 8 != 0) row[wholeBytes - 1] &= (uint8_t)(0xFF00 >> bitmap->width % 8);
    memset(row + wholeBytes, 0, rowBytes - wholeBytes);
    if (fwrite(row, 1, rowBytes, file) != rowBytes) return 0;
  }
  return 1;
}

static inline int kxBmpWrite(FILE* file, const Bitmap* bitmap, uint8_t* row, size_t rowBytes, uint32_t bits) {
  static const uint32_t masks565[3] = {0xF800, 0x07E0, 0x001F};
  uint8_t head[54 + 1024];
  uint8_t* to = head;
  const uint32_t masks = bits == 16 && (bitmap->format & KX_FORMAT_CODE_MASK) == KX_FORMAT_565;
  const uint32_t colours = bits <= 8 ? 1U << bits : 0;
  const uint32_t offset = 54 + 4 * colours + 12 * masks;
  const uint32_t imageBytes = (uint32_t)(rowBytes * (size_t)bitmap->height);
  uint32_t i;
  to = kxPicturePut(to, 0x4D42, 2);
  to = kxPicturePut(to, offset + imageBytes, 4);
  to = kxPicturePut(to, 0, 4);
  to = kxPicturePut(to, offset, 4);
  to = kxPicturePut(to, 40, 4);
  to = kxPicturePut(to, (uint32_t)bitmap->width, 4);
  to = kxPicturePut(to, (uint32_t)bitmap->height, 4);
  to = kxPicturePut(to, 1, 2);
  to = kxPicturePut(to, bits, 2);
  to = kxPicturePut(to, masks != 0 ? 3 : 0, 4);
  to = kxPicturePut(to, imageBytes, 4);
  to = kxPicturePut(to, 2835, 4); /* 72 pixels an inch */
  to = kxPicturePut(to, 2835, 4);
  to = kxPicturePut(to, colours, 4);
  to = kxPicturePut(to, 0, 4);
  for (i = 0; i < 3 * masks; ++i) to = kxPicturePut(to, masks565[i], 4);
  for (i = 0; i < colours; ++i) {
    uint32_t colour = i * (bits == 1 ? 0xFFFFFFU : 0x010101U);
    if ((bitmap->format & KX_FORMAT_CODE_MASK) == KX_FORMAT_PALETTE) {
      const uint8_t* entry = bitmap->palette + 3 * i;
      colour = entry[0] | (uint32_t)entry[1] << 8 | (uint32_t)entry[2] << 16;
    }
    to = kxPicturePut(to, colour, 4);
  }
  if (fwrite(head, 1, offset, file) != offset) return 0;
  return kxBmpWriteRows(file, bitmap, row, rowBytes, bits);
}

#if defined(__cplusplus) && defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

#endif
