// LZW with codes of 9 to 16 bits, packed low bit first. Code 256 clears the dictionary; entry k has code 257 + k.
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

#include "frame/heap.h"
#include "kxgraphic/codec.h"

namespace kx {

namespace {

constexpr std::uint32_t clearCode = 256;
constexpr std::uint32_t firstEntry = 257;
constexpr std::uint32_t codeLimit = 0x10000;
constexpr std::uint32_t entryLimit = codeLimit - firstEntry;
constexpr unsigned narrowest = 9;
constexpr unsigned widest = 16;

constexpr unsigned widthOf(std::uint32_t code) { return static_cast<unsigned>(std::bit_width(code)); }

/// Packs codes into 32-bit words, low byte first.
class CodeWriter {
public:
  explicit CodeWriter(std::uint8_t* dst) : start_(dst), at_(dst) {}

  void put(std::uint32_t code, unsigned width) {
    pending_ |= std::uint64_t{code} << bits_;
    bits_ += width;
    if (bits_ < 32) return;
    putWord();
    pending_ >>= 32;
    bits_ -= 32;
  }

  /// Writes the bits that are left as one more word; returns the bytes written since the start.
  std::uint32_t finish() {
    if (bits_ > 0) putWord();
    return static_cast<std::uint32_t>(at_ - start_);
  }

private:
  void putWord() {
    const auto word = static_cast<std::uint32_t>(pending_);
    std::memcpy(at_, &word, sizeof word);
    at_ += sizeof word;
  }

  std::uint8_t* start_;
  std::uint8_t* at_;
  std::uint64_t pending_ = 0;
  unsigned bits_ = 0;
};

/// Where the strings that end in each byte lie in the encoder's hash table: fixed, far apart and without pattern.
constexpr std::array<std::uint32_t, 256> makeSpread() {
  std::array<std::uint32_t, 256> spread{};
  std::uint32_t state = 0x9E3779B9;
  for (std::uint32_t& value : spread) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    value = state;
  }
  return spread;
}

constexpr std::array<std::uint32_t, 256> spread = makeSpread();

/// The encoder's dictionary: from a prefix code and a byte to the code of that string.
///
/// Each code knows the youngest string that goes on from it, which is one read; that is all it takes in repetitive
/// data. Older ones are in a hash table. So no input is slower than with chains per prefix, youngest first, and inputs
/// with long chains are many times faster. Slots are small, as the time goes into cache misses.
class StringTable {
public:
  /// For an input of `count` bytes, which can make no more strings than that.
  explicit StringTable(std::uint32_t count)
      : size_(std::bit_ceil(std::max<std::size_t>(2 * std::size_t{std::min(count, entryLimit)}, 16))),
        youngest_(makeHeapArray<std::uint32_t>(codeLimit)),
        older_(makeHeapArray<std::uint32_t>(size_)),
        bytes_(makeHeapArray<std::uint8_t>(codeLimit)) {
    if (made()) clear();
  }

  [[nodiscard]] bool made() const { return youngest_ != nullptr && older_ != nullptr && bytes_ != nullptr; }

  void clear() {
    std::fill_n(youngest_.get(), firstEntry, noString);
    std::fill_n(older_.get(), size_, 0);
  }

  /// The code of a string, or 0.
  [[nodiscard]] std::uint32_t find(std::uint32_t prefix, std::uint8_t byte) const {
    const std::uint32_t youngest = youngest_[prefix];
    if (((youngest & ~hasOlder) >> 16) == byte) return youngest & 0xFFFF;
    if ((youngest & hasOlder) == 0) return 0;
    for (Probe probe(*this, prefix, byte);; probe.next()) {
      const std::uint32_t content = older_[probe.slot];
      if (content == 0) return 0;
      const std::uint32_t code = content & 0xFFFF;
      if (content >> 16 == prefix && bytes_[code] == byte) return code;
    }
  }

