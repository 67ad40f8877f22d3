// Numbered random blits of every kind against the reference, on every level of the processor. A number makes its case
// again: --gtest_filter='*RandomBlits*' with KX_CASE=<number> in the environment.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "pixel/cpu.h"
#include "support/reference_blit.h"
#include "support/test_heap.h"

namespace {

using kxtest::between;
using kxtest::BlitCall;
using kxtest::Depth;
using kxtest::Random;
using kxtest::Rule;
using kxtest::TestImage;

constexpr std::uint32_t caseCount = 1000;

std::uint32_t anyFormat(Random& random) {
  constexpr std::uint32_t formats[] = {0, 3, 4, 5, 6, 6, 7};
  return formats[random() % std::size(formats)];
}

struct RandomCase {
  BlitCall call;
  std::unique_ptr<TestImage> dst, src, zbuffer, alphamap, zmap;

  explicit RandomCase(std::uint32_t number) {
    Random random(number);
    call.stretch = random() % 2 != 0;
    call.rule = static_cast<Rule>(random() % kxtest::ruleCount);
    call.depth = static_cast<Depth>(random() % kxtest::depthCount);
    const std::uint32_t to = anyFormat(random);
    const std::uint32_t from = random() % 3 == 0 ? anyFormat(random) : random() % 3 == 0 ? 4 : to;
    // Now and then wider than a chunk.
    const bool wide = random() % 40 == 0;
    const auto size = [&] { return between(random, 1, wide ? 1300 : 100); };
    const std::int32_t width = size(), height = between(random, 1, 8), sourceWidth = size(),
                       sourceHeight = between(random, 1, 8);
    dst = std::make_unique<TestImage>(random, to, width, height, to != 0 && random() % 6 == 0);
    src = std::make_unique<TestImage>(random, from, sourceWidth, sourceHeight, from != 0 && random() % 3 == 0);
    const std::int32_t more = between(random, 0, 5);
    zbuffer = std::make_unique<TestImage>(random, 3, width + more, height, false);
    alphamap = std::make_unique<TestImage>(random, 3, sourceWidth + more, sourceHeight, false);
    zmap = std::make_unique<TestImage>(random, 3, sourceWidth + more, sourceHeight, false);

    const auto part = [&](std::int32_t whole, std::int32_t& start, std::int32_t& length) {
      start = random() % 2 == 0 ? 0 : between(random, 0, whole - 1);
      length = random() % 2 == 0 ? whole - start : between(random, 1, whole - start);
    };
    part(width, call.dx, call.dw);
    part(height, call.dy, call.dh);
    part(sourceWidth, call.sx, call.sw);
    part(sourceHeight, call.sy, call.sh);
    if (!call.stretch) {
      call.dw = call.sw = std::min(call.dw, call.sw);
      call.dh = call.sh = std::min(call.dh, call.sh);
    }
    call.dst = dst->record();
    call.src = src->record();
    call.zbuffer = zbuffer->record();
    call.alphamap = alphamap->record();
    call.zmap = zmap->record();
    call.alpha = random() % 4 == 0 ? between(random, 0, 1) * 255 : between(random, 0, 255);
    call.z = between(random, 0, 255);
    call.zoffset = random() % 8 != 0   ? between(random, -260, 260)
                   : random() % 2 == 0 ? between(random, -100000, 100000)
                                       : static_cast<std::int32_t>(0x7FFFFF00u + random() % 0x200);
  }

  /// What the library calls instead for a packed destination.
  BlitCall inEffect() const {
    BlitCall effective = call;
    if ((call.dst->format & 0x30) != 0 && call.depth == Depth::None) {
      if (!call.stretch && call.rule == Rule::Transparent) effective.rule = Rule::Copy;
      if (call.stretch && call.rule == Rule::Copy) effective.rule = Rule::Transparent;
    }
    return effective;
  }

  bool refused() const { return (call.dst->format & 15) == 4 && (call.constantAlpha() || call.rule == Rule::Alphamap); }

