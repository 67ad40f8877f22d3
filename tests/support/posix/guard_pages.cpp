// Guard pages by mmap.
// SPDX-License-Identifier: MIT
#include <sys/mman.h>

#include "support/guard_pages.h"

namespace kxtest {

std::uint8_t* reserveAddresses(std::size_t bytes) {
  void* start = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return start == MAP_FAILED ? nullptr : static_cast<std::uint8_t*>(start);
}

bool openPages(std::uint8_t* start, std::size_t bytes) {
  return bytes == 0 || mprotect(start, bytes, PROT_READ | PROT_WRITE) == 0;
}

}  // namespace kxtest
