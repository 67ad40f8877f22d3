// Bitmaps whose operations fail on request.
// SPDX-License-Identifier: MIT
#include "render3d/stub_bitmaps.h"

namespace kxtest {

namespace {

StubBitmaps* stub = nullptr;

std::uint32_t KX_CALL create(Bitmap** result, std::int32_t width, std::int32_t height, std::uint32_t format,
                             std::uint32_t extra1, std::uint32_t extra2, BitmapMethods* methods) {
  stub->createdWidth = width;
  stub->createdHeight = height;
  stub->createdFormat = format;
  stub->createdExtra1 = extra1;
  stub->createdExtra2 = extra2;
  if (const std::uint32_t code = stub->note('c'); code != 0) return code;
  return KX_createBitmap(result, width, height, format, extra1, extra2, methods);
}

std::uint32_t KX_CALL destroy(Bitmap* bitmap) {
  const std::uint32_t code = stub->note('d');
  return code != 0 ? code : KX_deleteBitmap(bitmap);
}

std::uint32_t KX_CALL lock(Bitmap* bitmap) {
  const std::uint32_t code = stub->note('l');
  return code != 0 ? code : KX_lock(bitmap);
}

std::uint32_t KX_CALL unlock(Bitmap* bitmap) {
  const std::uint32_t code = stub->note('u');
  return code != 0 ? code : KX_unlock(bitmap);
}

std::uint32_t KX_CALL fill(Bitmap*, std::int32_t x, std::int32_t y, std::int32_t w, std::int32_t h,
                           std::uint32_t colour) {
  stub->filledColour = colour;
  const std::int32_t rect[4] = {x, y, w, h};
  for (int i = 0; i < 4; ++i) stub->filledRect[i] = rect[i];
  return stub->note('f');
}

}  // namespace

StubBitmaps::StubBitmaps() {
  stub = this;
  KX_getBitmapInterface(&methods, nullptr, nullptr, 0);
  methods.createBitmap = create;
  methods.deleteBitmap = destroy;
  methods.lock = lock;
  methods.unlock = unlock;
  methods.fillRect = fill;
}

StubBitmaps::~StubBitmaps() { stub = nullptr; }

void StubBitmaps::fail(char letter, int countdown, std::uint32_t code) {
  failingLetter_ = letter;
  untilFailure_ = countdown;
  failureCode_ = code;
}

std::uint32_t StubBitmaps::note(char letter) {
  log += letter;
  return letter == failingLetter_ && --untilFailure_ == 0 ? failureCode_ : 0;
}

}  // namespace kxtest
