#include "StatisticsFault.h"

#include <charconv>
#include <cmath>
#include <functional>
#include <string_view>
#include <system_error>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "ElementPlace.h"
#include "TextArray.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace rqtool {

namespace {

using xercesc::DOMElement;
namespace xml = RQXPrsUtil;

using Fault = std::optional<std::string>;
using IntervalCheck = std::function<Fault(const DOMElement&)>;

bool IsBadNumber(const DOMElement& element, const char* name) {
  double value = 0;
  return xml::GetDoubleAttribute(element, name, value) == 1;
}

std::optional<double> Number(const DOMElement& element, const char* name) {
  double value = 0;
  if (xml::GetDoubleAttribute(element, name, value) != 0) return std::nullopt;
  return value;
}

std::string AttributeText(const DOMElement& element, const char* name) {
  return std::string(name) + "=\"" + Attribute(element, name).value_or("") + '"';
}

std::string Lacks(const std::string& element, const std::string& attribute) {
  return '"' + element + "\" has no attribute \"" + attribute + '"';
}

// The element that holds the counts, "DiscrStats" or "ContStats".
const DOMElement* CountsParent(const FieldStatistics& field) {
  return ChildOf(field.element, field.continuous ? "ContStats" : "DiscrStats");
}

// The array that was read: the first one, or with lenience the first one of a categorical field that holds no texts.
const DOMElement* CountsArray(const FieldStatistics& field) {
  const DOMElement* const first = ChildOf(CountsParent(field), "Array");
  if (field.continuous) return first;
  const DOMElement* array = first;
  while (array != nullptr && Attribute(*array, "type") == "string") array = xml::GetNextSiblingElmt(*array, "Array");
  return array == nullptr ? first : array;
}

// What the first interval that `check` objects to is charged with.
Fault FirstBadInterval(const FieldStatistics& field, const IntervalCheck& check) {
  if (!field.continuous) return std::nullopt;
  const DOMElement* interval = ChildOf(CountsParent(field), "Interval");
  for (int number = 1; interval != nullptr; interval = xml::GetNextSiblingElmt(*interval, "Interval"), ++number) {
    if (const Fault fault = check(*interval)) return "Interval number " + std::to_string(number) + ": " + *fault;
  }
  return std::nullopt;
}

Fault MissingInInterval(const DOMElement& interval) {
  if (!Attribute(interval, "leftMargin") && !Attribute(interval, "rightMargin")) return "it has no margin at all";
  if (!Attribute(interval, "closure")) return "the attribute \"closure\" is missing";
  return std::nullopt;
}

Fault BadMargin(const DOMElement& interval) {
  for (const char* const name : {"leftMargin", "rightMargin"}) {
    if (IsBadNumber(interval, name)) return AttributeText(interval, name) + " is no finite number";
  }
  const auto left = Number(interval, "leftMargin");
  const auto right = Number(interval, "rightMargin");
  if (left && right && *left >= *right) return "the left margin does not lie below the right margin";
  return std::nullopt;
}

Fault MissingAttribute(const FieldStatistics& field) {
  if (!field.field) return "the attribute \"field\" is missing";
  const DOMElement* const counts = ChildOf(field.element, "Counts");
  if (counts != nullptr && !Attribute(*counts, "totalFreq")) return Lacks("Counts", "totalFreq");
  if (Fault fault = FirstBadInterval(field, MissingInInterval)) return fault;
  const DOMElement* const array = CountsArray(field);
  if (array != nullptr && !Attribute(*array, "type")) return Lacks("Array", "type");
  return std::nullopt;
}

Fault BadSummary(const DOMElement* info) {
  if (info == nullptr) return std::nullopt;
  for (const char* const name : {"minimum", "maximum", "mean"}) {
    if (IsBadNumber(*info, name)) return "\"NumericInfo\": " + AttributeText(*info, name) + " is no finite number";
  }
  return std::nullopt;
}

Fault BadArray(const DOMElement* array) {
  const std::string type = array == nullptr ? "int" : Attribute(*array, "type").value_or("int");
  if (type == "int" || type == "real") return std::nullopt;
  return "\"Array\" has type=\"" + type + "\" where counts, of type int or real, are asked for";
}

Fault BadValue(const FieldStatistics& field) {
  const DOMElement* const counts = ChildOf(field.element, "Counts");
  if (counts != nullptr && Number(*counts, "totalFreq").value_or(-1) < 0) {
    return "\"Counts\": " + AttributeText(*counts, "totalFreq") + " is no finite number of zero or above";
  }
  if (Fault fault = BadSummary(ChildOf(field.element, "NumericInfo"))) return fault;
  if (Fault fault = FirstBadInterval(field, BadMargin)) return fault;
  // Strictly read, the first array must hold the counts.
  const DOMElement* const first = ChildOf(CountsParent(field), "Array");
  return BadArray(field.needsLenience ? first : CountsArray(field));
}

Fault MissingElement(const FieldStatistics& field) {
  if (ChildOf(field.element, "Counts") == nullptr) return "it has no \"Counts\"";
  if (!field.continuous && CountsParent(field) == nullptr) return "it has no \"NumericInfo\" and no \"DiscrStats\"";
  return field.continuous ? "its \"ContStats\" has intervals and no \"Array\" of counts"
                          : "its \"DiscrStats\" has no \"Array\" of counts";
}

bool IsCount(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stop == end && std::isfinite(value) && value >= 0;
}

Fault BadCounts(const DOMElement* array) {
  if (array == nullptr) return std::nullopt;
  for (const std::string& text : SplitTextArray(xml::ToUTF8(array->getTextContent()))) {
    if (!IsCount(text)) return "the \"Array\" of counts holds \"" + text + "\", no finite number of zero or above";
  }
  return "the text of the \"Array\" of counts is broken up by other markup";
}

bool IsOpenAtLeft(const DOMElement& interval) {
  const std::string closure = Attribute(interval, "closure").value_or("");
  return closure == "openOpen" || closure == "openClosed";
}

// What is wrong with `interval` behind the interval `before`; both are good on their own.
Fault Contradiction(const DOMElement& before, const DOMElement& interval) {
  const auto end = Number(before, "rightMargin");
  const auto begin = Number(interval, "leftMargin");
  if (!end) return "the interval before it is open above";
  if (IsOpenAtLeft(before) != IsOpenAtLeft(interval)) return "it is closed on another side than those before it";
  if (!begin) return "it has no left margin, and is not the first";
  if (*begin < *end) return "it begins before the end of the interval before it";
  return std::nullopt;
}

Fault BadIntervals(const FieldStatistics& field) {
  const DOMElement* before = nullptr;
  const auto fault = FirstBadInterval(field, [&before](const DOMElement& interval) {
    const Fault found = before == nullptr ? std::nullopt : Contradiction(*before, interval);
    before = &interval;
    return found;
  });
  return fault ? fault : Fault("there is not one count for each interval and each gap between intervals");
}

Fault BadStatistics(const FieldStatistics& field) {
  if (field.field && field.field->empty()) return "the name of the field is empty";
  const DOMElement* const info = ChildOf(field.element, "NumericInfo");
  if (info == nullptr) return std::nullopt;
  if (Number(*info, "standardDeviation").value_or(0) < 0) {
    return AttributeText(*info, "standardDeviation") + " is negative";
  }
  const auto minimum = Number(*info, "minimum");
  const auto maximum = Number(*info, "maximum");
  if (minimum && maximum && *minimum > *maximum) return "the minimum lies above the maximum";
  if (CountsParent(field) == nullptr) return "it has \"NumericInfo\" without \"ContStats\"";
  return std::nullopt;
}

Fault FindFault(const FieldStatistics& field) {
  switch (field.status.GetCode()) {
    case xml::AttributeMissing:
      return MissingAttribute(field);
    case xml::BadValue:
      return BadValue(field);
    case xml::ElementMissing:
      return MissingElement(field);
    case xml::BadFrequencies:
      return BadCounts(CountsArray(field));
    case xml::BadIntervals:
      return BadIntervals(field);
    case xml::BadStatistics:
      return BadStatistics(field);
    default:
      return std::nullopt;
  }
}

}  // namespace

std::string ExplainFault(const FieldStatistics& field) {
  return FindFault(field).value_or("its statistics cannot be read");
}

}  // namespace rqtool
