// Settings documents: what is read of a parsed document, against a bare parse of the same bytes. Both run alternately
// in one loop, and what counts is the ratio of each pair: a busy machine then slows both.

#include <benchmark/benchmark.h>

#include <array>
#include <utility>
#include <vector>

#include "settings_documents.h"
#include "settings_workload.h"
#include "workload.h"

namespace rqxml_bench {
namespace {

double TimeFloor(const Document& document) {
  Floor floor;  // its destruction is not timed
  return MillisecondsOf([&] { floor.Run(document); });
}

struct FillTimes {
  double data = 0;
  double derived = 0;
};

FillTimes TimeFill(const Document& document) {
  SettingsSubject settings(document);
  FillTimes times;
  times.data = MillisecondsOf([&] { settings.FillData(); });
  times.derived = MillisecondsOf([&] { settings.FillDerived(); });
  return times;
}

void Fill(benchmark::State& state) {
  const Document document = MakeFieldSettings(static_cast<std::size_t>(state.range(0)));
  CheckFields(document);
  std::vector<double> ratios, floors, fills, data, derived;
  while (state.KeepRunning()) {
    const double floor = TimeFloor(document);
    const FillTimes times = TimeFill(document);
    const double fill = times.data + times.derived;
    state.SetIterationTime(fill / 1000);
    ratios.push_back(fill / floor);
    floors.push_back(floor);
    fills.push_back(fill);
    data.push_back(times.data / floor);
    derived.push_back(times.derived / floor);
  }
  state.counters["MB"] = static_cast<double>(document.text.size()) / 1e6;
  state.counters["floor_ms"] = Quantile(floors, 0.5);
  state.counters["subject_ms"] = Quantile(fills, 0.5);
  state.counters["x_floor"] = Quantile(ratios, 0.5);
  state.counters["x_quarter"] = Quantile(ratios, 0.25);
  state.counters["x_three_quarters"] = Quantile(ratios, 0.75);
  state.counters["x_data"] = Quantile(data, 0.5);
  state.counters["x_derived"] = Quantile(derived, 0.5);
}

void Growth(benchmark::State& state) {
  constexpr std::array<double, 3> kFields = {1000, 10000, 100000};
  constexpr std::array<int, 3> kTimes = {101, 31, 7};
  std::array<double, 3> medians{};
  KeepMemory();
  TimeFill(MakeFieldSettings(static_cast<std::size_t>(kFields.back())));
  while (state.KeepRunning()) {
    for (std::size_t i = 0; i < kFields.size(); ++i) {
      const Document document = MakeFieldSettings(static_cast<std::size_t>(kFields[i]));
      std::vector<double> fills;
      for (int time = 0; time < kTimes[i]; ++time) {
        const FillTimes times = TimeFill(document);
        fills.push_back(times.data + times.derived);
      }
      medians[i] = Quantile(fills, 0.5);
    }
  }
  state.counters["ms_1k"] = medians[0];
  state.counters["ms_10k"] = medians[1];
  state.counters["ms_100k"] = medians[2];
  state.counters["exponent"] = Exponent(kFields, medians);
}

// A lookup walks its scope, so that reading all parameters takes quadratic time.
void Parameters(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  const Document document = MakeParameterSettings(count);
  CheckParameters(document);
  std::vector<double> ratios, floors, reads;
  while (state.KeepRunning()) {
    const double floor = TimeFloor(document);
    SettingsSubject settings(document);
    const double read = MillisecondsOf([&] { settings.ReadParameters(count); });
    state.SetIterationTime(read / 1000);
    ratios.push_back(read / floor);
    floors.push_back(floor);
    reads.push_back(read);
  }
  state.counters["MB"] = static_cast<double>(document.text.size()) / 1e6;
  state.counters["floor_ms"] = Quantile(floors, 0.5);
  state.counters["subject_ms"] = Quantile(reads, 0.5);
  state.counters["x_floor"] = Quantile(ratios, 0.5);
  state.counters["x_quarter"] = Quantile(ratios, 0.25);
  state.counters["x_three_quarters"] = Quantile(ratios, 0.75);
}

[[maybe_unused]] const bool kRegistered = [] {
  constexpr std::array<std::pair<int, int>, 3> kFields = {{{1000, 101}, {10000, 31}, {100000, 9}}};
  for (const auto& [fields, iterations] : kFields)
    benchmark::RegisterBenchmark("settings_fill", Fill)
        ->Arg(fields)
        ->Iterations(iterations)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("settings_growth", Growth)->Iterations(1)->Unit(benchmark::kMillisecond);
  constexpr std::array<std::pair<int, int>, 2> kParameters = {{{1000, 31}, {10000, 5}}};
  for (const auto& [parameters, iterations] : kParameters)
    benchmark::RegisterBenchmark("settings_parameters", Parameters)
        ->Arg(parameters)
        ->Iterations(iterations)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  return true;
}();

}  // namespace
}  // namespace rqxml_bench
