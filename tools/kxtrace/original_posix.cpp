// Loading on ELF systems. The library is found as the program found it, by its soname; this one does not depend on it,
// so that looking a name up there never comes back here.
// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <link.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "original.h"

namespace kxtrace {

namespace {

char problem[500] = "nothing";

void* loadLibrary() {
  const char* wanted = std::getenv("KXTRACE_LIBRARY");
  void* library = dlopen(wanted != nullptr ? wanted : KXTRACE_LIBRARY_NAME, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) static_cast<void>(std::snprintf(problem, sizeof problem, "nothing: %s", dlerror()));
  return library;
}

void* library() {
  static void* const loaded = loadLibrary();
  return loaded;
}

}  // namespace

void* findOriginal(const char* name, unsigned) { return library() == nullptr ? nullptr : dlsym(library(), name); }

const char* originalFile() {
  const link_map* map = nullptr;
  return library() != nullptr && dlinfo(library(), RTLD_DI_LINKMAP, &map) == 0 ? map->l_name : problem;
}

unsigned processNumber() { return static_cast<unsigned>(getpid()); }

bool peek(void* to, const void* from, std::size_t size) {
  const iovec here{to, size}, there{const_cast<void*>(from), size};
  return process_vm_readv(getpid(), &here, 1, &there, 1, 0) == static_cast<ssize_t>(size);
}

}  // namespace kxtrace
