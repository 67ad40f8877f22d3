// kxbench where Google Benchmark is not at hand, as for Windows: least time of several rounds, by the steady clock.
//   --filter=REGEX over names like "m.crc/kx"; --quick: short rounds
// SPDX-License-Identifier: MIT
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <regex>
#include <string>

#include "pictures.h"
#include "report.h"
#include "rows.h"

namespace {

double secondsOf(const std::function<void()>& call, int count) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < count; ++i) call();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

/// Nanoseconds of one call: the least of `rounds` that take `roundTime` seconds each.
double measure(const std::function<void()>& call, double roundTime, int rounds) {
  call();  // prepares, warms the caches
  int count = 1;
  double seconds = secondsOf(call, count);
  while (seconds < roundTime && count < (1 << 28)) {
    const double wanted = roundTime / std::max(seconds, 1e-7) * count;
    count = static_cast<int>(std::clamp(wanted * 1.1, count * 1.5 + 1, count * 20.0));
    seconds = secondsOf(call, count);
  }
  double least = seconds / count;
  for (int round = 1; round < rounds; ++round) least = std::min(least, secondsOf(call, count) / count);
  return least * 1e9;
}

std::function<void()> copying(std::size_t bytes) {
  return [from = kxbench::Bytes(bytes, 1), to = kxbench::Bytes(bytes)]() mutable {
    std::memcpy(to.data(), from.data(), to.size());
    kxbench::keep(to[to.size() / 2]);
  };
}

}  // namespace

int main(int argc, char** argv) {
  std::regex filter(".*");
  bool quick = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strncmp(argv[i], "--filter=", 9) == 0) {
      filter = std::regex(argv[i] + 9);
    } else if (std::strcmp(argv[i], "--quick") == 0) {
      quick = true;
    } else {
      std::fprintf(stderr, "usage: %s [--filter=REGEX] [--quick]\n", argv[0]);
      return 2;
    }
  }
  kxbench::Report report;
  int measured = 0;
  const auto run = [&](const std::string& name, const std::function<void()>& call) {
    if (!std::regex_search(name, filter)) return;
    report.add(name, measure(call, quick ? 0.01 : 0.05, quick ? 3 : 7));
    ++measured;
    std::fputc('.', stderr);
  };
  std::string last;
  for (const kxbench::Row& row : kxbench::allRows()) {
    if (row.workload != last)
      run(row.workload + '/' + kxbench::memcpyName, copying(static_cast<std::size_t>(row.bytes)));
    last = row.workload;
    run(row.workload + '/' + row.contender, row.call);
  }
  std::fputc('\n', stderr);
  if (measured == 0) {
    std::fprintf(stderr, "no row matches\n");
    return 1;
  }
  report.print();
  return 0;
}
