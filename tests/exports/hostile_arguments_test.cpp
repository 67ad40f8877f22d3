// Every export with every argument at its worst: extreme numbers one by one and at random together, pointers that
// cannot be used. All is made from the list of exports. Memory lies between guard pages or is the test heap's, which
// the sanitizers watch; what comes back is a code, and a refused call leaves its results alone.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "support/extremes.h"
#include "support/random.h"
#include "support/scratch_folder.h"
#include "support/test_heap.h"
#include "support/world.h"

namespace {

using kxtest::Argument;
using kxtest::Export;
using kxtest::Kind;
using kxtest::World;
using kxtest::WorldStyle;

/// Larger blocks count as more than the machine has, so that a size that just fits does not take long.
constexpr std::size_t largestBlock = 1 << 20;

/// Of numbers together. Fewer where the programs of 32 bits run under Wine, where each costs several times as much.
constexpr int rounds = sizeof(void*) == 4 ? 12 : 40;

constexpr WorldStyle styles[] = {
    {KX_FORMAT_565, KX_FORMAT_PALETTE},
    {KX_FORMAT_888 | KX_STORAGE_PACKED, KX_FORMAT_888},
    {KX_FORMAT_PALETTE, KX_FORMAT_PALETTE | KX_STORAGE_PACKED},
    {KX_FORMAT_MONO, KX_FORMAT_GREY},
    {KX_FORMAT_555, 2},
    {KX_FORMAT_565 | 0x20, KX_FORMAT_565 | KX_STORAGE_PACKED},
};

bool answersACode(const Export& function) {
  constexpr std::string_view others[] = {"KX_getPixel",
                                         "KX_to",
                                         "KX_clip",
                                         "LZ_",
                                         "RLE_",
                                         "KX_calculateCRC",
                                         "KX_findNearestColor",
                                         "KX_getBytesPerPixel",
                                         "KX_getAverageLuminance",
                                         "KX_reportError",
                                         "Interface",
                                         "KX_getDriverTechnology",
                                         "KX_isVerticalBlank"};
  return std::none_of(std::begin(others), std::end(others),
                      [&](std::string_view part) { return function.name.find(part) != std::string_view::npos; });
}

/// 0, or a code that has a class.
bool isCode(std::uint32_t code) { return code <= 0x13 || (code >= 0x1000 && code <= 0xA000); }

class HostileArguments : public testing::Test {
protected:
  HostileArguments() { kxtest::refuseBlocksAbove(largestBlock); }
  ~HostileArguments() override { kxtest::refuseBlocksAbove(0); }

  /// Calls unless the caller's memory would not suffice.
  static std::uint32_t call(World& world, const Export& function, const std::vector<Argument>& arguments) {
    kxtest::refuseBlocksAbove(largestBlock);
    if (!world.memorySuffices(function, arguments)) return 0;
    const std::uint32_t code = function(arguments.data());
    if (code == 0 && !arguments.empty()) world.forgetDeleted(function, arguments[0].pointer);
    if (code == 0 || !answersACode(function)) return code;
    EXPECT_TRUE(isCode(code)) << code;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (arguments[i].pointer != &world.cell(i)) continue;
      EXPECT_EQ(nullptr, world.cell(i)) << "a refused call left a result";
    }
    return code;
  }

private:
  kxtest::ScratchFolder folder_;  // for the log
};

TEST_F(HostileArguments, UsualOnesAreFine) {
  // With bitmaps of one kind or another: palettes are for format 4 only.
  for (const Export& function : kxtest::allExports()) {
    bool fine = !answersACode(function);
    // Rendering has not begun.
    const std::uint32_t expected = function.placeholder ? 6 : function.name == "KX_endRendering" ? 0x200F : 0;
    for (const WorldStyle& style : styles) {
      World world(style);
      fine |= call(world, function, world.usualArguments(function)) == expected;
    }
    EXPECT_TRUE(fine) << function.name;
  }
}

TEST_F(HostileArguments, NumbersOneByOne) {
  for (const WorldStyle& style : styles) {
    std::optional<World> world;
    for (const Export& function : kxtest::allExports())
      for (std::size_t i = 0; i < function.parameters.size() && !function.placeholder; ++i)
        for (std::size_t n = 0; n < kxtest::extremeCount && kxtest::isNumber(function.parameters[i].kind); ++n) {
          SCOPED_TRACE(testing::Message() << function.name << ' ' << function.parameters[i].name << " extreme " << n);
          if (!world) world.emplace(style);
          std::vector<Argument> arguments = world->usualArguments(function);
          arguments[i] = kxtest::extreme(function.parameters[i].kind, n);
          // Only what went well may have replaced or deleted what the next call needs.
          if (call(*world, function, arguments) == 0) world.reset();
        }
  }
}

TEST_F(HostileArguments, NumbersTogether) {
  kxtest::Random random(1);
  for (const WorldStyle& style : styles)
    for (const Export& function : kxtest::allExports())
      for (int round = 0; round < rounds && function.parameters.size() > 1 && !function.placeholder; ++round) {
        SCOPED_TRACE(testing::Message() << function.name << " round " << round);
        World world(style);
        std::vector<Argument> arguments = world.usualArguments(function);
        for (std::size_t i = 0; i < arguments.size(); ++i)
          if (kxtest::isNumber(function.parameters[i].kind) && random.below(2) == 0)
            arguments[i] = kxtest::extreme(function.parameters[i].kind, random.below(kxtest::extremeCount));
        call(world, function, arguments);
      }
}

TEST_F(HostileArguments, PointersAreRefused) {
  // Those that may be null or anything.
  constexpr std::string_view lenient[] = {"table15", "table16", "table8",      "driverFile", "prefix", "mode",
                                          "corners", "file",    "application", "table",      "size"};
  for (const Export& function : kxtest::allExports())
    for (std::size_t i = 0; i < function.parameters.size() && World::testsPointer(function); ++i)
      for (const std::uintptr_t address : kxtest::badAddresses) {
        const kxtest::Parameter& parameter = function.parameters[i];
        if (kxtest::isNumber(parameter.kind)) continue;
        SCOPED_TRACE(testing::Message() << function.name << ' ' << parameter.name << " = " << address);
        World world;
        std::vector<Argument> arguments = world.usualArguments(function);
        arguments[i].pointer = reinterpret_cast<void*>(address);
        if (function.placeholder) {
          EXPECT_EQ(6u, function(arguments.data()));
          continue;
        }
        const std::uint32_t code = function(arguments.data());
        const bool any = std::find(std::begin(lenient), std::end(lenient), parameter.name) != std::end(lenient);
        if (any || function.name == "KX_isVerticalBlank") continue;
        EXPECT_EQ(7u, code);
      }
}

}  // namespace
