#include "reference_fill.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <string_view>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

#include "reference_text.h"
#include "slow_dom.h"

namespace rqxml_fuzz {
namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::IRQEncoder;
using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQVarList;
using xercesc::DOMElement;
using xercesc::DOMNode;

constexpr double kLowest = std::numeric_limits<double>::lowest();
constexpr double kHighest = std::numeric_limits<double>::max();

constexpr std::array<std::string_view, 15> kNumericTypes = {"double",
                                                            "float",
                                                            "integer",
                                                            "date",
                                                            "time",
                                                            "dateTime",
                                                            "timeSeconds",
                                                            "dateDaysSince[0]",
                                                            "dateDaysSince[1960]",
                                                            "dateDaysSince[1970]",
                                                            "dateDaysSince[1980]",
                                                            "dateTimeSecondsSince[0]",
                                                            "dateTimeSecondsSince[1960]",
                                                            "dateTimeSecondsSince[1970]",
                                                            "dateTimeSecondsSince[1980]"};

// The types of settings documents, and the codes that variables are told for them.
const std::map<std::string, int>& StorageTypes() {
  static const std::map<std::string, int> types = {{"integer", 1}, {"double", 2}, {"float", 2},   {"string", 3},
                                                   {"date", 4},    {"time", 5},   {"dateTime", 6}};
  return types;
}

// Whose rules a field is read by: those of models, or those of settings for the fields of one dictionary or the other.
enum class Kind { Model, Data, Derived };

struct Field {
  std::string name;
  std::string label;
  bool numeric = true;
  bool continuous = false;
  std::vector<double> numbers, missingNumbers;
  std::vector<std::string> strings, missingStrings;
  std::vector<std::string> labels, missingLabels;
  double lower = kLowest;
  double upper = kHighest;
  double low = kLowest;
  double high = kHighest;
  int storage = 0;
};

void ReadValue(const DOMElement& value, Field& field) {
  if (value.getAttributes()->getLength() == 0) return;
  const bool valid = Attribute(value, "property").value_or("valid") == "valid";
  if (field.numeric) {
    if (const auto number = NumberAttribute(value, "value"))
      (valid ? field.numbers : field.missingNumbers).push_back(*number);
  } else if (const auto text = Attribute(value, "value")) {
    (valid ? field.strings : field.missingStrings).push_back(*text);
  }
  if (const auto label = Attribute(value, "displayValue"))
    (valid ? field.labels : field.missingLabels).push_back(*label);
}

void ReadExtension(const DOMElement& extension, Field& field) {
  const auto number = NumberAttribute(extension, "value");
  const auto name = Attribute(extension, "name");
  if (!number || !name) return;
  if (*name == "invalidRangeLower") field.lower = *number;
  if (*name == "invalidRangeUpper") field.upper = *number;
}

bool ReadMargin(const DOMElement& interval, const char* name, double absent, double& margin) {
  margin = absent;
  if (AttributeText(interval, name) == nullptr) return true;
  const auto number = NumberAttribute(interval, name);
  if (number) margin = *number;
  return number.has_value();
}

RQStatus ReadInterval(const DOMElement& interval, Field& field) {
  constexpr double kSmallest = std::numeric_limits<double>::min();
  if (!ReadMargin(interval, "leftMargin", kSmallest, field.low)) return RQStatus(109, false);
  if (!ReadMargin(interval, "rightMargin", kHighest, field.high)) return RQStatus(109, false);
  return field.low > field.high ? RQStatus(109, false) : RQStatus();
}

RQStatus ReadNumericChild(const DOMNode* child, Kind kind, Field& field) {
  const DOMElement* extension = AsNamed(child, "Extension");
  if (extension != nullptr) ReadExtension(*extension, field);
  if (kind == Kind::Model) return {};
  const DOMElement* interval = AsNamed(child, "Interval");
  if (extension != nullptr && kind == Kind::Derived) interval = FirstChild(*extension, "Interval");
  return interval == nullptr ? RQStatus() : ReadInterval(*interval, field);
}

bool IsKnownType(const std::string& type, Kind kind) {
  if (kind != Kind::Model) return StorageTypes().count(type) > 0;
  return type == "string" || std::find(kNumericTypes.begin(), kNumericTypes.end(), type) != kNumericTypes.end();
}

RQStatus ReadField(const DOMElement& element, Kind kind, Field& field) {
  field.label = Attribute(element, "displayName").value_or("");
  const auto type = Attribute(element, "dataType");
  if (!type) return RQStatus(108, false);
  if (!IsKnownType(*type, kind)) return RQStatus(109, false);
  field.numeric = *type != "string";
  if (kind != Kind::Model) field.storage = StorageTypes().at(*type);
  const auto optype = Attribute(element, "optype");
  if (!optype) return RQStatus(108, false);
  field.continuous = *optype == "continuous";
  for (const DOMNode* child = element.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (const DOMElement* value = AsNamed(child, "Value")) ReadValue(*value, field);
    const RQStatus status = field.numeric ? ReadNumericChild(child, kind, field) : RQStatus();
    if (!status.IsOK()) return status;
  }
  return {};
}

const DOMElement* FindDiscretize(const DOMElement& dictionary, const std::string& field) {
  for (const DOMElement* derived : Children(dictionary, "DerivedField"))
    for (const DOMElement* discretize : Children(*derived, "Discretize"))
      if (const XMLCh* text = AttributeText(*discretize, "field");
          text != nullptr && xercesc::XMLString::equals(text, SlowUTF16(field).data()))
        return discretize;
  return nullptr;
}

struct Bins {
  std::vector<double> cutPoints = {0};
  std::vector<std::string> labels;
};

Bins ReadBins(const DOMElement& discretize) {
  Bins bins;
  for (const DOMElement* bin : Children(discretize, "DiscretizeBin")) {
    if (const auto label = Attribute(*bin, "binValue")) bins.labels.push_back(*label);
    for (const DOMElement* interval : Children(*bin, "Interval")) {
      if (bins.cutPoints.size() == 1) bins.cutPoints[0] = NumberAttribute(*interval, "leftMargin").value_or(kLowest);
      bins.cutPoints.push_back(NumberAttribute(*interval, "rightMargin").value_or(kHighest));
    }
  }
  return bins;
}

int AddBinned(RQVarList& vars, const Field& field, const Bins& bins) {
  const std::vector<double> interior(bins.cutPoints.begin() + 1, bins.cutPoints.end() - 1);
  const int index = vars.AddContVar(field.name, field.label, bins.cutPoints.front(), bins.cutPoints.back(), interior,
                                    true, IRQVariable::RoleInput);
  if (index >= 0 && bins.labels.size() == interior.size() + 1 && bins.labels.front() != "0")
    vars.GetEncoderAt(index)->SetBinLabels(bins.labels);
  return index;
}

int AddCategorical(RQVarList& vars, const Field& field) {
  const auto role = IRQVariable::RoleInput;
  if (field.numeric)
    return field.labels.size() == field.numbers.size()
               ? vars.AddCatVar(field.name, field.label, field.numbers, field.labels, role)
               : vars.AddCatVar(field.name, field.label, field.numbers, role);
  return field.labels.size() == field.strings.size()
             ? vars.AddCatVar(field.name, field.label, field.strings, field.labels, role)
             : vars.AddCatVar(field.name, field.label, field.strings, role);
}

void AddMissing(IRQEncoder& encoder, const Field& field) {
  const auto label = [&field](std::size_t i) { return i < field.missingLabels.size() ? field.missingLabels[i] : ""; };
  for (std::size_t i = 0; i < field.missingNumbers.size(); ++i)
    encoder.AddNumMissingValue(field.missingNumbers[i], label(i));
  for (std::size_t i = 0; i < field.missingStrings.size(); ++i)
    encoder.AddStrMissingValue(field.missingStrings[i], label(i));
  if (field.numeric && (field.lower != kLowest || field.upper != kHighest))
    encoder.SetInvalidRange(field.lower, field.upper);
}

int AddContinuous(RQVarList& vars, const Field& field, Kind kind, const Bins& bins) {
  if (bins.cutPoints.size() >= 3) return AddBinned(vars, field, bins);
  if (kind == Kind::Model) return vars.AddContVar(field.name, field.label, IRQVariable::RoleInput);
  return vars.AddContVar(field.name, field.label, field.low, field.high, IRQVariable::RoleInput, false, -1);
}

RQStatus AddField(const DOMElement& root, RQVarList& vars, Field& field, Kind kind, bool useBins) {
  Bins bins;
  if (field.continuous && useBins) {
    const DOMElement* dictionary = FirstChild(root, "TransformationDictionary");
    const DOMElement* discretize = dictionary == nullptr ? nullptr : FindDiscretize(*dictionary, field.name);
    if (discretize == nullptr) return RQStatus(110, false);
    bins = ReadBins(*discretize);
  }
  const int index = field.continuous ? AddContinuous(vars, field, kind, bins) : AddCategorical(vars, field);
  if (index < 0) return RQStatus(111, false);
  if (kind != Kind::Model && field.continuous) field.missingStrings.clear();
  AddMissing(*vars.GetEncoderAt(index), field);
  if (kind != Kind::Model) vars.GetVarAt(index)->SetStorageType(field.storage);
  return {};
}

RQStatus AddAll(const DOMElement& root, RQVarList& vars, Kind kind, bool useBins) {
  const DOMElement* dictionary = FirstChild(root, kind == Kind::Data ? "DataDictionary" : "TransformationDictionary");
  if (dictionary == nullptr) return {};
  for (const DOMElement* element : Children(*dictionary, kind == Kind::Data ? "DataField" : "DerivedField")) {
    Field field;
    const auto name = Attribute(*element, "name");
    if (!name) return RQStatus(108, false);
    field.name = *name;
    RQStatus status = ReadField(*element, kind, field);
    if (status.IsOK()) status = AddField(root, vars, field, kind, useBins);
    if (!status.IsOK()) return status;
  }
  return {};
}

}  // namespace

