#include "rqxml/fields/RQXFieldReader.h"

#include <limits>

#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXNames.h"
#include "rqxml/xml/RQXNumbers.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

namespace {

constexpr RQCommon::RQStatus kMissing{AttributeMissing, false};
constexpr RQCommon::RQStatus kBad{BadValue, false};

RQCommon::RQStatus ReadType(const XMLCh* word, const RQXFieldDialect& dialect, RQXField& field) {
  if (!word) return kMissing;
  for (const RQXTypeWord& type : dialect.types) {
    if (!XStrEquals(word, type.word)) continue;
    field.storage = type.storage;
    field.numeric = type.numeric;
    return {};
  }
  return kBad;
}

RQCommon::RQStatus ReadChildren(const xercesc::DOMElement& element, const RQXFieldDialect& dialect, RQXField& field) {
  const auto any = [](const xercesc::DOMElement&) { return true; };
  for (const xercesc::DOMElement* child = FindElement(element.getFirstChild(), any); child;
       child = FindElement(child->getNextSibling(), any)) {
    if (const RQCommon::RQStatus status = dialect.readChild(*child, field); !status.IsOK()) return status;
  }
  return {};
}

}  // namespace

RQCommon::RQStatus ReadField(const xercesc::DOMElement& element, const RQXFieldDialect& dialect, RQXField& field) {
  field.Reset();
  const XMLCh* const name = AttributeOf(element, Names::kName);
  if (!name) return kMissing;
  AssignUTF8(name, field.name);
  AssignUTF8(AttributeOf(element, dialect.labelAttribute), field.label);
  const XMLCh* const type = AttributeOf(element, dialect.typeAttribute);
  if (const RQCommon::RQStatus status = ReadType(type, dialect, field); !status.IsOK()) return status;
  const XMLCh* const measure = AttributeOf(element, dialect.measureAttribute);
  if (!measure) return kMissing;
  field.categorical = !XStrEquals(measure, u"continuous");
  return ReadChildren(element, dialect, field);
}

void ReadValue(const xercesc::DOMElement& value, RQXField& field) {
  if (!value.hasAttributes()) return;
  const XMLCh* const property = AttributeOf(value, u"property");
  const bool valid = !property || XStrEquals(property, u"valid");
  AppendValue(value, Names::kValueAttribute, field.numeric, valid ? field.numbers : field.missingNumbers,
              valid ? field.texts : field.missingTexts);
  AppendLabel(value, u"displayValue", valid ? field.labels : field.missingLabels);
}

void ReadInvalidRange(const xercesc::DOMElement& extension, RQXField& field) {
  double bound = 0;
  if (ReadDoubleAttribute(extension, Names::kValueAttribute, bound) != RQXNumberAttribute::Good) return;
  const XMLCh* const name = AttributeOf(extension, Names::kName);
  if (!name) return;
  if (XStrEquals(name, u"invalidRangeLower")) field.invalidLower = bound;
  if (XStrEquals(name, u"invalidRangeUpper")) field.invalidUpper = bound;
}

RQCommon::RQStatus ReadRange(const xercesc::DOMElement& interval, RQXField& field) {
  field.low = std::numeric_limits<double>::min();
  field.high = RQXField::kHighest;
  if (ReadDoubleAttribute(interval, Names::kLeftMargin, field.low) == RQXNumberAttribute::Bad) return kBad;
  if (ReadDoubleAttribute(interval, Names::kRightMargin, field.high) == RQXNumberAttribute::Bad) return kBad;
  return field.low > field.high ? kBad : RQCommon::RQStatus();
}

void AppendValue(const xercesc::DOMElement& value, const XMLCh* name, bool numeric, std::vector<double>& numbers,
                 std::vector<std::string>& texts) {
  const XMLCh* const text = AttributeOf(value, name);
  if (!text) return;
  if (!numeric) return AssignUTF8(text, texts.emplace_back());
  double number = 0;
  if (ReadDouble(text, number)) numbers.push_back(number);
}

void AppendLabel(const xercesc::DOMElement& value, const XMLCh* name, std::vector<std::string>& labels) {
  if (const XMLCh* const text = AttributeOf(value, name)) AssignUTF8(text, labels.emplace_back());
}

}  // namespace RQXPrsUtil
