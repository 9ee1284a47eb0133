#ifndef RQXML_TOOLS_VARIABLEJSON_H
#define RQXML_TOOLS_VARIABLEJSON_H

#include "Json.h"
#include "rqxml/common/RQVarList.h"

namespace rqtool {

/// The variables of `list` with all that they were told, as a JSON array.
Json VariablesToJson(const RQMTD_NAMESPACE::RQVarList& list);

}  // namespace rqtool

#endif
