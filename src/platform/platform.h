// The doors to the operating system. Everything the library asks of it stands here;
// the folder of the system built for (posix/ or win32/) supplies the rest.
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "pointer_probe.h"  // isReadable(p), isWritable(p): the first four bytes at p

namespace kx::platform {

/// A loaded driver library. It is never unloaded: method tables point into it.
class Module {
public:
  /// Loads the library; `loaded()` tells whether that worked.
  explicit Module(const char* file);

  [[nodiscard]] bool loaded() const { return handle_ != nullptr; }

  /// Address of an exported symbol by its full text, or null.
  [[nodiscard]] void* symbol(const char* text) const;

private:
  void* handle_;
};

/// Milliseconds since some fixed point; wraps after 2^32.
std::uint32_t millisecondClock();

/// Appends `size` bytes to a file of the current directory, which is made when it is missing.
/// False when it cannot be opened; errors of writing are ignored.
bool appendToFile(const char* name, const char* bytes, std::size_t size);

/// True when driver symbols end in "@" and the byte count of their arguments.
extern const bool symbolsCarryByteCount;

/// Before a throw that leaves the library: where every module has an unwinder of its own, makes the frames of the
/// calling program known to the library's.
void prepareUnwindIntoCaller();

}  // namespace kx::platform
