// Operations lock and unlock through the bitmap's own table, whichever of its methods are replaced.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>

#include "bitmap/own_methods.h"
#include "kxgraphic/kxgraphic.h"

namespace {

int lockCalls, unlockCalls;

std::uint32_t KX_CALL countedLock(Bitmap* bitmap) {
  ++lockCalls;
  return KX_lock(bitmap);
}

std::uint32_t KX_CALL countedUnlock(Bitmap* bitmap) {
  ++unlockCalls;
  return KX_unlock(bitmap);
}

constexpr struct {
  const char* name;
  std::uint32_t (*call)(Bitmap* watched, Bitmap* other);
} operations[] = {
    {"getPixel", [](Bitmap* b, Bitmap*) { return KX_getPixel(b, 1, 1); }},
    {"setPixel", [](Bitmap* b, Bitmap*) { return KX_setPixel(b, 1, 1, 0); }},
    {"setPixelAlpha", [](Bitmap* b, Bitmap*) { return KX_setPixelAlpha(b, 1, 1, 0, 9); }},
    {"setPixelZBuffer", [](Bitmap* b, Bitmap* o) { return KX_setPixelZBuffer(o, b, 1, 1, 0, 0); }},
    {"fillRect", [](Bitmap* b, Bitmap*) { return KX_fillRect(b, 1, 1, 3, 3, 0); }},
    {"drawLine", [](Bitmap* b, Bitmap*) { return KX_drawLine(b, 1, 1, 3, 3, 0); }},
    {"invertBitmap", [](Bitmap* b, Bitmap*) { return KX_invertBitmap(b); }},
    {"bltCopy onto it", [](Bitmap* b, Bitmap* o) { return KX_bltCopy(b, 0, 0, o, 0, 0, 5, 5); }},
    {"bltCopy from it", [](Bitmap* b, Bitmap* o) { return KX_bltCopy(o, 0, 0, b, 0, 0, 5, 5); }},
    {"bltCopyAlphamap by it", [](Bitmap* b, Bitmap* o) { return KX_bltCopyAlphamap(o, 0, 0, o, 4, 4, 2, 2, b); }},
    {"bltStretch onto it", [](Bitmap* b, Bitmap* o) { return KX_bltStretch(b, 0, 0, 5, 5, o, 0, 0, 2, 2); }},
};

TEST(ReplacedLocks, AreCalledAndCountAlike) {
  BitmapMethods methods = *kx::ownBitmapMethods();
  Bitmap *watched = nullptr, *other = nullptr;
  ASSERT_EQ(0u, KX_createBitmap(&watched, 8, 8, KX_FORMAT_GREY, 0, 0, &methods));
  ASSERT_EQ(0u, KX_createBitmap(&other, 8, 8, KX_FORMAT_GREY, 0, 0, kx::ownBitmapMethods()));
  for (const auto& [name, call] : operations)
    for (const std::uint32_t before : {0u, 5u, 0xFFFFFFFEu, 0xFFFFFFFFu}) {
      std::uint32_t after = 0;
      int calls = 0;
      for (const bool ownLock : {false, true})
        for (const bool ownUnlock : {false, true}) {
          SCOPED_TRACE(::testing::Message() << name << " from " << before << " own " << ownLock << ownUnlock);
          methods.lock = ownLock ? KX_lock : countedLock;
          methods.unlock = ownUnlock ? KX_unlock : countedUnlock;
          lockCalls = unlockCalls = 0;
          watched->lockCount = before;
          for (int y = 0; y < 8; ++y)
            for (int x = 0; x < 8; ++x) watched->pixels[y * watched->pitch + x] = 0;
          ASSERT_EQ(0u, call(watched, other));
          if (!ownLock && !ownUnlock) {
            after = watched->lockCount;
            calls = lockCalls;
            ASSERT_GT(calls, 0);
          }
          EXPECT_EQ(after, watched->lockCount);
          EXPECT_EQ(ownLock ? 0 : calls, lockCalls);
          EXPECT_EQ(ownUnlock ? 0 : calls, unlockCalls);
        }
    }
  methods = *kx::ownBitmapMethods();
  KX_deleteBitmap(watched);
  KX_deleteBitmap(other);
}

}  // namespace
