// Blits between bitmaps that share memory: the result is that of a plain loop.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "blit/plan.h"
#include "kxgraphic/kxgraphic.h"
#include "support/blit_call.h"
#include "support/test_image.h"

namespace {

using kxtest::BlitCall;
using kxtest::Depth;
using kxtest::Random;
using kxtest::Rule;
using kxtest::TestImage;

/// Bitmaps in one block of memory, their calls once more in a copy of it, one pixel after the other.
class SharedBlock {
public:
  SharedBlock(Random& random, std::uint32_t format) : image_(random, format, 64, 12, false) {
    memory_.assign(image_.record()->pixels, image_.record()->pixels + image_.record()->pitch * 12);
  }

  /// Every `every`-th row from row `first` on, of 64 pixels of `format`.
  Bitmap view(std::uint32_t format, std::int32_t first, std::int32_t every) {
    Bitmap bitmap = *image_.record();
    bitmap.format = format;
    bitmap.pixels += first * bitmap.pitch;
    bitmap.pitch *= every;
    bitmap.height = (12 - first) / every;
    return bitmap;
  }

  bool isLike(const std::vector<std::uint8_t>& memory) const {
    return std::equal(memory.begin(), memory.end(), image_.constRecord().pixels);
  }
  const std::vector<std::uint8_t>& memory() const { return memory_; }

  /// Offset of a row of a view.
  std::ptrdiff_t rowOf(const Bitmap& bitmap, std::int64_t y) const {
    return bitmap.pixels - image_.constRecord().pixels + static_cast<std::ptrdiff_t>(y * bitmap.pitch);
  }

private:
  TestImage image_;
  std::vector<std::uint8_t> memory_;
};

std::int64_t stepped(const BlitCall& c, std::int64_t i, std::int32_t from, std::int32_t to) {
  return c.stretch ? i * (from * 65536LL / to) / 65536 : i;
}

void drawPixels(const SharedBlock& block, const BlitCall& c, std::vector<std::uint8_t>& m) {
  const std::uint32_t format = c.dst->format;
  for (std::int64_t y = 0; y < c.dh; ++y) {
    std::uint8_t* const d = m.data() + block.rowOf(*c.dst, c.dy + y);
    std::uint8_t* const z = m.data() + block.rowOf(*c.zbuffer, c.dy + y);
    const std::int64_t sourceY = c.sy + stepped(c, y, c.sh, c.dh);
    const std::uint8_t* const s = m.data() + block.rowOf(*c.src, sourceY);
    const std::uint8_t* const weights = m.data() + block.rowOf(*c.alphamap, sourceY);
    for (std::int64_t x = 0; x < c.dw; ++x) {
      const std::int64_t sourceX = c.sx + stepped(c, x, c.sw, c.dw);
      std::uint32_t value = kxtest::pixelAt(s, format, sourceX);
      if (c.transparent() && value == 0) continue;
      if (c.depth == Depth::ZBuffer) {
        if (c.z > z[c.dx + x]) continue;
        z[c.dx + x] = static_cast<std::uint8_t>(c.z);
      }
      const std::uint32_t old = kxtest::pixelAt(d, format, c.dx + x);
      const auto alpha = static_cast<std::uint32_t>(c.alpha);
      for (unsigned shift = 0; c.constantAlpha() && shift < 24; shift += 8)
        value = (value & ~(0xFFu << shift)) |
                ((255 - alpha) * (value >> shift & 255) + alpha * (old >> shift & 255)) / 255 << shift;
      const std::uint32_t weight = weights[sourceX];
      if (c.rule == Rule::Alphamap && weight == 255) continue;
      for (unsigned shift = 0; c.rule == Rule::Alphamap && shift < 24; shift += 8)
        value = (value & ~(0xFFu << shift)) |
                ((256 - weight) * (value >> shift & 255) + weight * (old >> shift & 255)) >> 8 << shift;
      kxtest::setPixelAt(d, format, c.dx + x, value);
    }
  }
}

/// A plain copy of whole rows goes by words of four bytes, then by the bytes that remain.
void copyWords(const SharedBlock& block, const BlitCall& c, std::vector<std::uint8_t>& m) {
  const std::int64_t bytes = kxtest::wholeBytes(c.dst->format);
  for (std::int64_t y = 0; y < c.dh; ++y) {
    std::uint8_t* d = m.data() + block.rowOf(*c.dst, c.dy + y) + c.dx * bytes;
    const std::uint8_t* s = m.data() + block.rowOf(*c.src, c.sy + y) + c.sx * bytes;
    for (std::int64_t i = 0; i < c.dw * bytes;) {
      const std::int64_t step = c.dw * bytes - i >= 4 ? 4 : 1;
      std::uint8_t word[4];
      std::memcpy(word, s + i, static_cast<std::size_t>(step));
      std::memcpy(d + i, word, static_cast<std::size_t>(step));
      i += step;
    }
  }
}

/// True when drawing some row reads bytes that it writes.
bool sharesWithinRows(const SharedBlock& block, const BlitCall& c) {
  const auto span = [&](const Bitmap& bitmap, std::int64_t y, std::int32_t x, std::int32_t w) {
    const std::int64_t bits = (bitmap.format & 15) == 0 ? 1 : 8 * kxtest::wholeBytes(bitmap.format);
    const std::ptrdiff_t row = block.rowOf(bitmap, y);
    return std::pair(row + x * bits / 8, row + ((x + w) * bits + 7) / 8);
  };
  const auto meet = [](auto a, auto b) { return a.first < b.second && b.first < a.second; };
  for (std::int32_t y = 0; y < c.dh; ++y) {
    const auto d = span(*c.dst, c.dy + y, c.dx, c.dw), z = span(*c.zbuffer, c.dy + y, c.dx, c.dw);
    const std::int64_t sourceY = c.sy + stepped(c, y, c.sh, c.dh);
    const auto s = span(*c.src, sourceY, c.sx, c.sw), weights = span(*c.alphamap, sourceY, c.sx, c.sw);
    const bool tested = c.depth == Depth::ZBuffer, weighted = c.rule == Rule::Alphamap;
    if (meet(d, s) || (weighted && meet(d, weights))) return true;
    if (tested && (meet(d, z) || meet(s, z) || (weighted && meet(z, weights)))) return true;
  }
  return false;
}

/// A call between views of one block: the same rows or every other one, side by side, shifted, or one over the other.
struct SharedCall {
  Bitmap dst, src, depths, weights;
  BlitCall call;

