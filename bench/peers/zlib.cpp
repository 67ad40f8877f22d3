// SPDX-License-Identifier: MIT
#include <zlib.h>

#include "../codec.h"

namespace {

const kxbench::Group peer([](std::vector<kxbench::Row>& rows) {
  kxbench::addChecksum(rows, "zlib", [](const std::uint8_t* data, std::size_t length) {
    return static_cast<std::uint32_t>(crc32_z(0, data, length));
  });
});

}  // namespace
