// CRC-32 of IEEE 802.3 (reflected, polynomial 0xEDB88320): its two ways of computing, for the export and the tests.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace kx {

/// Runs `length` bytes through the checksum register. The caller inverts the register before the first byte and after
/// the last.
using CrcUpdate = std::uint32_t (*)(std::uint32_t crc, const std::uint8_t* data, std::size_t length);

/// Sixteen bytes a step by table look-ups. Runs everywhere.
std::uint32_t updateCrcByTables(std::uint32_t crc, const std::uint8_t* data, std::size_t length);

/// By carry-less multiplication; only where canMultiplyCarryless().
std::uint32_t updateCrcByMultiplication(std::uint32_t crc, const std::uint8_t* data, std::size_t length);

/// True when the processor has the instruction.
bool canMultiplyCarryless();

/// Shortest input that foldCrc takes, in bytes.
constexpr std::size_t shortestCrcFold = 128;

/// Folds `length` bytes (at least shortestCrcFold) into sixteen bytes that have the same checksum when they start from
/// a register of 0. Returns the bytes used; fewer than sixteen are left over.
std::size_t foldCrc(std::uint32_t crc, const std::uint8_t* data, std::size_t length, std::uint8_t (&folded)[16]);

}  // namespace kx
