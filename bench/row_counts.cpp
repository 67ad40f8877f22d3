// kxrowcount: the library's own rows of the benchmarks once each, to be run under callgrind: a dump for each row, whose
// total is the row's instructions. Afterwards it tells the items of each row. usage:
//   valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file=counts build/release/kxrowcount [REGEX]
// SPDX-License-Identifier: MIT
#include <valgrind/callgrind.h>

#include <cinttypes>
#include <cstdio>
#include <regex>

#include "rows.h"

int main(int argc, char** argv) {
  const std::regex wanted(argc > 1 ? argv[1] : ".");
  for (const kxbench::Row& row : kxbench::allRows()) {
    if (row.contender != "kx" || !std::regex_search(row.workload, wanted)) continue;
    row.call();  // prepares
    CALLGRIND_ZERO_STATS;
    CALLGRIND_TOGGLE_COLLECT;
    row.call();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(row.workload.c_str());
    std::printf("%s %" PRId64 "\n", row.workload.c_str(), row.items);
  }
}
