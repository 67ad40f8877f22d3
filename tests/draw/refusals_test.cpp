// What drawing refuses: the code, the order of the tests where two faults meet, and what stays locked.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "bitmap/own_methods.h"
#include "draw/model.h"
#include "support/test_heap.h"

namespace {

using kxtest::Image;
using kxtest::Model;

/// Arguments that all entry points are called with; every test spoils one or two of them.
struct Arguments {
  Bitmap* target = nullptr;
  Bitmap* zBuffer = nullptr;
  Bitmap* pattern = nullptr;
  std::int32_t x = 1, y = 1;
  std::int32_t alpha = 7, z = 7, spacing = 2, tolerance = 0;
};

/// Which arguments an entry point has beyond a target and coordinates.
enum Trait : unsigned { Alpha = 1, Depth = 2, Spacing = 4, Stamped = 8, IsPoint = 16, Tolerance = 32 };

struct Entry {
  const char* name;
  unsigned traits;
  std::function<std::uint32_t(const Arguments&)> call;
};

#define KX_ENTRY(function, traits, ...)                                         \
  {                                                                             \
#function, traits, [](const Arguments& a) { return function(__VA_ARGS__); } \
  }

const Entry entries[] = {
    KX_ENTRY(KX_getPixel, IsPoint, a.target, a.x, a.y),
    KX_ENTRY(KX_setPixel, IsPoint, a.target, a.x, a.y, 1),
    KX_ENTRY(KX_setPixelAlpha, IsPoint | Alpha, a.target, a.x, a.y, 1, a.alpha),
    KX_ENTRY(KX_setPixelZBuffer, IsPoint | Depth, a.target, a.zBuffer, a.x, a.y, 1, a.z),
    KX_ENTRY(KX_setPixelAlphaZBuffer, IsPoint | Alpha | Depth, a.target, a.zBuffer, a.x, a.y, 1, a.alpha, a.z),
    KX_ENTRY(KX_drawLine, 0, a.target, a.x, a.y, 2, 2, 1),
    KX_ENTRY(KX_drawLineAlpha, Alpha, a.target, 2, 2, a.x, a.y, 1, a.alpha),
    KX_ENTRY(KX_drawLineZBuffer, Depth, a.target, a.zBuffer, a.x, a.y, 2, 2, 1, a.z),
    KX_ENTRY(KX_drawLineAlphaZBuffer, Alpha | Depth, a.target, a.zBuffer, a.x, a.y, 2, 2, 1, a.alpha, a.z),
    KX_ENTRY(KX_drawDottedLine, Spacing, a.target, a.x, a.y, 2, 2, 1, a.spacing),
    KX_ENTRY(KX_drawDottedLineAlpha, Spacing | Alpha, a.target, a.x, a.y, 2, 2, 1, a.spacing, a.alpha),
    KX_ENTRY(KX_drawDottedLineZBuffer, Spacing | Depth, a.target, a.zBuffer, a.x, a.y, 2, 2, 1, a.spacing, a.z),
    KX_ENTRY(KX_drawDottedLineAlphaZBuffer, Spacing | Alpha | Depth, a.target, a.zBuffer, a.x, a.y, 2, 2, 1, a.spacing,
             a.alpha, a.z),
    KX_ENTRY(KX_drawPatternLine, Stamped | Spacing, a.target, a.x, a.y, 2, 2, a.spacing, a.pattern),
    KX_ENTRY(KX_drawPatternLineTransparentAlpha, Stamped | Spacing | Alpha, a.target, a.x, a.y, 2, 2, a.spacing,
             a.pattern, a.alpha),
    KX_ENTRY(KX_drawPatternLineZBuffer, Stamped | Spacing | Depth, a.target, a.zBuffer, a.x, a.y, 2, 2, a.spacing,
             a.pattern, a.z),
    KX_ENTRY(KX_drawPatternLineAlphaZBuffer, Stamped | Spacing | Alpha | Depth, a.target, a.zBuffer, a.x, a.y, 2, 2,
             a.spacing, a.pattern, a.alpha, a.z),
    KX_ENTRY(KX_fillRect, 0, a.target, a.x, a.y, 1, 1, 1),
    KX_ENTRY(KX_fillRectAlpha, Alpha, a.target, a.x, a.y, 1, 1, 1, a.alpha),
    KX_ENTRY(KX_fillRectZBuffer, Depth, a.target, a.zBuffer, a.x, a.y, 1, 1, 1, a.z),
    KX_ENTRY(KX_fillRectAlphaZBuffer, Alpha | Depth, a.target, a.zBuffer, a.x, a.y, 1, 1, 1, a.alpha, a.z),
    KX_ENTRY(KX_moveRect, 0, a.target, a.x, a.y, 0, 0, 1, 1),
    KX_ENTRY(KX_floodFill, Tolerance, a.target, a.x, a.y, a.tolerance, 1),
};

#undef KX_ENTRY

/// A fault, the traits of the entry points that test for it, and the code. In the order in which they are tested.
struct Fault {
  const char* name;
  unsigned traits;
  std::uint32_t code;
  std::function<void(Arguments&)> spoil;
};

std::uint32_t KX_CALL refuseLock(Bitmap*) { return 77; }

class Refusals : public testing::Test {
protected:
  Model target{6, 4, 4}, mono{0, 4, 4}, indexed{4, 4, 4}, depths{3, 4, 4}, packedDepths{0x13, 4, 4}, stamp{6, 2, 2};
  Image image{target}, monoImage{mono}, indexedImage{indexed}, zBuffer{depths}, packedZBuffer{packedDepths},
      pattern{stamp};

