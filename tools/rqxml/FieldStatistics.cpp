#include "FieldStatistics.h"

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

std::vector<std::string> TextsOf(const DOMElement& element) {
  const DOMElement* array = ChildOf(ChildOf(&element, "DiscrStats"), "Array");
  for (; array != nullptr; array = xml::GetNextSiblingElmt(*array, "Array")) {
    if (Attribute(*array, "type") == "string") return SplitTextArray(TextOf(*array));
  }
  return {};
}

// Counts without texts of their own follow the values of the data dictionary. Texts that are more or fewer than the
// counts are of no use.
void NameCategories(FieldStatistics& field, const DataField* dataField) {
  static const DataField kUnknown;
  const DataField& known = dataField == nullptr ? kUnknown : *dataField;
  std::vector<std::string> texts = TextsOf(*field.element);
  field.texts = texts.size();
  const std::size_t count = field.stats.GetFrequencies().size();
  if ((texts.empty() ? known.values.size() : texts.size()) != count) return;
  if (texts.empty()) texts = known.values;
  for (const std::string& text : texts) {
    const auto found = known.labels.find(text);
    field.labels.push_back(found == known.labels.end() ? std::string() : found->second);
  }
  field.categories = std::move(texts);
}

double Margin(const DOMElement& interval, const char* name) {
  return NumberAttribute(interval, name).value_or(RQMV::gMissingValue);
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

void Describe(FieldStatistics& field, DataFields& dataFields) {
  const DOMElement* const counts = ChildOf(field.element, "Counts");
  field.field = Attribute(*field.element, "field");
  field.continuous = ChildOf(field.element, "NumericInfo") != nullptr;
  if (counts != nullptr) {
    field.missing = NumberAttribute(*counts, "missingFreq");
    field.invalid = NumberAttribute(*counts, "invalidFreq");
  }
  const DataField* const dataField = dataFields.Find(field.field.value_or(""));
  if (dataField != nullptr) field.label = dataField->label;
  if (!field.status.IsOK()) return;
  if (field.continuous) {
    field.intervals = ReadIntervals(*field.element);
  } else {
    NameCategories(field, dataField);
  }
}

}  // namespace

std::vector<FieldStatistics> ReadStatistics(const Document& document, DataFields& dataFields, const Model& model,
                                            StatisticsReading reading) {
  DocumentParser& parser = *document.parser;
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

}  // namespace rqtool
