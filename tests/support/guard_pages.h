// A block of memory between two pages that nobody may touch, so that the first byte too far stops the program.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace kxtest {

class GuardedBlock {
public:
  enum class Flush { Front, Back };  ///< which guard page the block touches

  GuardedBlock() = default;

  /// `bytes` bytes, not initialised. The other end is less than a page away from its guard.
  explicit GuardedBlock(std::size_t bytes, Flush flush = Flush::Back);
  ~GuardedBlock();
  GuardedBlock(GuardedBlock&& other) noexcept { *this = std::move(other); }
  GuardedBlock& operator=(GuardedBlock&& other) noexcept {
    std::swap(region_, other.region_);
    std::swap(pages_, other.pages_);
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    return *this;
  }

  [[nodiscard]] std::uint8_t* data() const { return data_; }
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] std::uint8_t* begin() const { return data_; }
  [[nodiscard]] std::uint8_t* end() const { return data_ + size_; }

private:
  std::uint8_t* region_ = nullptr;
  std::size_t pages_ = 0;  ///< usable pages; two more are guards
  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
};

/// The system's part: `bytes` of address space without access, and access to a part of it. Null or false on failure.
constexpr std::size_t pageSize = 4096;
std::uint8_t* reserveAddresses(std::size_t bytes);
bool openPages(std::uint8_t* start, std::size_t bytes);

}  // namespace kxtest
