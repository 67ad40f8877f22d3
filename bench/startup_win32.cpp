// SPDX-License-Identifier: MIT
#include <windows.h>

#include <string>

#include "startup_system.h"

namespace kxbench {

void loadSystem() {
  for (const char* file : {"user32.dll", "gdi32.dll", "msvcrt.dll"}) LoadLibraryA(file);
}

void* openLibrary(const char* file) {
  HMODULE library = LoadLibraryA(file);
  if (library == nullptr) std::fprintf(stderr, "%s: error %lu\n", file, GetLastError());
  return library;
}

void* findFunction(void* library, const char* name, unsigned argumentBytes) {
  const std::string decorated = '_' + std::string(name) + '@' + std::to_string(argumentBytes);
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), decorated.c_str()));
}

long pagesSoFar() { return 0; }

std::FILE* readCommand(const char* command) { return _popen(command, "r"); }
void closeCommand(std::FILE* output) { _pclose(output); }

}  // namespace kxbench
