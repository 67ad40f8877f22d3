// Every export with its first, second, third ... allocation refused, until it needs no further one: made from the list
// of exports, over bitmaps of several kinds. What fails says so with its code, leaves results alone and nothing behind.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <iterator>

#include "support/scratch_folder.h"
#include "support/test_heap.h"
#include "support/world.h"

namespace {

using kxtest::Argument;
using kxtest::Export;
using kxtest::World;
using kxtest::WorldStyle;

constexpr WorldStyle styles[] = {
    {KX_FORMAT_565, KX_FORMAT_PALETTE},
    {KX_FORMAT_888 | KX_STORAGE_PACKED, KX_FORMAT_888 | KX_STORAGE_PACKED},
    {KX_FORMAT_PALETTE, KX_FORMAT_PALETTE | KX_STORAGE_PACKED},
    {KX_FORMAT_PALETTE | KX_STORAGE_PACKED, KX_FORMAT_PALETTE},
    {KX_FORMAT_MONO, KX_FORMAT_GREY},
};

/// Those that are settled to leave something behind.
bool mayLeak(const Export& function) {
  for (const std::string_view name :
       {"KX_cloneBitmap", "KX_createTexture", "KX_create3DDevice", "KX_create3DDevice_Screen"})
    if (function.name == name) return true;
  return false;
}

/// What a function without memory answers.
std::uint32_t failureCode(const Export& function) {
  // The coders write nothing, a size stays unwritten, a table is not filled.
  const bool zero = function.name.starts_with("LZ_") || function.name == "KX_getBitmapSize";
  return zero ? 0 : 2;
}

TEST(AllocationFaults, EveryExportSaysThatMemoryIsShort) {
  const kxtest::ScratchFolder folder;  // for the log
  unsigned sweeps = 0;
  for (const WorldStyle& style : styles)
    for (const Export& function : kxtest::allExports())
      for (unsigned k = 1;; ++k) {
        SCOPED_TRACE(testing::Message() << function.name << ", allocation " << k << ", target " << style.target);
        World world(style);
        const std::vector<Argument> arguments = world.usualArguments(function);
        const std::size_t before = kxtest::liveBlocks();
        kxtest::failAllocation(k);
        const std::uint32_t code = function(arguments.data());
        const bool failed = kxtest::allocationFailed();
        kxtest::failAllocation(0);
        if (!failed) {
          if (code == 0 && !arguments.empty()) world.forgetDeleted(function, arguments[0].pointer);
          break;
        }
        ++sweeps;
        EXPECT_EQ(failureCode(function), code);
        EXPECT_TRUE(mayLeak(function) || before >= kxtest::liveBlocks()) << "blocks left behind";
        for (std::size_t i = 0; i < arguments.size(); ++i) {
          if (arguments[i].pointer != &world.cell(i)) continue;
          EXPECT_EQ(nullptr, world.cell(i)) << "a failed call left a result";
        }
        ASSERT_LT(k, 1000u);
      }
  EXPECT_LT(200u, sweeps);
}

}  // namespace
