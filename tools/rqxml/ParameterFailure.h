#ifndef RQXML_TOOLS_PARAMETERFAILURE_H
#define RQXML_TOOLS_PARAMETERFAILURE_H

#include <string>

#include "Failure.h"
#include "InputFile.h"
#include "ParameterTree.h"
#include "ParameterValue.h"

namespace rqtool {

/// Tells that `scope` has nothing of that kind and name.
/// @param input the document, for a second look at it
Failure NoSuchParameter(InputFile& input, const Scope& scope, ParameterNode::Kind kind, const std::string& name);

/// Tells why the parameter `name` of `scope`, which is there, could not be read.
/// @param input   the document, for a second look at it
/// @param reading what came of it; its status is not OK
Failure ParameterFailure(InputFile& input, const Scope& scope, const std::string& name, ReadAs as,
                         const Reading& reading);

}  // namespace rqtool

#endif
