#ifndef RQXML_TOOLS_DOCUMENTVARIABLES_H
#define RQXML_TOOLS_DOCUMENTVARIABLES_H

#include <memory>
#include <string>
#include <vector>

#include "Document.h"
#include "Failure.h"
#include "InputFile.h"
#include "rqxml/common/RQVarList.h"

namespace rqtool {

/// The variables of a PMML or settings document's data fields. Of a PMML document those that `names` names, all when
/// that is empty; of a settings document always all.
/// @param input the document, for a second look at it
/// @param bins  takes the bins of continuous fields from the document
/// @throws Failure (Refused) that tells which field is at fault
std::unique_ptr<RQMTD_NAMESPACE::RQVarList> ReadVariables(InputFile& input, const Document& document,
                                                          const std::vector<std::string>& names, bool bins);

/// What the reader of data models hands on besides what stands in the document.
struct DataModelOptions {
  bool fieldRoles = false;  ///< input fields get the role for input fields
  bool flag = false;        ///< stands with the range of continuous variables, where the count is above 1
  int count = -1;           ///< stands there too
};

/// The variables of a data-model document.
/// @param input the document, for a second look at it
/// @throws Failure (Refused) that tells which field is at fault
std::unique_ptr<RQMTD_NAMESPACE::RQVarList> ReadDataModelVariables(InputFile& input, const Document& document,
                                                                   const DataModelOptions& options);

/// The variables that can be read, and what is wrong with the fields that cannot.
struct ReadableVariables {
  std::unique_ptr<RQMTD_NAMESPACE::RQVarList> list;
  std::vector<Problem> problems;  ///< ends early where many fields are bad
};

/// The variables of the document's data fields, as far as they can be read.
ReadableVariables ReadReadableVariables(InputFile& input, const Document& document);

/// The variables of the document's derived fields; only settings documents give them.
/// @throws Failure (Refused) for a document of another kind, and as ReadVariables does
std::unique_ptr<RQMTD_NAMESPACE::RQVarList> ReadDerivedVariables(InputFile& input, const Document& document);

}  // namespace rqtool

#endif