  /// Adds a string that is not there.
  void insert(std::uint32_t prefix, std::uint8_t byte, std::uint32_t code) {
    std::uint32_t& youngest = youngest_[prefix];
    const bool grows = youngest != noString;
    if (grows) {
      const std::uint32_t oldCode = youngest & 0xFFFF;
      Probe probe(*this, prefix, bytes_[oldCode]);
      while (older_[probe.slot] != 0) probe.next();
      older_[probe.slot] = prefix << 16 | oldCode;
    }
    youngest = (grows ? hasOlder : 0) | std::uint32_t{byte} << 16 | code;
    youngest_[code] = noString;
    bytes_[code] = byte;
  }

private:
  static constexpr std::uint32_t hasOlder = 0x80000000;
  static constexpr std::uint32_t noString = 0x7FFF0000;

  /// The places in the hash table where a string may be, nearest first.
  struct Probe {
    Probe(const StringTable& table, std::uint32_t prefix, std::uint8_t byte)
        : mask(table.size_ - 1), slot((2 * prefix + spread[byte]) & mask) {}
    void next() { slot = (slot + ++step) & mask; }

    std::size_t mask, slot, step = 0;
  };

  std::size_t size_;                   ///< of the hash table: a power of two, at least twice the strings held
  HeapArray<std::uint32_t> youngest_;  ///< by prefix: hasOlder, byte << 16, code; or noString
  HeapArray<std::uint32_t> older_;     ///< hash table: prefix << 16, code; or 0
  HeapArray<std::uint8_t> bytes_;      ///< the last byte of each code's string
};

std::uint32_t compress(std::uint8_t* dst, const std::uint8_t* src, std::uint32_t count) {
  CodeWriter writer(dst);
  if (count == 0) {
    // Nothing to say still takes one code; this one decodes to nothing.
    writer.put(clearCode, narrowest);
    return writer.finish();
  }
  StringTable strings(count);
  if (!strings.made()) return 0;

  std::uint32_t nextCode = firstEntry;
  unsigned width = narrowest;
  std::uint32_t code = src[0];
  for (std::uint32_t i = 1; i < count; ++i) {
    const std::uint8_t byte = src[i];
    if (const std::uint32_t longer = strings.find(code, byte); longer != 0) {
      code = longer;
      continue;
    }
    writer.put(code, width);
    if (nextCode < codeLimit) {
      strings.insert(code, byte, nextCode);
      width = widthOf(nextCode);
      ++nextCode;
    } else {
      writer.put(clearCode, widest);
      strings.clear();
      nextCode = firstEntry;
      width = narrowest;
    }
    code = byte;
  }
  writer.put(code, width);
  return writer.finish();
}

/// The decoder. Every code read makes an entry: its string and the byte that follows. Both stand in the output already,
/// so an entry is nothing but the offset at which the string of its code starts; the next entry's offset ends it.
class Decoder {
public:
  Decoder(std::uint8_t* dst, std::uint32_t maxOut, const std::uint8_t* src, std::uint32_t srcLength)
      : dst_(dst), maxOut_(maxOut), word_(src), left_(srcLength & ~3u) {}

  std::uint32_t run() {
    starts_ = makeHeapArray<std::uint32_t>(entryLimit + 1);
    if (starts_ == nullptr) return 0;
    starts_[0] = 0;
    return decodeInBlocks() && decodeExactly() ? out_ : 0;
  }

private:
  /// Copies may write this many bytes ahead while decoding in blocks.
  static constexpr std::uint32_t block = 16;
  /// Source left over by then. A stream of the encoder makes more than a block of output from it, so that whatever was
  /// written ahead is written again, and nothing after the last byte of the output changes.
  static constexpr std::size_t blockMargin = 64;
  static constexpr unsigned wordBytes = 4;
  static constexpr unsigned wordBits = 8 * wordBytes;

  void makeEntry() {
    if (count_ == entryLimit) return;
    width_ = widthOf(firstEntry + count_);
    starts_[++count_] = out_;
  }

  void clear() {
    count_ = 0;
    width_ = narrowest;
    starts_[0] = out_;
  }

  /// Reads no word before a code needs it, so that any length too great does as long as `maxOut` is right.
  std::uint32_t takeCode() {
    const bool needsTwo = bit_ + width_ > wordBits;
    const unsigned skipped = needsTwo ? bit_ >> 3 : 0;  // bytes; the load then ends inside the second word
    std::uint32_t bits;
    std::memcpy(&bits, word_ + skipped, sizeof bits);
    const std::uint32_t code = (bits >> (bit_ - 8 * skipped)) & ((1u << width_) - 1);
    bit_ += width_;
    const std::size_t finished = bit_ / wordBits * wordBytes;
    word_ += finished;
    left_ -= finished;
    bit_ %= wordBits;
    return code;
  }

