// Collects what was measured and prints one line a workload: the library, its best peer, memcpy and the target.
// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <string>

namespace kxbench {

/// The contender that every workload gets for comparison.
constexpr const char* memcpyName = "memcpy";

class Report {
public:
  /// A run of "workload/contender" took so many nanoseconds for one call. The least of all runs counts.
  void add(const std::string& name, double time);

  /// The table; call it after the last run.
  void print() const;

private:
  /// By workload and contender.
  std::map<std::string, std::map<std::string, double>> least_;
};

}  // namespace kxbench
