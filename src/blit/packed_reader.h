// Reads a packed row from left to right.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "codec/packet_block.h"
#include "codec/short_copy.h"
#include "pixel/memory.h"

namespace kx {

/// A position in a packed row. The packets are trusted to go on as far as they are read.
class PackedReader {
public:
  PackedReader() = default;
  /// Up to `end` memory can be read, whether it belongs to the row or not.
  PackedReader(const std::uint8_t* row, std::uint32_t pixelBytes, const std::uint8_t* end)
      : next_(row), end_(end), pixelBytes_(pixelBytes) {}

  /// Bytes behind the pixels read that read() may write as well.
  static constexpr std::size_t slack = 32;

  /// Goes `count` pixels on.
  void skip(std::size_t count) {
    while (count > 0) {
      const std::size_t part = enter(count);
      advance(part);
      count -= part;
    }
  }

  /// Pixels left of the packet in which the position lies; 0 between packets.
  [[nodiscard]] std::size_t leftInPacket() const { return left_; }

  /// The pixel at the position.
  const std::uint8_t* peek() {
    enter(1);
    return next_;
  }

  void read(std::uint8_t* dst, std::size_t count) {
    while (count > 0) {
      if (left_ == 0) {
        const std::size_t given = readPackets(dst, count);
        dst += given * pixelBytes_;
        count -= given;
        if (count == 0) break;
      }
      const std::size_t part = enter(count);
      if (isRun_)
        repeat(dst, part);
      else
        copyShort(dst, next_, part * pixelBytes_);
      advance(part);
      dst += part * pixelBytes_;
      count -= part;
    }
  }

private:
  std::size_t readPackets(std::uint8_t* dst, std::size_t count) {
    if (pixelBytes_ == 1) return readPackets<1>(dst, count);
    return pixelBytes_ == 2 ? readPackets<2>(dst, count) : readPackets<3>(dst, count);
  }

  /// Whole packets in blocks, as long as the memory ahead can be read. Returns the pixels given.
  template <unsigned Size>
  std::size_t readPackets(std::uint8_t* dst, std::size_t count) {
    constexpr std::ptrdiff_t headerAndBlock = 1 + PacketBlock<Size>::bytes;
    static_assert(PacketBlock<Size>::bytes <= slack);
    const std::uint8_t* at = next_;
    std::size_t left = count;
    while (left > 0 && end_ - at > headerAndBlock) {
      const int header = static_cast<std::int8_t>(*at);
      if (header == filler) {
        ++at;
        continue;
      }
      const bool isRun = header < 0;
      const auto length = static_cast<std::size_t>(isRun ? 1 - header : 1 + header);
      const std::size_t bytes = length * Size, stored = isRun ? Size : bytes;
      if (length > left || static_cast<std::ptrdiff_t>(stored) > end_ - at - headerAndBlock) break;
      putBlocks<Size>(dst, at + 1, isRun, bytes);
      dst += bytes;
      left -= length;
      at += 1 + stored;
    }
    next_ = at;
    return count - left;
  }

  /// Makes sure to be inside a packet and limits `count` to what is left of it.
  std::size_t enter(std::size_t count) {
    while (left_ == 0) {
      const int header = static_cast<std::int8_t>(*next_++);
      if (header == filler) continue;
      isRun_ = header < 0;
      left_ = static_cast<std::size_t>(isRun_ ? 1 - header : 1 + header);
    }
    return std::min(count, left_);
  }

  void advance(std::size_t count) {
    left_ -= count;
    if (!isRun_)
      next_ += count * pixelBytes_;
    else if (left_ == 0)
      next_ += pixelBytes_;
  }

  void repeat(std::uint8_t* dst, std::size_t count) const {
    if (pixelBytes_ == 1) {
      std::memset(dst, *next_, count);
    } else if (pixelBytes_ == 2) {
      const std::uint32_t pixel = load16(next_);
      for (std::size_t i = 0; i < count; ++i) store16(dst + 2 * i, pixel);
    } else {
      const std::uint32_t pixel = load24(next_);
      for (std::size_t i = 0; i < count; ++i) store24(dst + 3 * i, pixel);
    }
  }

  static constexpr int filler = -128;

  const std::uint8_t* next_ = nullptr;
  const std::uint8_t* end_ = nullptr;
  std::size_t left_ = 0;
  std::uint32_t pixelBytes_ = 1;
  bool isRun_ = false;
};

}  // namespace kx
