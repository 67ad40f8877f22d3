// Unpacking, and the exported run-length functions.
// SPDX-License-Identifier: MIT
#include "codec/run_length.h"

#include <algorithm>
#include <cstring>

#include "codec/packet_block.h"
#include "codec/short_copy.h"
#include "kxgraphic/codec.h"

namespace kx {

namespace {

/// Writes one packet of `count` elements, without touching a byte after them.
void putPacket(std::uint8_t* target, const std::uint8_t* source, bool isRun, std::size_t count, std::size_t size) {
  if (size == 0) return;
  if (!isRun) {
    copyShort(target, source, count * size);
  } else if (size == 1) {
    std::memset(target, *source, count);
  } else if (size == 2) {
    std::uint16_t element;
    std::memcpy(&element, source, sizeof element);
    for (std::size_t i = 0; i < count; ++i) std::memcpy(target + 2 * i, &element, sizeof element);
  } else if (size == 3) {
    for (std::size_t i = 0; i < count; ++i) std::memcpy(target + 3 * i, source, 3);
  } else {
    for (std::size_t i = 0; i < count; ++i) std::memcpy(target + i * size, source, size);
  }
}

struct Progress {
  std::uint8_t* target;
  std::uint64_t wanted;  ///< elements still to write
  const std::uint8_t* source;
  std::size_t left;  ///< source bytes
};

/// Unpacks in blocks as long as both ends are far: no branch on the length of a short packet. Blocks write ahead, but
/// only over bytes that are wanted. The rest of the source writes them again, unless it holds little but fillers or
/// breaks off in a packet. Blocks read ahead, but where the end of the source is not known only as far as the packets
/// for the elements wanted must reach.
template <unsigned Size>
void unpackBlocks(Progress& progress) {
  constexpr std::size_t packetAndMore = 1 + longestPacket * Size + 4 * PacketBlock<Size>::bytes;
  const std::size_t wantedAhead = PacketBlock<Size>::bytes * (progress.left == unlimitedSource ? longestPacket : 1);
  if (progress.wanted <= wantedAhead) return;
  // Elements of a byte or more that can be written fit the address space.
  const auto room = static_cast<std::size_t>(std::min<std::uint64_t>(progress.wanted, SIZE_MAX) - wantedAhead);
  Progress p = progress;
  std::size_t roomLeft = room;
  while (p.left >= packetAndMore && roomLeft > 0) {
    const auto header = static_cast<std::int8_t>(*p.source);
    const bool isRun = header < 0;
    const std::uint32_t count = 1 + static_cast<std::uint32_t>(isRun ? -header : header);
    if (count > longestPacket) {  // a filler
      ++p.source;
      --p.left;
      continue;
    }
    if (count > roomLeft) break;
    const std::size_t bytes = count * Size;
    putBlocks<Size>(p.target, p.source + 1, isRun, bytes);
    const std::size_t used = 1 + (isRun ? Size : bytes);
    p.target += bytes;
    roomLeft -= count;
    p.source += used;
    p.left -= used;
  }
  p.wanted -= room - roomLeft;
  progress = p;
}

Unpacked unpack(std::uint8_t* elements, std::uint64_t wanted, const std::uint8_t* packed, std::size_t available,
                std::uint32_t elementSize, bool cutLast) {
  Progress p{elements, wanted, packed, available};
  if (elementSize == 1) unpackBlocks<1>(p);
  if (elementSize == 2) unpackBlocks<2>(p);
  if (elementSize == 3) unpackBlocks<3>(p);

  std::uint64_t written = wanted - p.wanted;
  RunReader reader(p.source, p.left, elementSize);
  while (written < wanted && reader.next()) {
    const std::uint64_t count = cutLast ? std::min<std::uint64_t>(reader.count(), wanted - written) : reader.count();
    putPacket(p.target, reader.elements(), reader.isRun(), static_cast<std::size_t>(count), elementSize);
    p.target += count * elementSize;
    written += count;
  }
  return {available - p.left + reader.used(), written};
}

}  // namespace

Unpacked unpackPackets(std::uint8_t* elements, std::uint64_t wanted, const std::uint8_t* packed, std::size_t available,
                       std::uint32_t elementSize) {
  return unpack(elements, wanted, packed, available, elementSize, false);
}

Unpacked unpackElements(std::uint8_t* elements, std::uint64_t wanted, const std::uint8_t* packed, std::size_t available,
                        std::uint32_t elementSize) {
  return unpack(elements, wanted, packed, available, elementSize, true);
}

}  // namespace kx

extern "C" {

std::uint32_t KX_CALL RLE_compressWords(void* dst, const void* src, std::uint32_t count, std::uint32_t elementSize) {
  return static_cast<std::uint32_t>(
      kx::packElements(static_cast<std::uint8_t*>(dst), static_cast<const std::uint8_t*>(src), count, elementSize));
}

std::uint32_t KX_CALL RLE_decompressWords(void* dst, const void* src, std::int32_t srcLength, std::uint32_t elementSize,
                                          std::uint32_t maxElements, std::uint32_t* position) {
  const std::uint32_t start = position != nullptr ? *position : 0;
  const std::size_t available = srcLength < 0 ? kx::unlimitedSource : static_cast<std::size_t>(srcLength);
  const kx::Unpacked unpacked =
      kx::unpackPackets(static_cast<std::uint8_t*>(dst), maxElements, static_cast<const std::uint8_t*>(src) + start,
                        available, elementSize);
  if (position != nullptr) *position = start + static_cast<std::uint32_t>(unpacked.sourceBytes);
  return static_cast<std::uint32_t>(unpacked.elements * elementSize);
}

std::uint32_t KX_CALL RLE_compress(void* dst, const void* src, std::uint32_t count) {
  return RLE_compressWords(dst, src, count, 1);
}

std::uint32_t KX_CALL RLE_decompress(void* dst, const void* src, std::int32_t srcLength, std::uint32_t maxOut,
                                     std::uint32_t* position) {
  return RLE_decompressWords(dst, src, srcLength, 1, maxOut, position);
}
}