  Arguments good() const { return {.target = image, .zBuffer = zBuffer, .pattern = pattern}; }

  std::uint32_t locks() const {
    return image->lockCount + monoImage->lockCount + indexedImage->lockCount + zBuffer->lockCount +
           packedZBuffer->lockCount + pattern->lockCount;
  }

  const std::vector<Fault> faults = {
      {"target", 0, 7, [](Arguments& a) { a.target = nullptr; }},
      {"zBuffer", Depth, 7, [](Arguments& a) { a.zBuffer = nullptr; }},
      {"x", 0, 0x2005, [](Arguments& a) { a.x = 4; }},
      {"y", 0, 0x2005, [](Arguments& a) { a.y = -1; }},
      {"alpha", Alpha, 0x2006, [](Arguments& a) { a.alpha = 256; }},
      {"z", Depth, 0x2007, [](Arguments& a) { a.z = -1; }},
      {"spacing", Spacing, 7, [](Arguments& a) { a.spacing = 0; }},
      {"pattern", Stamped, 7, [](Arguments& a) { a.pattern = nullptr; }},
      {"tolerance", Tolerance, 7, [](Arguments& a) { a.tolerance = 256; }},
      {"mono", Alpha, 6, [this](Arguments& a) { a.target = a.target ? static_cast<Bitmap*>(monoImage) : nullptr; }},
      {"indexed", Alpha, 6,
       [this](Arguments& a) { a.target = a.target ? static_cast<Bitmap*>(indexedImage) : nullptr; }},
      {"z format", Depth, 0x2008,
       [this](Arguments& a) { a.zBuffer = a.zBuffer ? static_cast<Bitmap*>(image) : nullptr; }},
      {"z packed", Depth, 0x2008,
       [this](Arguments& a) { a.zBuffer = a.zBuffer ? static_cast<Bitmap*>(packedZBuffer) : nullptr; }},
  };

