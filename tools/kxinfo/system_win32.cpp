// Loaded libraries with their version resources, and the version of Windows.
// SPDX-License-Identifier: MIT
#include <windows.h>

#include <vector>

#include "system.h"

namespace kxinfo {

namespace {

std::string numbers(DWORD high, DWORD low) {
  return std::to_string(HIWORD(high)) + "." + std::to_string(LOWORD(high)) + "." + std::to_string(HIWORD(low));
}

}  // namespace

const char* const displayLibrary = "gdi32";

Module findModule(const std::string& library) {
  Module result;
  char path[1024];
  const HMODULE module = GetModuleHandleA((library + ".dll").c_str());
  if (module == nullptr || GetModuleFileNameA(module, path, sizeof path) == 0) return result;
  result.file = path;

  DWORD unused = 0;
  std::vector<char> block(GetFileVersionInfoSizeA(path, &unused));
  VS_FIXEDFILEINFO* info = nullptr;
  UINT size = 0;
  if (!block.empty() && GetFileVersionInfoA(path, 0, static_cast<DWORD>(block.size()), block.data()) != 0 &&
      VerQueryValueA(block.data(), "\\", reinterpret_cast<void**>(&info), &size) != 0)
    result.version = numbers(info->dwFileVersionMS, info->dwFileVersionLS);
  return result;
}

std::string systemName() {
  const DWORD version = GetVersion();
  std::string result =
      "Windows " + std::to_string(LOBYTE(LOWORD(version))) + "." + std::to_string(HIBYTE(LOWORD(version)));
  // Wine tells its own version there.
  using WineVersion = const char*(__cdecl*)();
  const auto wine = reinterpret_cast<WineVersion>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version")));
  if (wine != nullptr) result += std::string(", Wine ") + wine();
  return result;
}

}  // namespace kxinfo
