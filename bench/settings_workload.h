#ifndef RQXML_BENCH_SETTINGS_WORKLOAD_H
#define RQXML_BENCH_SETTINGS_WORKLOAD_H

#include <string>
#include <vector>

#include "documents.h"
#include "rqxml/common/RQVarList.h"
#include "rqxml/settings/RQSettingsParser.h"

namespace rqxml_bench {

/// What this library reads of a settings document.
class SettingsSubject {
 public:
  /// Parses the document.
  explicit SettingsSubject(const Document& document);

  /// The data fields, with bins.
  void FillData();
  /// The derived fields, into the same list.
  void FillDerived();
  /// The variables of both.
  const RQMTD_NAMESPACE::RQVarList& GetVariables() const { return fVariables; }

  /// Asks for the first `count` parameters of MakeParameterSettings by name, each once and as what it is.
  void ReadParameters(std::size_t count);
  /// True when the last five parameters asked for were those that start with the number `first`.
  bool HasValuesFrom(std::size_t first) const;

 private:
  bool ReadParameter(std::size_t i);

  RQXPrsUtil::RQSettingsParser fParser;
  RQMTD_NAMESPACE::RQVarList fVariables;
  std::string fText;
  int fInteger = 0;
  double fDouble = 0;
  bool fBoolean = false;
  std::vector<int> fList;
};

/// Ends the program unless the document of MakeFieldSettings is read as it stands.
void CheckFields(const Document& document);

/// Ends the program unless the document of MakeParameterSettings is read as it stands.
void CheckParameters(const Document& document);

}  // namespace rqxml_bench

#endif
