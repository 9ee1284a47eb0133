#include <algorithm>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "rqxml/combiner/RQXSplitPMMLCombiner.h"
#include "rqxml/combiner/RQXSubsequence.h"
#include "rqxml/combiner/RQXSubtree.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace RQXPrsUtil {

using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

/// Every element of that name below `root`, in document order, and the attribute's text of those that have it.
void EnumDescendants(const DOMNode* root, const char* tagName, const char* attribute, std::vector<DOMNode*>& elements,
                     std::vector<std::string>& texts) {
  if (!root) return;
  for (DOMNode* node = root->getFirstChild(); node; node = NextInSubtree(root, node)) {
    const DOMElement* const element = AsElement(*node, tagName);
    if (!element) continue;
    elements.push_back(node);
    if (const XMLCh* const text = GetAttribute(*element, attribute)) texts.push_back(ToUTF8(text));
  }
}

/// Every child element of that name which has a "name", with that name.
void ReadNames(const DOMElement* parent, const char* tagName, std::vector<const DOMElement*>& elements,
               std::vector<std::string>& names) {
  for (auto* element = GetFirstChildElmt(*parent, tagName); element; element = GetNextSiblingElmt(*element, tagName)) {
    const XMLCh* const name = GetAttribute(*element, "name");
    if (!name) continue;
    elements.push_back(element);
    names.push_back(ToUTF8(name));
  }
}

}  // namespace

void RQXSplitPMMLCombiner::InsertSplitVarsToMiningModel(DOMNode* dataDict, DOMNode* miningSchema) {
  if (!dataDict || !miningSchema) return;
  const int count = fSplitVars.Size();
  for (int i = 0; i < count; ++i) {
    InsertDataFieldElem(static_cast<DOMElement*>(dataDict), i);
    InsertMiningFieldElem(static_cast<DOMElement*>(miningSchema), i);
  }
  EnumDataFields(dataDict, fDataFields, fDataFieldNames);
  fKnownDataFields.insert(fDataFieldNames.begin(), fDataFieldNames.end());
  UpdateNumOfDataFields(dataDict, static_cast<int>(fDataFieldNames.size()));
  for (DOMNode* const field : fDataFields) {
    std::vector<DOMNode*> elements;
    Strings& values = fDataFieldValues.emplace_back();
    EnumValuesOfDataField(field, elements, values);
    fKnownValues.emplace_back(values.begin(), values.end());
  }
  std::vector<const DOMElement*> miningFields;
  ReadNamesOfMiningFields(static_cast<const DOMElement*>(miningSchema), miningFields, fMiningFieldNames);
  fKnownMiningFields.insert(fMiningFieldNames.begin(), fMiningFieldNames.end());
}

DOMNode* RQXSplitPMMLCombiner::InsertDataFieldElem(DOMElement* dataDict, int i) {
  const std::size_t at = static_cast<std::size_t>(i);
  if (!dataDict || i < 0 || at >= fSplitVarNames.size()) return nullptr;
  DOMElement* const field = CreateInto(dataDict, "DataField");
  if (!field) return nullptr;
  SetAttribute(*field, "name", fSplitVarNames[at].c_str());
  SetAttribute(*field, "displayName", fSplitVarLabels[at].c_str());
  SetAttribute(*field, "optype", fSplitVarOptypes[at].c_str());
  SetAttribute(*field, "dataType", fSplitVarDataTypes[at].c_str());
  for (const std::string& category : fSplitVarCategories[at]) {
    if (DOMElement* const value = CreateInto(field, "Value")) SetAttribute(*value, "value", category.c_str());
  }
  return nullptr;
}

DOMNode* RQXSplitPMMLCombiner::InsertMiningFieldElem(DOMElement* miningSchema, int i) {
  const std::size_t at = static_cast<std::size_t>(i);
  if (!miningSchema || i < 0 || at >= fSplitVarNames.size()) return nullptr;
  DOMElement* const field = CreateInto(miningSchema, "MiningField");
  if (!field) return nullptr;
  SetAttribute(*field, "name", fSplitVarNames[at].c_str());
  SetAttribute(*field, "usageType", "active");
  return nullptr;
}

void RQXSplitPMMLCombiner::EnumDataFields(const DOMNode* dataDict, std::vector<DOMNode*>& elements, Strings& names) {
  EnumDescendants(dataDict, "DataField", "name", elements, names);
}

