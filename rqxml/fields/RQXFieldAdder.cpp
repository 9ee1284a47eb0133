#include "rqxml/fields/RQXFieldAdder.h"

#include <cstddef>

#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

namespace {

using RQMTD_NAMESPACE::IRQEncoder;
using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQVarList;

template <class Value>
int AddCategorical(RQVarList& vars, const RQXField& field, const std::vector<Value>& values) {
  if (field.labels.size() == values.size()) {
    return vars.AddCatVar(field.name, field.label, values, field.labels, field.role);
  }
  return vars.AddCatVar(field.name, field.label, values, field.role);
}

int AddBinned(RQVarList& vars, const RQXField& field, const RQXBins& bins) {
  const std::vector<double> inner(bins.edges.begin() + 1, bins.edges.end() - 1);
  const int index =
      vars.AddContVar(field.name, field.label, bins.edges.front(), bins.edges.back(), inner, true, field.role);
  // A first label "0" says that the bins were only numbered.
  if (index < 0 || bins.labels.size() != inner.size() + 1 || bins.labels.front() == "0") return index;
  if (IRQEncoder* const encoder = vars.GetEncoderAt(index)) encoder->SetBinLabels(bins.labels);
  return index;
}

int AddContinuous(RQVarList& vars, const RQXField& field, const RQXBins* bins, const RQXAddRules& rules) {
  if (field.role == IRQVariable::RoleFrequencyWeight) {
    return vars.SetWeightVar(field.name, field.label, IRQVariable::RoundingNearest);
  }
  if (bins && bins->edges.size() >= 3) return AddBinned(vars, field, *bins);
  if (!rules.withRange) return vars.AddContVar(field.name, field.label, field.role);
  return vars.AddContVar(field.name, field.label, field.low, field.high, field.role, rules.flag, rules.count);
}

int AddVariable(RQVarList& vars, const RQXField& field, const RQXBins* bins, const RQXAddRules& rules) {
  if (!field.categorical) return AddContinuous(vars, field, bins, rules);
  return field.numeric ? AddCategorical(vars, field, field.numbers) : AddCategorical(vars, field, field.texts);
}

const std::string& MissingLabel(const RQXField& field, std::size_t i) {
  static const std::string kNone;
  return i < field.missingLabels.size() ? field.missingLabels[i] : kNone;
}

void TellMissingValues(RQVarList& vars, int index, const RQXField& field, const RQXAddRules& rules) {
  IRQEncoder* const encoder = vars.GetEncoderAt(index);
  if (!encoder) return;
  const bool texts = field.categorical || !rules.textsByMeasure;
  for (std::size_t i = 0; i < field.missingNumbers.size(); ++i) {
    encoder->AddNumMissingValue(field.missingNumbers[i], MissingLabel(field, i));
  }
  for (std::size_t i = 0; texts && i < field.missingTexts.size(); ++i) {
    encoder->AddStrMissingValue(field.missingTexts[i], MissingLabel(field, i));
  }
  if (field.HasInvalidRange()) encoder->SetInvalidRange(field.invalidLower, field.invalidUpper);
}

}  // namespace

RQCommon::RQStatus AddField(RQVarList& vars, const RQXField& field, const RQXBins* bins, const RQXAddRules& rules) {
  constexpr RQCommon::RQStatus kRefused{VariableRefused, false};
  const int index = AddVariable(vars, field, bins, rules);
  if (index < 0) return kRefused;
  if (rules.missingValues) TellMissingValues(vars, index, field, rules);
  if (!rules.storageType) return {};
  IRQVariable* const variable = vars.GetVarAt(index);
  if (!variable) return kRefused;
  variable->SetStorageType(field.storage);
  return {};
}

RQXBinSource::RQXBinSource(bool wanted, const xercesc::DOMElement* transDictionary) : fWanted(wanted) {
  if (wanted && transDictionary) fIndex.emplace(*transDictionary);
}

bool RQXBinSource::Read(const std::string& fieldName, RQXBins& bins) {
  const xercesc::DOMElement* const discretize = fIndex ? fIndex->Find(DecodeUTF8(fieldName.c_str()).c_str()) : nullptr;
  if (!discretize) return false;
  ReadBins(*discretize, bins);
  return true;
}

RQCommon::RQStatus AddFieldWithBins(RQVarList& vars, const RQXField& field, RQXBinSource& source,
                                    const RQXAddRules& rules) {
  const bool weight = field.role == IRQVariable::RoleFrequencyWeight;
  if (field.categorical || weight || !source.IsWanted()) return AddField(vars, field, nullptr, rules);
  RQXBins bins;
  if (!source.Read(field.name, bins)) return {NoBins, false};
  return AddField(vars, field, &bins, rules);
}

}  // namespace RQXPrsUtil
