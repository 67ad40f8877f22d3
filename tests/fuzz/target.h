// What every fuzz target defines. The same file is a libFuzzer program (KX_FUZZ) or replays its corpus as a test.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