  SharedCall(Random& random, SharedBlock& block, std::uint32_t format)
      : dst(view(random, block, format)),
        src(view(random, block, format)),
        depths(view(random, block, 3)),
        weights(view(random, block, 3)) {
    call.stretch = random() % 2 != 0;
    // Blending is checked on whole bytes only.
    call.rule = static_cast<Rule>(random() % (format == 3 || format == 7 ? 5 : 2));
    call.depth = random() % 3 == 0 ? Depth::ZBuffer : Depth::None;
    call.dst = &dst;
    call.src = &src;
    call.zbuffer = &depths;
    call.alphamap = &weights;
    const bool halves = random() % 2 == 0;
    call.dw = kxtest::between(random, 1, halves ? 32 : 50);
    call.dh = kxtest::between(random, 1, 5);
    call.sw = call.stretch ? kxtest::between(random, 1, halves ? 32 : 50) : call.dw;
    call.sh = call.stretch ? kxtest::between(random, 1, 5) : call.dh;
    const bool toTheRight = random() % 2 == 0;
    call.dx = halves ? (toTheRight ? 32 : 0) : kxtest::between(random, 0, 14);
    call.sx = halves ? (toTheRight ? 0 : 32) : kxtest::between(random, 0, 14);
    call.dy = kxtest::between(random, 0, std::min(dst.height, depths.height) - call.dh);
    call.sy = kxtest::between(random, 0, std::min(src.height, weights.height) - call.sh);
    if (random() % 3 == 0) {  // the first pixels of all lie in one place
      call.dx = call.sx;
      call.dy = call.sy = 0;
    }
    call.alpha = call.z = kxtest::between(random, 0, 255);
  }

private:
  static Bitmap view(Random& random, SharedBlock& block, std::uint32_t format) {
    return random() % 2 == 0 ? block.view(format, 0, 1)
                             : block.view(format, kxtest::between(random, 0, 1), kxtest::between(random, 1, 2));
  }
};

/// True when the plan of the call finishes each pixel before the next.
bool goesPixelByPixel(const BlitCall& c) {
  const bool weighted = c.rule == Rule::Alphamap;
  kx::BlitRequest request{.variant = {weighted          ? kx::BlitRule::Alphamap
                                      : c.transparent() ? kx::BlitRule::Transparent
                                                        : kx::BlitRule::Copy,
                                      c.depth == Depth::None ? kx::BlitDepth::None : kx::BlitDepth::ZBuffer},
                          .dst = c.dst,
                          .to = {c.dx, c.dy, c.dw, c.dh},
                          .src = c.src,
                          .from = {c.sx, c.sy, c.sw, c.sh}};
  if (c.depth != Depth::None) request.zBuffer = c.zbuffer;
  if (weighted) request.alphamap = c.alphamap;
  kx::BlitPlan plan;
  EXPECT_EQ(kx::Result::Ok, kx::makePlan(plan, c.stretch ? kx::stretchFamily : kx::copyFamily, request));
  return plan.pixelByPixel;
}

TEST(SharedMemory, KeepsTheOrderOfAPlainLoopAndIsSlowOnlyWhereRowsMeet) {
  Random random(11);
  int withinRows = 0;
  for (int run = 0; run < 6000; ++run) {
    constexpr std::uint32_t formats[] = {0, 3, 4, 5, 6, 7};
    const std::uint32_t format = formats[random() % std::size(formats)];
    SCOPED_TRACE(testing::Message() << "run " << run << " format " << format);
    SharedBlock block(random, format == 0 ? 3 : format);
    const SharedCall shared(random, block, format);
    const BlitCall& call = shared.call;
    const bool within = sharesWithinRows(block, call);
    withinRows += within;
    ASSERT_EQ(within, goesPixelByPixel(call));
    std::vector<std::uint8_t> expected = block.memory();
    const bool words = !call.stretch && call.rule == Rule::Copy && call.depth == Depth::None && format != 0;
    (words ? copyWords : drawPixels)(block, call, expected);
    ASSERT_EQ(0u, kxtest::callBlit(call));
    ASSERT_TRUE(block.isLike(expected));
  }
  EXPECT_LT(1500, withinRows);
  EXPECT_GT(5000, withinRows);
}

}  // namespace