  /// The blocks may overlap beyond the bytes that count.
  static void copyBlock(std::uint8_t* target, const std::uint8_t* source) {
    std::uint8_t held[block];
    std::memcpy(held, source, block);
    std::memcpy(target, held, block);
  }

  /// The string of an entry: `length` bytes of the output from `from` on, and then `last`.
  struct String {
    std::uint32_t from, length;
    std::uint8_t last;
  };

  /// The youngest entry still has the byte it was made with, the first one of its string.
  [[nodiscard]] String stringOf(std::uint32_t entry) const {
    const std::uint32_t from = starts_[entry];
    const std::uint32_t end = starts_[entry + 1];
    return {from, end - from, entry + 1 == count_ ? dst_[from] : dst_[end]};
  }

  /// Far from both ends. False for a corrupt stream.
  bool decodeInBlocks() {
    while (left_ >= blockMargin && maxOut_ - out_ > 2 * block) {
      const std::uint32_t code = takeCode();
      if (code < clearCode) {
        dst_[out_++] = static_cast<std::uint8_t>(code);
        makeEntry();
      } else if (code == clearCode) {
        clear();
      } else if (code - firstEntry + 1 < count_) {
        const std::uint32_t from = starts_[code - firstEntry];
        const std::uint32_t length = starts_[code - firstEntry + 1] - from + 1;
        if (length > maxOut_ - out_ - block) return putString(code);
        copyBlock(dst_ + out_, dst_ + from);
        for (std::uint32_t done = block; done < length; done += block)
          copyBlock(dst_ + out_ + done, dst_ + from + done);
        out_ += length;
        makeEntry();
      } else if (!putString(code)) {
        return false;
      }
    }
    return true;
  }

  /// To the end of the source or of the room. False for a corrupt stream.
  bool decodeExactly() {
    while (out_ < maxOut_ && std::uint64_t{left_} * 8 >= bit_ + width_) {
      const std::uint32_t code = takeCode();
      if (code < clearCode) {
        dst_[out_++] = static_cast<std::uint8_t>(code);
        makeEntry();
      } else if (code == clearCode) {
        clear();
      } else if (!putString(code)) {
        return false;
      }
    }
    return true;
  }

  /// Writes the string of an entry, as far as there is room, and makes the next entry.
  bool putString(std::uint32_t code) {
    const std::uint32_t entry = code - firstEntry;
    if (entry >= count_) return false;
    const String string = stringOf(entry);
    const std::uint32_t room = maxOut_ - out_;
    std::memcpy(dst_ + out_, dst_ + string.from, std::min(string.length, room));
    if (string.length < room) dst_[out_ + string.length] = string.last;
    out_ += std::min(string.length + 1, room);
    makeEntry();
    return true;
  }

  std::uint8_t* dst_;
  std::uint32_t maxOut_;
  std::uint32_t out_ = 0;     ///< bytes written
  const std::uint8_t* word_;  ///< the word that the next code starts in
  std::size_t left_;          ///< bytes of the source's whole words from there on
  unsigned bit_ = 0;          ///< of that word, 0 to 31
  unsigned width_ = narrowest;
  std::uint32_t count_ = 0;          ///< entries made
  HeapArray<std::uint32_t> starts_;  ///< starts_[k], starts_[k + 1]: the ends of the string of entry k's code
};

}  // namespace

}  // namespace kx

extern "C" {

std::uint32_t KX_CALL LZ_compress(void* dst, const void* src, std::uint32_t count) {
  return kx::compress(static_cast<std::uint8_t*>(dst), static_cast<const std::uint8_t*>(src), count);
}

std::uint32_t KX_CALL LZ_decompress(void* dst, const void* src, std::uint32_t srcLength, std::uint32_t maxOut) {
  return kx::Decoder(static_cast<std::uint8_t*>(dst), maxOut, static_cast<const std::uint8_t*>(src), srcLength).run();
}
}
