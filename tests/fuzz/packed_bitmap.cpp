// A packed bitmap of any bytes and any row table through KX_createFromData: measured, cloned, read, blitted beside the
// reference, drawn on, turned around. Rows may overlap, stand in any order and be torn; the one thing that is the
// caller's duty is memory behind every row's start in which the row comes to its end. SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstring>
#include <vector>

#include "frame/heap.h"
#include "fuzz/bytes.h"
#include "fuzz/target.h"
#include "support/guard_pages.h"
#include "support/reference_blit.h"
#include "support/test_heap.h"

namespace {

using kxtest::BlitCall;
using kxtest::ByteReader;
using kxtest::GuardedBlock;
using kxtest::TestImage;

std::uint32_t wholePixelFormat(ByteReader& bytes) {
  constexpr std::uint32_t formats[] = {3, 4, 5, 6, 7};
  return formats[bytes.below(5)];
}

/// What the bytes describe. The blocks are the bitmap's own or, with guards around them, borrowed.
struct Packed {
  Bitmap record{};
  bool borrowed;
  GuardedBlock stream, rowTable, palette;

  explicit Packed(ByteReader& bytes) : borrowed(bytes.below(2) != 0) {
    record.format = wholePixelFormat(bytes) | KX_STORAGE_PACKED;
    record.width = bytes.between(1, 300);
    record.height = bytes.between(1, 6);
    std::vector<std::uint32_t> table;
    table.reserve(static_cast<std::size_t>(record.height));
    for (std::int32_t y = 0; y < record.height; ++y) table.push_back(bytes.below(65536));
    std::vector<std::uint8_t> block(bytes.rest(), bytes.rest() + bytes.left());
    for (std::uint32_t& start : table) start %= static_cast<std::uint32_t>(block.size() + 1);
    // Literals of one pixel, after the end of the longest packet that may begin before them.
    const auto pixelBytes = static_cast<std::size_t>(kxtest::wholeBytes(record.format));
    block.resize(block.size() + 128 * pixelBytes + static_cast<std::size_t>(record.width) * (1 + pixelBytes));
    record.pixels = keep(stream, block.data(), block.size());
    record.rowTable = keep(rowTable, table.data(), table.size());
    if ((record.format & 15) == KX_FORMAT_PALETTE) {
      std::vector<std::uint8_t> colours(768);
      for (std::size_t i = 0; i < colours.size(); ++i) colours[i] = static_cast<std::uint8_t>(i * 89 >> 3);
      record.palette = keep(palette, colours.data(), colours.size());
    }
  }

private:
  template <typename T>
  T* keep(GuardedBlock& guarded, const T* data, std::size_t count) {
    if (borrowed) guarded = GuardedBlock(count * sizeof(T));
    void* block = borrowed ? guarded.data() : mmgr_alloc(count * sizeof(T));
    std::memcpy(block, data, count * sizeof(T));
    return static_cast<T*>(block);
  }
};

/// The pixels and the bytes of a row, packet by packet.
std::size_t plainRow(const Bitmap& bitmap, std::int32_t y, std::vector<std::uint32_t>& pixels) {
  const std::uint8_t* const start = bitmap.pixels + bitmap.rowTable[y];
  const std::uint8_t* at = start;
  for (std::int32_t given = 0; given < bitmap.width;) {
    const int header = static_cast<std::int8_t>(*at++);
    if (header == -128) continue;
    const int count = header < 0 ? 1 - header : header + 1;
    for (int i = 0; i < count; ++i, ++given)
      if (given < bitmap.width) pixels.push_back(kxtest::pixelAt(at, bitmap.format, header < 0 ? 0 : i));
    at += kxtest::wholeBytes(bitmap.format) * (header < 0 ? 1 : count);
  }
  return static_cast<std::size_t>(at - start);
}

std::vector<std::uint32_t> plainPixels(const Bitmap& bitmap) {
  std::vector<std::uint32_t> pixels;
  for (std::int32_t y = 0; y < bitmap.height; ++y) plainRow(bitmap, y, pixels);
  return pixels;
}

void measure(Bitmap* bitmap) {
  std::uint32_t size = 0;
  require(KX_getBitmapSize(bitmap, &size) == 0);
  std::vector<std::uint32_t> unused;
  const std::int32_t last = bitmap->height - 1;
  require(size == bitmap->rowTable[last] + plainRow(*bitmap, last, unused));
}

void cloneAndRead(Bitmap* bitmap, ByteReader& choice) {
  Bitmap* clone = nullptr;
  require(KX_cloneBitmap(&clone, bitmap, kxtest::methods()) == 0);
  const std::vector<std::uint32_t> pixels = plainPixels(*bitmap);
  require(plainPixels(*clone) == pixels);
  const std::int32_t x = choice.between(0, bitmap->width - 1), y = choice.between(0, bitmap->height - 1);
  const std::uint32_t expected =
      pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(bitmap->width) + static_cast<std::size_t>(x)];
  require(KX_getPixel(clone, x, y) == expected);
  require(KX_deleteBitmap(clone) == 0);
}

