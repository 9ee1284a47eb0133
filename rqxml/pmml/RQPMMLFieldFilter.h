#ifndef RQXML_PMML_RQPMMLFIELDFILTER_H
#define RQXML_PMML_RQPMMLFIELDFILTER_H

#include <string>
#include <string_view>
#include <vector>

#include "rqxml/common/RQNameIndex.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// Tells which fields a caller named. Gives the answers of FindXStrInList at a cost that does not grow with the list.
class RQPMMLFieldFilter {
 public:
  /// An empty list wants every field.
  explicit RQPMMLFieldFilter(const std::vector<std::string>& names);

  /// True for a field that is named; also for one without "name", which is for the reader to report.
  bool Wants(const xercesc::DOMElement& field) const;

 private:
  bool Knows(std::string_view name) const;

  bool fAll;
  std::u16string fText;                  // all names, one behind the other
  std::vector<std::string_view> fNames;  // their bytes
  RQMTD_NAMESPACE::RQNameIndex fIndex;
};

}  // namespace RQXPrsUtil

#endif
