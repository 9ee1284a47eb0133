#ifndef RQXML_SETTINGS_RQSETTINGSPARSER_H
#define RQXML_SETTINGS_RQSETTINGSPARSER_H

#include <string>
#include <vector>

#include "rqxml/common/RQExport.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQVarList.h"
#include "rqxml/pmml/RQPMMLParser.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// Reads a settings document: a PMML document whose "MiningBuildTask" carries the parameters of one build task in an
/// "Extension".
///
/// Parameters are found by name (UTF-8, exact) among the children of a scope; of several with one name the first in
/// the document counts. Every operation first returns the status of the last parse when that is not OK, and 107 when
/// nothing was parsed. Outputs keep what they held on failure, except where an operation says otherwise. The getters do
/// not change the parser and can be called in any order; bad content never throws. A document must come in through this
/// class's ParseToDOM: that of the base class, called by its qualified name, does not know of the parameters.
///
/// A scope is null for the task's own parameters, or the handle of a complex parameter. Handles are valid until the
/// object parses again or is destroyed; a handle of another document must not be used.
class RQ_API RQSettingsParser : public RQPMMLParser {
 public:
  /// What a parameter's "type" says.
  enum ParamType : int {
    ParamString = 0,     ///< "string"
    ParamDouble = 1,     ///< "double"
    ParamInteger = 2,    ///< "integer"
    ParamBoolean = 3,    ///< "boolean"
    ParamEnum = 4,       ///< "enum"
    ParamFieldName = 5,  ///< "fieldName"
    ParamUnknown = 6     ///< anything else, or no answer possible
  };

  RQSettingsParser();
  ~RQSettingsParser() override;

  /// Parses the bytes of `in` as RQPMMLParser::ParseToDOM does, then finds the parameters.
  /// @return as RQPMMLParser::ParseToDOM; 119, with the document still held, when there is no
  /// "MiningBuildTask"/"Extension"/"Parameters" below the
  ///   root (the first child of each name is taken)
  /// @throws as RQPMMLParser::ParseToDOM
  RQCommon::RQStatus ParseToDOM(std::istream& in) override;

  /// @name One value
  /// All return 120 (flag true) for an unknown name, 121 for a parameter that has a "ListValue" and no value, and 123
  /// (flag true) for one that has neither.
  /// @{

  /// The value as text, in UTF-8.
  RQCommon::RQStatus GetParameter(const char* name, std::string& value, void* scope) const;

  /// The value as an integer of zero or more. 109 for anything else; a negative number is stored all the same.
  /// Integers beyond the range of int come out modulo 2^32, and are refused when that is negative.
  RQCommon::RQStatus GetParameter(const char* name, int& value, void* scope) const;

  /// The value as a double; "NaN" gives RQMV::gMissingValue. 109 for infinities and anything else.
  RQCommon::RQStatus GetParameter(const char* name, double& value, void* scope) const;

  /// The value as a flag: exactly "true" or "false". 109 for anything else.
  RQCommon::RQStatus GetParameter(const char* name, bool& value, void* scope) const;

  /// @}

  /// The type of a parameter; ParamUnknown also when there is no such parameter or no document.
  ParamType GetParameterType(const char* name, void* scope);

  /// The handle of the "ComplexParameter" of that name, to be used as a scope; null when there is none.
  void* GetComplexParameter(const char* name, void* scope);

  /// @name Names of variables, always from the task's own parameters
  /// @{

  /// The values of a parameter that is a list when its "isList" is "true"; empty ones are dropped.
  /// @param names cleared once the parameter is found; after 108 it holds the names before the faulty one
  /// @return OK, also for an empty list; 120 (flag true); 122 for a list without "ListValue"; 108 when the parameter
  ///   or an item of its list has no "value"
  RQCommon::RQStatus GetVariables(const char* name, std::vector<std::string>& names) const;

  /// The value of a parameter that is no list.
  /// @return OK; 120 (flag true); without a "value" 121 when "isList" is "true", else 108
  RQCommon::RQStatus GetVariables(const char* name, std::string& name_out) const;

