#ifndef RQXML_TOOLS_VARIABLETABLE_H
#define RQXML_TOOLS_VARIABLETABLE_H

#include "TextTable.h"
#include "rqxml/common/RQVarList.h"

namespace rqtool {

/// The variables of `list` for people: name, label, kind, type, missing values, invalid range, and range, bins or
/// categories.
TextTable MakeVariableTable(const RQMTD_NAMESPACE::RQVarList& list);

}  // namespace rqtool

#endif
