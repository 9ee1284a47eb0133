#include "rqxml/combiner/RQXSubsequence.h"

#include <cstddef>

namespace RQXPrsUtil {

namespace {

/// For each beginning of `part`, how long the longest of its own beginnings is that it ends with.
std::vector<std::size_t> GetFallbacks(const std::vector<std::string>& part) {
  std::vector<std::size_t> fallbacks(part.size(), 0);
  std::size_t matched = 0;
  for (std::size_t i = 1; i < part.size(); ++i) {
    while (matched > 0 && part[i] != part[matched]) matched = fallbacks[matched - 1];
    if (part[i] == part[matched]) ++matched;
    fallbacks[i] = matched;
  }
  return fallbacks;
}

}  // namespace

bool ContainsInARow(const std::vector<std::string>& whole, const std::vector<std::string>& part) {
  if (part.empty()) return true;
  if (part.size() > whole.size()) return false;
  const std::vector<std::size_t> fallbacks = GetFallbacks(part);
  std::size_t matched = 0;
  for (const std::string& name : whole) {
    while (matched > 0 && name != part[matched]) matched = fallbacks[matched - 1];
    if (name == part[matched]) ++matched;
    if (matched == part.size()) return true;
  }
  return false;
}

}  // namespace RQXPrsUtil
