#ifndef RQXML_TOOLS_VARIABLEJSON_H
#define RQXML_TOOLS_VARIABLEJSON_H

#include "Json.h"
#include "VariableSelection.h"

namespace rqtool {

/// The variables with all that they were told, as a JSON array.
Json VariablesToJson(const VariableSelection& variables);

}  // namespace rqtool

#endif
