#line 83 "docs/formats.md"
/* A packed copy of an image. */
uint32_t pack(Bitmap** result, Bitmap* image, BitmapMethods* methods) {
  const uint32_t format = (image->format & KX_FORMAT_CODE_MASK) | KX_STORAGE_PACKED;
  const uint32_t code = KX_createBitmap(result, image->width, image->height, format, 0, 0, methods);
  if (code != 0) return code;
  return KX_bltCopy(*result, 0, 0, image, 0, 0, image->width, image->height);
}
