// SPDX-License-Identifier: MIT
#include "symbols.h"

#include <dlfcn.h>

#include <string>

namespace kxtest {

void* driverSymbol(const char* name, unsigned) {
  static void* const library = dlopen(KX_LIBRARY, RTLD_NOW | RTLD_NOLOAD);
  void* const alias = dlsym(library, std::string("_").append(name).c_str());
  return alias == dlsym(library, name) ? alias : nullptr;
}

}  // namespace kxtest
