// SPDX-License-Identifier: MIT
#include "support/guard_pages.h"

#include <cstdlib>
#include <unordered_map>
#include <vector>

namespace kxtest {

namespace {

/// Regions that nobody uses any more, by their number of usable pages: system calls are dear where blocks come and go.
/// Never destroyed, as blocks may outlive it.
auto& unusedRegions() {
  static auto& regions = *new std::unordered_map<std::size_t, std::vector<std::uint8_t*>>;
  return regions;
}

std::uint8_t* takeRegion(std::size_t pages) {
  std::vector<std::uint8_t*>& unused = unusedRegions()[pages];
  if (!unused.empty()) {
    std::uint8_t* const region = unused.back();
    unused.pop_back();
    return region;
  }
  std::uint8_t* const region = reserveAddresses((pages + 2) * pageSize);
  if (region == nullptr || !openPages(region + pageSize, pages * pageSize)) std::abort();
  return region;
}

}  // namespace

GuardedBlock::GuardedBlock(std::size_t bytes, Flush flush) : pages_((bytes + pageSize - 1) / pageSize), size_(bytes) {
  region_ = takeRegion(pages_);
  data_ = region_ + pageSize;
  if (flush == Flush::Back) data_ += pages_ * pageSize - bytes;
}

GuardedBlock::~GuardedBlock() {
  if (region_ != nullptr) unusedRegions()[pages_].push_back(region_);
}

}  // namespace kxtest
