#ifndef RQXML_TOOLS_SPLITS_H
#define RQXML_TOOLS_SPLITS_H

#include <cstddef>
#include <string>
#include <vector>

#include "CombineOptions.h"

namespace rqtool {

/// One split of the data: the file with its model, and the values of the split variables.
struct Split {
  std::string file{};                 ///< where it is found from here
  std::size_t line = 0;               ///< its line in the manifest; 0 without one
  std::vector<std::string> values{};  ///< one for each split variable, unless the row is wrong
};

/// All splits, in the order of their segments.
struct Splits {
  std::vector<std::string> variables;
  std::vector<Split> splits;
};

/// Reads what the command line names: a manifest, or the splits themselves.
/// @throws Failure for wrong usage (WrongUsage), and a manifest that cannot be read (FileFailed) or makes no sense
///   (Refused)
Splits ReadSplits(const CombineOptions& options);

}  // namespace rqtool

#endif