void RQXSplitPMMLCombiner::EnumValuesOfDataField(DOMNode* field, std::vector<DOMNode*>& elements, Strings& values) {
  EnumDescendants(field, "Value", "value", elements, values);
}

void RQXSplitPMMLCombiner::UpdateNumOfDataFields(DOMNode* dataDict, int n) {
  if (!dataDict || n < 0) return;
  SetAttribute(*static_cast<DOMElement*>(dataDict), "numberOfFields", static_cast<double>(n));
}

void RQXSplitPMMLCombiner::UpdateDataDict(const DOMElement* source, DOMNode* target) {
  if (!source || !target) return;
  std::vector<DOMNode*> fields;
  Strings names;
  EnumDataFields(source, fields, names);
  for (std::size_t j = 0; j < names.size(); ++j) {
    if (fKnownDataFields.contains(names[j])) {
      MergeValues(fields[j], j);
    } else {
      InsertDataField(static_cast<const DOMElement*>(fields[j]), target);
    }
  }
  UpdateNumOfDataFields(target, static_cast<int>(fDataFieldNames.size()));
}

/// A known field's values go to the output field at the same position, wherever its name stands there: split
/// documents list their fields in one order.
void RQXSplitPMMLCombiner::MergeValues(DOMNode* sourceField, std::size_t position) {
  // The lists differ in length after an export, and after a merge that ran out of memory.
  if (position >= std::min(fDataFields.size(), fKnownValues.size())) return;
  std::vector<DOMNode*> elements;
  Strings values;
  EnumValuesOfDataField(sourceField, elements, values);
  Strings& known = fDataFieldValues[position];
  const std::size_t before = known.size();
  for (std::size_t i = 0; i < values.size(); ++i) {
    // Compared with what was known before this field: a value that it lists twice is inserted twice.
    if (fKnownValues[position].contains(values[i])) continue;
    InsertValueOfDataField(elements[i], fDataFields[position], known);
  }
  fKnownValues[position].insert(known.begin() + static_cast<std::ptrdiff_t>(before), known.end());
}

DOMNode* RQXSplitPMMLCombiner::InsertDataField(const DOMElement* field, DOMNode* dataDict) {
  DOMNode* const copy = CopyInto(field, dataDict, true);
  if (!copy) return nullptr;
  if (const XMLCh* const name = GetAttribute(*copy, "name")) {
    fDataFieldNames.push_back(ToUTF8(name));
    fKnownDataFields.insert(fDataFieldNames.back());
  }
  fDataFields.push_back(copy);
  std::vector<DOMNode*> elements;
  Strings& values = fDataFieldValues.emplace_back();
  EnumValuesOfDataField(copy, elements, values);
  fKnownValues.emplace_back(values.begin(), values.end());
  return copy;
}

DOMNode* RQXSplitPMMLCombiner::InsertValueOfDataField(const DOMNode* value, DOMNode* field, Strings& values) {
  DOMNode* const copy = CopyInto(value, field, true);
  if (!copy) return nullptr;
  if (const XMLCh* const text = GetAttribute(*copy, "value")) values.push_back(ToUTF8(text));
  return copy;
}

void RQXSplitPMMLCombiner::UpdateMiningSchema(const DOMElement* source, DOMNode* target) {
  if (!source || !target) return;
  std::vector<const DOMElement*> fields;
  Strings names;
  ReadNamesOfMiningFields(source, fields, names);
  if (ContainsInARow(fMiningFieldNames, names)) return;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!fKnownMiningFields.contains(names[i])) InsertMiningField(fields[i], target);
  }
}

void RQXSplitPMMLCombiner::ReadNamesOfMiningFields(const DOMElement* miningSchema,
                                                   std::vector<const DOMElement*>& elements, Strings& names) {
  ReadNames(miningSchema, "MiningField", elements, names);
}

void RQXSplitPMMLCombiner::ReadNamesOfDataFields(const DOMElement* dataDict, std::vector<const DOMElement*>& elements,
                                                 Strings& names) {
  ReadNames(dataDict, "DataField", elements, names);
}

DOMNode* RQXSplitPMMLCombiner::InsertMiningField(const DOMElement* field, DOMNode* miningSchema) {
  DOMNode* const copy = CopyInto(field, miningSchema, true);
  if (!copy) return nullptr;
  if (const XMLCh* const name = GetAttribute(*copy, "name")) {
    fMiningFieldNames.push_back(ToUTF8(name));
    fKnownMiningFields.insert(fMiningFieldNames.back());
  }
  return copy;
}

}  // namespace RQXPrsUtil
