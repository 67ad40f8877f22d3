// Loading on Windows. As kxgraphic.dll beside the renamed original this library passes calls on to kxgraphic_real.dll,
// under any other name to kxgraphic.dll.
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <cstdio>
#include <cstring>

#include "original.h"

namespace kxtrace {

namespace {

constexpr DWORD longestPath = 1024;
char problem[longestPath + 64] = "nothing";

HMODULE load(const char* file) {
  const HMODULE loaded = LoadLibraryA(file);
  if (loaded == nullptr)
    std::snprintf(problem, sizeof problem, "nothing: %s is not there or cannot be loaded (error %lu)", file,
                  GetLastError());
  return loaded;
}

HMODULE loadLibrary() {
  char path[longestPath + 32];
  const DWORD wanted = GetEnvironmentVariableA("KXTRACE_LIBRARY", path, longestPath);
  if (wanted > 0 && wanted < longestPath) return load(path);

  HMODULE self = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                     reinterpret_cast<const char*>(&loadLibrary), &self);
  const DWORD length = GetModuleFileNameA(self, path, longestPath);
  if (length == 0 || length >= longestPath) return nullptr;
  char* slash = std::strrchr(path, '\\');
  char* const file = slash == nullptr ? path : slash + 1;
  const bool standsIn = lstrcmpiA(file, "kxgraphic.dll") == 0;
  std::strcpy(file, standsIn ? "kxgraphic_real.dll" : "kxgraphic.dll");
  if (!standsIn)
    if (const HMODULE loaded = GetModuleHandleA("kxgraphic.dll")) return loaded;
  const HMODULE beside = LoadLibraryA(path);
  return beside != nullptr ? beside : load(file);
}

HMODULE library() {
  static const HMODULE loaded = loadLibrary();
  return loaded;
}

}  // namespace

void* findOriginal(const char* name, unsigned argumentBytes) {
  if (library() == nullptr) return nullptr;
  char text[128];
  std::snprintf(text, sizeof text, "_%s@%u", name, argumentBytes);
  return reinterpret_cast<void*>(GetProcAddress(library(), text));
}

const char* originalFile() {
  static char path[longestPath];
  return library() != nullptr && GetModuleFileNameA(library(), path, longestPath) != 0 ? path : problem;
}

unsigned processNumber() { return GetCurrentProcessId(); }

bool peek(void* to, const void* from, std::size_t size) {
  SIZE_T read = 0;
  return ReadProcessMemory(GetCurrentProcess(), from, to, size, &read) != 0 && read == size;
}

}  // namespace kxtrace
