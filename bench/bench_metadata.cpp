// Data models and univariate statistics: what is read of a parsed document, against a bare parse of the same bytes.
// Both run alternately in one loop, and what counts is the ratio of each pair: a busy machine then slows both.

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <array>
#include <limits>
#include <vector>

#include "metadata_documents.h"
#include "metadata_workload.h"
#include "workload.h"

namespace rqxml_bench {
namespace {

constexpr std::array<double, 3> kFields = {1000, 10000, 100000};

using Make = Document (*)(std::size_t);

double TimeFloor(const Document& document) {
  Floor floor;  // its destruction is not timed
  return MillisecondsOf([&] { floor.Run(document); });
}

template <class Subject>
double TimeFill(const Document& document) {
  Subject subject(document);
  return MillisecondsOf([&] { subject.Fill(); });
}

template <class Subject>
void CheckAnswerOf(const Document& document) {
  Subject subject(document);
  subject.Fill();
  subject.Check(document);
}

template <class Subject>
void Fill(benchmark::State& state, Make make) {
  const Document document = make(static_cast<std::size_t>(state.range(0)));
  CheckAnswerOf<Subject>(document);
  std::vector<double> ratios, floors, fills;
  while (state.KeepRunning()) {
    floors.push_back(TimeFloor(document));
    fills.push_back(TimeFill<Subject>(document));
    state.SetIterationTime(fills.back() / 1000);
    ratios.push_back(fills.back() / floors.back());
  }
  state.counters["MB"] = static_cast<double>(document.text.size()) / 1e6;
  state.counters["floor_ms"] = Quantile(floors, 0.5);
  state.counters["subject_ms"] = Quantile(fills, 0.5);
  state.counters["x_floor"] = Quantile(ratios, 0.5);
  state.counters["x_quarter"] = Quantile(ratios, 0.25);
  state.counters["x_three_quarters"] = Quantile(ratios, 0.75);
}

template <class Subject>
double MedianFill(const Document& document, int times) {
  std::vector<double> fills;
  for (int i = 0; i < times; ++i) fills.push_back(TimeFill<Subject>(document));
  return Quantile(fills, 0.5);
}

// Memory that was given back to the system costs a fault for each page when it comes again. Only the largest documents
// give any back; kept, it costs all sizes the same.
void KeepMemory() {
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  mallopt(M_MMAP_MAX, 0);
}

template <class Subject>
void Growth(benchmark::State& state, Make make) {
  KeepMemory();
  CheckAnswerOf<Subject>(make(static_cast<std::size_t>(kFields.back())));
  constexpr std::array<int, 3> kTimes = {51, 15, 5};
  std::array<double, 3> medians{};
  while (state.KeepRunning())
    for (std::size_t i = 0; i < kFields.size(); ++i)
      medians[i] = MedianFill<Subject>(make(static_cast<std::size_t>(kFields[i])), kTimes[i]);
  state.counters["ms_1k"] = medians[0];
  state.counters["ms_10k"] = medians[1];
  state.counters["ms_100k"] = medians[2];
  state.counters["exponent"] = Exponent(kFields, medians);
}

template <class Subject>
void Register(const std::string& name, Make make) {
  constexpr std::array<int, 3> kIterations = {51, 15, 5};
  for (std::size_t i = 0; i < kFields.size(); ++i)
    benchmark::RegisterBenchmark((name + "_fill").c_str(), Fill<Subject>, make)
        ->Arg(static_cast<int>(kFields[i]))
        ->Iterations(kIterations[i])
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark((name + "_growth").c_str(), Growth<Subject>, make)
      ->Iterations(1)
      ->Unit(benchmark::kMillisecond);
}

[[maybe_unused]] const bool kRegistered = [] {
  Register<DataModelSubject>("datamodel", MakeDataModel);
  Register<StatisticsSubject>("statistics", MakeStatistics);
  return true;
}();

}  // namespace
}  // namespace rqxml_bench
