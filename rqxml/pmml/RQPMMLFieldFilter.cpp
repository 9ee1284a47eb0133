#include "rqxml/pmml/RQPMMLFieldFilter.h"

#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace RQXPrsUtil {

RQPMMLFieldFilter::RQPMMLFieldFilter(const std::vector<std::string>& names) : fAll(names.empty()) {
  fOwned.reserve(names.size());
  fNames.reserve(names.size());
  for (const std::string& name : names) fNames.insert(*fOwned.emplace(ToUTF16(name.c_str()).data()).first);
}

bool RQPMMLFieldFilter::Wants(const xercesc::DOMElement& field) const {
  if (fAll) return true;
  const XMLCh* const name = AttributeOf(field, u"name");
  return !name || fNames.contains(AsView(name));
}

}  // namespace RQXPrsUtil
