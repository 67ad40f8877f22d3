// Driver libraries, clock and log file on POSIX systems.
// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include "platform/platform.h"

namespace kx::platform {

const bool symbolsCarryByteCount = false;

Module::Module(const char* file) : handle_(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {}

void* Module::symbol(const char* text) const { return dlsym(handle_, text); }

std::uint32_t millisecondClock() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  const auto seconds = static_cast<std::uint64_t>(now.tv_sec);
  const auto nanoseconds = static_cast<std::uint64_t>(now.tv_nsec);
  return static_cast<std::uint32_t>(seconds * 1000 + nanoseconds / 1000000);
}

bool appendToFile(const char* name, const char* bytes, std::size_t size) {
  // O_APPEND and one write: lines of processes that report at the same time do not tear.
  const int file = open(name, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
  if (file < 0) return false;
  if (write(file, bytes, size) < 0) {
    // Nowhere to report a failed report.
  }
  close(file);
  return true;
}

void prepareUnwindIntoCaller() {}

}  // namespace kx::platform
