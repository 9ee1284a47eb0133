#include "reference_datamodel.h"

#include <limits>
#include <map>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "slow_dom.h"

namespace rqxml_fuzz {
namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQVarList;
using xercesc::DOMElement;
using xercesc::DOMNode;

struct Field {
  std::string name, label, storage;
  bool continuous = false;
  IRQVariable::VariableRole role = IRQVariable::RoleNone;
  std::vector<double> numbers;
  std::vector<std::string> strings, labels;
  double minimum = std::numeric_limits<double>::lowest();
  double maximum = std::numeric_limits<double>::max();

  bool IsNumeric() const { return storage != "string"; }
};

const std::map<std::string, int>& StorageCodes() {
  static const std::map<std::string, int> codes = {{"integer", 1}, {"real", 2}, {"string", 3},
                                                   {"date", 4},    {"time", 5}, {"timestamp", 6}};
  return codes;
}

IRQVariable::VariableRole ToRole(const std::string& word, bool fieldRoles) {
  if (word == "input") return static_cast<IRQVariable::VariableRole>(fieldRoles ? 5 : 4);
  if (word == "target") return static_cast<IRQVariable::VariableRole>(2);
  return static_cast<IRQVariable::VariableRole>(word == "freqWeight" ? 3 : 0);
}

RQStatus ReadHead(const DOMElement& element, bool fieldRoles, Field& field) {
  const auto name = Attribute(element, "name");
  if (!name) return RQStatus(108, false);
  field.name = *name;
  field.label = Attribute(element, "displayLabel").value_or("");
  const auto storage = Attribute(element, "storage");
  if (!storage) return RQStatus(108, false);
  if (StorageCodes().count(*storage) == 0) return RQStatus(109, false);
  field.storage = *storage;
  const auto measure = Attribute(element, "measure");
  if (!measure) return RQStatus(108, false);
  field.continuous = *measure == "continuous";
  field.role = ToRole(Attribute(element, "role").value_or(""), fieldRoles);
  return {};
}

void ReadValues(const DOMElement& values, Field& field) {
  for (const DOMElement* value : Children(values, "Value")) {
    if (value->getAttributes()->getLength() == 0) continue;
    if (field.IsNumeric()) {
      if (const auto number = NumberAttribute(*value, "value")) field.numbers.push_back(*number);
    } else if (const auto text = Attribute(*value, "value")) {
      field.strings.push_back(*text);
    }
    if (const auto label = Attribute(*value, "displayLabel")) field.labels.push_back(*label);
  }
}

void ReadChildren(const DOMElement& element, Field& field) {
  for (const DOMNode* child = element.getFirstChild(); child != nullptr; child = child->getNextSibling()) {
    if (const DOMElement* values = AsNamed(child, "Values")) ReadValues(*values, field);
    const DOMElement* range = AsNamed(child, "Range");
    if (range == nullptr || !field.IsNumeric()) continue;
    field.minimum = NumberAttribute(*range, "minValue").value_or(field.minimum);
    field.maximum = NumberAttribute(*range, "maxValue").value_or(field.maximum);
  }
}

int AddContinuous(RQVarList& vars, const Field& field, const DataModelFlags& flags) {
  if (static_cast<int>(field.role) == 3)
    return vars.SetWeightVar(field.name, field.label, static_cast<IRQVariable::WRoundingOption>(2));
  const bool passed = flags.flag && flags.count > 1;
  return vars.AddContVar(field.name, field.label, field.minimum, field.maximum, field.role, passed,
                         passed ? flags.count : -1);
}

template <class Value>
int AddCategorical(RQVarList& vars, const Field& field, const std::vector<Value>& values) {
  if (field.labels.size() != values.size()) return vars.AddCatVar(field.name, field.label, values, field.role);
  return vars.AddCatVar(field.name, field.label, values, field.labels, field.role);
}

int Add(RQVarList& vars, const Field& field, const DataModelFlags& flags) {
  if (field.continuous) return AddContinuous(vars, field, flags);
  return field.IsNumeric() ? AddCategorical(vars, field, field.numbers) : AddCategorical(vars, field, field.strings);
}

}  // namespace

RQStatus SlowFillDataModel(const DOMElement* root, RQVarList& vars, const DataModelFlags& flags) {
  if (root == nullptr || AsNamed(root, "DataModel") == nullptr) return RQStatus(105, false);
  const DOMElement* fields = FirstChild(*root, "Fields");
  if (fields == nullptr) return RQStatus(113, false);
  for (const DOMElement* element : Children(*fields, "Field")) {
    Field field;
    if (const RQStatus status = ReadHead(*element, flags.fieldRoles, field); !status.IsOK()) return status;
    ReadChildren(*element, field);
    const int index = Add(vars, field, flags);
    if (index < 0) return RQStatus(111, false);
    vars.GetVarAt(index)->SetStorageType(StorageCodes().at(field.storage));
  }
  return {};
}

}  // namespace rqxml_fuzz
