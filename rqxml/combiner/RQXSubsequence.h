#ifndef RQXML_COMBINER_RQXSUBSEQUENCE_H
#define RQXML_COMBINER_RQXSUBSEQUENCE_H

#include <string>
#include <vector>

namespace RQXPrsUtil {

/// True when `part` stands in `whole` in order and without gaps; in time linear in both.
bool ContainsInARow(const std::vector<std::string>& whole, const std::vector<std::string>& part);

}  // namespace RQXPrsUtil

#endif
