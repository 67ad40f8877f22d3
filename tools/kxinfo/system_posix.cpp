// Loaded libraries and the kernel's name on ELF systems.
// SPDX-License-Identifier: MIT
#include <link.h>
#include <sys/utsname.h>

#include <filesystem>

#include "system.h"

namespace kxinfo {

const char* const displayLibrary = "SDL2-2.0";

Module findModule(const std::string& library) {
  struct Search {
    std::string name;
    Module found;
  } search{"/lib" + library + ".so", {}};
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t, void* context) {
        auto& wanted = *static_cast<Search*>(context);
        const std::string file = info->dlpi_name;
        if (file.find(wanted.name) == std::string::npos) return 0;
        // The file behind the soname has the whole version in its name.
        std::error_code ignored;
        const std::filesystem::path path = std::filesystem::canonical(file, ignored);
        wanted.found.file = path.empty() ? file : path.string();
        const std::string name = path.filename().string();
        if (const std::size_t at = name.find(".so."); at != std::string::npos)
          wanted.found.version = name.substr(at + 4);
        return 1;
      },
      &search);
  return search.found;
}

std::string systemName() {
  utsname name{};
  uname(&name);
  return std::string(name.sysname) + " " + name.release + " " + name.machine;
}

}  // namespace kxinfo
