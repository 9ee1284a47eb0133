#include "StatisticsJson.h"

#include <optional>
#include <string>

#include "rqxml/common/RQUniStats.h"

namespace rqtool {

namespace {

Json TextOrNull(const std::optional<std::string>& text) { return text ? Json(*text) : Json(); }

Json NumberOrNull(const std::optional<double>& number) { return number ? JsonNumber(*number) : Json(); }

Json ClosuresToJson(const FieldStatistics& field) {
  Json closures = Json::array();
  for (const Interval& interval : field.intervals) {
    closures.push_back(interval.closure.empty() ? Json() : Json(interval.closure));
  }
  return closures;
}

Json FieldToJson(const ReportedField& reported) {
  const FieldStatistics& field = reported.statistics;
  const bool good = field.status.IsOK();
  const auto& summary = field.stats.GetSummStats();
  Json json;
  json["field"] = TextOrNull(field.field);
  json["status"] = {{"code", field.status.GetCode()}, {"flag", field.status.GetFlag()}};
  json["continuous"] = field.continuous;
  json["totalFrequency"] = good ? JsonNumber(field.stats.GetTotalFrequency()) : Json();
  json["minimum"] = JsonNumber(summary.minimum);
  json["maximum"] = JsonNumber(summary.maximum);
  json["mean"] = JsonNumber(summary.mean);
  json["standardDeviation"] = JsonNumber(summary.standardDeviation);
  json["cutPoints"] = JsonNumbers(field.stats.GetCutPoints());
  json["frequencies"] = JsonNumbers(field.stats.GetFrequencies());
  json["categories"] = field.categories;
  json["labels"] = field.labels;
  json["closures"] = ClosuresToJson(field);
  json["missingFrequency"] = NumberOrNull(field.missing);
  json["invalidFrequency"] = NumberOrNull(field.invalid);
  json["lenient"] = field.lenient;
  json["problem"] = reported.problem ? Json(reported.problem->what) : Json();
  if (!reported.picture.empty()) json["picture"] = reported.picture;
  return json;
}

}  // namespace

Json StatisticsToJson(const StatisticsReport& report) {
  Json json;
  json["file"] = report.input->GetName();
  json["model"] = TextOrNull(report.model.name);
  json["statistics"] = Json::array();
  for (const ReportedField& field : report.fields) json["statistics"].push_back(FieldToJson(field));
  json["modelElement"] = report.model.tag;
  json["modelNumber"] = report.model.number;
  json["models"] = report.models;
  return json;
}

}  // namespace rqtool
