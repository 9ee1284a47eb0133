// Runs the benchmarks. With --markdown as the first argument the results come as the rows of a table.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "workload.h"

namespace {

class MarkdownReporter final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) PrintRow(run);
    std::fflush(stdout);
  }

 private:
  static void PrintRow(const Run& run) {
    std::string row = "| " + run.run_name.function_name + " " + run.run_name.args + " |";
    for (const auto& [name, counter] : run.counters) {
      char text[64];
      std::snprintf(text, sizeof text, " %s %.*f,", name.c_str(), counter.value < 10 ? 3 : 1, counter.value);
      row += text;
    }
    row.back() = ' ';
    std::puts((row + "|").c_str());
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
