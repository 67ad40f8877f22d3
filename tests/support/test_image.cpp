// SPDX-License-Identifier: MIT
#include "support/test_image.h"

#include <algorithm>

#include "bitmap/packed.h"
#include "frame/heap.h"

namespace kxtest {

namespace {
/// Bytes beside a block, where no guard page touches it.
constexpr std::size_t margin = 512;
}  // namespace

std::int64_t wholeBytes(std::uint32_t format) {
  switch (format & 15) {
    case 3:
    case 4:
      return 1;
    case 5:
    case 6:
      return 2;
    case 7:
      return 3;
    default:
      return 0;
  }
}

std::uint32_t pixelAt(const std::uint8_t* row, std::uint32_t format, std::int64_t x) {
  if ((format & 15) == 0) return (row[x / 8] & (128u >> (x % 8))) != 0;
  std::uint32_t value = 0;
  for (std::int64_t i = 0; i < wholeBytes(format); ++i)
    value |= static_cast<std::uint32_t>(row[x * wholeBytes(format) + i]) << (8 * i);
  return value;
}

void setPixelAt(std::uint8_t* row, std::uint32_t format, std::int64_t x, std::uint32_t value) {
  if ((format & 15) == 0) {
    const unsigned bit = 128u >> (x % 8);
    row[x / 8] = static_cast<std::uint8_t>(value != 0 ? row[x / 8] | bit : row[x / 8] & ~bit);
  }
  for (std::int64_t i = 0; i < wholeBytes(format); ++i)
    row[x * wholeBytes(format) + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

BitmapMethods* methods() {
  static BitmapMethods table;
  static const bool filled = KX_getBitmapInterface(&table, nullptr, nullptr, 0) != 0;
  return filled ? &table : nullptr;
}

TestImage::TestImage(Random& random, std::uint32_t format, std::int32_t width, std::int32_t height, bool packed) {
  record_.methods = methods();
  record_.version = 0x10000;
  record_.width = width;
  record_.height = height;
  record_.format = format | (packed ? 0x10 : 0);
  const std::int64_t rowBytes = format == 0 ? (width + 7) / 8 : width * wholeBytes(format);
  record_.pitch = static_cast<std::int32_t>((rowBytes + 3) / 4 * 4) + (random() % 4 == 0 ? 4 : 0);
  // With or without a spare row; without one the memory is somebody else's.
  const bool spare = random() % 2 != 0;
  record_.flags = spare ? 0 : KX_BORROWED_PIXELS;
  allocate(random, static_cast<std::size_t>(record_.pitch) * static_cast<std::size_t>(height + (spare ? 1 : 0)));
  const unsigned zeros = random() % 4;
  std::uint8_t last = 0;
  for (auto& byte : memory_) {
    if (random() % 3 != 0)
      last = static_cast<std::uint8_t>(random() % 4 < zeros ? 0 : random() % 8 == 0 ? 255 : random());
    byte = last;
  }
  if (format == 4) {
    palette_.resize(768);
    for (auto& byte : palette_) byte = static_cast<std::uint8_t>(random());
    record_.palette = palette_.data();
    record_.flags |= KX_BORROWED_PALETTE;
    const auto maybe = [&](auto& table, auto*& pointer, std::uint32_t flag) {
      if (random() % 2 == 0) return;
      table.resize(256);
      for (auto& entry : table) entry = static_cast<std::remove_reference_t<decltype(entry)>>(random());
      pointer = table.data();
      record_.flags |= flag;
    };
    maybe(table15_, record_.table15, KX_BORROWED_TABLE15);
    maybe(table16_, record_.table16, KX_BORROWED_TABLE16);
    maybe(table8_, record_.table8, KX_BORROWED_TABLE8);
  }
  if (packed) encodeRows(random);
}

TestImage::~TestImage() {
  const auto release = [&](void* block, std::uint32_t flag, const void* ours) {
    if (block != nullptr && block != ours && (record_.flags & flag) == 0) mmgr_free(block);
  };
  if (record_.pixels < memory_.begin() || record_.pixels > memory_.end())
    release(record_.pixels, KX_BORROWED_PIXELS, nullptr);
  release(record_.rowTable, KX_BORROWED_ROW_TABLE, rowTable_.data());
  release(record_.table15, KX_BORROWED_TABLE15, table15_.data());
  release(record_.table16, KX_BORROWED_TABLE16, table16_.data());
  release(record_.table8, KX_BORROWED_TABLE8, table8_.data());
}

void TestImage::allocate(Random& random, std::size_t blockBytes) {
  flush_ = random() % 2 == 0 ? GuardedBlock::Flush::Front : GuardedBlock::Flush::Back;
  memory_ = GuardedBlock(margin + blockBytes, flush_);
  record_.pixels = memory_.data() + blockStart();
}

/// Packets of any kind and length, fillers between them, and a last one that may go beyond the row.
void TestImage::encodeRows(Random& random) {
  const std::int64_t bytes = wholeBytes(record_.format);
  std::vector<std::uint8_t> stream;
  const auto put = [&](std::int32_t y, std::int32_t x) {
    const std::uint32_t value = x < record_.width
                                    ? pixelAt(record_.pixels + std::int64_t{y} * record_.pitch, record_.format, x)
                                    : static_cast<std::uint32_t>(random());
    for (std::int64_t i = 0; i < bytes; ++i) stream.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  };
  const std::int32_t longest = random() % 2 == 0 ? 128 : 9;
  for (std::int32_t y = 0; y < record_.height; ++y) {
    rowTable_.push_back(static_cast<std::uint32_t>(stream.size()));
    for (std::int32_t x = 0; x < record_.width;) {
      if (random() % 8 == 0) stream.push_back(0x80);
      std::int32_t count = between(random, 1, longest);
      if (random() % 4 != 0 && count > record_.width - x) count = record_.width - x;
      if (count > 1 && random() % 2 == 0) {
        stream.push_back(static_cast<std::uint8_t>(1 - count));
        put(y, x);
      } else {
        stream.push_back(static_cast<std::uint8_t>(count - 1));
        for (std::int32_t i = 0; i < count; ++i) put(y, x + i);
      }
      x += count;
    }
  }
  allocate(random, std::max<std::size_t>(stream.size(), 4));  // Windows asks for the first four bytes of pixels
  std::fill(memory_.begin(), memory_.end(), std::uint8_t{0xA5});
  std::copy(stream.begin(), stream.end(), record_.pixels);
  record_.rowTable = rowTable_.data();
  record_.pitch = 0;
  record_.flags |= KX_BORROWED_PIXELS | KX_BORROWED_ROW_TABLE;
}

std::size_t TestImage::blockStart() const { return flush_ == GuardedBlock::Flush::Back ? margin : 0; }

std::size_t TestImage::blockBytes() const { return memory_.size() - margin; }

std::vector<std::uint32_t> TestImage::pixels() {
  std::vector<std::uint32_t> out;
  std::vector<std::uint8_t> row(static_cast<std::size_t>(kx::packedRowBytes(record_)) + 1);
  for (std::int32_t y = 0; y < record_.height; ++y) {
    const std::uint8_t* start = record_.pixels + std::int64_t{y} * record_.pitch;
    if ((record_.format & 0x30) != 0) {
      kx::decodePackedRow(record_, y, row.data());
      start = row.data();
    }
    for (std::int32_t x = 0; x < record_.width; ++x) out.push_back(pixelAt(start, record_.format, x));
  }
  return out;
}

}  // namespace kxtest
