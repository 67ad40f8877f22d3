// A fresh folder that is the current one while the object lives, for code that writes to the current folder.
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace kxtest {

class ScratchFolder {
public:
  ScratchFolder() : old_(std::filesystem::current_path()) {
    const std::string name = "kx_scratch_" + std::to_string(std::random_device{}());
    folder_ = std::filesystem::temp_directory_path() / name;
    std::filesystem::create_directory(folder_);
    std::filesystem::current_path(folder_);
  }

  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::current_path(old_, ignored);
    std::filesystem::remove_all(folder_, ignored);
  }

  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

private:
  std::filesystem::path old_;
  std::filesystem::path folder_;
};

/// The bytes of a file; empty when there is none.
inline std::string readFile(const char* name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace kxtest
