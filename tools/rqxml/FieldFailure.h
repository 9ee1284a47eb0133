#ifndef RQXML_TOOLS_FIELDFAILURE_H
#define RQXML_TOOLS_FIELDFAILURE_H

#include <string>
#include <vector>

#include "Document.h"
#include "Failure.h"
#include "InputFile.h"
#include "rqxml/common/RQStatus.h"

namespace rqtool {

/// The two lists of fields that a document has.
enum class FieldKind {
  Data,    ///< "DataField" of the "DataDictionary"
  Derived  ///< "DerivedField" of the "TransformationDictionary"
};

/// Tells which field of a document made FillVarList or FillTransDict fail, and why.
/// @param input    the document, for a second look at it
/// @param document the same, as it was read
/// @param kind     the fields that were read
/// @param status   what the operation returned, not OK
/// @param names    the name filter given to it; empty for none
/// @param added    how many variables it had added to the list, which was empty before
Failure FieldFailure(InputFile& input, const Document& document, FieldKind kind, const RQCommon::RQStatus& status,
                     const std::vector<std::string>& names, int added);

}  // namespace rqtool

#endif
