#ifndef TESTS_SUPPORT_PMML_H
#define TESTS_SUPPORT_PMML_H

#include <sstream>
#include <string>
#include <vector>

#include "rqxml/pmml/RQPMMLParser.h"
#include "tests/support/recording_var_list.h"
#include "tests/support/status.h"

namespace rqtest {

/// A document around the content of its root.
inline std::string Pmml(const std::string& content) { return "<PMML version=\"4.1\">" + content + "</PMML>"; }

/// A document around the content of its data dictionary, with the content of a transformation dictionary if given.
inline std::string PmmlWithFields(const std::string& fields) {
  return Pmml("<DataDictionary>" + fields + "</DataDictionary>");
}
inline std::string PmmlWithFields(const std::string& fields, const std::string& transformations) {
  return Pmml("<DataDictionary>" + fields + "</DataDictionary><TransformationDictionary>" + transformations +
              "</TransformationDictionary>");
}

/// A data field around the content of its element.
inline std::string Field(const std::string& name, const std::string& optype, const std::string& dataType,
                         const std::string& content = "") {
  return "<DataField name=\"" + name + "\" optype=\"" + optype + "\" dataType=\"" + dataType + "\">" + content +
         "</DataField>";
}

inline RQCommon::RQStatus Parse(RQXPrsUtil::RQPMMLParser& parser, const std::string& document) {
  std::istringstream stream(document);
  return parser.ParseToDOM(stream);
}

/// What filling a variable list came to.
struct Filled {
  RQCommon::RQStatus status;
  Calls calls;
};

/// Parses a document and fills a recording list from it.
inline Filled Fill(const std::string& document, const std::vector<std::string>& names = {}, bool useBins = false) {
  RQXPrsUtil::RQPMMLParser parser;
  Filled filled;
  filled.status = Parse(parser, document);
  if (!filled.status.IsOK()) return filled;
  RecordingVarList vars;
  filled.status = parser.FillVarList(vars, names, useBins);
  filled.calls = vars.calls;
  return filled;
}

inline Filled FillWithBins(const std::string& document) { return Fill(document, {}, true); }

}  // namespace rqtest

#endif
