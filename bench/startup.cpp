// kxstartup: what it costs to load the library and to use it for the first time, each time in a fresh process:
//   kxstartup LIBRARY [MICROSECONDS]   ends with 1 when the median is above the limit
// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "kxgraphic/kxgraphic.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Times {
  double load, firstUse;  ///< microseconds; load 0: it failed
};

double microseconds(Clock::time_point from) {
  return std::chrono::duration<double, std::micro>(Clock::now() - from).count();
}

template <typename Function>
Function* find(void* library, const char* name, Function*) {
  return reinterpret_cast<Function*>(dlsym(library, name));
}

/// Fills a method table, makes two bitmaps and blends one onto the other: methods, heap, kernels and tables.
bool useOnce(void* library) {
  static BitmapMethods methods;
  const auto fill = find(library, "KX_getBitmapInterface", &KX_getBitmapInterface);
  if (fill == nullptr) return false;
  fill(&methods, nullptr, nullptr, 1);
  Bitmap *target = nullptr, *source = nullptr;
  return methods.createBitmap(&target, 64, 64, KX_FORMAT_565, 0, 0, &methods) == 0 &&
         methods.createBitmap(&source, 64, 64, KX_FORMAT_565, 0, 0, &methods) == 0 &&
         methods.fillRect(target, 0, 0, 64, 64, 0x1234) == 0 && methods.fillRect(source, 0, 0, 64, 64, 0x4321) == 0 &&
         methods.bltCopyTransparentAlpha(target, 0, 0, source, 0, 0, 64, 64, 128) == 0;
}

Times loadHere(const char* file) {
  const Clock::time_point start = Clock::now();
  void* const library = dlopen(file, RTLD_NOW);
  if (library == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return {0, 0};
  }
  const double load = microseconds(start);
  const Clock::time_point loaded = Clock::now();
  return useOnce(library) ? Times{load, microseconds(loaded)} : Times{0, 0};
}

Times loadInChild(const char* file) {
  int ends[2];
  Times times{0, 0};
  if (pipe(ends) != 0) return times;
  const pid_t child = fork();
  if (child == 0) {
    times = loadHere(file);
    _exit(write(ends[1], &times, sizeof times) == sizeof times ? 0 : 1);
  }
  close(ends[1]);
  if (read(ends[0], &times, sizeof times) != sizeof times) times = {0, 0};
  close(ends[0]);
  waitpid(child, nullptr, 0);
  return times;
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s LIBRARY [MICROSECONDS]\n", argv[0]);
    return 2;
  }
  std::vector<double> loads, firstUses, sums;
  for (int i = 0; i < 51; ++i) {
    const Times times = loadInChild(argv[1]);
    if (times.load == 0) return 1;
    loads.push_back(times.load);
    firstUses.push_back(times.firstUse);
    sums.push_back(times.load + times.firstUse);
  }
  std::printf("loading %.0f, first use %.0f, both %.0f microseconds (medians of %zu processes)\n", median(loads),
              median(firstUses), median(sums), sums.size());
  return argc > 2 && median(sums) > std::atof(argv[2]) ? 1 : 0;
}
