// The coders once more, plainly: LZW over dictionaries of strings, run lengths packet by packet. For comparison.
// SPDX-License-Identifier: MIT
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace kxtest {

using Bytes = std::vector<std::uint8_t>;

/// Bits of the codes once the dictionary has an entry of this code.
inline int codeWidth(std::size_t code) { return static_cast<int>(std::bit_width(code)); }

/// LZW codes as a stream: low bit first, whole words.
class CodeStream {
public:
  void put(std::uint32_t code, int width) {
    for (int bit = 0; bit < width; ++bit, ++used_) {
      if (used_ % 32 == 0) bytes_.resize(bytes_.size() + 4);
      bytes_[used_ / 8] = static_cast<std::uint8_t>(bytes_[used_ / 8] | ((code >> bit) & 1) << (used_ % 8));
    }
  }
  const Bytes& bytes() const { return bytes_; }

private:
  Bytes bytes_;
  std::size_t used_ = 0;
};

/// The LZW stream of one byte or more.
Bytes plainCompress(const Bytes& data);
Bytes plainDecompress(const Bytes& packed, std::size_t maxOut);

/// The packets of elements of `size` bytes.
Bytes plainPack(const Bytes& data, std::size_t size);

/// Decodes whole packets that lie within the data, until `wanted` elements are there.
Bytes plainUnpack(const Bytes& packed, std::size_t size, std::size_t wanted, std::size_t& at);

}  // namespace kxtest
