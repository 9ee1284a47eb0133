#include "Bars.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "DisplayText.h"
#include "ValueText.h"
#include "rqxml/common/RQMV.h"

namespace rqtool {

namespace {

using RQMTD_NAMESPACE::RQUniStats;

bool IsGiven(double value) { return value != RQMV::gMissingValue; }

std::string IntervalText(const Interval& interval) {
  const bool openBelow = !IsGiven(interval.left);
  const bool openAbove = !IsGiven(interval.right);
  return (interval.closedAtLeft && !openBelow ? "[" : "(") + (openBelow ? "-\u221e" : NumberText(interval.left)) +
         ", " + (openAbove ? "\u221e" : NumberText(interval.right)) +
         (interval.closedAtRight && !openAbove ? "]" : ")");
}

std::string Label(const FieldStatistics& field, std::size_t index) {
  if (index < field.intervals.size()) return IntervalText(field.intervals[index]);
  if (index < field.categories.size()) {
    const std::string& label = field.labels[index];
    return ItemText(field.categories[index]) + (label.empty() ? "" : " = " + ItemText(label));
  }
  return "#" + std::to_string(index + 1);
}

std::string ShareText(double share) {
  constexpr double kSmallest = 0.0005;
  if (share > 0 && share < kSmallest) return "<0.1%";
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "%.1f%%", share * 100);
  return buffer.data();
}

void AddStatistic(std::vector<std::string>& texts, const char* name, double value, std::string (*text)(double)) {
  if (IsGiven(value)) texts.push_back(std::string(name) + ' ' + text(value));
}

}  // namespace

std::vector<Bar> MakeBars(const FieldStatistics& field) {
  const std::vector<double>& counts = field.stats.GetFrequencies();
  const double longest = counts.empty() ? 0 : *std::max_element(counts.begin(), counts.end());
  double sum = 0;  // in units of the longest bar: the plain sum could be too large
  for (const double count : counts) sum += longest > 0 ? count / longest : 0;
  std::vector<Bar> bars;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    const double length = longest > 0 ? counts[i] / longest : 0;
    bars.push_back({Label(field, i), ShortNumberText(counts[i]), ShareText(sum > 0 ? length / sum : 0), length});
  }
  return bars;
}

double CountedIn(const FieldStatistics& field) {
  double sum = 0;
  for (const double count : field.stats.GetFrequencies()) sum += count;
  return sum;
}

std::string FieldTitle(const FieldStatistics& field) {
  return field.field ? ItemText(*field.field) : "(a field without a name)";
}

std::vector<std::string> CaseTexts(const FieldStatistics& field) {
  const double total = field.stats.GetTotalFrequency();
  std::vector<std::string> texts;
  AddStatistic(texts, "total", total, ShortNumberText);
  const double counted = CountedIn(field);
  if (!field.stats.GetFrequencies().empty() && counted != total) {
    AddStatistic(texts, "counted", counted, ShortNumberText);
  }
  if (field.missing) AddStatistic(texts, "missing", *field.missing, ShortNumberText);
  if (field.invalid) AddStatistic(texts, "invalid", *field.invalid, ShortNumberText);
  if (field.texts > 0 && field.categories.empty()) {
    texts.push_back(std::to_string(field.texts) + " category texts for " +
                    std::to_string(field.stats.GetFrequencies().size()) + " counts");
  }
  return texts;
}

std::vector<std::string> SummaryTexts(const FieldStatistics& field) {
  const RQUniStats::SummStats& summary = field.stats.GetSummStats();
  std::vector<std::string> texts;
  AddStatistic(texts, "minimum", summary.minimum, NumberText);
  AddStatistic(texts, "maximum", summary.maximum, NumberText);
  AddStatistic(texts, "mean", summary.mean, ShortNumberText);
  AddStatistic(texts, "standard deviation", summary.standardDeviation, ShortNumberText);
  return texts;
}

std::string LenienceText(const FieldStatistics& field) {
  if (!field.lenient) return {};
  return field.continuous ? "read leniently: no \"ContStats\", so no histogram"
                          : "read leniently: texts stand before the counts";
}

std::optional<Spread> SpreadOf(const FieldStatistics& field) {
  const RQUniStats::SummStats& summary = field.stats.GetSummStats();
  if (!field.continuous || !IsGiven(summary.minimum) || !IsGiven(summary.maximum) || !IsGiven(summary.mean)) {
    return std::nullopt;
  }
  if (summary.minimum >= summary.maximum || summary.mean < summary.minimum || summary.mean > summary.maximum) {
    return std::nullopt;
  }
  // Halves: the whole range could be too large for a number.
  const double range = summary.maximum / 2 - summary.minimum / 2;
  if (range <= 0) return std::nullopt;
  const double mean = (summary.mean / 2 - summary.minimum / 2) / range;
  const double deviation = IsGiven(summary.standardDeviation) ? summary.standardDeviation / 2 / range : 0;
  return Spread{std::max(0.0, mean - deviation), mean, std::min(1.0, mean + deviation)};
}

}  // namespace rqtool
