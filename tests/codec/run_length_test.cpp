// The run-length coder against plain references, by known packets, and on broken input.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "codec/random_data.h"
#include "codec/run_length.h"
#include "kxgraphic/codec.h"
#include "support/plain_coders.h"

namespace {

using kxtest::Bytes;
using kxtest::makeData;
using kxtest::plainPack;
using kxtest::plainUnpack;
using kxtest::Random;

constexpr std::uint32_t sizes[] = {1, 2, 3, 4, 7};

/// Packs into a block of exactly the promised size and checks that nothing after the result was touched.
Bytes pack(const Bytes& data, std::size_t size) {
  const auto count = static_cast<std::uint32_t>(data.size() / size);
  Bytes packed(static_cast<std::size_t>(kx::packedBound(count, size)), kxtest::canary);
  const std::uint32_t written = RLE_compressWords(packed.data(), data.data(), count, static_cast<std::uint32_t>(size));
  EXPECT_TRUE(kxtest::untouchedFrom(packed, written));
  packed.resize(written);
  return packed;
}

struct Decoded {
  Bytes data;
  std::uint32_t position;
};

Decoded unpack(const Bytes& packed, std::size_t size, std::size_t wanted, std::int32_t srcLength) {
  Decoded result{Bytes((wanted + 127) * size, 0xEE), 0};
  const std::uint32_t written =
      RLE_decompressWords(result.data.data(), packed.data(), srcLength, static_cast<std::uint32_t>(size),
                          static_cast<std::uint32_t>(wanted), &result.position);
  // A source that ends early may have let a block be written ahead, never past what is wanted.
  const std::size_t most = wanted * size;
  EXPECT_TRUE(kxtest::untouchedFrom(result.data, written < most ? std::min<std::size_t>(most, written + 32) : written));
  result.data.resize(written);
  return result;
}

TEST(RunLength, KnownPackets) {
  const auto repeated = [](std::uint8_t byte, std::size_t count) { return Bytes(count, byte); };
  const auto join = [](Bytes a, const Bytes& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
  };
  const struct {
    Bytes data, packed;
  } cases[] = {
      {{}, {}},
      {{5}, {0, 5}},
      {{5, 5}, {0xFF, 5}},
      {{1, 2, 2}, {0, 1, 0xFF, 2}},
      {{1, 2, 3}, {2, 1, 2, 3}},
      {repeated(9, 127), {0x82, 9}},
      {repeated(9, 128), {0x81, 9}},
      {repeated(9, 129), {0x81, 9, 0, 9}},
      {repeated(9, 130), {0x81, 9, 0xFF, 9}},
      // The one left over of a run of 128 begins the literal of what follows it.
      {join(repeated(9, 128), {1}), {0x82, 9, 1, 9, 1}},
      {join(repeated(9, 129), {1}), {0x81, 9, 1, 9, 1}},
      {join(repeated(9, 128), {1, 1}), {0x82, 9, 0, 9, 0xFF, 1}},
      // The worst case.
      {{1, 2, 2, 3, 4, 4, 5}, {0, 1, 0xFF, 2, 0, 3, 0xFF, 4, 0, 5}},
  };
  for (const auto& each : cases) EXPECT_EQ(each.packed, pack(each.data, 1)) << each.data.size();
}

TEST(RunLength, PacksLikeThePlainRule) {
  Random random(1);
  for (const std::uint32_t size : sizes)
    for (int round = 0; round < 400; ++round) {
      const std::size_t count = round < 300 ? random.below(300) : random.below(70000 / size);
      const Bytes data = makeData(round % kxtest::shapes, count, size, random);
      const Bytes packed = pack(data, size);
      ASSERT_EQ(plainPack(data, size), packed) << size << ' ' << round;
      if (size == 1) {
        Bytes again(static_cast<std::size_t>(kx::packedBound(count, 1)));
        ASSERT_EQ(packed.size(), RLE_compress(again.data(), data.data(), static_cast<std::uint32_t>(count)));
        ASSERT_TRUE(std::equal(packed.begin(), packed.end(), again.begin()));
      }
      // Exactly as long as it is, and without an end.
      ASSERT_EQ(data, unpack(packed, size, count, static_cast<std::int32_t>(packed.size())).data);
      ASSERT_EQ(data, unpack(packed, size, count, -1).data);
    }
}

TEST(RunLength, UnpacksAnyBytesLikeThePlainRule) {
  Random random(2);
  for (const std::uint32_t size : sizes)
    for (int round = 0; round < 500; ++round) {
      // Headers of all kinds, fillers among them, in an order that no encoder makes; the last packet may be torn.
      Bytes packed = makeData(round % kxtest::shapes, random.below(round < 400 ? 300 : 20000), 1, random);
      for (std::uint32_t fillers = random.below(4); fillers > 0 && !packed.empty(); --fillers)
        packed[random.below(static_cast<std::uint32_t>(packed.size()))] = 0x80;
      std::size_t end = 0;
      const std::size_t all = plainUnpack(packed, size, SIZE_MAX, end).size() / size;
      const std::size_t wanted = random.below(static_cast<std::uint32_t>(all + all / 4 + 2));
      std::size_t position = 0;
      const Bytes expected = plainUnpack(packed, size, wanted, position);

      const Decoded whole = unpack(packed, size, wanted, static_cast<std::int32_t>(packed.size()));
      ASSERT_EQ(expected, whole.data) << size << ' ' << round;
      ASSERT_EQ(position, whole.position);
      if (wanted <= all) {
        ASSERT_EQ(expected, unpack(packed, size, wanted, -1).data);
      }

      Bytes cut(wanted * size);
      const kx::Unpacked row = kx::unpackElements(cut.data(), wanted, packed.data(), packed.size(), size);
      ASSERT_EQ(position, row.sourceBytes);
      ASSERT_EQ(std::min(wanted, expected.size() / size), row.elements);
      ASSERT_TRUE(
          std::equal(cut.begin(), cut.begin() + static_cast<std::ptrdiff_t>(row.elements * size), expected.begin()));
    }
}

TEST(RunLength, PositionLeadsFromPacketToPacket) {
  const Bytes packed = {7, 7, 0xFE, 1, 0x80, 1, 2, 3, 0x80, 5, 4};  // the first two bytes are skipped
  Bytes data(200);
  std::uint32_t position = 2;
  EXPECT_EQ(3u, RLE_decompress(data.data(), packed.data(), -1, 1, &position));
  EXPECT_EQ(4u, position);
  EXPECT_EQ(2u, RLE_decompress(data.data(), packed.data(), 4, 100, &position));
  EXPECT_EQ(8u, position);
  // The literal of six is torn: the filler before it is passed, the packet is not.
  EXPECT_EQ(0u, RLE_decompress(data.data(), packed.data(), 3, 100, &position));
  EXPECT_EQ(9u, position);
  EXPECT_EQ(0u, RLE_decompress(data.data(), packed.data(), 0, 100, nullptr));
  EXPECT_EQ(0u, RLE_decompress(data.data(), packed.data(), -1, 0, nullptr));
}

TEST(RunLength, OddElementSizes) {
  Bytes packed(8, 0xEE);
  const std::uint8_t nothing = 0;
  // Elements without bytes are all alike: headers alone.
  EXPECT_EQ(3u, RLE_compressWords(packed.data(), &nothing, 257, 0));
  EXPECT_EQ((Bytes{0x81, 0x81, 0, 0xEE}), Bytes(packed.begin(), packed.begin() + 4));
  std::uint32_t position = 0;
  EXPECT_EQ(0u, RLE_decompressWords(nullptr, packed.data(), 3, 0, 1000, &position));
  EXPECT_EQ(3u, position);
  // A packet larger than any source is never whole.
  EXPECT_EQ(0u, RLE_decompressWords(nullptr, packed.data(), 8, 0xFFFFFFFF, 0xFFFFFFFF, nullptr));
  EXPECT_EQ(0u, RLE_compressWords(packed.data(), &nothing, 0xFFFFFFFF, 0xFFFFFFFF));
}

TEST(RunReader, WalksThePackets) {
  const Bytes packed = {0x80, 1, 10, 11, 12, 13, 0xFE, 20, 21, 0x80, 3, 30};
  kx::RunReader reader(packed.data(), packed.size(), 2);
  ASSERT_TRUE(reader.next());
  EXPECT_FALSE(reader.isRun());
  EXPECT_EQ(2u, reader.count());
  EXPECT_EQ(packed.data() + 2, reader.elements());
  EXPECT_EQ(6u, reader.used());
  ASSERT_TRUE(reader.next());
  EXPECT_TRUE(reader.isRun());
  EXPECT_EQ(3u, reader.count());
  EXPECT_EQ(9u, reader.used());
  EXPECT_FALSE(reader.next());
  EXPECT_EQ(10u, reader.used());
}

}  // namespace
