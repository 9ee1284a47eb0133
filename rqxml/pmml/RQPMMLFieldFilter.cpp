#include "rqxml/pmml/RQPMMLFieldFilter.h"

#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXNames.h"

namespace RQXPrsUtil {

RQPMMLFieldFilter::RQPMMLFieldFilter(const std::vector<std::string>& names) : fAll(names.empty()) {
  fNames.reserve(names.size());
  for (const std::string& name : names) fNames.insert(DecodeUTF8(name.c_str()));
}

bool RQPMMLFieldFilter::Wants(const xercesc::DOMElement& field) const {
  if (fAll) return true;
  const XMLCh* const name = AttributeOf(field, Names::kName);
  return !name || fNames.contains(AsView(name));
}

}  // namespace RQXPrsUtil
