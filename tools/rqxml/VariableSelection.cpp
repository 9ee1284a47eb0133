#include "VariableSelection.h"

#include <unordered_set>

namespace rqtool {

VariableSelection SelectVariables(const RQMTD_NAMESPACE::RQVarList& list, const std::vector<std::string>& names) {
  const std::unordered_set<std::string> wanted(names.begin(), names.end());
  VariableSelection selection;
  for (int i = 0; i < list.Size(); ++i) {
    const RQMTD_NAMESPACE::RQVariable* const variable = list.GetVariable(i);
    if (variable == nullptr) continue;
    if (wanted.empty() || wanted.count(variable->GetName()) > 0) selection.push_back(variable);
  }
  return selection;
}

}  // namespace rqtool
