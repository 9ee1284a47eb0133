#ifndef RQXML_TOOLS_COMBINEREPORT_H
#define RQXML_TOOLS_COMBINEREPORT_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Failure.h"
#include "Findings.h"

namespace rqtool {

/// What came of a combination.
struct CombineResult {
  std::string output;
  std::optional<std::uint64_t> size;  ///< in bytes; none when nothing was written
  std::size_t files = 0;              ///< how many were named
  int segments = 0;
  Added added{};
  std::vector<Finding> findings{};
  std::vector<Problem> skipped{};
  double seconds = 0;
};

/// The report for people: the findings by file, what was skipped, the sums.
std::string CombineText(const CombineResult& result);

/// The report for programs.
std::string CombineJson(const CombineResult& result);

}  // namespace rqtool

#endif