  std::string describe() const {
    return std::string(call.stretch ? "stretch" : "copy") + " rule " + std::to_string(static_cast<int>(call.rule)) +
           " depth " + std::to_string(static_cast<int>(call.depth)) + " formats " + std::to_string(call.src->format) +
           " -> " + std::to_string(call.dst->format) + " at " + std::to_string(call.dx) + "," +
           std::to_string(call.dy) + " " + std::to_string(call.dw) + "x" + std::to_string(call.dh) + " from " +
           std::to_string(call.sx) + "," + std::to_string(call.sy) + " " + std::to_string(call.sw) + "x" +
           std::to_string(call.sh);
  }
};

void checkCase(std::uint32_t number) {
  RandomCase c(number);
  SCOPED_TRACE("case " + std::to_string(number) + ": " + c.describe());
  const bool packed = (c.call.dst->format & 0x30) != 0;

  // The reference's targets are copies; of a packed destination a plain one as the library makes it.
  std::vector<std::uint8_t> expected = c.dst->memory(), depths = c.zbuffer->memory();
  Bitmap target = *c.call.dst;
  std::size_t start = c.dst->blockStart(), bytes = c.dst->blockBytes();
  const std::vector<std::uint32_t> before = c.dst->pixels();
  if (packed) {
    target.pitch = static_cast<std::int32_t>((target.width * kxtest::wholeBytes(target.format) + 3) / 4 * 4);
    start = 0;
    bytes = static_cast<std::size_t>(target.pitch) * static_cast<std::size_t>(target.height + 1);
    expected.assign(bytes, 0);
    for (std::size_t i = 0; i < before.size(); ++i) {
      const std::size_t width = static_cast<std::size_t>(target.width);
      kxtest::setPixelAt(expected.data() + i / width * static_cast<std::size_t>(target.pitch), target.format,
                         static_cast<std::int64_t>(i % width), before[i]);
    }
  }
  if (!c.refused())
    kxtest::referenceBlit(
        c.inEffect(), target,
        {expected.data() + start, bytes, depths.data() + c.zbuffer->blockStart(), c.zbuffer->blockBytes()},
        c.alphamap->blockBytes(), c.zmap->blockBytes());

  const std::vector<std::uint8_t> source = c.src->memory(), map = c.alphamap->memory(), zmap = c.zmap->memory();
  for (TestImage* image : {c.dst.get(), c.src.get(), c.zbuffer.get(), c.alphamap.get(), c.zmap.get()})
    image->record()->lockCount = 3;
  const std::uint32_t code = kxtest::callBlit(c.call);
  ASSERT_EQ(c.refused() ? (c.call.stretch ? 0x2000u : 6u) : 0u, code);
  for (TestImage* image : {c.dst.get(), c.src.get(), c.zbuffer.get(), c.alphamap.get(), c.zmap.get()})
    ASSERT_EQ(3u, image->record()->lockCount);
  ASSERT_TRUE(depths == c.zbuffer->memory()) << "Z buffer";
  ASSERT_TRUE(source == c.src->memory() && map == c.alphamap->memory() && zmap == c.zmap->memory()) << "written inputs";
  if (!packed) {
    ASSERT_TRUE(expected == c.dst->memory()) << "destination";
    return;
  }
  const std::vector<std::uint32_t> after = c.dst->pixels();
  for (std::size_t i = 0; i < after.size(); ++i) {
    const std::size_t width = static_cast<std::size_t>(target.width);
    ASSERT_EQ(kxtest::pixelAt(expected.data() + i / width * static_cast<std::size_t>(target.pitch), target.format,
                              static_cast<std::int64_t>(i % width)),
              after[i])
        << "pixel " << i % width << "," << i / width;
  }
}

class RandomBlits : public testing::TestWithParam<kx::CpuLevel> {
protected:
  void TearDown() override { kx::limitCpuLevel(kx::CpuLevel::Avx512); }
};

TEST_P(RandomBlits, EqualTheReference) {
  if (GetParam() > kx::detectedCpuLevel()) GTEST_SKIP() << "not on this processor";
  kx::limitCpuLevel(GetParam());
  const std::size_t blocks = kxtest::liveBlocks();
  if (const char* number = std::getenv("KX_CASE"))
    return checkCase(static_cast<std::uint32_t>(std::strtoul(number, nullptr, 10)));
  for (std::uint32_t number = 0; number < caseCount && !HasFatalFailure(); ++number) checkCase(number);
  EXPECT_EQ(blocks, kxtest::liveBlocks());
}

INSTANTIATE_TEST_SUITE_P(Blits, RandomBlits,
                         testing::Values(kx::CpuLevel::Portable, kx::CpuLevel::Sse2, kx::CpuLevel::Avx2,
                                         kx::CpuLevel::Avx512));

}  // namespace
