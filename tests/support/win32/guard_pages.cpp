// Guard pages by VirtualAlloc.
// SPDX-License-Identifier: MIT
#include <windows.h>

#include "support/guard_pages.h"

namespace kxtest {

std::uint8_t* reserveAddresses(std::size_t bytes) {
  return static_cast<std::uint8_t*>(VirtualAlloc(nullptr, bytes, MEM_RESERVE, PAGE_NOACCESS));
}

bool openPages(std::uint8_t* start, std::size_t bytes) {
  return bytes == 0 || VirtualAlloc(start, bytes, MEM_COMMIT, PAGE_READWRITE) != nullptr;
}

}  // namespace kxtest
