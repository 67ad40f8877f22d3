// The workloads of the coders, for the library and the peers: one call of a coder in memory each.
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "rows.h"
#include "streams.h"

namespace kxbench {

using Checksum = std::uint32_t (*)(const std::uint8_t* data, std::size_t length);

/// Rows m.crc and m.crc4k.
void addChecksum(std::vector<Row>& rows, const char* contender, Checksum checksum);

/// Compresses one of the streams or decompresses what it made of it.
struct Coder {
  const char* contender;
  std::size_t (*encode)(const Bytes& plain, Bytes& packed);  ///< returns the length; the buffer is used again
  void (*decode)(const Bytes& packed, Bytes& plain);         ///< into a buffer with room for the last packet
};

/// Rows m.KIND_enc_text, m.KIND_enc_image, m.KIND_dec_text, m.KIND_dec_image.
void addCoder(std::vector<Row>& rows, const std::string& kind, const Coder& coder);

}  // namespace kxbench
