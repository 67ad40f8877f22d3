// What kxinfo asks of the system.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kxinfo {

struct Module {
  std::string file;     ///< with its path; empty when the library is not loaded
  std::string version;  ///< as the file tells it; empty where it does not
};

/// "kxgraphic" or "mmgr".
Module findModule(const std::string& library);

/// Name and version of the operating system.
std::string systemName();

}  // namespace kxinfo
