// Unpacking a packet in blocks of vector registers, which 32-bit processors have as well.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kx {

/// The first bytes of what a packet stands for: those that follow its header, or one element repeated.
template <unsigned Size>
struct PacketBlock {
  using Piece [[gnu::vector_size(16)]] = std::uint32_t;
  static constexpr unsigned secondAt = Size == 3 ? 8 : 16;  ///< where the second piece starts
  static constexpr unsigned bytes = secondAt + sizeof(Piece);
  Piece first, second;

  void load(const std::uint8_t* source) {
    std::memcpy(&first, source, sizeof first);
    std::memcpy(&second, source + secondAt, sizeof second);
  }
  void store(std::uint8_t* target) const {
    std::memcpy(target, &first, sizeof first);
    std::memcpy(target + secondAt, &second, sizeof second);
  }

  /// Repeats the element that the block starts with.
  void repeatFirst() {
    const std::uint32_t element = first[0] & (0xFFFFFFFF >> (32 - 8 * Size));
    if constexpr (Size == 3) {
      const std::uint32_t a = element | element << 24, b = element >> 8 | element << 16,
                          c = element >> 16 | element << 8;
      first = Piece{a, b, c, a};
      second = Piece{c, a, b, c};
    } else {
      first = second = Piece{} + element * (Size == 1 ? 0x01010101 : 0x00010001);
    }
  }
};

/// Writes what a packet stands for, `bytes` bytes and up to a block less one more; reads as far ahead. A branch on
/// the kind was measured faster than selecting by masks, in 32 bits and in 64.
template <unsigned Size>
void putBlocks(std::uint8_t* target, const std::uint8_t* source, bool isRun, std::size_t bytes) {
  constexpr std::size_t step = PacketBlock<Size>::bytes;
  PacketBlock<Size> block;
  block.load(source);
  if (isRun) block.repeatFirst();
  block.store(target);
  for (std::size_t done = step; done < bytes; done += step) {
    if (!isRun) block.load(source + done);
    block.store(target + done);
  }
}

}  // namespace kx
