// Driver libraries, clock and log file on POSIX systems.
// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cstring>

#include "platform/platform.h"

namespace kx::platform {

const bool symbolsCarryByteCount = false;

// An empty name would mean the program itself.
Module::Module(const char* file) : handle_(*file == 0 ? nullptr : dlopen(file, RTLD_NOW | RTLD_LOCAL)) {}

// dlsym also finds what the libraries that the module itself uses export; those are not the module.
void* Module::symbol(const char* text) const {
  void* address = dlsym(handle_, text);
  const link_map* module = nullptr;
  Dl_info owner{};
  if (address == nullptr || dlinfo(handle_, RTLD_DI_LINKMAP, &module) != 0 || dladdr(address, &owner) == 0)
    return nullptr;
  return std::strcmp(owner.dli_fname, module->l_name) == 0 ? address : nullptr;
}

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
