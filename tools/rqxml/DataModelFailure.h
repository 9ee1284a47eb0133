#ifndef RQXML_TOOLS_DATAMODELFAILURE_H
#define RQXML_TOOLS_DATAMODELFAILURE_H

#include "Failure.h"
#include "InputFile.h"
#include "rqxml/common/RQStatus.h"

namespace rqtool {

/// Tells which field of a data-model document made FillVarList fail, and why.
/// @param input  the document, for a second look at it
/// @param status what the operation returned, not OK
/// @param added  how many variables it had added to the list, which was empty before
Failure DataModelFailure(InputFile& input, const RQCommon::RQStatus& status, int added);

}  // namespace rqtool

#endif
