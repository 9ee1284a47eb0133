#include <string>
#include <unordered_map>

#include "rqxml/fields/RQXFieldAdder.h"
#include "rqxml/fields/RQXFieldReader.h"
#include "rqxml/settings/RQSettingsParser.h"
#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXNames.h"

namespace RQXPrsUtil {

namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::IRQVariable;
using xercesc::DOMElement;

constexpr RQXTypeWord kDataTypes[] = {
    {u"integer", 1, true}, {u"double", 2, true}, {u"float", 2, true},    {u"string", 3, false},
    {u"date", 4, true},    {u"time", 5, true},   {u"dateTime", 6, true},
};

RQStatus ReadDataFieldChild(const DOMElement& child, RQXField& field) {
  if (HasTag(child, Names::kValueElement)) ReadValue(child, field);
  if (!field.numeric) return {};
  if (HasTag(child, Names::kInterval)) return ReadRange(child, field);
  if (HasTag(child, Names::kExtension)) ReadInvalidRange(child, field);
  return {};
}

/// A derived field may carry its range inside an "Extension".
RQStatus ReadDerivedFieldChild(const DOMElement& child, RQXField& field) {
  const RQStatus status = ReadDataFieldChild(child, field);
  if (!field.numeric || !HasTag(child, Names::kExtension)) return status;
  const DOMElement* const interval = FirstChild(child, Names::kInterval);
  return interval ? ReadRange(*interval, field) : RQStatus();
}

constexpr RQXFieldDialect kDataField{u"displayName", u"dataType", kDataTypes, u"optype", ReadDataFieldChild};
constexpr RQXFieldDialect kDerivedField{u"displayName", u"dataType", kDataTypes, u"optype", ReadDerivedFieldChild};

constexpr RQXAddRules kRules{.withRange = true, .textsByMeasure = true, .storageType = true};

/// Roles of fields by name. Nothing enters one yet; a frequency weight that is entered here becomes the list's weight.
using RoleTable = std::unordered_map<std::string, IRQVariable::VariableRole>;

IRQVariable::VariableRole GetRole(const RoleTable& roles, const std::string& name) {
  const auto found = roles.find(name);
  const bool weight = found != roles.end() && found->second == IRQVariable::RoleFrequencyWeight;
  return weight ? IRQVariable::RoleFrequencyWeight : IRQVariable::RoleInput;
}

RQStatus Fill(RQMTD_NAMESPACE::RQVarList& vars, const DOMElement& dictionary, const XMLCh* tag,
              const RQXFieldDialect& dialect, RQXBinSource& bins) {
  const RoleTable roles;
  RQXField field;
  for (auto* element = FirstChild(dictionary, tag); element; element = NextSibling(*element, tag)) {
    Prefetch(*element);
    RQStatus status = ReadField(*element, dialect, field);
    if (status.IsOK() && !field.categorical) field.role = GetRole(roles, field.name);
    if (status.IsOK()) status = AddFieldWithBins(vars, field, bins, kRules);
    if (!status.IsOK()) return status;
  }
  return {};
}

}  // namespace

RQStatus RQSettingsParser::FillVarList(RQMTD_NAMESPACE::RQVarList& vars, bool binsFromTransDict) const {
  if (const RQStatus status = GetReadiness(); !status.IsOK()) return status;
  RQXBinSource bins(binsFromTransDict, fTransDictionary);
  return Fill(vars, *fDataDictionary, Names::kDataField, kDataField, bins);
}

RQStatus RQSettingsParser::FillTransDict(RQMTD_NAMESPACE::RQVarList& vars) const {
  if (const RQStatus status = GetReadiness(); !status.IsOK() || !fTransDictionary) return status;
  RQXBinSource none(false, nullptr);
  return Fill(vars, *fTransDictionary, Names::kDerivedField, kDerivedField, none);
}

}  // namespace RQXPrsUtil
