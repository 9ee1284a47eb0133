#ifndef RQXML_FUZZ_REFERENCE_STATISTICS_H
#define RQXML_FUZZ_REFERENCE_STATISTICS_H

#include <optional>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQUniStats.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace rqxml_fuzz {

/// What reading one "UnivariateStats" comes to.
struct SlowStatistics {
  const xercesc::DOMElement* element = nullptr;
  RQCommon::RQStatus status;
  std::optional<RQMTD_NAMESPACE::RQUniStats> built;  ///< nothing also when the caller's object is judged instead
};

/// What RQPMMLParser::FillUniStats does with each field of a model, written as the rules read: every search from the
/// start, every list read whole before it is judged. It stands on the XML library alone.
std::vector<SlowStatistics> SlowUniStats(const xercesc::DOMElement& model, bool lenient);

}  // namespace rqxml_fuzz

#endif
