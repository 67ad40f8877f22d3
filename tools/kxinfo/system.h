// What kxinfo asks of the system.
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace kxinfo {

struct Module {
  std::string file;     ///< with its path; empty when the library is not loaded
  std::string version;  ///< as the file tells it; empty where it does not
};

/// "kxgraphic" is what is called kxgraphic.dll or libkxgraphic.so.
Module findModule(const std::string& library);

/// What the library draws on the display with, when a screen was made.
extern const char* const displayLibrary;

/// Name and version of the operating system.
std::string systemName();

}  // namespace kxinfo
