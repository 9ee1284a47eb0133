#ifndef RQXML_TOOLS_FIELDFAILURE_H
#define RQXML_TOOLS_FIELDFAILURE_H

#include <string>
#include <vector>

#include "Failure.h"
#include "InputFile.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/pmml/RQPMMLParser.h"

namespace rqtool {

/// Tells which field of a PMML document made RQPMMLParser::FillVarList fail, and why.
/// @param input  the document, for a second look at it
/// @param parser holds the document
/// @param status what FillVarList returned, not OK
/// @param names  the name filter given to FillVarList
/// @param added  how many variables it had added to the list, which was empty before
Failure FieldFailure(InputFile& input, const RQXPrsUtil::RQPMMLParser& parser, const RQCommon::RQStatus& status,
                     const std::vector<std::string>& names, int added);

}  // namespace rqtool

#endif
