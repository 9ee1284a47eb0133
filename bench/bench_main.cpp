// Runs the benchmarks. With --markdown as the first argument the results come as the rows of a table.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "workload.h"

namespace {

// The columns of each table: what the benchmark counts, and the digits behind the point.
struct Column {
  const char* counter;
  int digits;
};
using Columns = std::vector<Column>;

Columns ColumnsOf(const benchmark::UserCounters& counters) {
  if (counters.count("x_floor") > 0)
    return {{"MB", 1}, {"floor_ms", 1}, {"subject_ms", 1}, {"x_floor", 3}, {"x_quarter", 3}, {"x_three_quarters", 3}};
  if (counters.count("exponent") > 0) return {{"ms_1k", 2}, {"ms_10k", 2}, {"ms_100k", 1}, {"exponent", 3}};
  if (counters.count("x_library") > 0) return {{"ns", 0}, {"x_library", 3}};
  return {{"ms", 1}};
}

class MarkdownReporter final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) PrintRow(run);
    std::fflush(stdout);
  }

 private:
  static void PrintRow(const Run& run) {
    std::printf("| %s %s |", run.run_name.function_name.c_str(), run.run_name.args.c_str());
    for (const auto& [counter, digits] : ColumnsOf(run.counters))
      std::printf(" %.*f |", digits, run.counters.at(counter).value);
    std::puts("");
  }
};

}  // namespace

int main(int argc, char** argv) {
  const rqxml_bench::Platform platform;
  const bool markdown = argc > 1 && std::strcmp(argv[1], "--markdown") == 0;
  if (markdown) {
    for (int i = 1; i < argc; ++i) argv[i] = argv[i + 1];
    --argc;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  MarkdownReporter reporter;
  markdown ? benchmark::RunSpecifiedBenchmarks(&reporter) : benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
