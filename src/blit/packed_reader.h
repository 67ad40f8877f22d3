// Reads a packed row from left to right.
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pixel/blend_rules.h"

namespace kx {

/// A position in a packed row. The packets are trusted to go on as far as they are read.
class PackedReader {
public:
  PackedReader() = default;
  PackedReader(const std::uint8_t* row, std::uint32_t pixelBytes) : next_(row), pixelBytes_(pixelBytes) {}

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
      const std::size_t part = enter(count);
      if (isRun_)
        repeat(dst, part);
      else
        std::memcpy(dst, next_, part * pixelBytes_);
      advance(part);
      dst += part * pixelBytes_;
      count -= part;
    }
  }

private:
  /// Makes sure to be inside a packet and limits `count` to what is left of it.
  std::size_t enter(std::size_t count) {
    constexpr int filler = -128;
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

  const std::uint8_t* next_ = nullptr;
  std::size_t left_ = 0;
  std::uint32_t pixelBytes_ = 1;
  bool isRun_ = false;
};

}  // namespace kx