RQStatus SlowFillSettings(const DOMElement& root, RQVarList& vars, bool useBins) {
  return AddAll(root, vars, Kind::Data, useBins);
}

RQStatus SlowFillDerived(const DOMElement& root, RQVarList& vars) { return AddAll(root, vars, Kind::Derived, false); }

RQStatus SlowFill(const DOMElement& root, RQVarList& vars, const std::vector<std::string>& names, bool useBins) {
  const DOMElement* dictionary = FirstChild(root, "DataDictionary");
  if (dictionary == nullptr) return RQStatus(106, false);
  for (const DOMElement* element : Children(*dictionary, "DataField")) {
    Field field;
    const auto name = Attribute(*element, "name");
    if (!name) return RQStatus(108, false);
    field.name = *name;
    if (!names.empty() && std::find(names.begin(), names.end(), field.name) == names.end()) continue;
    RQStatus status = ReadField(*element, Kind::Model, field);
    if (status.IsOK()) status = AddField(root, vars, field, Kind::Model, useBins);
    if (!status.IsOK()) return status;
  }
  return {};
}

FieldNames ListFieldNames(const DOMElement& root) {
  FieldNames list;
  const DOMElement* dictionary = FirstChild(root, "DataDictionary");
  if (dictionary == nullptr) return list;
  for (const DOMElement* field : Children(*dictionary, "DataField")) {
    const XMLCh* name = AttributeText(*field, "name");
    if (name == nullptr) continue;
    list.names.push_back(SlowUTF8(name));
    if (!xercesc::XMLString::equals(SlowUTF16(list.names.back()).data(), name)) list.exact = false;
  }
  return list;
}

}  // namespace rqxml_fuzz
