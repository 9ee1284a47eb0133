#ifndef RQXML_FUZZ_REFERENCE_FILL_H
#define RQXML_FUZZ_REFERENCE_FILL_H

#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQVarList.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace rqxml_fuzz {

/// What RQPMMLParser::FillVarList does, written as the rules read: one rule after the other, every search from the
/// start, nothing remembered. It takes quadratic time and stands on the XML library alone.
/// @param root the "PMML" element
RQCommon::RQStatus SlowFill(const xercesc::DOMElement& root, RQMTD_NAMESPACE::RQVarList& vars,
                            const std::vector<std::string>& names, bool useBins);

/// The names of all data fields of the document, in their order.
std::vector<std::string> FieldNames(const xercesc::DOMElement& root);

}  // namespace rqxml_fuzz

#endif
