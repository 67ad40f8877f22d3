// What the blits refuse, with which code and in which order, and what stays locked.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "support/blit_call.h"
#include "support/test_heap.h"
#include "support/test_image.h"

namespace {

using kxtest::BlitCall;
using kxtest::Depth;
using kxtest::Random;
using kxtest::Rule;
using kxtest::TestImage;

std::uint32_t KX_CALL refuseLock(Bitmap*) { return 0x200A; }

/// A call that would succeed, on bitmaps of 20 x 10.
struct Scene {
  Random random{7};
  TestImage dst, src, zbuffer{random, 3, 20, 10, false}, alphamap{random, 3, 20, 10, false},
      zmap{random, 3, 20, 10, false};
  BitmapMethods refusing = *kxtest::methods();
  BlitCall call;

  explicit Scene(std::uint32_t to = 6, std::uint32_t from = 6, bool packedDst = false, bool packedSrc = false)
      : dst(random, to, 20, 10, packedDst), src(random, from, 20, 10, packedSrc) {
    refusing.lock = refuseLock;
    call.dst = dst.record();
    call.src = src.record();
    call.zbuffer = zbuffer.record();
    call.alphamap = alphamap.record();
    call.zmap = zmap.record();
    call.dw = call.dh = call.sw = call.sh = 8;
  }

