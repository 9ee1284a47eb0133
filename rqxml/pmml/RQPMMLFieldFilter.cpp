#include "rqxml/pmml/RQPMMLFieldFilter.h"

#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXNames.h"

namespace RQXPrsUtil {

RQPMMLFieldFilter::RQPMMLFieldFilter(const std::vector<std::string>& names) : fAll(names.empty()) {
  std::size_t room = 0;
  for (const std::string& name : names) room += name.size();
  fText.reserve(room);  // views of it stay good: no name has more units than bytes
  fNames.reserve(names.size());
  for (const std::string& name : names) {
    const std::size_t start = fText.size();
    fText += DecodeUTF8(name.c_str());
    const std::string_view bytes = AsBytes(std::u16string_view(fText).substr(start));
    if (Knows(bytes)) continue;
    fIndex.ReserveOne();
    fIndex.Insert(bytes, fNames.size());
    fNames.push_back(bytes);
  }
}

bool RQPMMLFieldFilter::Wants(const xercesc::DOMElement& field) const {
  if (fAll) return true;
  const XMLCh* const name = AttributeOf(field, Names::kName);
  return !name || Knows(AsBytes(AsView(name)));
}

bool RQPMMLFieldFilter::Knows(std::string_view name) const {
  return fIndex.Find(name, [this](std::size_t at) { return fNames[at]; }) != RQMTD_NAMESPACE::RQNameIndex::kNone;
}

}  // namespace RQXPrsUtil