  /// GetArray of "target".
  RQCommon::RQStatus GetTargetVars(std::vector<std::string>& names) const;
  /// GetVariables of "CatResponses".
  RQCommon::RQStatus GetCatResponseVars(std::vector<std::string>& names) const;
  /// GetVariables of "ContResponses".
  RQCommon::RQStatus GetContResponseVars(std::vector<std::string>& names) const;
  /// GetArray of "inputs".
  RQCommon::RQStatus GetPredictors(std::vector<std::string>& names) const;
  /// GetVariables of "CatPredictors".
  RQCommon::RQStatus GetCatPredictors(std::vector<std::string>& names) const;
  /// GetVariables of "ContPredictors".
  RQCommon::RQStatus GetContPredictors(std::vector<std::string>& names) const;
  /// GetVariables of "FrequencyWeightVar".
  RQCommon::RQStatus GetFrequencyWeight(std::string& name) const;

  /// @}
  /// @name Arrays
  /// The items of a parameter that is a list when it has a "ListValue" child, else its one value. The output is cleared
  /// once the parameter is found and holds the items before the faulty one after a failure. All return 120 (flag true)
  /// for an unknown name, and 123 (flag true) for a parameter with neither form, a list without items, and an item
  /// without "value".
  /// @{

  /// Texts in UTF-8; empty ones are dropped.
  RQCommon::RQStatus GetArray(const char* name, std::vector<std::string>& out, void* scope) const;
  /// Integers of zero or more; 109 ends the reading at anything else.
  RQCommon::RQStatus GetArray(const char* name, std::vector<int>& out, void* scope) const;
  /// Doubles, "NaN" as RQMV::gMissingValue; 109 ends the reading at infinities and anything else.
  RQCommon::RQStatus GetArray(const char* name, std::vector<double>& out, void* scope) const;

  /// @}
  /// @name Matrices
  /// The rows of a "MatrixParmeter" (spelled so in the documents), which may differ in length. Items without a value
  /// and items that cannot be converted are skipped. The output is cleared once the matrix is found; 120 (flag true)
  /// when it is not.
  /// @{

  /// Texts in UTF-8; empty ones stay.
  RQCommon::RQStatus GetMatrix(const char* name, std::vector<std::vector<std::string>>& out, void* scope);
  /// Integers of zero or more.
  RQCommon::RQStatus GetMatrix(const char* name, std::vector<std::vector<int>>& out, void* scope);
  /// Doubles, "NaN" as RQMV::gMissingValue.
  RQCommon::RQStatus GetMatrix(const char* name, std::vector<std::vector<double>>& out, void* scope);

  /// @}

  using RQPMMLParser::FillVarList;

  /// Adds a variable for each "DataField" of the data dictionary to `vars`, in document order, with the input role and
  /// its storage type.
  /// @param vars receives the variables; those added before a failure stay
  /// @param binsFromTransDict takes range, cut points and bin labels of continuous fields from the transformation
  ///   dictionary; a field with fewer than two bins keeps the range of its own "Interval"
  /// @return OK; 108 for a field without "name", "dataType" or "optype"; 109 for an unknown "dataType", a margin that
  ///   is no number or a left margin above the right one; 110 when bins are wanted and a continuous field has none;
  ///   111 when `vars` refuses a variable or does not hand it out
  RQCommon::RQStatus FillVarList(RQMTD_NAMESPACE::RQVarList& vars, bool binsFromTransDict) const;

  /// Adds a variable for each "DerivedField" of the transformation dictionary, as FillVarList does without bins; none
  /// when the document has no such dictionary. The range of a derived field may also stand in an "Extension".
  RQCommon::RQStatus FillTransDict(RQMTD_NAMESPACE::RQVarList& vars) const;

 private:
  RQ_LOCAL RQCommon::RQStatus GetParameterReadiness() const;
  RQ_LOCAL const xercesc::DOMElement* GetScope(void* scope) const;

  template <class Read>
  RQ_LOCAL RQCommon::RQStatus WithParameter(const XMLCh* tag, const char* name, void* scope, Read read) const;
  template <class Value>
  RQ_LOCAL RQCommon::RQStatus GetScalar(const char* name, Value& value, void* scope) const;
  template <class Item>
  RQ_LOCAL RQCommon::RQStatus GetItems(const char* name, std::vector<Item>& out, void* scope) const;
  template <class Item>
  RQ_LOCAL RQCommon::RQStatus GetRows(const char* name, std::vector<std::vector<Item>>& out, void* scope) const;

  const xercesc::DOMElement* fParameters = nullptr;
};

}  // namespace RQXPrsUtil

#endif
