// Packing: how a row of elements is cut into runs and literals.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <bit>
#include <cstring>

#include "codec/byte_equality.h"
#include "codec/run_length.h"
#include "codec/short_copy.h"

namespace kx {

namespace {

/// The elements still to pack and where they go.
struct Cursor {
  std::uint8_t* packed;
  const std::uint8_t* elements;
  std::uint32_t left;
};

/// Appends one packet of `count` elements: its header, then the one element of a run or all of a literal.
inline void putPacket(Cursor& cursor, bool isRun, std::uint32_t count, std::size_t elementSize) {
  *cursor.packed++ = static_cast<std::uint8_t>(isRun ? 1 - count : count - 1);
  const std::size_t bytes = isRun ? elementSize : count * elementSize;
  std::memcpy(cursor.packed, cursor.elements, bytes);
  cursor.packed += bytes;
  cursor.elements += count * elementSize;
  cursor.left -= count;
}

/// Packs the next packet by comparing one element after another: the rule in full.
void packOne(Cursor& cursor, std::size_t size) {
  const std::uint32_t left = cursor.left;
  const auto isPair = [&](std::uint32_t i) {
    return std::memcmp(cursor.elements + i * size, cursor.elements + (i + 1) * size, size) == 0;
  };
  std::uint32_t count = 1;
  while (count < longestPacket && count != left && isPair(count - 1)) ++count;
  if (count > 1) {
    // Settled: a run of exactly 128 with another element after it is packed as 127 and 1.
    if (count == longestPacket && left != longestPacket && !isPair(longestPacket - 1)) --count;
    putPacket(cursor, true, count, size);
    return;
  }
  // A literal ends before the next pair.
  while (count < longestPacket && count != left && (count + 1 == left || !isPair(count))) ++count;
  putPacket(cursor, false, count, size);
}

/// The places in a mask of bytes where elements start.
template <unsigned Size>
constexpr EqualityMask makeStarts() {
  EqualityMask starts = 0;
  for (unsigned i = 0; i + Size <= equalityBlock; i += Size) starts |= EqualityMask{1} << i;
  return starts;
}

/// A block of elements: which of them equal their right neighbour.
template <unsigned Size>
struct Pairs {
  static constexpr EqualityMask starts = makeStarts<Size>();
  EqualityMask pairs;   ///< bit at an element's first byte: it equals the next one
  EqualityMask breaks;  ///< or it does not

  explicit Pairs(const std::uint8_t* elements) {
    EqualityMask equal = compareBytes(elements, elements + Size);
    if constexpr (Size == 2) equal &= equal >> 1;
    if constexpr (Size == 3) equal &= (equal >> 1) & (equal >> 2);
    pairs = equal & starts;
    breaks = ~equal & starts;
  }
};

/// Packs what lies in blocks that can be read whole. Packets that end within a block are found by counting bits and
/// written without a branch on their kind.
template <unsigned Size>
void packBlocks(Cursor& cursor) {
  while (cursor.left * std::uint64_t{Size} >= equalityBlock + Size) {
    Pairs<Size> block(cursor.elements);
    const std::uint8_t* const start = cursor.elements;
    for (;;) {
      const bool isRun = (block.pairs & 1) != 0;
      const EqualityMask ends = isRun ? block.breaks : block.pairs;
      if (ends == 0) break;
      const auto end = static_cast<unsigned>(std::countr_zero(ends));
      const unsigned lastOfRun = isRun ? Size : 0;
      const unsigned bytes = end + lastOfRun;
      const std::uint32_t count = bytes / Size;
      *cursor.packed++ = static_cast<std::uint8_t>(isRun ? 1 - count : count - 1);
      const unsigned stored = isRun ? Size : bytes;
      copyShort(cursor.packed, cursor.elements, stored);
      cursor.packed += stored;
      cursor.elements += bytes;
      cursor.left -= count;
      block.pairs = (block.pairs >> end) >> lastOfRun;
      block.breaks = (block.breaks >> end) >> lastOfRun;
    }
    if (cursor.elements == start) packOne(cursor, Size);
  }
}

}  // namespace

std::size_t packElements(std::uint8_t* packed, const std::uint8_t* elements, std::uint32_t count,
                         std::uint32_t elementSize) {
  if (std::uint64_t{count} * elementSize > PTRDIFF_MAX) return 0;  // no memory holds that
  Cursor cursor{packed, elements, count};
  if (elementSize == 1) packBlocks<1>(cursor);
  if (elementSize == 2) packBlocks<2>(cursor);
  if (elementSize == 3) packBlocks<3>(cursor);
  while (cursor.left > 0) packOne(cursor, elementSize);
  return static_cast<std::size_t>(cursor.packed - packed);
}

}  // namespace kx
