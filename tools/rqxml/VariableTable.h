#ifndef RQXML_TOOLS_VARIABLETABLE_H
#define RQXML_TOOLS_VARIABLETABLE_H

#include "TextTable.h"
#include "VariableSelection.h"

namespace rqtool {

/// What is shown of variables.
enum class VariableColumns {
  Usual,  ///< what every kind of document tells
  All     ///< storage, role, and flag with count too
};

/// The variables for people: name, label, kind, type, missing values, invalid range, and range, bins or
/// categories.
TextTable MakeVariableTable(const VariableSelection& variables, VariableColumns columns = VariableColumns::Usual);

}  // namespace rqtool

#endif
