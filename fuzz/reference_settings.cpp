#include "reference_settings.h"

#include <algorithm>
#include <array>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/XMLString.hpp>

#include "reference_text.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqxml_fuzz {
namespace {

using RQCommon::RQStatus;
using RQXPrsUtil::GetAttribute;
using RQXPrsUtil::GetFirstChildElmt;
using RQXPrsUtil::GetNextSiblingElmt;
using xercesc::DOMElement;
using xercesc::DOMNode;

const RQStatus kNotFound(120, true);
const RQStatus kWithoutValue(123, true);

const DOMElement* Find(const DOMElement& scope, const char* tag, const std::string& name) {
  for (const DOMElement* child = GetFirstChildElmt(scope, tag); child != nullptr;
       child = GetNextSiblingElmt(*child, tag)) {
    const XMLCh* const own = GetAttribute(*child, "name");
    if (own != nullptr && xercesc::XMLString::equals(own, SlowUTF16(name.c_str()).data())) return child;
  }
  return nullptr;
}

std::vector<const DOMElement*> Values(const DOMElement& parent) {
  std::vector<const DOMElement*> values;
  for (const DOMElement* child = GetFirstChildElmt(parent, "Value"); child != nullptr;
       child = GetNextSiblingElmt(*child, "Value"))
    values.push_back(child);
  return values;
}

bool IsTrue(const DOMElement& element, const char* attribute) {
  const XMLCh* const text = GetAttribute(element, attribute);
  return text != nullptr && SlowUTF8(text) == "true";
}

// Conversions: false for a bad value.

bool Convert(const XMLCh* text, std::string& value) {
  value = SlowUTF8(text);
  return true;
}

bool Convert(const XMLCh* text, int& value) {
  const auto number = SlowInteger(text);
  if (number) value = *number;
  return number && *number >= 0;
}

bool Convert(const XMLCh* text, double& value) {
  const auto number = SlowDouble(text);
  if (number) value = *number;
  return number.has_value();
}

bool Convert(const XMLCh* text, bool& value) {
  const std::string word = SlowUTF8(text);
  if (word == "true") value = true;
  if (word == "false") value = false;
  return word == "true" || word == "false";
}

template <class Item>
bool IsDropped(const Item&) {
  return false;
}
bool IsDropped(const std::string& item) { return item.empty(); }

template <class Item>
RQStatus Append(const DOMElement& element, std::vector<Item>& items) {
  const XMLCh* const text = GetAttribute(element, "value");
  if (text == nullptr) return kWithoutValue;
  Item item{};
  if (!Convert(text, item)) return RQStatus(109, false);
  if (!IsDropped(item)) items.push_back(item);
  return {};
}

RQStatus AppendName(const DOMElement& element, std::vector<std::string>& names) {
  const RQStatus status = Append(element, names);
  return status == kWithoutValue ? RQStatus(108, false) : status;
}

}  // namespace

SlowSettings::SlowSettings(const DOMElement& root) : fParameters(&root) {
  for (const char* tag : {"MiningBuildTask", "Extension", "Parameters"})
    if (fParameters != nullptr) fParameters = GetFirstChildElmt(*fParameters, tag);
}

template <class Value>
RQStatus SlowSettings::GetParameter(const DOMElement& scope, const std::string& name, Value& value) const {
  const DOMElement* const parameter = Find(scope, "Parameter", name);
  if (parameter == nullptr) return kNotFound;
  const XMLCh* const text = GetAttribute(*parameter, "value");
  if (text != nullptr) return Convert(text, value) ? RQStatus() : RQStatus(109, false);
  return GetFirstChildElmt(*parameter, "ListValue") != nullptr ? RQStatus(121, false) : kWithoutValue;
}

template <class Item>
RQStatus SlowSettings::GetArray(const DOMElement& scope, const std::string& name, std::vector<Item>& items) const {
  const DOMElement* const parameter = Find(scope, "Parameter", name);
  if (parameter == nullptr) return kNotFound;
  items.clear();
  const DOMElement* const list = GetFirstChildElmt(*parameter, "ListValue");
  if (list == nullptr) return Append(*parameter, items);
  if (Values(*list).empty()) return kWithoutValue;
  for (const DOMElement* value : Values(*list))
    if (const RQStatus status = Append(*value, items); !status.IsOK()) return status;
  return {};
}

