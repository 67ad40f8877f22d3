// Any bytes through the coders: packed and unpacked again, and taken as streams, each beside the plain coder. Outputs
// are exactly as large as promised, between pages that stop the program. SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>

#include "codec/run_length.h"
#include "fuzz/target.h"
#include "kxgraphic/codec.h"
#include "support/guard_pages.h"
#include "support/plain_coders.h"

namespace {

using kxtest::Bytes;
using kxtest::GuardedBlock;

bool startsWith(const GuardedBlock& block, std::size_t length, const Bytes& expected) {
  return length == expected.size() && length <= block.size() &&
         std::equal(expected.begin(), expected.end(), block.begin());
}

GuardedBlock guarded(const Bytes& bytes) {
  GuardedBlock block(bytes.size());
  std::copy(bytes.begin(), bytes.end(), block.begin());
  return block;
}

std::uint32_t size32(const GuardedBlock& block) { return static_cast<std::uint32_t>(block.size()); }

void runLength(const Bytes& bytes, std::uint32_t elementSize, std::size_t wanted) {
  const std::size_t count = bytes.size() / elementSize;
  const Bytes elements(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count * elementSize));
  const GuardedBlock source = guarded(elements);
  const GuardedBlock packed(static_cast<std::size_t>(kx::packedBound(count, elementSize)));
  const std::uint32_t length =
      RLE_compressWords(packed.data(), source.data(), static_cast<std::uint32_t>(count), elementSize);
  require(startsWith(packed, length, kxtest::plainPack(elements, elementSize)));
  const GuardedBlock again((count + 127) * elementSize);
  const std::uint32_t unpacked =
      RLE_decompressWords(again.data(), packed.data(), -1, elementSize, static_cast<std::uint32_t>(count), nullptr);
  require(startsWith(again, unpacked, elements));

  // The same bytes as packets, up to any count of elements; the last one may be torn.
  const GuardedBlock stream = guarded(bytes);
  const GuardedBlock out((wanted + 127) * elementSize);
  std::uint32_t position = 0;
  std::size_t plainPosition = 0;
  const std::uint32_t decoded = RLE_decompressWords(out.data(), stream.data(), static_cast<std::int32_t>(bytes.size()),
                                                    elementSize, static_cast<std::uint32_t>(wanted), &position);
  require(startsWith(out, decoded, kxtest::plainUnpack(bytes, elementSize, wanted, plainPosition)));
  require(position == plainPosition);
}

void lzw(const Bytes& bytes, std::size_t room) {
  const GuardedBlock source = guarded(bytes);
  const GuardedBlock plain(room);
  const std::uint32_t decoded =
      LZ_decompress(plain.data(), source.data(), size32(source), static_cast<std::uint32_t>(room));
  const Bytes expected = kxtest::plainDecompress(bytes, room);
  require(decoded <= room && startsWith(plain, decoded, expected));

  if (bytes.empty()) return;
  const GuardedBlock packed((2 * bytes.size() + 3) / 4 * 4 + 4);
  const std::uint32_t length = LZ_compress(packed.data(), source.data(), size32(source));
  const Bytes expectedStream = kxtest::plainCompress(bytes);
  require(startsWith(packed, length, expectedStream));
  const GuardedBlock exact = guarded(expectedStream);
  const GuardedBlock again(bytes.size());
  require(startsWith(again, LZ_decompress(again.data(), exact.data(), length, size32(again)), bytes));
}

/// The checksum bit by bit.
std::uint32_t plainCrc(const Bytes& bytes) {
  std::uint32_t crc = ~0u;
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
  }
  return bytes.empty() ? 0 : ~crc;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t headBytes = 4;
  if (size < headBytes) return 0;
  constexpr std::uint32_t elementSizes[] = {1, 2, 3, 4, 7};
  const Bytes bytes(data + headBytes, data + size);
  // Room from nothing to somewhat more than all packets can give.
  const std::size_t room = std::size_t{data[1]} << (data[2] % 8);
  // A piece in the middle of the data: every alignment of the vector code's ends.
  const std::size_t skipped = data[3] % 64;
  switch (data[0] % 4) {
    case 0:
      lzw(bytes, room);
      break;
    case 1: {
      const GuardedBlock block = guarded(bytes);
      if (skipped > bytes.size()) break;
      const Bytes rest(bytes.begin() + static_cast<std::ptrdiff_t>(skipped), bytes.end());
      require(KX_calculateCRC(block.data() + skipped, static_cast<std::int32_t>(rest.size())) == plainCrc(rest));
      break;
    }
    default:
      runLength(bytes, elementSizes[data[0] / 4 % std::size(elementSizes)], room);
      break;
  }
  return 0;
}
