// LZW against a plain encoder and decoder over dictionaries of strings, and on broken streams.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <map>

#include "codec/random_data.h"
#include "kxgraphic/codec.h"
#include "support/allocation_sweep.h"

namespace {

using kxtest::Bytes;
using kxtest::makeData;
using kxtest::Random;

int widthOf(std::size_t code) { return static_cast<int>(std::bit_width(code)); }

/// Codes as a stream: low bit first, whole words.
class Stream {
public:
  void put(std::uint32_t code, int width) {
    for (int bit = 0; bit < width; ++bit, ++used_) {
      if (used_ % 32 == 0) bytes_.resize(bytes_.size() + 4);
      bytes_[used_ / 8] = static_cast<std::uint8_t>(bytes_[used_ / 8] | ((code >> bit) & 1) << (used_ % 8));
    }
  }
  const Bytes& bytes() const { return bytes_; }

private:
  Bytes bytes_;
  std::size_t used_ = 0;
};

Bytes plainCompress(const Bytes& data) {
  std::map<std::pair<std::uint32_t, std::uint8_t>, std::uint32_t> codes;
  Stream stream;
  std::uint32_t code = data[0];
  int width = 9;
  for (std::size_t i = 1; i < data.size(); ++i) {
    if (const auto found = codes.find({code, data[i]}); found != codes.end()) {
      code = found->second;
      continue;
    }
    stream.put(code, width);
    if (const auto next = static_cast<std::uint32_t>(257 + codes.size()); next < 65536) {
      codes[{code, data[i]}] = next;
      width = widthOf(next);
    } else {
      stream.put(256, 16);
      codes.clear();
      width = 9;
    }
    code = data[i];
  }
  stream.put(code, width);
  return stream.bytes();
}

/// The decoder as chains of (prefix, byte), each walked back to its first byte.
Bytes plainDecompress(const Bytes& packed, std::size_t maxOut) {
  struct Entry {
    std::uint32_t prefix;
    std::uint8_t byte;
  };
  std::vector<Entry> entries;
  Bytes out;
  std::size_t at = 0;
  for (int width = 9; out.size() < maxOut && at + static_cast<std::size_t>(width) <= packed.size() / 4 * 32;) {
    std::uint32_t code = 0;
    for (int bit = 0; bit < width; ++bit, ++at) code |= ((std::uint32_t{packed[at / 8]} >> (at % 8)) & 1) << bit;
    if (code == 256) {
      entries.clear();
      width = 9;
      continue;
    }
    Bytes string;
    std::uint32_t link = code;
    while (link > 256) {
      if (link - 257 >= entries.size()) return {};
      string.push_back(entries[link - 257].byte);
      link = entries[link - 257].prefix;
    }
    const auto first = static_cast<std::uint8_t>(link);
    out.push_back(first);
    if (257 + entries.size() < 65536) {
      if (!entries.empty()) entries.back().byte = first;
      entries.push_back({code, first});
      width = widthOf(256 + entries.size());
    }
    // A code of the entry just completed was read with its byte as it stood, which is the same.
    out.insert(out.end(), string.rbegin(), string.rend());
  }
  out.resize(std::min(out.size(), maxOut));
  return out;
}

Bytes compress(const Bytes& data) {
  Bytes packed(2 * data.size() + 16, 0xEE);
  const std::uint32_t written = LZ_compress(packed.data(), data.data(), static_cast<std::uint32_t>(data.size()));
  EXPECT_TRUE(kxtest::untouchedFrom(packed, written));
  packed.resize(written);
  return packed;
}

Bytes decompress(const Bytes& packed, std::size_t maxOut) {
  Bytes data(maxOut);
  data.resize(LZ_decompress(data.data(), packed.data(), static_cast<std::uint32_t>(packed.size()),
                            static_cast<std::uint32_t>(maxOut)));
  return data;
}

TEST(Lz, KnownStreams) {
  // One code of nine bits, padded to a word.
  EXPECT_EQ((Bytes{0x41, 0, 0, 0}), compress({0x41}));
  // a, 257 = aa (named while it is made), 258 = aaa: 0x61 | 257 << 9 | 258 << 18.
  EXPECT_EQ((Bytes{0x61, 0x02, 0x0A, 0x04}), compress(Bytes(6, 'a')));
  EXPECT_EQ(Bytes(6, 'a'), decompress({0x61, 0x02, 0x0A, 0x04}, 6));
  // Padding is read as codes where there is room for what they stand for.
  EXPECT_EQ((Bytes{0x41, 0, 0}), decompress({0x41, 0, 0, 0}, 10));
  EXPECT_TRUE(decompress({0x41, 0, 0}, 10).empty());  // less than a word
  // An empty input gives a stream that decodes to nothing.
  Bytes nothing(4, 0xEE);
  EXPECT_EQ(4u, LZ_compress(nothing.data(), nullptr, 0));
  EXPECT_EQ((Bytes{0x00, 0x01, 0, 0}), nothing);
}

TEST(Lz, SameStreamAsThePlainEncoder) {
  Random random(4);
  for (int round = 0; round < 120; ++round) {
    const std::size_t count = 1 + (round < 100 ? random.below(2000) : random.below(70000));
    const Bytes data = makeData(round % kxtest::shapes, count, 1, random);
    const Bytes packed = compress(data);
    ASSERT_EQ(plainCompress(data), packed) << round;
    ASSERT_EQ(data, decompress(packed, count)) << round;
    // Any room: the output ends there, inside a string too.
    const std::size_t room = random.below(static_cast<std::uint32_t>(count + 10));
    Bytes guarded(count + 40, 0xEE);
    const std::uint32_t written = LZ_decompress(
        guarded.data(), packed.data(), static_cast<std::uint32_t>(packed.size()), static_cast<std::uint32_t>(room));
    const Bytes expected = plainDecompress(packed, room);
    ASSERT_EQ(expected.size(), written);
    ASSERT_TRUE(std::equal(expected.begin(), expected.end(), guarded.begin()));
    ASSERT_TRUE(kxtest::untouchedFrom(guarded, written));
  }
}

/// Callers that know how much they want need not know where the stream ends: nothing after its last code is read.
TEST(Lz, AnyLengthBeyondTheStream) {
  Random random(8);
  for (int round = 0; round < 64; ++round) {
    const Bytes data = makeData(round % kxtest::shapes, 1 + random.below(round < 32 ? 100 : 5000), 1, random);
    const Bytes packed = compress(data);  // a block of its own, which ends with the stream
    for (const std::uint32_t length : {0x10000000u, 0x7FFFFFFFu, 0x80000003u, 0xFFFFFFFFu}) {
      Bytes out(data.size());
      ASSERT_EQ(data.size(), LZ_decompress(out.data(), packed.data(), length, static_cast<std::uint32_t>(data.size())));
      ASSERT_EQ(data, out) << round << ' ' << length;
    }
  }
}

TEST(Lz, ClearsAFullDictionary) {
  Random random(5);
  for (const int shape : {0, 6, 7}) {
    const Bytes data = makeData(shape, 200000, 1, random);
    const Bytes packed = compress(data);
    ASSERT_EQ(plainCompress(data), packed);
    ASSERT_EQ(data, decompress(packed, data.size()));
  }
}

TEST(Lz, BrokenStreams) {
  Random random(6);
  // Codes at random, valid or not, clears among them; then streams of the encoder with a bit turned.
  for (int round = 0; round < 400; ++round) {
    Bytes packed;
    if (round % 2 == 0) {
      packed = compress(makeData(round % kxtest::shapes, 1 + random.below(3000), 1, random));
      packed[random.below(static_cast<std::uint32_t>(packed.size()))] ^=
          static_cast<std::uint8_t>(1 << random.below(8));
      packed.resize(random.below(static_cast<std::uint32_t>(packed.size() + 1)));
    } else {
      Stream stream;
      std::uint32_t next = 257;
      int width = 9;
      for (int i = 0; i < 600; ++i) {
        const bool clears = random.below(100) == 0;
        const std::uint32_t code = clears ? 256 : random.below(random.below(50) == 0 ? next + 1 : next);
        stream.put(code, width);
        next = code == 256 ? 257 : next + 1;
        width = next == 257 ? 9 : widthOf(next - 1);
      }
      packed = stream.bytes();
    }
    for (const std::size_t room : {std::size_t{0}, std::size_t{100}, std::size_t{50000}})
      ASSERT_EQ(plainDecompress(packed, room), decompress(packed, room)) << round;
  }
}

TEST(Lz, KeepsAFullDictionaryUntilTheClearCode) {
  // A stranger's stream that fills the dictionary and goes on without clearing it.
  Random random(7);
  Stream stream;
  std::uint32_t next = 257;
  for (int i = 0; i < 70000; ++i) {
    std::uint32_t code = random.below(next);
    if (code == 256 || i == 0) code = 65;
    if (i > 65300 && i % 7 == 0) code = 65535;  // the last entry keeps the byte it was made with
    stream.put(code, widthOf(std::max(next - 1, 257u)));
    if (next < 65536) ++next;
  }
  const Bytes expected = plainDecompress(stream.bytes(), 300000);
  ASSERT_EQ(300000u, expected.size());
  EXPECT_EQ(expected, decompress(stream.bytes(), 300000));
}

TEST(Lz, NoMemoryGivesNoBytes) {
  const Bytes data(100, 'x');
  const Bytes packed = compress(data);
  Bytes out(300);
  kxtest::AllocationSweep sweep;
  sweep.failureCode = 0;
  sweep.successCode = static_cast<std::uint32_t>(packed.size());
  sweep.call = [&] { return LZ_compress(out.data(), data.data(), 100); };
  EXPECT_LT(0u, kxtest::sweepAllocations(sweep));
  sweep.successCode = 100;
  sweep.call = [&] { return LZ_decompress(out.data(), packed.data(), static_cast<std::uint32_t>(packed.size()), 100); };
  EXPECT_LT(0u, kxtest::sweepAllocations(sweep));
}

}  // namespace
