// CRC-32: known sums, and both ways of computing it against the division bit by bit.
// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "codec/crc.h"
#include "codec/random_data.h"
#include "kxgraphic/codec.h"

namespace {

std::uint32_t plainCrc(std::uint32_t crc, const std::uint8_t* data, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    crc ^= data[i];
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? (crc >> 1) ^ 0xEDB88320u : crc >> 1;
  }
  return crc;
}

TEST(Crc, KnownSums) {
  EXPECT_EQ(0xCBF43926u, KX_calculateCRC("123456789", 9));
  EXPECT_EQ(0x414FA339u, KX_calculateCRC("The quick brown fox jumps over the lazy dog", 43));
  EXPECT_EQ(0xD202EF8Du, KX_calculateCRC("", 1));
  EXPECT_EQ(0u, KX_calculateCRC("", 0));
  EXPECT_EQ(0u, KX_calculateCRC(nullptr, -1));
}

TEST(Crc, BothWaysDivideByThePolynomial) {
  kxtest::Random random(3);
  const kxtest::Bytes data = kxtest::makeData(0, 5000, 1, random);
  std::vector<kx::CrcUpdate> ways = {&kx::updateCrcByTables};
  if (kx::canMultiplyCarryless()) ways.push_back(&kx::updateCrcByMultiplication);
  for (std::size_t length = 0; length < 700; ++length)
    for (const std::size_t offset : {length % 17, std::size_t{64}}) {
      const std::uint32_t start = length % 3 == 0 ? 0xFFFFFFFF : random.below(0xFFFFFFFF);
      const std::uint32_t expected = plainCrc(start, data.data() + offset, length);
      for (const kx::CrcUpdate update : ways)
        ASSERT_EQ(expected, update(start, data.data() + offset, length)) << length;
    }
  const auto all = static_cast<std::int32_t>(data.size());
  EXPECT_EQ(~plainCrc(0xFFFFFFFF, data.data(), data.size()), KX_calculateCRC(data.data(), all));
}

}  // namespace
