// SPDX-License-Identifier: MIT
#include "own_bitmaps.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace kxbench {

BitmapMethods* ownMethods() {
  static BitmapMethods table = [] {
    BitmapMethods made;
    KX_getBitmapInterface(&made, nullptr, nullptr, 1);
    return made;
  }();
  return &table;
}

OwnedBitmap makeBitmap(Picture picture) {
  Bitmap* bitmap = nullptr;
  require(KX_createBitmap(&bitmap, picture.width(), picture.height(), picture.format(), 0, 0, ownMethods()), "create");
  for (std::int32_t y = 0; y < picture.height(); ++y)
    std::memcpy(bitmap->pixels + std::ptrdiff_t{y} * bitmap->pitch, picture.row(y),
                static_cast<std::size_t>(picture.width() * picture.pixelBytes()));
  if (picture.format() == KX_FORMAT_PALETTE) require(KX_setPalette(bitmap, makePalette().data()), "palette");
  return OwnedBitmap(bitmap);
}

OwnedBitmap makePackedBitmap(Picture picture) {
  const std::int32_t width = picture.width(), height = picture.height();
  const std::uint32_t format = picture.format() | KX_STORAGE_PACKED;
  const OwnedBitmap plain = makeBitmap(std::move(picture));
  Bitmap* bitmap = nullptr;
  require(KX_createBitmap(&bitmap, width, height, format, 0, 0, ownMethods()), "create");
  require(KX_bltCopy(bitmap, 0, 0, plain.get(), 0, 0, width, height), "pack");
  return OwnedBitmap(bitmap);
}

void require(std::uint32_t code, const char* what) {
  if (code == 0) return;
  std::fprintf(stderr, "%s: code %#x\n", what, code);
  std::abort();
}

}  // namespace kxbench
