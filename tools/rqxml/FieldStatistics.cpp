#include "FieldStatistics.h"

#include <unordered_map>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "ElementPlace.h"
#include "TextArray.h"
#include "rqxml/common/RQMV.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

using RQCommon::RQStatus;
using xercesc::DOMElement;
namespace xml = RQXPrsUtil;

using FieldElements = std::unordered_map<std::string, const DOMElement*>;

FieldElements DataFields(const DOMElement& root) {
  FieldElements fields;
  const DOMElement* const dictionary = ChildOf(&root, "DataDictionary");
  const DOMElement* field = ChildOf(dictionary, "DataField");
  for (; field != nullptr; field = xml::GetNextSiblingElmt(*field, "DataField")) {
    if (auto name = Attribute(*field, "name")) fields.emplace(std::move(*name), field);
  }
  return fields;
}

std::optional<double> Number(const DOMElement* element, const char* name) {
  double value = 0;
  if (element == nullptr || xml::GetDoubleAttribute(*element, name, value) != 0) return std::nullopt;
  return value;
}

std::vector<std::string> TextsOf(const DOMElement& element) {
  const DOMElement* array = ChildOf(ChildOf(&element, "DiscrStats"), "Array");
  for (; array != nullptr; array = xml::GetNextSiblingElmt(*array, "Array")) {
    if (Attribute(*array, "type") == "string") return SplitTextArray(xml::ToUTF8(array->getTextContent()));
  }
  return {};
}

// The valid values of a data field with their labels.
using Values = std::vector<std::pair<std::string, std::string>>;

Values ValidValuesOf(const DOMElement* dataField) {
  Values values;
  const DOMElement* value = ChildOf(dataField, "Value");
  for (; value != nullptr; value = xml::GetNextSiblingElmt(*value, "Value")) {
    if (Attribute(*value, "property").value_or("valid") != "valid") continue;
    if (auto text = Attribute(*value, "value")) {
      values.emplace_back(std::move(*text), Attribute(*value, "displayValue").value_or(""));
    }
  }
  return values;
}

// Counts without texts of their own follow the values of the data dictionary. Texts that are more or fewer than the
// counts are of no use.
void NameCategories(FieldStatistics& field, const Values& values) {
  const std::size_t count = field.stats.GetFrequencies().size();
  std::vector<std::string> texts = TextsOf(*field.element);
  field.texts = texts.size();
  if (texts.empty()) {
    for (const auto& [value, label] : values) texts.push_back(value);
  }
  if (texts.size() != count) return;
  const std::unordered_map<std::string, std::string> labels(values.begin(), values.end());
  for (const std::string& text : texts) {
    const auto found = labels.find(text);
    field.labels.push_back(found == labels.end() ? std::string() : found->second);
  }
  field.categories = std::move(texts);
}

double Margin(const DOMElement& interval, const char* name) {
  return Number(&interval, name).value_or(RQMV::gMissingValue);
}

std::vector<Interval> ReadIntervals(const DOMElement& element) {
  std::vector<Interval> intervals;
  const DOMElement* child = ChildOf(ChildOf(&element, "ContStats"), "Interval");
  for (; child != nullptr; child = xml::GetNextSiblingElmt(*child, "Interval")) {
    const std::string closure = Attribute(*child, "closure").value_or("");
    const Interval interval{Margin(*child, "leftMargin"), Margin(*child, "rightMargin"),
                            closure != "openOpen" && closure != "openClosed",
                            closure == "openClosed" || closure == "closedClosed", closure};
    if (!intervals.empty() && interval.left > intervals.back().right) {
      const Interval& before = intervals.back();
      intervals.push_back({before.right, interval.left, !before.closedAtRight, !interval.closedAtLeft, {}});
    }
    intervals.push_back(interval);
  }
  return intervals;
}

// Reads what stands behind `cursor`, and moves it there; null at the end.
RQStatus ReadNext(DocumentParser& parser, bool lenient, FieldStatistics& field, const DOMElement*& cursor) {
  parser.SetLenientStatistics(lenient);
  return parser.FillUniStats(field.stats, cursor);
}

void ReadStatus(DocumentParser& parser, StatisticsReading reading, FieldStatistics& field, const DOMElement*& cursor) {
  const DOMElement* const before = cursor;
  field.status = ReadNext(parser, false, field, cursor);
  if (field.status.IsOK()) return;
  cursor = before;
  const RQStatus lenient = ReadNext(parser, true, field, cursor);
  field.needsLenience = lenient.IsOK();
  if (reading == StatisticsReading::Strict) return;
  field.lenient = field.needsLenience;
  field.status = lenient;
}

void Describe(FieldStatistics& field, const FieldElements& dataFields) {
  const DOMElement* const counts = ChildOf(field.element, "Counts");
  field.field = Attribute(*field.element, "field");
  field.continuous = ChildOf(field.element, "NumericInfo") != nullptr;
  field.missing = Number(counts, "missingFreq");
  field.invalid = Number(counts, "invalidFreq");
  const auto found = dataFields.find(field.field.value_or(""));
  const DOMElement* const dataField = found == dataFields.end() ? nullptr : found->second;
  if (dataField != nullptr) field.label = Attribute(*dataField, "displayName").value_or("");
  if (!field.status.IsOK()) return;
  if (field.continuous) {
    field.intervals = ReadIntervals(*field.element);
  } else {
    NameCategories(field, ValidValuesOf(dataField));
  }
}

}  // namespace

std::vector<FieldStatistics> ReadStatistics(const Document& document, const Model& model, StatisticsReading reading) {
  DocumentParser& parser = *document.parser;
  const FieldElements dataFields = DataFields(*parser.GetRootElement());
  parser.SetModelElmt(*model.element);
  std::vector<FieldStatistics> fields;
  const DOMElement* cursor = nullptr;
  for (;;) {
    FieldStatistics field{};
    ReadStatus(parser, reading, field, cursor);
    if (cursor == nullptr) return fields;
    field.element = cursor;
    Describe(field, dataFields);
    fields.push_back(std::move(field));
  }
}

bool HasStatistics(const Model& model) { return ChildOf(model.element, "ModelStats") != nullptr; }

const DOMElement* ChildOf(const DOMElement* element, const char* tag) {
  return element == nullptr ? nullptr : xml::GetFirstChildElmt(*element, tag);
}

}  // namespace rqtool
