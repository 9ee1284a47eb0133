#ifndef RQXML_TOOLS_STATUSTABLE_H
#define RQXML_TOOLS_STATUSTABLE_H

#include <array>
#include <span>
#include <string_view>

namespace rqtool {

/// What the command says of one status code.
struct StatusEntry {
  long code;
  bool flag;                               ///< the flag that comes with the code
  std::string_view meaning;                ///< one line
  std::array<std::string_view, 4> causes;  ///< one line each; the unused ones are empty
  std::string_view advice;                 ///< what to do, one line
};

/// All failure codes of the library, ascending.
std::span<const StatusEntry> StatusTable();

/// What is said of 0, which is no failure code.
const StatusEntry& GoodStatus();

/// The entry of `code`, or null when the library has no such code.
const StatusEntry* FindStatus(long code);

}  // namespace rqtool

#endif
