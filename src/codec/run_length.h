// The run-length code of packed rows: packets of a signed header byte h and elements of a fixed size.
// h >= 0: h + 1 elements follow as they are. h = -1 to -127: one element follows, to be repeated 1 - h times.
// h = -128: a filler without data.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

namespace kx {

/// Most elements that one packet stands for.
constexpr std::uint32_t longestPacket = 128;

/// For sources whose end is not known.
constexpr std::size_t unlimitedSource = SIZE_MAX;

/// Bytes that `count` elements can need when packed. Bytes grow most as one alone and two alike by turns: four bytes
/// for three. Larger elements never lose by a run, so only the headers of endless literals count.
constexpr std::uint64_t packedBound(std::uint64_t count, std::uint64_t elementSize) {
  return count * elementSize + (elementSize == 1 ? (count + 2) / 3 : (count + longestPacket - 1) / longestPacket);
}

/// Packs `count` elements; `packed` needs packedBound() bytes. Returns the bytes written.
std::size_t packElements(std::uint8_t* packed, const std::uint8_t* elements, std::uint32_t count,
                         std::uint32_t elementSize);

struct Unpacked {
  std::size_t sourceBytes;  ///< packed bytes used, whole packets and the fillers that had to be skipped
  std::uint64_t elements;   ///< elements written
};

/// Unpacks whole packets until `wanted` elements are written or the source has no whole packet left; so up to 127
/// elements more than wanted may be written.
Unpacked unpackPackets(std::uint8_t* elements, std::uint64_t wanted, const std::uint8_t* packed, std::size_t available,
                       std::uint32_t elementSize);

/// Unpacks like unpackPackets, but cuts the last packet, so that never more than `wanted` elements are written.
Unpacked unpackElements(std::uint8_t* elements, std::uint64_t wanted, const std::uint8_t* packed, std::size_t available,
                        std::uint32_t elementSize);

/// Walks the packets of a row without unpacking them:
///   RunReader reader(row, available, size);
///   while (reader.next()) use(reader.isRun(), reader.count(), reader.elements());
class RunReader {
public:
  /// At most `available` bytes are read.
  RunReader(const std::uint8_t* packed, std::size_t available, std::uint32_t elementSize)
      : at_(packed), available_(available), left_(available), elementSize_(elementSize) {}

  /// Moves to the next packet. False when the source does not hold a whole one any more.
  bool next() {
    while (left_ > 0 && *at_ == 0x80) {
      ++at_;
      --left_;
    }
    if (left_ == 0) return false;
    const auto header = static_cast<std::int8_t>(*at_);
    isRun_ = header < 0;
    count_ = 1 + static_cast<std::uint32_t>(isRun_ ? -header : header);
    const std::uint64_t bytes = std::uint64_t{isRun_ ? 1 : count_} * elementSize_;
    if (bytes > left_ - 1) return false;
    elements_ = at_ + 1;
    at_ = elements_ + bytes;
    left_ -= 1 + static_cast<std::size_t>(bytes);
    return true;
  }

  /// The packet moved to: `count()` elements, at elements() one after another or, in a run, all equal to the one there.
  [[nodiscard]] bool isRun() const { return isRun_; }
  [[nodiscard]] std::uint32_t count() const { return count_; }
  [[nodiscard]] const std::uint8_t* elements() const { return elements_; }

  /// Packed bytes up to the end of the packet moved to, or with the fillers after it when there is no next one.
  [[nodiscard]] std::size_t used() const { return available_ - left_; }

private:
  const std::uint8_t* at_;
  std::size_t available_;
  std::size_t left_;
  std::uint32_t elementSize_;
  const std::uint8_t* elements_ = nullptr;
  std::uint32_t count_ = 0;
  bool isRun_ = false;
};

}  // namespace kx
