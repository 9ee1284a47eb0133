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

/// What RQSettingsParser::FillVarList does, in the same way as below.
RQCommon::RQStatus SlowFillSettings(const xercesc::DOMElement& root, RQMTD_NAMESPACE::RQVarList& vars, bool useBins);

/// What RQSettingsParser::FillTransDict does, in the same way as below.
RQCommon::RQStatus SlowFillDerived(const xercesc::DOMElement& root, RQMTD_NAMESPACE::RQVarList& vars);

/// What RQPMMLParser::FillVarList does, written as the rules read: one rule after the other, every search from the
/// start, nothing remembered. It takes quadratic time and stands on the XML library alone.
/// @param root the "PMML" element
RQCommon::RQStatus SlowFill(const xercesc::DOMElement& root, RQMTD_NAMESPACE::RQVarList& vars,
                            const std::vector<std::string>& names, bool useBins);

/// The names of the document's data fields, in their order.
struct FieldNames {
  std::vector<std::string> names;
  bool exact = true;  ///< false when UTF-8 cannot say one of them: the XML library lets lone surrogates of UTF-16 pass
};

/// Lists the names of all data fields.
FieldNames ListFieldNames(const xercesc::DOMElement& root);

}  // namespace rqxml_fuzz

#endif
