#ifndef RQXML_TOOLS_VARIABLESELECTION_H
#define RQXML_TOOLS_VARIABLESELECTION_H

#include <string>
#include <vector>

#include "rqxml/common/RQVarList.h"

namespace rqtool {

/// Variables to show, in their order; they belong to the list that they were taken from.
using VariableSelection = std::vector<const RQMTD_NAMESPACE::RQVariable*>;

/// The variables of `list` that `names` names; all of them when that is empty.
VariableSelection SelectVariables(const RQMTD_NAMESPACE::RQVarList& list, const std::vector<std::string>& names);

}  // namespace rqtool

#endif