  /// Lock counts of destination, source, Z buffer, alpha map and Z map as digits.
  std::uint32_t locks() {
    std::uint32_t digits = 0;
    for (TestImage* image : {&dst, &src, &zbuffer, &alphamap, &zmap}) digits = digits * 10 + image->record()->lockCount;
    return digits;
  }
};

template <typename T>
T* bad() {
  return reinterpret_cast<T*>(std::uintptr_t{16});
}

/// One thing spoilt, in the order of the tests. Codes for the copy and the stretch family; 0: not refused.
struct Fault {
  const char* name;
  std::function<void(Scene&)> spoil;
  std::uint32_t copyCode, stretchCode;
  std::uint32_t copyLocks = 0, stretchLocks = 0;  ///< what AlphamapZMap leaves locked
};

const std::vector<Fault>& faults() {
  static const std::vector<Fault> list = {
      {"destination pointer", [](Scene& s) { s.call.dst = bad<Bitmap>(); }, 7, 7},
      {"source pointer", [](Scene& s) { s.call.src = bad<Bitmap>(); }, 7, 7},
      {"Z buffer pointer", [](Scene& s) { s.call.zbuffer = nullptr; }, 7, 7},
      {"alpha map pointer", [](Scene& s) { s.call.alphamap = nullptr; }, 7, 7},
      {"Z map pointer", [](Scene& s) { s.call.zmap = nullptr; }, 7, 7},
      {"source too far right", [](Scene& s) { s.call.sx = 13; }, 0x2005, 0x2005},
      {"source above", [](Scene& s) { s.call.sy = -1; }, 0x2005, 0x2005},
      {"destination too low", [](Scene& s) { s.call.dy = 3; }, 0x2005, 0x2005},
      {"sum that overflows", [](Scene& s) { s.call.dx = 0x7FFFFFFF; }, 0x2005, 0x2005},
      {"no width", [](Scene& s) { s.call.dw = 0; }, 0, 0x2005},
      {"negative height", [](Scene& s) { s.call.dh = -5; }, 0, 0x2005},
      {"alpha", [](Scene& s) { s.call.rule = Rule::Alpha, s.call.alpha = 256; }, 0x2006, 0x2006},
      {"z", [](Scene& s) { s.call.depth = Depth::ZBuffer, s.call.z = -1; }, 0x2007, 0x2007},
      {"blend into a palette", [](Scene& s) { s.dst.record()->format = 4; }, 6, 0x2000},
      {"Z buffer of format 5", [](Scene& s) { s.zbuffer.record()->format = 5; }, 0x2008, 0},
      {"Z map of format 5", [](Scene& s) { s.zmap.record()->format = 5; }, 0x2008, 0},
      {"Z buffer of format 5 and packed", [](Scene& s) { s.zbuffer.record()->format = 0x15; }, 0x2008, 0x2008},
      {"alpha map of format 5", [](Scene& s) { s.alphamap.record()->format = 5; }, 0x2009, 0x2009},
      {"Z buffer too low", [](Scene& s) { s.zbuffer.record()->height = 7; }, 0x2005, 0x2005},
      {"Z map too narrow",
       [](Scene& s) {
         s.zmap.record()->pitch = 4;
         s.zmap.record()->height = 8;
       },
       0x2005, 0x2005},
      {"alpha map without rows", [](Scene& s) { s.alphamap.record()->pitch = 0; }, 0x2005, 0x2005},
      {"destination's methods", [](Scene& s) { s.dst.record()->methods = nullptr; }, 5, 5},
      {"destination's lock", [](Scene& s) { s.dst.record()->methods = &s.refusing; }, 0x200A, 0x200A, 0, 0},
      {"destination's pixels", [](Scene& s) { s.dst.record()->pixels = nullptr; }, 0x2001, 0x2001, 0, 0},
      {"source's methods", [](Scene& s) { s.src.record()->methods = bad<BitmapMethods>(); }, 5, 5, 10000, 10000},
      {"source's lock", [](Scene& s) { s.src.record()->methods = &s.refusing; }, 0x200A, 0x200A, 10000, 10000},
      {"Z buffer's methods", [](Scene& s) { s.zbuffer.record()->methods = nullptr; }, 5, 5, 11000, 11000},
      {"Z buffer's lock", [](Scene& s) { s.zbuffer.record()->methods = &s.refusing; }, 0x200A, 0x200A, 11000, 11000},
      {"alpha map's methods", [](Scene& s) { s.alphamap.record()->methods = nullptr; }, 5, 5, 11100, 11100},
      {"alpha map's lock", [](Scene& s) { s.alphamap.record()->methods = &s.refusing; }, 0x200A, 0x200A, 11100, 11100},
      {"Z map's methods", [](Scene& s) { s.zmap.record()->methods = nullptr; }, 5, 5, 11110, 11110},
      {"Z map's lock", [](Scene& s) { s.zmap.record()->methods = &s.refusing; }, 0x200A, 0x200A, 11110, 11110},
  };
  return list;
}

/// The fullest member takes every fault but those of a constant weight or depth, which name their own variant.
void prepare(Scene& scene, bool stretch) {
  scene.call.stretch = stretch;
  scene.call.rule = Rule::Alphamap;
  scene.call.depth = Depth::ZMap;
}

TEST(BlitRefusals, EachFaultHasItsCodeAndLeavesItsLocks) {
  for (const bool stretch : {false, true})
    for (const Fault& fault : faults()) {
      SCOPED_TRACE(std::string(stretch ? "stretch: " : "copy: ") + fault.name);
      Scene scene;
      prepare(scene, stretch);
      fault.spoil(scene);
      const std::vector<std::uint8_t> before = scene.dst.memory();
      const std::uint32_t code = stretch ? fault.stretchCode : fault.copyCode;
      EXPECT_EQ(code, kxtest::callBlit(scene.call));
      EXPECT_EQ(stretch ? fault.stretchLocks : fault.copyLocks, scene.locks());
      if (code != 0) {
        EXPECT_EQ(before, scene.dst.memory());
      }
    }
}

TEST(BlitRefusals, OfTwoFaultsTheEarlierIsReported) {
  for (const bool stretch : {false, true})
    for (std::size_t first = 0; first < faults().size(); ++first)
      for (std::size_t second = first + 1; second < faults().size(); ++second) {
        const Fault &a = faults()[first], &b = faults()[second];
        const std::uint32_t code = stretch ? a.stretchCode : a.copyCode;
        // A bad pointer leaves nothing to spoil, and a variant cannot be two.
        if (code == 7 || code == 0 || (code == 0x2006 && b.stretchCode >= 0x2007) || code == 0x2007) continue;
        // An empty copy has no outside.
        if (a.stretchCode == 0x2006 || b.copyCode == 0 || b.stretchCode == 0x2006 || b.stretchCode == 0x2007) continue;
        SCOPED_TRACE(std::string(stretch ? "stretch: " : "copy: ") + a.name + ", then " + b.name);
        Scene scene;
        prepare(scene, stretch);
        b.spoil(scene);
        a.spoil(scene);
        const bool sameThing = code == 0x2008 && b.stretchCode == 0x2008;
        if (!sameThing) {
          EXPECT_EQ(code, kxtest::callBlit(scene.call));
        }
      }
}

TEST(BlitRefusals, OfAPackedZBufferTheStreamMustHoldTheRectangle) {
  for (const unsigned before : {5u, 6u}) {
    Scene scene;
    scene.call.stretch = true;
    scene.call.depth = Depth::ZBuffer;
    // All rows are one run of two bytes. A pitch of 0 puts the rows of the rectangle, of eight bytes, into one place.
    std::uint8_t stream[8] = {};
    stream[before] = static_cast<std::uint8_t>(1 - 20);
    std::vector<std::uint32_t> rows(10, before);
    Bitmap packed = *scene.zbuffer.record();
    packed.format |= KX_STORAGE_PACKED;
    packed.pitch = 0;
    packed.pixels = stream;
    packed.rowTable = rows.data();
    scene.call.zbuffer = &packed;
    EXPECT_EQ(before == 6 ? 0u : 0x2005u, kxtest::callBlit(scene.call));
  }
}

TEST(BlitRefusals, PalettesAndRowTables) {
  const auto code = [](std::uint32_t from, std::uint32_t to, bool stretch, bool packed, auto spoil) {
    Scene scene(to, from, false, packed);
    scene.call.stretch = stretch;
    spoil(scene);
    return kxtest::callBlit(scene.call);
  };
  const auto noPalette = [](Scene& s) { s.src.record()->palette = nullptr; };
  const auto badTable = [](Scene& s) {
    s.src.record()->table8 = bad<std::uint8_t>();
    s.src.record()->flags |= KX_BORROWED_TABLE8;
  };
  const auto noTargetPalette = [](Scene& s) { s.dst.record()->palette = nullptr; };
  const auto noRows = [](Scene& s) { s.src.record()->rowTable = nullptr; };
  for (const bool stretch : {false, true}) {
    for (const std::uint32_t to : {0u, 3u, 5u, 6u, 7u})
      EXPECT_EQ(0x2002u, code(4, to, stretch, false, noPalette)) << to;
    // Every translation that is there is tested, the one in use or not; a converting blit needs none of them.
    EXPECT_EQ(0x2002u, code(4, 6, stretch, false, badTable));
    EXPECT_EQ(0u, code(4, 0, stretch, false, badTable));
    EXPECT_EQ(0u, code(4, 4, stretch, false, noPalette));
    EXPECT_EQ(0u, code(6, 3, stretch, false, noPalette));
    for (const std::uint32_t from : {0u, 3u, 6u}) EXPECT_EQ(0x2002u, code(from, 4, stretch, false, noTargetPalette));
    EXPECT_EQ(0x2001u, code(6, 6, stretch, true, noRows));
  }
}

TEST(BlitRefusals, PackedTargetsNeedTheirPaletteOnlyWhereItIsUsed) {
  for (const bool stretch : {false, true})
    for (std::uint8_t* palette : {static_cast<std::uint8_t*>(nullptr), bad<std::uint8_t>()})
      for (const std::uint32_t from : {3u, 4u, 6u}) {
        Scene scene(4, from, true);
        scene.call.stretch = stretch;
        scene.dst.record()->palette = palette;
        EXPECT_EQ(from == 4 ? 0u : 0x2002u, kxtest::callBlit(scene.call)) << from;
      }
}

TEST(BlitRefusals, FailedAllocationsAreReportedAndLeaveNoBlocks) {
  // A missing translation, the temporary of a packed destination, and measuring a packed Z buffer.
  enum class Needs { Translation, Temporary, Measure };
  for (const Needs needs : {Needs::Translation, Needs::Temporary, Needs::Measure})
    for (unsigned nth = 1;; ++nth) {
      Scene scene(6, needs == Needs::Translation ? 4 : 6, needs == Needs::Temporary);
      if (needs == Needs::Translation) {
        scene.src.record()->table16 = nullptr;
        scene.src.record()->flags &= ~std::uint32_t{KX_BORROWED_TABLE16};
      }
      TestImage packed(scene.random, 3, 20, 10, true);
      if (needs == Needs::Measure) {
        scene.call.stretch = true;
        scene.call.depth = Depth::ZBuffer;
        scene.call.zbuffer = packed.record();
      }
      const std::vector<std::uint32_t> before = scene.dst.pixels();
      const std::size_t blocks = kxtest::liveBlocks();
      kxtest::failAllocation(nth);
      const std::uint32_t code = kxtest::callBlit(scene.call);
      const bool failed = kxtest::allocationFailed();
      kxtest::failAllocation(0);
      EXPECT_EQ(failed ? 2u : 0u, code);
      if (!failed) break;
      EXPECT_EQ(blocks, kxtest::liveBlocks());
      EXPECT_EQ(before, scene.dst.pixels());
    }
}

}  // namespace
