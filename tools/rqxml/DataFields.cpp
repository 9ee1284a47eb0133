#include "DataFields.h"

#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "ElementPlace.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

using RQXPrsUtil::GetNextSiblingElmt;
using xercesc::DOMElement;

DataField Read(const DOMElement& element) {
  DataField field;
  field.label = Attribute(element, "displayName").value_or("");
  const DOMElement* value = ChildOf(&element, "Value");
  for (; value != nullptr; value = GetNextSiblingElmt(*value, "Value")) {
    if (Attribute(*value, "property").value_or("valid") != "valid") continue;
    auto text = Attribute(*value, "value");
    if (!text) continue;
    field.labels.emplace(*text, Attribute(*value, "displayValue").value_or(""));
    field.values.push_back(std::move(*text));
  }
  return field;
}

}  // namespace

DataFields::DataFields(const DOMElement& root) {
  const DOMElement* field = ChildOf(ChildOf(&root, "DataDictionary"), "DataField");
  for (; field != nullptr; field = GetNextSiblingElmt(*field, "DataField")) {
    if (auto name = Attribute(*field, "name")) fElements.emplace(std::move(*name), field);
  }
}

const DataField* DataFields::Find(const std::string& name) {
  const auto found = fElements.find(name);
  if (found == fElements.end()) return nullptr;
  const auto [entry, isNew] = fRead.try_emplace(found->second);
  if (isNew) entry->second = Read(*found->second);
  return &entry->second;
}

}  // namespace rqtool
