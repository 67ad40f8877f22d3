// Collects what was measured and prints one line a workload: the library, its best peer, memcpy and the target.
// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace kxbench {

/// The contender that every workload gets for comparison.
constexpr const char* memcpyName = "memcpy";

class Report : public benchmark::BenchmarkReporter {
public:
  bool ReportContext(const Context& context) override;
  void ReportRuns(const std::vector<Run>& runs) override;

  /// The table; call it after the last run.
  void print() const;

private:
  /// Least nanoseconds of thread time for one call, by workload and contender.
  std::map<std::string, std::map<std::string, double>> least_;
};

}  // namespace kxbench
