// SPDX-License-Identifier: MIT
#include "symbols.h"

#include <windows.h>

#include <string>

namespace kxtest {

void* exportedSymbol(const char* name, unsigned argumentBytes) {
  const std::string text = std::string("_").append(name).append("@").append(std::to_string(argumentBytes));
  return reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(KX_LIBRARY), text.c_str()));
}

void* driverSymbol(const char* name, unsigned argumentBytes) { return exportedSymbol(name, argumentBytes); }

}  // namespace kxtest
