// Pointer tests, driver libraries, clock and log file on Windows.
// SPDX-License-Identifier: MIT
#include <windows.h>

#include "platform/platform.h"

namespace kx::platform {

const bool symbolsCarryByteCount = true;

namespace {
constexpr UINT_PTR probedBytes = 4;
}

bool isReadable(const void* p) { return IsBadReadPtr(p, probedBytes) == 0; }

bool isWritable(const void* p) { return IsBadWritePtr(const_cast<void*>(p), probedBytes) == 0; }

Module::Module(const char* file) : handle_(LoadLibraryA(file)) {}

void* Module::symbol(const char* text) const {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(handle_), text));
}

std::uint32_t millisecondClock() { return GetTickCount(); }

bool appendToFile(const char* name, const char* bytes, std::size_t size) {
  const HANDLE file = CreateFileA(name, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  // Between finding the end and writing there another process may do the same: whoever holds the lock of a byte that no
  // log reaches goes first. A lock that fails is no reason to lose the line.
  OVERLAPPED farByte{};
  farByte.OffsetHigh = 0x7FFFFFFF;
  const bool locked = LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &farByte) != 0;
  SetFilePointer(file, 0, nullptr, FILE_END);
  DWORD written = 0;
  WriteFile(file, bytes, static_cast<DWORD>(size), &written, nullptr);
  if (locked) UnlockFileEx(file, 0, 1, 0, &farByte);
  CloseHandle(file);
  return true;
}

}  // namespace kx::platform
