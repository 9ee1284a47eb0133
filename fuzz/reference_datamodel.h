#ifndef RQXML_FUZZ_REFERENCE_DATAMODEL_H
#define RQXML_FUZZ_REFERENCE_DATAMODEL_H

#include <xercesc/util/XercesDefs.hpp>

#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQVarList.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace rqxml_fuzz {

/// What RQDataModelParser::FillVarList is asked beside the list.
struct DataModelFlags {
  bool fieldRoles = false;
  bool flag = false;
  int count = 0;
};

/// What RQDataModelParser does with a parsed document, written as the rules read: one rule after the other, every
/// search from the start. It stands on the XML library alone.
/// @param root the document element, or null
/// @return also the failures of the parse: 105, 113
RQCommon::RQStatus SlowFillDataModel(const xercesc::DOMElement* root, RQMTD_NAMESPACE::RQVarList& vars,
                                     const DataModelFlags& flags);

}  // namespace rqxml_fuzz

#endif
