#ifndef TESTS_SUPPORT_DATAMODEL_H
#define TESTS_SUPPORT_DATAMODEL_H

#include <string>

#include "rqxml/datamodel/RQDataModelParser.h"
#include "tests/support/pmml.h"
#include "tests/support/recording_storage_list.h"
#include "tests/support/status.h"

namespace rqtest {

/// A data-model document around its fields.
inline std::string DataModel(const std::string& fields) {
  return "<DataModel><Fields>" + fields + "</Fields></DataModel>";
}

/// A field around the content of its element; `attributes` stand beside the name.
inline std::string ModelField(const std::string& name, const std::string& attributes, const std::string& content = "") {
  return "<Field name='" + name + "' " + attributes + ">" + content + "</Field>";
}

/// The flags and the count with which a list is filled.
struct FillFlags {
  bool fieldRoles = false;
  bool flag = false;
  int count = 0;
};

/// Fills a recording list from what the parser holds.
inline Filled FillFrom(const RQXPrsUtil::RQDataModelParser& parser, const FillFlags& flags = {}) {
  RecordingStorageList vars;
  Filled filled;
  filled.status = parser.FillVarList(vars, flags.fieldRoles, flags.flag, flags.count);
  filled.calls = vars.calls;
  return filled;
}

/// Parses a data-model document and fills a recording list from it.
inline Filled FillDataModel(const std::string& document, const FillFlags& flags = {}) {
  RQXPrsUtil::RQDataModelParser parser;
  Filled filled;
  filled.status = parser.ParseToDOM(document);
  return filled.status.IsOK() ? FillFrom(parser, flags) : filled;
}

}  // namespace rqtest

#endif
