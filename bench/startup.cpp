// kxstartup: what it costs to load the library and to use it for the first time, each time in a fresh process:
//   kxstartup LIBRARY [MICROSECONDS]   ends with 1 when the median is above the limit
//   kxstartup --once LIBRARY           one process; prints microseconds of loading and of the first use, and pages
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "kxgraphic/kxgraphic.h"
#include "startup_system.h"

namespace {

using Clock = std::chrono::steady_clock;

struct Costs {
  double load, firstUse;  ///< microseconds; load 0: it failed
  long pages;
};

double microseconds(Clock::time_point from) {
  return std::chrono::duration<double, std::micro>(Clock::now() - from).count();
}

/// Fills a method table, makes two bitmaps and blends one onto the other: methods, heap, kernels and tables.
bool useOnce(void* library) {
  static BitmapMethods methods;
  const auto fill =
      reinterpret_cast<decltype(&KX_getBitmapInterface)>(kxbench::findFunction(library, "KX_getBitmapInterface", 16));
  if (fill == nullptr) return false;
  fill(&methods, nullptr, nullptr, 1);
  Bitmap *target = nullptr, *source = nullptr;
  return methods.createBitmap(&target, 64, 64, KX_FORMAT_565, 0, 0, &methods) == 0 &&
         methods.createBitmap(&source, 64, 64, KX_FORMAT_565, 0, 0, &methods) == 0 &&
         methods.fillRect(target, 0, 0, 64, 64, 0x1234) == 0 && methods.fillRect(source, 0, 0, 64, 64, 0x4321) == 0 &&
         methods.bltCopyTransparentAlpha(target, 0, 0, source, 0, 0, 64, 64, 128) == 0;
}

/// tools/check_counts.sh counts the instructions between its call and its return.
[[gnu::noinline]] Costs startHere(const char* file) {
  kxbench::loadSystem();
  const long pages = kxbench::pagesSoFar();
  const Clock::time_point start = Clock::now();
  void* const library = kxbench::openLibrary(file);
  if (library == nullptr) return {0, 0, 0};
  const double load = microseconds(start);
  const Clock::time_point loaded = Clock::now();
  if (!useOnce(library)) return {0, 0, 0};
  return {load, microseconds(loaded), kxbench::pagesSoFar() - pages};
}

Costs startElsewhere(const std::string& program, const char* file) {
  Costs costs{0, 0, 0};
  std::FILE* const output = kxbench::readCommand((program + " --once " + file).c_str());
  if (output == nullptr) return costs;
  if (std::fscanf(output, "%lf %lf %ld", &costs.load, &costs.firstUse, &costs.pages) != 3) costs.load = 0;
  kxbench::closeCommand(output);
  return costs;
}

template <typename Number>
Number median(std::vector<Number> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s [--once] LIBRARY [MICROSECONDS]\n", argv[0]);
    return 2;
  }
  if (argc > 2 && std::strcmp(argv[1], "--once") == 0) {
    const Costs costs = startHere(argv[2]);
    std::printf("%.1f %.1f %ld\n", costs.load, costs.firstUse, costs.pages);
    return costs.load > 0 ? 0 : 1;
  }
  std::vector<double> loads, firstUses, sums;
  std::vector<long> pages;
  for (int i = 0; i < 51; ++i) {
    const Costs costs = startElsewhere(argv[0], argv[1]);
    if (costs.load <= 0) return 1;
    loads.push_back(costs.load);
    firstUses.push_back(costs.firstUse);
    sums.push_back(costs.load + costs.firstUse);
    pages.push_back(costs.pages);
  }
  std::printf("loading %.0f, first use %.0f, both %.0f microseconds; %ld pages (medians of %zu processes)\n",
              median(loads), median(firstUses), median(sums), median(pages), sums.size());
  return argc > 2 && median(sums) > std::atof(argv[2]) ? 1 : 0;
}
