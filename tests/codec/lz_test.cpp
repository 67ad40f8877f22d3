// LZW against a plain encoder and decoder over dictionaries of strings, and on broken streams.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>

#include "codec/random_data.h"
#include "kxgraphic/codec.h"
#include "support/allocation_sweep.h"
#include "support/plain_coders.h"

namespace {

using kxtest::Bytes;
using kxtest::makeData;
using kxtest::plainCompress;
using kxtest::plainDecompress;
using kxtest::Random;

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
      kxtest::CodeStream stream;
      std::uint32_t next = 257;
      int width = 9;
      for (int i = 0; i < 600; ++i) {
        const bool clears = random.below(100) == 0;
        const std::uint32_t code = clears ? 256 : random.below(random.below(50) == 0 ? next + 1 : next);
        stream.put(code, width);
        next = code == 256 ? 257 : next + 1;
        width = next == 257 ? 9 : kxtest::codeWidth(next - 1);
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
  kxtest::CodeStream stream;
  std::uint32_t next = 257;
  for (int i = 0; i < 70000; ++i) {
    std::uint32_t code = random.below(next);
    if (code == 256 || i == 0) code = 65;
    if (i > 65300 && i % 7 == 0) code = 65535;  // the last entry keeps the byte it was made with
    stream.put(code, kxtest::codeWidth(std::max(next - 1, 257u)));
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
