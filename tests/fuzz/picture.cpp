// Any bytes as a picture file; a small picture that is read is written and read again.
// SPDX-License-Identifier: MIT
#include <cstdint>
#include <cstdio>

#include "fuzz/target.h"
#include "kxgraphic/kxgraphic.h"
#include "kxgraphic/picture.h"

namespace {

void expectSamePixels(Bitmap* a, Bitmap* b) {
  require(a->width == b->width && a->height == b->height);
  for (std::int32_t y = 0; y < a->height; ++y)
    for (std::int32_t x = 0; x < a->width; ++x) require(KX_getPixel(a, x, y) == KX_getPixel(b, x, y));
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const char file[] = "fuzz_picture.bmp";
  BitmapMethods methods;
  KX_getBitmapInterface(&methods, nullptr, nullptr, 0);
  Bitmap* picture = nullptr;
  if (kxDecodePicture(&picture, data, size, &methods) != 0) {
    require(picture == nullptr);
    return 0;
  }
  require(picture->lockCount == 0);
  if (std::int64_t{picture->width} * picture->height < 1000 && kxSaveBmp(picture, file) == 0) {
    Bitmap* again = nullptr;
    require(kxLoadPicture(&again, file, &methods) == 0);
    expectSamePixels(picture, again);
    KX_deleteBitmap(again);
    std::remove(file);
  }
  KX_deleteBitmap(picture);
  return 0;
}
