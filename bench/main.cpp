// kxbench: runs the rows whose name matches, and reports.
//   --filter=REGEX  over names like "m.crc/kx"; --quick: short runs; --json=FILE: Google Benchmark's own report too
// SPDX-License-Identifier: MIT
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "pictures.h"
#include "report.h"
#include "rows.h"

namespace {

void measure(benchmark::State& state, const std::function<void()>& call) {
  call();  // prepares, warms the caches
  for (auto _ : state) {
    call();
    benchmark::ClobberMemory();
  }
}

void copy(benchmark::State& state, std::size_t bytes) {
  const kxbench::Bytes from(bytes, 1);
  kxbench::Bytes to(bytes);
  for (auto _ : state) {
    std::memcpy(to.data(), from.data(), bytes);
    benchmark::ClobberMemory();
  }
}

void registerRows(double minTime, int repetitions) {
  const auto add = [&](const std::string& name, auto&& body) {
    benchmark::RegisterBenchmark(name.c_str(), body)->MinTime(minTime)->Repetitions(repetitions);
  };
  std::string last;
  for (const kxbench::Row& row : kxbench::allRows()) {
    if (row.workload != last)
      add(row.workload + '/' + kxbench::memcpyName,
          [bytes = static_cast<std::size_t>(row.bytes)](benchmark::State& state) { copy(state, bytes); });
    last = row.workload;
    add(row.workload + '/' + row.contender, [&row](benchmark::State& state) { measure(state, row.call); });
  }
}

/// Hands every run on to the report, and shows that something is going on.
class Reporter : public benchmark::BenchmarkReporter {
public:
  explicit Reporter(kxbench::Report& report) : report_(report) {}

  bool ReportContext(const Context&) override {
    std::fprintf(stderr, "measuring");
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs)
      if (run.run_type == Run::RT_Iteration && !run.error_occurred)
        report_.add(run.run_name.function_name, run.cpu_accumulated_time / static_cast<double>(run.iterations) * 1e9);
    std::fputc('.', stderr);
    std::fflush(stderr);
  }

  void Finalize() override { std::fputc('\n', stderr); }

private:
  kxbench::Report& report_;
};

/// The value of "--name=value", or null.
const char* valueOf(const char* argument, const char* name) {
  const std::size_t length = std::strlen(name);
  return std::strncmp(argument, name, length) == 0 && argument[length] == '=' ? argument + length + 1 : nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> passed = {argv[0]};
  bool quick = false;
  for (int i = 1; i < argc; ++i) {
    if (const char* filter = valueOf(argv[i], "--filter")) {
      passed.push_back(std::string("--benchmark_filter=") + filter);
    } else if (const char* file = valueOf(argv[i], "--json")) {
      passed.push_back(std::string("--benchmark_out=") + file);
      passed.emplace_back("--benchmark_out_format=json");
    } else if (std::strcmp(argv[i], "--quick") == 0) {
      quick = true;
    } else {
      std::fprintf(stderr, "usage: %s [--filter=REGEX] [--quick] [--json=FILE]\n", argv[0]);
      return 2;
    }
  }
  registerRows(quick ? 0.02 : 0.1, quick ? 2 : 5);

  std::vector<char*> arguments;
  arguments.reserve(passed.size());
  for (std::string& argument : passed) arguments.push_back(argument.data());
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  kxbench::Report report;
  Reporter reporter(report);
  if (benchmark::RunSpecifiedBenchmarks(&reporter) == 0) {
    std::fprintf(stderr, "no row matches\n");
    return 1;
  }
  report.print();
  return 0;
}
