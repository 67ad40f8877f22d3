// CRC-32: the export, the tables and the choice of the way to compute.
// SPDX-License-Identifier: MIT
#include "codec/crc.h"

#include <array>
#include <cstring>

#include "kxgraphic/codec.h"

namespace kx {

namespace {

constexpr std::size_t tableCount = 16;
using Tables = std::array<std::array<std::uint32_t, 256>, tableCount>;

/// tables[k][b]: what byte b leaves in the register after k more zero bytes.
constexpr Tables makeTables() {
  Tables tables{};
  for (std::uint32_t byte = 0; byte < 256; ++byte) {
    std::uint32_t crc = byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320u : 0u);
    tables[0][byte] = crc;
  }
  for (std::size_t k = 1; k < tableCount; ++k)
    for (std::size_t byte = 0; byte < 256; ++byte) {
      const std::uint32_t crc = tables[k - 1][byte];
      tables[k][byte] = (crc >> 8) ^ tables[0][crc & 0xFF];
    }
  return tables;
}

constexpr Tables tables = makeTables();

/// Starts with what runs everywhere, so that the checksum is right however early it is called.
CrcUpdate updateCrc = &updateCrcByTables;

const struct ChooseAtLoad {
  ChooseAtLoad() {
    if (canMultiplyCarryless()) updateCrc = &updateCrcByMultiplication;
  }
} chooseAtLoad;

}  // namespace

std::uint32_t updateCrcByTables(std::uint32_t crc, const std::uint8_t* data, std::size_t length) {
  for (; length >= tableCount; length -= tableCount, data += tableCount) {
    std::uint32_t next = 0;
    for (std::size_t i = 0; i < 4; ++i) next ^= tables[15 - i][((crc >> (8 * i)) ^ data[i]) & 0xFF];
    for (std::size_t i = 4; i < tableCount; ++i) next ^= tables[15 - i][data[i]];
    crc = next;
  }
  for (; length > 0; --length) crc = (crc >> 8) ^ tables[0][(crc ^ *data++) & 0xFF];
  return crc;
}

std::uint32_t updateCrcByMultiplication(std::uint32_t crc, const std::uint8_t* data, std::size_t length) {
  if (length >= shortestCrcFold) {
    std::uint8_t folded[16];
    const std::size_t used = foldCrc(crc, data, length, folded);
    crc = updateCrcByTables(0, folded, sizeof folded);
    data += used;
    length -= used;
  }
  return updateCrcByTables(crc, data, length);
}

bool canMultiplyCarryless() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("pclmul") != 0 && __builtin_cpu_supports("sse4.1") != 0;
}

}  // namespace kx

extern "C" std::uint32_t KX_CALL KX_calculateCRC(const void* data, std::int32_t length) {
  if (length <= 0) return 0;
  return ~kx::updateCrc(0xFFFFFFFF, static_cast<const std::uint8_t*>(data), static_cast<std::size_t>(length));
}
