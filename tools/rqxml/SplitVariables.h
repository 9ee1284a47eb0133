#ifndef RQXML_TOOLS_SPLITVARIABLES_H
#define RQXML_TOOLS_SPLITVARIABLES_H

#include <optional>
#include <string>
#include <vector>

#include "CombineOptions.h"
#include "Splits.h"
#include "rqxml/common/RQVarList.h"

namespace rqtool {

/// How the values of a split variable are stored.
enum class SplitType { String, Double, Integer };

/// A split variable as the combined document is to describe it.
struct SplitVariable {
  std::string name{};
  std::string label{};
  SplitType type = SplitType::String;
  bool continuous = false;
  bool declared = false;                  ///< the categories were given, not gathered
  std::vector<std::string> categories{};  ///< their texts; empty for a continuous variable
};

/// What tells two values apart: equal numbers of a numeric variable give equal keys, however they are written.
/// @return nothing when `value` is no value of that type
std::optional<std::string> ValueKey(SplitType type, const std::string& value);

/// What is wrong with a value of `variable`; empty when nothing is.
std::string WhyBadValue(const SplitVariable& variable, const std::string& value);

/// The split variables of `splits` with what the options say of them.
/// @throws Failure (WrongUsage) for options that make no sense
std::vector<SplitVariable> DescribeSplitVariables(const CombineOptions& options, const Splits& splits);

/// Adds the variables to `list`, which is empty.
void AddSplitVariables(const std::vector<SplitVariable>& variables, RQMTD_NAMESPACE::RQVarList& list);

}  // namespace rqtool

#endif
