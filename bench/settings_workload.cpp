#include "settings_workload.h"

#include <istream>

#include "settings_documents.h"
#include "workload.h"

namespace rqxml_bench {

SettingsSubject::SettingsSubject(const Document& document) {
  TextBuffer buffer(document.text);
  std::istream in(&buffer);
  Require(fParser.ParseToDOM(in).IsOK(), "the document is parsed");
}

void SettingsSubject::FillData() { Require(fParser.FillVarList(fVariables, true).IsOK(), "the data fields are read"); }

void SettingsSubject::FillDerived() {
  Require(fParser.FillTransDict(fVariables).IsOK(), "the derived fields are read");
}

bool SettingsSubject::ReadParameter(std::size_t i) {
  const std::string name = ParameterName(i);
  switch (TypeOf(i)) {
    case Type::Text:
      return fParser.GetParameter(name.c_str(), fText, nullptr).IsOK();
    case Type::Integer:
      return fParser.GetParameter(name.c_str(), fInteger, nullptr).IsOK();
    case Type::Double:
      return fParser.GetParameter(name.c_str(), fDouble, nullptr).IsOK();
    case Type::Boolean:
      return fParser.GetParameter(name.c_str(), fBoolean, nullptr).IsOK();
    default:
      return fParser.GetArray(name.c_str(), fList, nullptr).IsOK();
  }
}

void SettingsSubject::ReadParameters(std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) Require(ReadParameter(i), "the parameter is read");
}

bool SettingsSubject::HasValuesFrom(std::size_t first) const {
  const int number = static_cast<int>(first);
  return fText == "the value number " + std::to_string(first) && fInteger == number + 1 && fDouble == number + 2.5 &&
         fBoolean && fList == std::vector<int>({number + 4, number + 5, number + 6});
}

void CheckFields(const Document& document) {
  SettingsSubject settings(document);
  settings.FillData();
  settings.FillDerived();
  const RQMTD_NAMESPACE::RQVarList& vars = settings.GetVariables();
  Require(vars.Size() == document.variables, "every field becomes a variable");
  const auto& first = *vars.GetVariable(0);
  Require(first.GetName() == "field_0" && first.GetStorageType() == 2, "the first data field is there");
  Require(first.GetCutPoints() == std::vector<double>({10, 20.5}), "the cut points are there");
  Require(first.GetEncoder().GetBinLabels() == std::vector<std::string>({"low", "middle", "high"}),
          "the bin labels are there");
  Require(first.GetEncoder().GetNumMissingValues().size() == 2, "the missing values are there");
  const auto& derived = *vars.GetVariable(document.variables / 2);
  Require(derived.GetName() == "field_0_bin" && derived.GetMinimum() == 0 && derived.GetMaximum() == 30,
          "the first derived field is there, with its range");
  Require(vars.GetVariable(document.variables / 2 + 1)->GetLabels().size() == 3, "the labels are there");
}

void CheckParameters(const Document& document) {
  SettingsSubject settings(document);
  settings.ReadParameters(10);
  Require(settings.HasValuesFrom(5), "the parameters have their values");
}

}  // namespace rqxml_bench