/// Any of the thirty blits from the bitmap to a plain one.
void blit(Bitmap* bitmap, ByteReader& choice) {
  kxtest::Random random(choice.byte());
  BlitCall call;
  call.stretch = choice.below(2) != 0;
  call.rule = static_cast<kxtest::Rule>(choice.below(kxtest::ruleCount));
  call.depth = static_cast<kxtest::Depth>(choice.below(kxtest::depthCount));
  call.src = bitmap;
  const auto part = [&](std::int32_t whole, std::int32_t& start, std::int32_t& length) {
    start = choice.between(0, whole - 1);
    length = choice.between(1, whole - start);
  };
  part(bitmap->width, call.sx, call.sw);
  part(bitmap->height, call.sy, call.sh);
  call.dw = call.stretch ? choice.between(1, 300) : call.sw;
  call.dh = call.stretch ? choice.between(1, 6) : call.sh;
  call.dx = choice.between(0, 20);
  call.dy = choice.between(0, 2);
  call.alpha = choice.byte();
  call.z = choice.byte();
  call.zoffset = choice.between(-300, 300);
  const std::uint32_t format = choice.below(8) == 0 ? 0 : wholePixelFormat(choice);
  if (format == KX_FORMAT_PALETTE && (call.constantAlpha() || call.rule == kxtest::Rule::Alphamap)) return;
  TestImage target(random, format, call.dx + call.dw + choice.between(0, 9), call.dy + call.dh, false);
  TestImage depths(random, 3, target.record()->width, target.record()->height, false);
  TestImage weights(random, 3, bitmap->width, bitmap->height, false);
  TestImage zmap(random, 3, bitmap->width, bitmap->height, false);
  call.dst = target.record();
  call.zbuffer = depths.record();
  call.alphamap = weights.record();
  call.zmap = zmap.record();

  std::vector<std::uint8_t> expected = target.memory(), expectedDepths = depths.memory();
  kxtest::referenceBlit(call, *target.record(),
                        {expected.data() + target.blockStart(), target.blockBytes(),
                         expectedDepths.data() + depths.blockStart(), depths.blockBytes()},
                        weights.blockBytes(), zmap.blockBytes());
  require(kxtest::callBlit(call) == 0);
  require(expected == target.memory() && expectedDepths == depths.memory());
}

void draw(Bitmap* bitmap, ByteReader& choice) {
  std::vector<std::uint32_t> expected = plainPixels(*bitmap);
  const std::int32_t x = choice.between(0, bitmap->width - 1), y = choice.between(0, bitmap->height - 1);
  const auto row = [&](std::int32_t number) { return expected.begin() + std::ptrdiff_t{number} * bitmap->width; };
  switch (choice.below(4)) {
    case 0:
      require(KX_setPixel(bitmap, x, y, 0x51) == 0);
      row(y)[x] = 0x51;
      break;
    case 1:
      require(KX_fillRect(bitmap, x, 0, bitmap->width - x, bitmap->height, 0x77) == 0);
      for (std::int32_t i = 0; i < bitmap->height; ++i) std::fill(row(i) + x, row(i) + bitmap->width, 0x77);
      break;
    case 2:
      require(KX_mirrorBitmapX(bitmap) == 0);
      for (std::int32_t i = 0; i < bitmap->height / 2; ++i)
        std::swap_ranges(row(i), row(i) + bitmap->width, row(bitmap->height - 1 - i));
      break;
    default:
      require(KX_mirrorBitmapY(bitmap) == 0);
      for (std::int32_t i = 0; i < bitmap->height; ++i) std::reverse(row(i), row(i) + bitmap->width);
      break;
  }
  require(plainPixels(*bitmap) == expected);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > 4096) return 0;
  const std::size_t blocks = kxtest::liveBlocks();
  ByteReader bytes(data, size);
  // What is done is chosen by the first bytes, the bitmap is made of the others.
  constexpr std::size_t choiceBytes = 24;
  ByteReader choice(data, std::min(size, choiceBytes));
  for (std::size_t i = 0; i < choiceBytes; ++i) bytes.byte();
  {
    Packed packed(bytes);
    Bitmap* bitmap = nullptr;
    require(KX_createFromData(&bitmap, &packed.record, packed.borrowed ? 1 : 0, kxtest::methods()) == 0);
    measure(bitmap);
    switch (choice.below(4)) {
      case 0:
        cloneAndRead(bitmap, choice);
        break;
      case 1:
        draw(bitmap, choice);
        break;
      default:
        blit(bitmap, choice);
        break;
    }
    require(bitmap->lockCount == 0 && KX_deleteBitmap(bitmap) == 0);
  }
  require(kxtest::liveBlocks() == blocks);
  return 0;
}