template <class Item>
RQStatus SlowSettings::GetMatrix(const DOMElement& scope, const std::string& name,
                                 std::vector<std::vector<Item>>& rows) const {
  const DOMElement* const matrix = Find(scope, "MatrixParmeter", name);
  if (matrix == nullptr) return kNotFound;
  rows.clear();
  for (const DOMElement* row = GetFirstChildElmt(*matrix, "ArrayParameter"); row != nullptr;
       row = GetNextSiblingElmt(*row, "ArrayParameter")) {
    std::vector<Item> items;
    for (const DOMElement* value : Values(*row)) {
      Item item{};
      const XMLCh* const text = GetAttribute(*value, "value");
      if (text != nullptr && Convert(text, item)) items.push_back(item);
    }
    rows.push_back(items);
  }
  return {};
}

int SlowSettings::GetParameterType(const DOMElement& scope, const std::string& name) const {
  constexpr std::array kWords = {"string", "double", "integer", "boolean", "enum", "fieldName"};
  const DOMElement* const parameter = Find(scope, "Parameter", name);
  const std::string type = parameter == nullptr ? "" : SlowUTF8(GetAttribute(*parameter, "type"));
  return static_cast<int>(std::find(kWords.begin(), kWords.end(), type) - kWords.begin());
}

const DOMElement* SlowSettings::GetComplexParameter(const DOMElement& scope, const std::string& name) const {
  return Find(scope, "ComplexParameter", name);
}

RQStatus SlowSettings::GetVariables(const std::string& name, std::vector<std::string>& names) const {
  const DOMElement* const parameter = Find(*fParameters, "Parameter", name);
  if (parameter == nullptr) return kNotFound;
  names.clear();
  if (!IsTrue(*parameter, "isList")) return AppendName(*parameter, names);
  const DOMElement* const list = GetFirstChildElmt(*parameter, "ListValue");
  if (list == nullptr) return RQStatus(122, false);
  for (const DOMElement* value : Values(*list))
    if (const RQStatus status = AppendName(*value, names); !status.IsOK()) return status;
  return {};
}

RQStatus SlowSettings::GetVariables(const std::string& name, std::string& value) const {
  const DOMElement* const parameter = Find(*fParameters, "Parameter", name);
  if (parameter == nullptr) return kNotFound;
  const XMLCh* const text = GetAttribute(*parameter, "value");
  if (text == nullptr) return RQStatus(IsTrue(*parameter, "isList") ? 121 : 108, false);
  value = SlowUTF8(text);
  return {};
}

std::vector<std::string> AllNames(const DOMElement& root) {
  std::vector<std::string> names;
  const DOMNode* node = &root;
  while (node != nullptr) {
    const XMLCh* const text = GetAttribute(*node, "name");
    const std::string name = SlowUTF8(text);
    if (text != nullptr && std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    const DOMNode* next = node->getFirstChild();
    while (next == nullptr && node != &root) {
      next = node->getNextSibling();
      if (next == nullptr) node = node->getParentNode();
    }
    node = next;
  }
  return names;
}

// What the fuzz target asks.
template RQStatus SlowSettings::GetParameter(const DOMElement&, const std::string&, std::string&) const;
template RQStatus SlowSettings::GetParameter(const DOMElement&, const std::string&, int&) const;
template RQStatus SlowSettings::GetParameter(const DOMElement&, const std::string&, double&) const;
template RQStatus SlowSettings::GetParameter(const DOMElement&, const std::string&, bool&) const;
template RQStatus SlowSettings::GetArray(const DOMElement&, const std::string&, std::vector<std::string>&) const;
template RQStatus SlowSettings::GetArray(const DOMElement&, const std::string&, std::vector<int>&) const;
template RQStatus SlowSettings::GetArray(const DOMElement&, const std::string&, std::vector<double>&) const;
template RQStatus SlowSettings::GetMatrix(const DOMElement&, const std::string&,
                                          std::vector<std::vector<std::string>>&) const;
template RQStatus SlowSettings::GetMatrix(const DOMElement&, const std::string&, std::vector<std::vector<int>>&) const;
template RQStatus SlowSettings::GetMatrix(const DOMElement&, const std::string&,
                                          std::vector<std::vector<double>>&) const;

}  // namespace rqxml_fuzz
