// Bitmaps of formats that are not supported take no memory, so that they may be of any size: nothing goes through their
// rows, of which there may be thousands of millions.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>

#include "bitmap/own_methods.h"
#include "kxgraphic/kxgraphic.h"

namespace {

constexpr std::int32_t side = INT32_MAX;

constexpr struct {
  const char* name;
  std::uint32_t (*call)(Bitmap* target, Bitmap* source);
} operations[] = {
    {"bltCopy", [](Bitmap* t, Bitmap* s) { return KX_bltCopy(t, 0, 0, s, 0, 0, side, side); }},
    {"bltCopyTransparent", [](Bitmap* t, Bitmap* s) { return KX_bltCopyTransparent(t, 0, 0, s, 0, 0, side, side); }},
    {"bltCopyAlpha", [](Bitmap* t, Bitmap* s) { return KX_bltCopyAlpha(t, 0, 0, s, 0, 0, side, side, 9); }},
    {"bltStretch", [](Bitmap* t, Bitmap* s) { return KX_bltStretch(t, 0, 0, side, side, s, 0, 0, 1, 1); }},
    {"bltStretchAlpha", [](Bitmap* t, Bitmap* s) { return KX_bltStretchAlpha(t, 0, 0, side, side, s, 0, 0, 2, 2, 9); }},
    {"fillRect", [](Bitmap* t, Bitmap*) { return KX_fillRect(t, 0, 0, side, side, 1); }},
    {"floodFill", [](Bitmap* t, Bitmap*) { return KX_floodFill(t, 5, 5, 0, 1); }},
    {"mirrorBitmapX", [](Bitmap* t, Bitmap*) { return KX_mirrorBitmapX(t); }},
    {"mirrorBitmapY", [](Bitmap* t, Bitmap*) { return KX_mirrorBitmapY(t); }},
    {"invertBitmap", [](Bitmap* t, Bitmap*) { return KX_invertBitmap(t); }},
    {"grayScale", [](Bitmap* t, Bitmap*) { return KX_grayScale(t); }},
    {"cloneBitmap",
     [](Bitmap* t, Bitmap*) {
       Bitmap* clone = nullptr;
       const std::uint32_t code = KX_cloneBitmap(&clone, t, t->methods);
       return code != 0 ? code : KX_deleteBitmap(clone);
     }},
};

TEST(FormatsWithoutPixels, NoSizeIsWalkedThrough) {
  for (const std::uint32_t format : {1u, 2u, 8u, 15u}) {
    Bitmap *target = nullptr, *source = nullptr;
    ASSERT_EQ(0u, KX_createBitmap(&target, side, side, format, 0, 0, kx::ownBitmapMethods()));
    ASSERT_EQ(0u, KX_createBitmap(&source, side, side, format, 0, 0, kx::ownBitmapMethods()));
    for (const auto& [name, call] : operations) {
      SCOPED_TRACE(::testing::Message() << name << " in format " << format);
      const std::uint32_t code = call(target, source);
      EXPECT_TRUE(code == 0 || code == 0x2000 || code == 6) << code;
      EXPECT_EQ(0u, target->lockCount);
      EXPECT_EQ(0u, source->lockCount);
    }
    EXPECT_EQ(0u, KX_deleteBitmap(source));
    EXPECT_EQ(0u, KX_deleteBitmap(target));
  }
}

}  // namespace