  static bool applies(const Fault& fault, const Entry& entry) { return (fault.traits & ~entry.traits) == 0; }
};

TEST_F(Refusals, EveryFaultAndEveryPairOfFaults) {
  for (const Entry& entry : entries) {
    EXPECT_EQ(0u, locks());
    for (std::size_t i = 0; i < faults.size(); ++i)
      for (std::size_t k = i; k < faults.size(); ++k) {
        if (!applies(faults[i], entry) || !applies(faults[k], entry)) continue;
        Arguments arguments = good();
        faults[i].spoil(arguments);
        faults[k].spoil(arguments);
        // Points test the depth before the weight.
        const bool depthFirst = (entry.traits & IsPoint) != 0 && faults[i].code == 0x2006 && faults[k].code == 0x2007;
        EXPECT_EQ(depthFirst ? 0x2007u : faults[i].code, entry.call(arguments))
            << entry.name << ": " << faults[i].name << " and " << faults[k].name;
        EXPECT_EQ(0u, locks()) << entry.name << ": " << faults[i].name;
      }
  }
}

TEST_F(Refusals, RecordsInRuins) {
  for (const Entry& entry : entries) {
    Arguments arguments = good();
    BitmapMethods* const methods = image->methods;
    image->methods = nullptr;
    EXPECT_EQ(5u, entry.call(arguments)) << entry.name;
    image->methods = methods;
    if ((entry.traits & Depth) != 0) {
      zBuffer->methods = nullptr;
      EXPECT_EQ(5u, entry.call(arguments)) << entry.name;
      zBuffer->methods = methods;
      // The depth of (2, 2) and of everything drawn lies in the third row or before.
      zBuffer->height = 1;
      EXPECT_EQ(0x2005u, entry.call(arguments)) << entry.name;
      zBuffer->height = 4;
    }
    std::uint8_t* const pixels = image->pixels;
    image->pixels = nullptr;
    EXPECT_EQ(0x2001u, entry.call(arguments)) << entry.name;
    image->pixels = pixels;
    EXPECT_EQ(0u, locks()) << entry.name;

    // Both storage bits count as packed for lines and moves, and one of them for the others; there is no row table.
    const bool seesAnyBit = (entry.traits & Spacing) != 0 || std::string(entry.name).find("drawLine") == 3 ||
                            std::string(entry.name) == "KX_moveRect";
    for (const std::uint32_t storage : {0x10u, 0x20u, 0x30u}) {
      image->format |= storage;
      const std::uint32_t code = entry.call(arguments);
      if (storage == 0x10 || seesAnyBit)
        EXPECT_EQ(0x2001u, code) << entry.name << ' ' << storage;
      else
        EXPECT_GT(2u, code) << entry.name << ' ' << storage;
      image->format &= ~0x30u;
      image->lockCount = zBuffer->lockCount = pattern->lockCount = 0;
    }
  }
}

/// A Z buffer that is narrower than the target but whose block holds the depth of each dot will do.
TEST_F(Refusals, ZBufferNeedsToHoldTheDotsOnly) {
  Model small{3, 4, 3};
  const Image depthsOfDots(small);
  EXPECT_EQ(0u, KX_drawLineZBuffer(image, depthsOfDots, 3, 0, 0, 2, 1, 0));
  EXPECT_EQ(0x2005u, KX_drawLineZBuffer(image, depthsOfDots, 3, 0, 0, 3, 1, 0));
  EXPECT_EQ(0u, KX_drawDottedLineZBuffer(image, depthsOfDots, 0, 0, 0, 3, 1, 3, 0));
  EXPECT_EQ(0x2005u, KX_fillRectZBuffer(image, depthsOfDots, 0, 0, 1, 4, 1, 0));
}

TEST_F(Refusals, RectanglesOutside) {
  const struct {
    std::int32_t x, y, w, h;
  } cases[] = {{0, 0, 0, 1}, {0, 0, 1, 0}, {-1, 0, 1, 1},         {0, -1, 1, 1},         {4, 0, 1, 1},  {0, 4, 1, 1},
               {1, 0, 4, 1}, {0, 1, 1, 4}, {1, 0, 0x7FFFFFFF, 1}, {0, 3, 1, 0x7FFFFFFF}, {0, 0, -1, 1}, {3, 3, 2, 2}};
  for (const auto& c : cases) EXPECT_EQ(0x2005u, KX_fillRect(image, c.x, c.y, c.w, c.h, 1));
  for (const auto& c : cases) {
    const bool empty = c.x >= 0 && c.y >= 0 && (c.w < 1 || c.h < 1);
    EXPECT_EQ(empty ? 0u : 0x2005u, KX_moveRect(image, 0, 0, c.x, c.y, c.w, c.h));
    EXPECT_EQ(empty ? 0u : 0x2005u, KX_moveRect(image, c.x, c.y, 0, 0, c.w, c.h));
  }
  EXPECT_EQ(0u, KX_fillRect(image, 3, 3, 1, 1, 1));
  EXPECT_EQ(0u, KX_fillRect(image, 0, 0, 4, 4, 1));
}

/// A lock that fails is answered with its own code, before anything is drawn.
TEST_F(Refusals, FailingLock) {
  BitmapMethods methods = *kx::ownBitmapMethods();
  methods.lock = refuseLock;
  image->methods = &methods;
  for (const Entry& entry : entries) EXPECT_EQ(77u, entry.call(good())) << entry.name;
  for (const auto function :
       {KX_grayScale, KX_invertBitmap, KX_mirrorBitmapX, KX_mirrorBitmapY, KX_getAverageLuminance})
    EXPECT_EQ(77u, function(image));
  image->methods = kx::ownBitmapMethods();
  EXPECT_EQ(std::vector<std::uint32_t>(16), image.values());
}

TEST_F(Refusals, ImageOperations) {
  const std::function<std::uint32_t(Bitmap*)> operations[] = {
      KX_grayScale,           KX_invertBitmap,
      KX_mirrorBitmapX,       KX_mirrorBitmapY,
      KX_getAverageLuminance, [](Bitmap* bitmap) { return KX_changeBrightnessContrast(bitmap, 1, 1, 1); }};
  for (const auto& operation : operations) {
    EXPECT_EQ(7u, operation(nullptr));
    BitmapMethods* const methods = image->methods;
    image->methods = nullptr;
    EXPECT_EQ(5u, operation(image));
    image->methods = methods;
  }
  // The ranges are tested on a locked image, which is unlocked again.
  std::uint8_t* const pixels = image->pixels;
  for (const std::int32_t bad : {-257, 257})
    for (const auto function : {KX_changeBrightnessContrast, KX_changeBrightnessContrastTransparent})
      for (const auto& [brightness, contrast] : {std::pair{bad, 0}, std::pair{0, bad}}) {
        EXPECT_EQ(7u, function(image, brightness, contrast, 0));
        EXPECT_EQ(7u, function(monoImage, brightness, contrast, 0));
        image->pixels = nullptr;
        EXPECT_EQ(0x2001u, function(image, brightness, contrast, 0));
        image->pixels = pixels;
        EXPECT_EQ(0u, locks());
      }
}

/// Records of a stranger that have no size: nothing to do, and nothing is touched.
TEST_F(Refusals, ImagesWithoutPixels) {
  const Image packed(packedDepths);
  for (Bitmap* const bitmap : {static_cast<Bitmap*>(image), static_cast<Bitmap*>(zBuffer), static_cast<Bitmap*>(packed),
                               static_cast<Bitmap*>(monoImage)}) {
    const std::int32_t width = bitmap->width;
    const std::int32_t height = bitmap->height;
    for (const auto& [w, h] : {std::pair{0, 4}, std::pair{4, 0}, std::pair{-1, 4}, std::pair{4, INT32_MIN}}) {
      bitmap->width = w;
      bitmap->height = h;
      for (const auto function : {KX_grayScale, KX_invertBitmap, KX_mirrorBitmapX, KX_mirrorBitmapY})
        EXPECT_EQ(0u, function(bitmap));
      EXPECT_EQ(0u, KX_changeBrightnessContrast(bitmap, 9, 9, -1));
      EXPECT_EQ(bitmap == monoImage ? 128u : 0u, KX_getAverageLuminance(bitmap));
      if (bitmap == zBuffer) continue;
      // As a pattern it leaves no stamp.
      EXPECT_EQ(0u, KX_drawPatternLine(zBuffer, 0, 0, 3, 3, 1, bitmap));
    }
    bitmap->width = width;
    bitmap->height = height;
  }
  EXPECT_EQ(0u, locks());
}

/// Every allocation on the way through a packed target can fail; its image stays, and nothing is lost.
TEST_F(Refusals, AllocationFailureOnPackedTargets) {
  Model packed{0x16, 30, 5};
  kxtest::Random random(9);
  packed.fillWithNoise(random);
  Model plainDepths{3, 30, 5};
  const Image depth(plainDepths);
  for (const Entry& entry : entries) {
    if ((entry.traits & Stamped) != 0) continue;
    for (unsigned countdown = 1;; ++countdown) {
      const Image canvas(packed);
      const std::size_t blocks = kxtest::liveBlocks();
      kxtest::failAllocation(countdown);
      const std::uint32_t code = entry.call({.target = canvas, .zBuffer = depth, .pattern = pattern});
      const bool failed = kxtest::allocationFailed();
      kxtest::failAllocation(0);
      EXPECT_EQ(blocks, kxtest::liveBlocks()) << entry.name;
      depth->lockCount = 0;
      if (!failed) break;
      EXPECT_EQ(2u, code) << entry.name << ' ' << countdown;
      EXPECT_EQ(packed.values, canvas.values()) << entry.name;
    }
  }
}

}  // namespace
