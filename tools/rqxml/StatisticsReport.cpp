#include "StatisticsReport.h"

#include <algorithm>
#include <utility>

#include "DisplayText.h"
#include "ElementPlace.h"
#include "StatisticsFault.h"
#include "StatusTable.h"

namespace rqtool {

namespace {

// To find a place the document is read once more: that is not done for any number of bad fields.
constexpr std::size_t kMostPlaces = 10;
constexpr std::size_t kLongestText = 400;

std::optional<Problem> ProblemOf(InputFile& input, const FieldStatistics& field, bool withPlace) {
  if (field.status.IsOK()) return std::nullopt;
  Problem problem{.file = input.GetDisplayName(),
                  .element = "UnivariateStats",
                  .what = ExplainFault(field),
                  .status = field.status.GetCode()};
  if (withPlace) problem.place = PlaceOf(input, *field.element);
  if (field.field) problem.element += " \"" + *field.field + '"';
  if (field.needsLenience) problem.hint = "without --contract these statistics are read";
  return problem;
}

}  // namespace

StatisticsReport MakeStatisticsReport(InputFile& input, const Document& document, const Model& model,
                                      std::size_t models, StatisticsReading reading) {
  StatisticsReport report{&input, model, models, HasStatistics(model), {}};
  std::size_t bad = 0;
  for (FieldStatistics& field : ReadStatistics(document, model, reading)) {
    if (!field.status.IsOK()) ++bad;
    std::optional<Problem> problem = ProblemOf(input, field, bad <= kMostPlaces);
    report.fields.push_back({std::move(field), std::move(problem), {}});
  }
  return report;
}

std::size_t CountBad(const StatisticsReport& report) {
  const auto bad = std::count_if(report.fields.begin(), report.fields.end(),
                                 [](const ReportedField& field) { return field.problem.has_value(); });
  return static_cast<std::size_t>(bad);
}

std::string ProblemText(const Problem& problem) {
  std::string text = Printable(problem.file);
  if (problem.place) {
    text += ':' + std::to_string(problem.place->line) + ':' + std::to_string(problem.place->column);
  }
  return CutToWidth(text + ": " + Printable(problem.what), kLongestText);
}

std::string StatusText(long code) {
  const StatusEntry* const entry = FindStatus(code);
  return "status " + std::to_string(code) + (entry == nullptr ? "" : ": " + std::string(entry->meaning));
}

}  // namespace rqtool
