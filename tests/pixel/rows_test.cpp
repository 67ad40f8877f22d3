// The row kernels of every level against the portable ones, and the portable ones against the rules.
// SPDX-License-Identifier: MIT
#include "pixel/rows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "pixel/blend_rules.h"
#include "pixel/cpu.h"
#include "support/guard_pages.h"

namespace {

using kx::Combine;
using kx::CpuLevel;
using kx::RowFormat;
using kx::RowKernels;
using kx::RowTest;

constexpr std::size_t longestRow = 200;
constexpr std::size_t pixelBytes[] = {1, 1, 2, 2, 3};

/// A row of random bytes with many 00 and FF and some stretches all alike, at any alignment. It ends at a page that
/// nobody may touch or begins behind one, with some bytes on the other side.
class Row {
public:
  Row(std::mt19937& random, std::size_t size) : Row(size, random() % 2 == 0 ? Flush::Front : Flush::Back) {
    const unsigned mood = random() % 4;
    for (auto& byte : bytes_) {
      const unsigned kind = random() % 4;
      byte = static_cast<std::uint8_t>(kind == 0 ? 0 : kind == 1 ? 255 : random());
      if (mood == 0) byte = 0;
      if (mood == 1) byte = 255;
    }
  }
  Row(const Row& other) : Row(other.bytes_.size() - margin, other.flush_) {
    std::copy(other.bytes_.begin(), other.bytes_.end(), bytes_.begin());
  }
  Row& operator=(const Row&) = delete;

  std::uint8_t* data() { return bytes_.data() + (flush_ == Flush::Back ? margin : 0); }
  std::vector<std::uint8_t> all() const { return {bytes_.begin(), bytes_.end()}; }
  void makeMask() {
    for (auto& byte : bytes_) byte = byte & 1 ? 0xFF : 0;
  }
  void makeBits() {
    for (auto& byte : bytes_) byte &= 1;
  }

private:
  using Flush = kxtest::GuardedBlock::Flush;
  static constexpr std::size_t margin = 64;  ///< bytes on the side without a page

  Row(std::size_t size, Flush flush) : flush_(flush), bytes_(size + margin, flush) {}

  Flush flush_;
  kxtest::GuardedBlock bytes_;
};

/// The levels of this machine above the portable one.
class RowKernelLevels : public testing::TestWithParam<CpuLevel> {
protected:
  void SetUp() override {
    if (GetParam() > kx::detectedCpuLevel()) GTEST_SKIP() << "not on this processor";
    portable = kx::portableRows();
    kx::limitCpuLevel(GetParam());
    level = kx::rowKernels();
  }
  void TearDown() override { kx::limitCpuLevel(CpuLevel::Avx512); }

