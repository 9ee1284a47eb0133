#include "CombineReport.h"

#include <sys/resource.h>

#include <cstdio>

#include "DisplayText.h"
#include "Json.h"

namespace rqtool {

namespace {

constexpr std::size_t kLongestFinding = 600;
constexpr double kMegabyte = 1e6;

// The most memory that the process held so far, in bytes.
std::uint64_t PeakMemory() {
  rusage usage{};
  if (::getrusage(RUSAGE_SELF, &usage) != 0) return 0;
  return static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
}

std::string Count(std::uint64_t count, const std::string& noun) {
  return std::to_string(count) + ' ' + noun + (count == 1 ? "" : "s");
}

std::string Decimal(double value, const char* format) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string FindingLines(const std::vector<Finding>& findings) {
  std::string text;
  const std::string* file = nullptr;
  for (const Finding& finding : findings) {
    if (file == nullptr || *file != finding.file) text += Printable(finding.file) + ":\n";
    file = &finding.file;
    text += "  " + CutToWidth(Printable(FindingText(finding)), kLongestFinding) + '\n';
  }
  return text.empty() ? text : text + '\n';
}

std::string SkippedLines(const std::vector<Problem>& skipped) {
  std::string text;
  for (const Problem& problem : skipped) text += "skipped: " + Describe(problem).substr(std::string("rqxml: ").size());
  return text.empty() ? text : text + '\n';
}

std::string Sums(const CombineResult& result) {
  std::string text = Printable(result.output) + ": ";
  if (!result.size) return text + "nothing was written, " + Count(result.findings.size(), "finding") + '\n';
  text += Count(static_cast<std::uint64_t>(result.segments), "segment") + " from " + Count(result.files, "file");
  if (!result.skipped.empty()) text += ", " + std::to_string(result.skipped.size()) + " skipped";
  text += ", " + Count(result.findings.size(), "finding") + '\n';
  text += "  added after the first file: " + Count(result.added.fields, "field") + ", " +
          Count(result.added.values, "value") + ", " + Count(result.added.miningFields, "mining field") + '\n';
  text += "  " + Count(*result.size, "byte") + " in " + Decimal(result.seconds, "%.2f") + " s, peak memory ";
  return text + Decimal(static_cast<double>(PeakMemory()) / kMegabyte, "%.0f") + " MB\n";
}

Json ToJson(const Finding& finding) {
  Json json{{"kind", finding.kind}, {"file", finding.file}};
  if (!finding.field.empty()) json["field"] = finding.field;
  json["known"] = finding.known;
  json["found"] = finding.found;
  json["items"] = finding.items;
  json["text"] = FindingText(finding);
  return json;
}

Json ToJson(const Problem& problem) {
  Json json{{"file", problem.file}, {"reason", problem.what}};
  json["line"] = problem.place ? Json(problem.place->line) : Json();
  json["column"] = problem.place ? Json(problem.place->column) : Json();
  json["status"] = problem.status ? Json(*problem.status) : Json();
  json["hint"] = problem.hint;
  return json;
}

template <typename Item>
Json ToJsonArray(const std::vector<Item>& items) {
  Json array = Json::array();
  for (const Item& item : items) array.push_back(ToJson(item));
  return array;
}

}  // namespace

std::string CombineText(const CombineResult& result) {
  return FindingLines(result.findings) + SkippedLines(result.skipped) + Sums(result);
}

std::string CombineJson(const CombineResult& result) {
  Json json;
  json["output"] = result.output;
  json["written"] = result.size.has_value();
  json["files"] = result.files;
  json["segments"] = result.segments;
  json["fieldsAdded"] = result.added.fields;
  json["valuesAdded"] = result.added.values;
  json["miningFieldsAdded"] = result.added.miningFields;
  json["bytes"] = result.size ? Json(*result.size) : Json();
  json["seconds"] = result.seconds;
  json["peakMemory"] = PeakMemory();
  json["findings"] = ToJsonArray(result.findings);
  json["skipped"] = ToJsonArray(result.skipped);
  return JsonText(json);
}

}  // namespace rqtool
