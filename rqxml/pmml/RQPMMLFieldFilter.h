#ifndef RQXML_PMML_RQPMMLFIELDFILTER_H
#define RQXML_PMML_RQPMMLFIELDFILTER_H

#include <string>
#include <unordered_set>
#include <vector>

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
  bool fAll;
  std::unordered_set<std::u16string> fOwned;
  std::unordered_set<std::u16string_view> fNames;  // views of the owned names, to be asked without a copy
};

}  // namespace RQXPrsUtil

#endif
