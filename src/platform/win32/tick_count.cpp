// The C++ runtime's threads import GetTickCount64 by name, which Windows XP lacks: a library that did would not load
// there. SPDX-License-Identifier: MIT
#include <windows.h>

namespace {

/// For waits with a time limit, of which this library has none.
ULONGLONG WINAPI tickCount() { return GetTickCount(); }

}  // namespace

extern "C" {
// What the linker would take from the import library.
extern ULONGLONG(WINAPI* const importedTickCount)() __asm__("__imp__GetTickCount64@0");
ULONGLONG(WINAPI* const importedTickCount)() = tickCount;
}
