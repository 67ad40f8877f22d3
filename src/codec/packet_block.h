// Unpacking a packet in blocks, without a branch on its kind.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kx {

/// The first bytes of what a packet stands for: those that follow its header, or one element repeated.
template <unsigned Size>
struct PacketBlock {
  static constexpr unsigned words = Size == 3 ? 3 : 4;
  static constexpr unsigned bytes = words * 8;
  std::uint64_t word[words];

  void load(const std::uint8_t* source) { std::memcpy(word, source, bytes); }
  void store(std::uint8_t* target) const { std::memcpy(target, word, bytes); }

  /// Repeats the element that the block starts with, if `isRun`.
  void repeatFirst(bool isRun) {
    const std::uint64_t element = word[0] & ((std::uint64_t{1} << (8 * Size)) - 1);
    if constexpr (Size == 3) {
      word[1] = isRun ? element >> 16 | element << 8 | element << 32 | element << 56 : word[1];
      word[2] = isRun ? element >> 8 | element << 16 | element << 40 : word[2];
      word[0] = isRun ? element | element << 24 | element << 48 : word[0];
    } else {
      const std::uint64_t repeated = element * (Size == 1 ? 0x0101010101010101u : 0x0001000100010001u);
      for (std::uint64_t& each : word) each = isRun ? repeated : each;
    }
  }
};

/// Writes what a packet stands for, `bytes` bytes and up to a block less one more; reads as far ahead.
template <unsigned Size>
void putBlocks(std::uint8_t* target, const std::uint8_t* source, bool isRun, std::size_t bytes) {
  constexpr std::size_t step = PacketBlock<Size>::bytes;
  PacketBlock<Size> block;
  block.load(source);
  block.repeatFirst(isRun);
  block.store(target);
  for (std::size_t done = step; done < bytes; done += step) {
    if (!isRun) block.load(source + done);
    block.store(target + done);
  }
}

}  // namespace kx
