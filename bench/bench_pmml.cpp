// PMML documents against a bare parse of the same bytes. Both run alternately in one loop, and what counts is the ratio
// of each pair: a busy machine then slows both.

#include <benchmark/benchmark.h>

#include <array>
#include <memory>

#include "workload.h"

namespace rqxml_bench {
namespace {

// Construction is timed, destruction is not: that of the tree costs both sides the same.
template <class Reader>
double TimeRun(const Document& document) {
  std::unique_ptr<Reader> reader;
  return MillisecondsOf([&] {
    reader = std::make_unique<Reader>();
    reader->Run(document);
  });
}

struct Pair {
  double floor = 0;
  double subject = 0;
};

Pair TimePair(const Document& document, bool floorFirst) {
  Pair pair;
  if (floorFirst) pair.floor = TimeRun<Floor>(document);
  pair.subject = TimeRun<Subject>(document);
  if (!floorFirst) pair.floor = TimeRun<Floor>(document);
  return pair;
}

void Read(benchmark::State& state, Variant variant) {
  const Document document = MakeDocument(static_cast<std::size_t>(state.range(0)), variant);
  CheckAnswer(document);
  std::vector<double> ratios, floors, subjects;
  bool floorFirst = true;
  while (state.KeepRunning()) {
    const Pair pair = TimePair(document, floorFirst);
    floorFirst = !floorFirst;
    state.SetIterationTime(pair.subject / 1000);
    ratios.push_back(pair.subject / pair.floor);
    floors.push_back(pair.floor);
    subjects.push_back(pair.subject);
  }
  state.counters["MB"] = static_cast<double>(document.text.size()) / 1e6;
  state.counters["x_floor"] = Quantile(ratios, 0.5);
  state.counters["x_quarter"] = Quantile(ratios, 0.25);
  state.counters["x_three_quarters"] = Quantile(ratios, 0.75);
  state.counters["floor_ms"] = Quantile(floors, 0.5);
  state.counters["subject_ms"] = Quantile(subjects, 0.5);
}

double MedianFill(const Document& document, int times) {
  Subject parsed;
  parsed.Parse(document);
  parsed.Fill(document);
  std::vector<double> fills;
  for (int i = 0; i < times; ++i) {
    Subject subject;
    subject.Parse(document);
    fills.push_back(MillisecondsOf([&] { subject.Fill(document); }));
  }
  return Quantile(fills, 0.5);
}

void Growth(benchmark::State& state, Variant variant) {
  constexpr std::array<double, 3> kFields = {1000, 10000, 100000};
  constexpr std::array<int, 3> kTimes = {101, 31, 7};
  std::array<double, 3> times{};
  while (state.KeepRunning())
    for (std::size_t i = 0; i < kFields.size(); ++i)
      times[i] = MedianFill(MakeDocument(static_cast<std::size_t>(kFields[i]), variant), kTimes[i]);
  state.counters["ms_1k"] = times[0];
  state.counters["ms_10k"] = times[1];
  state.counters["ms_100k"] = times[2];
  state.counters["exponent"] = Exponent(kFields, times);
}

[[maybe_unused]] const bool kRegistered = [] {
  constexpr std::array<std::pair<int, int>, 3> kSizes = {{{1000, 101}, {10000, 31}, {100000, 9}}};
  for (const Variant variant : kVariants)
    for (const auto& [fields, iterations] : kSizes)
      benchmark::RegisterBenchmark((std::string("read_") + NameOf(variant)).c_str(), Read, variant)
          ->Arg(fields)
          ->Iterations(iterations)
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
  for (const Variant variant : kVariants)
    benchmark::RegisterBenchmark((std::string("growth_") + NameOf(variant)).c_str(), Growth, variant)
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
  return true;
}();

}  // namespace
}  // namespace rqxml_bench
