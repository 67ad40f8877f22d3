// SPDX-License-Identifier: MIT
#include "symbols.h"

#include <dlfcn.h>

#include <string>

namespace kxtest {

void* exportedSymbol(const char* name, unsigned) {
  static void* const library = dlopen(KX_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
  return dlsym(library, name);
}

void* driverSymbol(const char* name, unsigned argumentBytes) {
  void* const alias = exportedSymbol(std::string("_").append(name).c_str(), argumentBytes);
  return alias == exportedSymbol(name, argumentBytes) ? alias : nullptr;
}

}  // namespace kxtest
