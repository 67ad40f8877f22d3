// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <sys/resource.h>

#include "startup_system.h"

namespace kxbench {

void loadSystem() {}

void* openLibrary(const char* file) {
  void* const library = dlopen(file, RTLD_NOW);
  if (library == nullptr) std::fprintf(stderr, "%s\n", dlerror());
  return library;
}

void* findFunction(void* library, const char* name, unsigned) { return dlsym(library, name); }

long pagesSoFar() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_minflt;
}

std::FILE* readCommand(const char* command) { return popen(command, "r"); }
void closeCommand(std::FILE* output) { pclose(output); }

}  // namespace kxbench
