#ifndef RQXML_PMML_RQPMMLFIELDFILTER_H
#define RQXML_PMML_RQPMMLFIELDFILTER_H

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
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
  struct Hash {
    using is_transparent = void;  // asked with a view of the document's own text
    std::size_t operator()(std::u16string_view name) const { return std::hash<std::u16string_view>()(name); }
  };

  bool fAll;
  std::unordered_set<std::u16string, Hash, std::equal_to<>> fNames;
};

}  // namespace RQXPrsUtil

#endif
