// SPDX-License-Identifier: MIT
#include <libdeflate.h>

#include "../codec.h"

namespace {

const kxbench::Group peer([](std::vector<kxbench::Row>& rows) {
  kxbench::addChecksum(rows, "libdeflate",
                       [](const std::uint8_t* data, std::size_t length) { return libdeflate_crc32(0, data, length); });
});

}  // namespace
