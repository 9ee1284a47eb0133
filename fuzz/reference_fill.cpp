#include "reference_fill.h"

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

#include "reference_text.h"

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

const DOMElement* AsNamed(const DOMNode* node, const std::string& tag) {
  if (node->getNodeType() != DOMNode::ELEMENT_NODE || SlowUTF8(node->getNodeName()) != tag) return nullptr;
  return static_cast<const DOMElement*>(node);
}

std::vector<const DOMElement*> Children(const DOMElement& element, const std::string& tag) {
  std::vector<const DOMElement*> found;
  for (const DOMNode* child = element.getFirstChild(); child != nullptr; child = child->getNextSibling())
    if (const DOMElement* match = AsNamed(child, tag)) found.push_back(match);
  return found;
}

const DOMElement* FirstChild(const DOMElement& element, const std::string& tag) {
  const std::vector<const DOMElement*> found = Children(element, tag);
  return found.empty() ? nullptr : found.front();
}

const XMLCh* AttributeText(const DOMElement& element, const std::string& name) {
  const xercesc::DOMAttr* attribute = element.getAttributeNode(SlowUTF16(name).data());
  return attribute == nullptr ? nullptr : attribute->getValue();
}

std::optional<std::string> Attribute(const DOMElement& element, const std::string& name) {
  const XMLCh* text = AttributeText(element, name);
  if (text == nullptr) return std::nullopt;
  return SlowUTF8(text);
}

std::optional<double> NumberAttribute(const DOMElement& element, const std::string& name) {
  const XMLCh* text = AttributeText(element, name);
  return text == nullptr ? std::nullopt : SlowDouble(text);
}

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

RQStatus ReadField(const DOMElement& element, Field& field) {
  field.label = Attribute(element, "displayName").value_or("");
  const auto type = Attribute(element, "dataType");
  if (!type) return RQStatus(108, false);
  field.numeric = *type != "string";
  if (field.numeric && std::find(kNumericTypes.begin(), kNumericTypes.end(), *type) == kNumericTypes.end())
    return RQStatus(109, false);
  const auto optype = Attribute(element, "optype");
  if (!optype) return RQStatus(108, false);
  field.continuous = *optype == "continuous";
  for (const DOMNode* child = element.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (const DOMElement* value = AsNamed(child, "Value")) ReadValue(*value, field);
    if (const DOMElement* extension = AsNamed(child, "Extension"); extension != nullptr && field.numeric)
      ReadExtension(*extension, field);
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

RQStatus AddField(const DOMElement& root, RQVarList& vars, const Field& field, bool useBins) {
  Bins bins;
  if (field.continuous && useBins) {
    const DOMElement* dictionary = FirstChild(root, "TransformationDictionary");
    const DOMElement* discretize = dictionary == nullptr ? nullptr : FindDiscretize(*dictionary, field.name);
    if (discretize == nullptr) return RQStatus(110, false);
    bins = ReadBins(*discretize);
  }
  const int index = !field.continuous            ? AddCategorical(vars, field)
                    : bins.cutPoints.size() >= 3 ? AddBinned(vars, field, bins)
                                                 : vars.AddContVar(field.name, field.label, IRQVariable::RoleInput);
  if (index < 0) return RQStatus(111, false);
  AddMissing(*vars.GetEncoderAt(index), field);
  return {};
}

}  // namespace

RQStatus SlowFill(const DOMElement& root, RQVarList& vars, const std::vector<std::string>& names, bool useBins) {
  const DOMElement* dictionary = FirstChild(root, "DataDictionary");
  if (dictionary == nullptr) return RQStatus(106, false);
  for (const DOMElement* element : Children(*dictionary, "DataField")) {
    Field field;
    const auto name = Attribute(*element, "name");
    if (!name) return RQStatus(108, false);
    field.name = *name;
    if (!names.empty() && std::find(names.begin(), names.end(), field.name) == names.end()) continue;
    RQStatus status = ReadField(*element, field);
    if (status.IsOK()) status = AddField(root, vars, field, useBins);
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
