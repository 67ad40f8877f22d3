// SPDX-License-Identifier: MIT
#include "support/plain_coders.h"

#include <algorithm>
#include <map>

namespace kxtest {

namespace {

bool same(const Bytes& data, std::size_t size, std::size_t a, std::size_t b) {
  return std::equal(data.begin() + static_cast<std::ptrdiff_t>(a * size),
                    data.begin() + static_cast<std::ptrdiff_t>((a + 1) * size),
                    data.begin() + static_cast<std::ptrdiff_t>(b * size));
}

}  // namespace

Bytes plainCompress(const Bytes& data) {
  std::map<std::pair<std::uint32_t, std::uint8_t>, std::uint32_t> codes;
  CodeStream stream;
  std::uint32_t code = data[0];
  int width = 9;
  for (std::size_t i = 1; i < data.size(); ++i) {
    if (const auto found = codes.find({code, data[i]}); found != codes.end()) {
      code = found->second;
      continue;
    }
    stream.put(code, width);
    if (const auto next = static_cast<std::uint32_t>(257 + codes.size()); next < 65536) {
      codes[{code, data[i]}] = next;
      width = codeWidth(next);
    } else {
      stream.put(256, 16);
      codes.clear();
      width = 9;
    }
    code = data[i];
  }
  stream.put(code, width);
  return stream.bytes();
}

/// The decoder as chains of (prefix, byte), each walked back to its first byte.
Bytes plainDecompress(const Bytes& packed, std::size_t maxOut) {
  struct Entry {
    std::uint32_t prefix;
    std::uint8_t byte;
  };
  std::vector<Entry> entries;
  Bytes out;
  std::size_t at = 0;
  for (int width = 9; out.size() < maxOut && at + static_cast<std::size_t>(width) <= packed.size() / 4 * 32;) {
    std::uint32_t code = 0;
    for (int bit = 0; bit < width; ++bit, ++at) code |= ((std::uint32_t{packed[at / 8]} >> (at % 8)) & 1) << bit;
    if (code == 256) {
      entries.clear();
      width = 9;
      continue;
    }
    Bytes string;
    std::uint32_t link = code;
    while (link > 256) {
      if (link - 257 >= entries.size()) return {};
      string.push_back(entries[link - 257].byte);
      link = entries[link - 257].prefix;
    }
    const auto first = static_cast<std::uint8_t>(link);
    out.push_back(first);
    if (257 + entries.size() < 65536) {
      if (!entries.empty()) entries.back().byte = first;
      entries.push_back({code, first});
      width = codeWidth(256 + entries.size());
    }
    // A code of the entry just completed was read with its byte as it stood, which is the same.
    out.insert(out.end(), string.rbegin(), string.rend());
  }
  out.resize(std::min(out.size(), maxOut));
  return out;
}

Bytes plainPack(const Bytes& data, std::size_t size) {
  const std::size_t count = data.size() / size;
  Bytes packed;
  const auto put = [&](std::size_t header, std::size_t from, std::size_t elements) {
    packed.push_back(static_cast<std::uint8_t>(header));
    packed.insert(packed.end(), data.begin() + static_cast<std::ptrdiff_t>(from * size),
                  data.begin() + static_cast<std::ptrdiff_t>((from + elements) * size));
  };
  for (std::size_t at = 0; at < count;) {
    std::size_t run = 1;
    while (at + run < count && same(data, size, at, at + run)) ++run;
    if (run > 1) {
      const std::size_t taken = run == 128 && at + run < count ? 127 : std::min<std::size_t>(run, 128);
      put(1 - taken, at, 1);
      at += taken;
      continue;
    }
    std::size_t end = at + 1;
    while (end < count && end - at < 128 && !(end + 1 < count && same(data, size, end, end + 1))) ++end;
    put(end - at - 1, at, end - at);
    at = end;
  }
  return packed;
}

Bytes plainUnpack(const Bytes& packed, std::size_t size, std::size_t wanted, std::size_t& at) {
  Bytes data;
  std::size_t written = 0;
  while (written < wanted && at < packed.size()) {
    const int header = static_cast<std::int8_t>(packed[at]);
    if (header == -128) {
      ++at;
      continue;
    }
    const std::size_t stored = header < 0 ? 1 : static_cast<std::size_t>(header) + 1;
    const std::size_t times = header < 0 ? static_cast<std::size_t>(1 - header) : 1;
    if (packed.size() - at - 1 < stored * size) break;
    for (std::size_t i = 0; i < times; ++i)
      data.insert(data.end(), packed.begin() + static_cast<std::ptrdiff_t>(at + 1),
                  packed.begin() + static_cast<std::ptrdiff_t>(at + 1 + stored * size));
    written += stored * times;
    at += 1 + stored * size;
  }
  return data;
}

}  // namespace kxtest
