// SPDX-License-Identifier: MIT
#include "report.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "rows.h"

namespace kxbench {

namespace {

/// Slack before a target counts as missed.
constexpr double slack = 1.25;

struct Target {
  const char* workload;
  const char* peer;
  double peerTime;  ///< nanoseconds per item on the machine of the targets; only the ratio counts elsewhere
  double time;
};

constexpr Target targets[] = {
#define KX_TARGET(workload, peer, peerTime, time) {workload, peer, peerTime, time},
#include "targets.inc"
#undef KX_TARGET
};

const Target* targetOf(const std::string& workload) {
  const auto* found = std::find_if(std::begin(targets), std::end(targets),
                                   [&](const Target& each) { return workload == each.workload; });
  return found == std::end(targets) ? nullptr : found;
}

}  // namespace

void Report::add(const std::string& name, double time) {
  const std::size_t slash = name.find('/');
  double& least = least_[name.substr(0, slash)][name.substr(slash + 1)];
  least = least == 0 ? time : std::min(least, time);
}

void Report::print() const {
  std::fprintf(stderr, "\n");
  std::printf("%-26s %9s  %-18s %9s %8s %8s %8s\n", "workload", "kx ns", "best peer", "peer ns", "kx/peer", "xmem",
              "target");
  int missed = 0;
  std::string last;
  for (const Row& row : allRows()) {
    if (row.workload == last || least_.count(row.workload) == 0) continue;
    last = row.workload;
    const auto& times = least_.at(row.workload);
    const auto own = times.find("kx");
    auto best = times.end();
    for (auto each = times.begin(); each != times.end(); ++each)
      if (each->first != "kx" && each->first != memcpyName && (best == times.end() || each->second < best->second))
        best = each;
    const auto memory = times.find(memcpyName);
    const auto items = static_cast<double>(row.items);
    const auto cell = [](bool known, int width, int decimals, double value) {
      char text[32] = "-";
      if (known) std::snprintf(text, sizeof text, "%.*f", decimals, value);
      std::printf(" %*s", width, text);
    };
    const bool hasOwn = own != times.end();
    const bool hasPeer = best != times.end();
    const Target* target = targetOf(row.workload);
    std::printf("%-26s", row.workload.c_str());
    cell(hasOwn, 9, 3, hasOwn ? own->second / items : 0);
    std::printf("  %-18s", hasPeer ? best->first.c_str() : "-");
    cell(hasPeer, 9, 3, hasPeer ? best->second / items : 0);
    const double ratio = hasOwn && hasPeer ? own->second / best->second : 0;
    cell(ratio > 0, 8, 2, ratio);
    const bool hasMemory = hasOwn && memory != times.end();
    cell(hasMemory, 8, 1, hasMemory ? own->second / memory->second : 0);
    const double aim = target != nullptr ? target->time / target->peerTime : 0;
    cell(aim > 0, 8, 2, aim);
    const bool miss = ratio > 0 && aim > 0 && ratio > aim * slack;
    missed += miss;
    std::printf("%s\n", miss ? "  missed" : "");
  }
  if (missed > 0) std::printf("%d target(s) missed by more than a quarter\n", missed);
}

}  // namespace kxbench
