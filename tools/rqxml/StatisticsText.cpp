#include "StatisticsText.h"

#include "Bars.h"
#include "DisplayText.h"
#include "HistogramText.h"
#include "ValueText.h"

namespace rqtool {

namespace {

std::string Join(const std::vector<std::string>& texts) {
  std::string joined;
  for (const std::string& text : texts) joined += (joined.empty() ? "" : ", ") + text;
  return joined;
}

std::string Line(const std::string& text) { return text.empty() ? "" : "  " + text + '\n'; }

std::string Title(const FieldStatistics& field, const std::string& rest, std::optional<std::size_t> width) {
  constexpr std::size_t kShortest = 10;
  std::string title = FieldTitle(field);
  const std::size_t used = DisplayWidth(rest);
  if (width) title = CutToWidth(title, *width > used + kShortest ? *width - used : kShortest);
  return title + rest + '\n';
}

std::string GoodField(const FieldStatistics& field, std::optional<std::size_t> width) {
  const std::string kind = field.continuous ? ": continuous, " : ": categorical, ";
  std::string text = Title(field, kind + Join(CaseTexts(field)), width);
  text += Line(LenienceText(field)) + Line(Join(SummaryTexts(field)));
  if (!field.stats.GetFrequencies().empty()) return text + HistogramText(MakeBars(field), width);
  if (!field.continuous) return text + Line("no categories");
  const std::optional<Spread> spread = SpreadOf(field);
  if (!spread) return text;
  const auto& summary = field.stats.GetSummStats();
  return text + SpreadText(*spread, NumberText(summary.minimum), NumberText(summary.maximum), width);
}

std::string BadField(const ReportedField& field, std::optional<std::size_t> width) {
  const Problem& problem = *field.problem;
  return Title(field.statistics, ": not read", width) + Line(ProblemText(problem)) +
         Line(StatusText(problem.status.value_or(0))) + (problem.hint.empty() ? "" : Line("hint: " + problem.hint));
}

std::string Head(const StatisticsReport& report) {
  std::string text = Printable(report.input->GetDisplayName()) + ": " + Printable(TitleOf(report.model));
  if (report.models > 1) {
    text += ", model " + std::to_string(report.model.number) + " of " + std::to_string(report.models);
  }
  if (!report.hasStatistics) return text + ", no statistics: it has no \"ModelStats\"\n";
  const std::size_t count = report.fields.size();
  return text + ", statistics of " + std::to_string(count) + (count == 1 ? " field\n" : " fields\n");
}

}  // namespace

std::string StatisticsText(const StatisticsReport& report, std::optional<std::size_t> width) {
  std::string text = Head(report);
  for (const ReportedField& field : report.fields) {
    text += '\n' + (field.problem ? BadField(field, width) : GoodField(field.statistics, width));
  }
  return text;
}

}  // namespace rqtool