  RowKernels portable, level;
};

TEST_P(RowKernelLevels, CombineLikeThePortableOnes) {
  std::mt19937 random(1);
  for (unsigned run = 0; run < 6000; ++run) {
    const auto rule = static_cast<Combine>(random() % kx::combineCount);
    const auto test = static_cast<RowTest>(random() % kx::rowTestCount);
    const auto format = static_cast<RowFormat>(random() % kx::rowFormatCount);
    if (rule == Combine::Alphamap && test == RowTest::Keyed) continue;
    const std::size_t bytes = pixelBytes[static_cast<std::size_t>(format)];
    // Short rows often, and copies of the length that is left to the C library.
    const bool isCopy = rule == Combine::Copy && test == RowTest::All;
    const std::size_t count = random() % (run % 2 == 0 ? 40 : isCopy ? 3 * longestRow : longestRow);
    const std::size_t rows = random() % 2 == 0 ? 1 : random() % 4;
    const std::size_t pitch = count * bytes + random() % 8, mapPitch = count + random() % 8;
    Row source(random, rows * pitch), first(random, rows * pitch), mask(random, count), map(random, rows * mapPitch);
    mask.makeMask();
    if (format == RowFormat::Mono) {
      source.makeBits();
      first.makeBits();
    }
    Row second = first;
    const std::uint32_t alpha = run % 3 == 0 ? 255 * (random() % 2) : random() % 256;
    kx::RowSpan span{first.data(), source.data(), count, mask.data(), map.data(), alpha, rows};
    span.dstPitch = static_cast<std::ptrdiff_t>(pitch);
    span.srcPitch = random() % 4 == 0 ? 0 : span.dstPitch;
    span.mapPitch = static_cast<std::ptrdiff_t>(mapPitch);
    portable.of(rule, test, format)(span);
    span.dst = second.data();
    level.of(rule, test, format)(span);
    ASSERT_EQ(first.all(), second.all()) << "run " << run << " rule " << static_cast<int>(rule) << " test "
                                         << static_cast<int>(test) << " format " << static_cast<int>(format)
                                         << " count " << count << " rows " << rows << " alpha " << alpha;
  }
}

TEST_P(RowKernelLevels, BlendOneColourLikeRowsOfIt) {
  std::mt19937 random(5);
  for (unsigned run = 0; run < 3000; ++run) {
    const auto format = static_cast<RowFormat>(1 + random() % (kx::rowFormatCount - 1));
    const std::size_t bytes = pixelBytes[static_cast<std::size_t>(format)];
    const std::size_t count = random() % longestRow, rows = 1 + random() % 3;
    const std::size_t pitch = count * bytes + random() % 9;
    Row source(random, longestRow * bytes), first(random, rows * pitch);
    for (std::size_t i = bytes; i < longestRow * bytes; ++i) source.data()[i] = source.data()[i - bytes];
    auto colour = static_cast<std::uint32_t>(random() << 24);  // beyond the pixel: of no consequence
    std::memcpy(&colour, source.data(), bytes);
    Row second = first;
    const std::uint32_t alpha = run % 3 == 0 ? 255 * (random() % 2) : random() % 256;
    for (std::size_t y = 0; y < rows; ++y)
      portable.of(Combine::Alpha, RowTest::All,
                  format)({first.data() + y * pitch, source.data(), count, nullptr, nullptr, alpha});
    level.blendColour[static_cast<std::size_t>(format)](
        {second.data(), static_cast<std::ptrdiff_t>(pitch), rows, count, colour, alpha});
    ASSERT_EQ(first.all(), second.all()) << "run " << run << " format " << static_cast<int>(format) << " count "
                                         << count << " alpha " << alpha;
  }
}

TEST_P(RowKernelLevels, TestLikeThePortableOnes) {
  std::mt19937 random(2);
  for (unsigned run = 0; run < 6000; ++run) {
    const std::size_t count = random() % longestRow;
    Row source(random, count * 3), map(random, count);
    Row mask1(random, count), z1(random, count);
    mask1.makeMask();
    Row mask2 = mask1, z2 = z1;
    const std::size_t size = random() % 3;
    portable.keyMask[size](mask1.data(), source.data(), count);
    level.keyMask[size](mask2.data(), source.data(), count);
    ASSERT_EQ(mask1.all(), mask2.all()) << "key mask, run " << run;

    const bool mapped = random() % 2 != 0;
    constexpr std::int32_t extremes[] = {-256, -255, -1, 0, 1, 255, 256, 0x7FFFFFFF, 0x7FFFFF80, -0x7FFFFFFF - 1};
    std::int32_t z =
        mapped ? static_cast<std::int32_t>(random() % 600) - 300 : static_cast<std::int32_t>(random() % 256);
    if (mapped && random() % 3 == 0) z = extremes[random() % std::size(extremes)];
    kx::DepthSpan span{mask1.data(), z1.data(), count, random() % 2 != 0, mapped ? map.data() : nullptr, z};
    portable.depth(span);
    span.mask = mask2.data();
    span.zBuffer = z2.data();
    level.depth(span);
    ASSERT_EQ(mask1.all(), mask2.all()) << "depth, run " << run;
    ASSERT_EQ(z1.all(), z2.all()) << "depth, run " << run;
  }
}

TEST_P(RowKernelLevels, FetchLikeThePortableOnes) {
  std::mt19937 random(3);
  for (unsigned run = 0; run < 4000; ++run) {
    const std::size_t count = random() % longestRow;
    const std::size_t size = random() % 3;
    const std::size_t bytes = size + 1;
    // Exactly as long as what may be read, so that the address sanitizer sees more.
    const std::size_t limit = 1 + random() % (run % 2 == 0 ? longestRow : 5 * longestRow);
    std::vector<std::uint8_t> source(std::max(limit * bytes, count + 1)), table(256 * bytes);
    for (auto& byte : source) byte = static_cast<std::uint8_t>(random() % 4 == 0 ? 0 : random());
    for (auto& byte : table) byte = static_cast<std::uint8_t>(random());
    Row first(random, count * bytes);
    Row second = first;
    kx::LookupTable plainTable, preparedTable;
    portable.prepareLookup[size](plainTable, table.data());
    level.prepareLookup[size](preparedTable, table.data());
    portable.lookup[size](first.data(), source.data(), plainTable, count);
    level.lookup[size](second.data(), source.data(), preparedTable, count);
    ASSERT_EQ(first.all(), second.all()) << "lookup, run " << run;
    portable.lookupKeyed[size](first.data(), source.data() + 1, plainTable, count);
    level.lookupKeyed[size](second.data(), source.data() + 1, preparedTable, count);
    ASSERT_EQ(first.all(), second.all()) << "keyed lookup, run " << run;

    const std::uint64_t step = (std::uint64_t{limit} << 16) / std::max<std::size_t>(count, 1);
    kx::GatherColumns columns;
    for (std::size_t i = 0; i < count; ++i) columns.column[i] = static_cast<std::uint32_t>(i * step >> 16);
    // Or with any leaps between them.
    if (run % 8 == 0) {
      for (std::size_t i = 0; i < count; ++i) columns.column[i] = static_cast<std::uint32_t>(random() % limit);
      std::sort(columns.column, columns.column + count);
    }
    columns.count = count;
    columns.limit = static_cast<std::uint32_t>(limit);
    portable.gather[size](first.data(), source.data(), columns);
    level.prepareColumns[size](columns);
    level.gather[size](second.data(), source.data(), columns);
    ASSERT_EQ(first.all(), second.all()) << "gather, run " << run << " count " << count << " from " << limit;

    const std::size_t bit = random() % 8;
    const std::size_t bits = std::min(count, source.size() * 8 - bit);
    portable.readBits(first.data(), source.data(), bit, bits);
    level.readBits(second.data(), source.data(), bit, bits);
    ASSERT_EQ(first.all(), second.all()) << "bits, run " << run;
    std::vector<std::uint8_t> written = source;
    first.makeBits();
    portable.writeBits(source.data(), bit, first.data(), bits);
    level.writeBits(written.data(), bit, first.data(), bits);
    ASSERT_EQ(source, written) << "bits, run " << run;
  }
}

std::string levelName(const testing::TestParamInfo<CpuLevel>& level) {
  constexpr const char* names[] = {"Portable", "Sse2", "Avx2", "Avx512"};
  return names[static_cast<int>(level.param)];
}

INSTANTIATE_TEST_SUITE_P(Rows, RowKernelLevels, testing::Values(CpuLevel::Sse2, CpuLevel::Avx2, CpuLevel::Avx512),
                         levelName);

TEST(QuotientsOf255, AreExactForAllSumsThatOccur) {
  for (std::uint32_t sum = 0; sum <= 255 * 63; ++sum) ASSERT_EQ(sum / 255, (sum + 1) * 257 >> 16) << sum;
  for (std::uint32_t sum = 0; sum <= 65535; ++sum) ASSERT_EQ(sum / 255, (sum * 0x8081 >> 16) >> 7) << sum;
}

TEST(PixelRules, BlendTheNamedExamples) {
  EXPECT_EQ(149u, kx::blendAlpha<kx::Grey8>(200, 100, 128));
  EXPECT_EQ(0x1234u, kx::blendAlpha<kx::Rgb565>(0x1234, 0xFFFF, 0));
  EXPECT_EQ(0xFFFFu, kx::blendAlpha<kx::Rgb565>(0x1234, 0xFFFF, 255));
  // Under a map 5-6-5 loses the lowest green bit, unless the destination stays.
  EXPECT_EQ(0xFFDFu, kx::blendAlphamap<kx::Rgb565>(0xFFFF, 0, 0));
  EXPECT_EQ(0xFFFFu, kx::blendAlphamap<kx::Rgb565>(0, 0xFFFF, 255));
  EXPECT_EQ(0x03u, kx::blendAlphamap<kx::Grey8>(0, 4, 254));
  EXPECT_EQ(1u, kx::blendAlpha<kx::Mono>(1, 0, 127));
  EXPECT_EQ(0u, kx::blendAlpha<kx::Mono>(1, 0, 128));
}

}  // namespace
