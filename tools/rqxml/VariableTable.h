#ifndef RQXML_TOOLS_VARIABLETABLE_H
#define RQXML_TOOLS_VARIABLETABLE_H

#include "TextTable.h"
#include "VariableSelection.h"

namespace rqtool {

/// The variables for people: name, label, kind, type, missing values, invalid range, and range, bins or
/// categories.
TextTable MakeVariableTable(const VariableSelection& variables);

}  // namespace rqtool

#endif
