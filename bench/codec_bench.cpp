// The library's coders, and what the rows of all coders have in common.
// SPDX-License-Identifier: MIT
#include <cstdio>
#include <cstdlib>

#include "codec.h"
#include "kxgraphic/codec.h"

namespace kxbench {

namespace {

constexpr std::size_t overrun = 128;

std::size_t packLzw(const Bytes& plain, Bytes& packed) {
  packed.resize(2 * plain.size() + 8);
  return LZ_compress(packed.data(), plain.data(), static_cast<std::uint32_t>(plain.size()));
}

void unpackLzw(const Bytes& packed, Bytes& plain) {
  LZ_decompress(plain.data(), packed.data(), static_cast<std::uint32_t>(packed.size()), streamBytes);
}

std::size_t packRuns(const Bytes& plain, Bytes& packed) {
  packed.resize(plain.size() + plain.size() / 3 + 1);
  return RLE_compress(packed.data(), plain.data(), static_cast<std::uint32_t>(plain.size()));
}

void unpackRuns(const Bytes& packed, Bytes& plain) {
  RLE_decompress(plain.data(), packed.data(), static_cast<std::int32_t>(packed.size()), streamBytes, nullptr);
}

const Group own([](std::vector<Row>& rows) {
  addChecksum(rows, "kx", [](const std::uint8_t* data, std::size_t length) {
    return KX_calculateCRC(data, static_cast<std::int32_t>(length));
  });
  addCoder(rows, "lzw", {"kx", packLzw, unpackLzw});
  addCoder(rows, "rle", {"kx", packRuns, unpackRuns});
});

}  // namespace

void addChecksum(std::vector<Row>& rows, const char* contender, Checksum checksum) {
  const auto add = [&](const char* workload, std::size_t length) {
    const auto items = static_cast<std::int64_t>(length);
    rows.push_back({workload, contender, items, items, [=] { keep(checksum(textStream().data(), length)); }});
  };
  add("m.crc", streamBytes);
  add("m.crc4k", 4096);
}

void addCoder(std::vector<Row>& rows, const std::string& kind, const Coder& coder) {
  using Stream = const Bytes& (*)();
  const auto add = [&](Stream stream, const char* name) {
    constexpr auto items = static_cast<std::int64_t>(streamBytes);
    rows.push_back({"m." + kind + "_enc_" + name, coder.contender, items, items,
                    [stream, coder, packed = std::make_shared<Bytes>()] { coder.encode(stream(), *packed); }});
    struct Decoding {
      Bytes packed;
      Bytes plain = Bytes(streamBytes + overrun);
    };
    rows.push_back({"m." + kind + "_dec_" + name, coder.contender, items, items,
                    [stream, coder, state = std::make_shared<Decoding>()] {
                      if (state->packed.empty()) {
                        state->packed.resize(coder.encode(stream(), state->packed));
                        coder.decode(state->packed, state->plain);
                        if (!std::equal(stream().begin(), stream().end(), state->plain.begin())) {
                          std::fprintf(stderr, "%s decodes something else\n", coder.contender);
                          std::abort();
                        }
                      }
                      coder.decode(state->packed, state->plain);
                    }});
  };
  add(&textStream, "text");
  add(&imageStream, "image");
}

}  // namespace kxbench
