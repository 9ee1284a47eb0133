#ifndef RQXML_TOOLS_FAILURE_H
#define RQXML_TOOLS_FAILURE_H

#include <cstdint>
#include <exception>
#include <optional>
#include <string>

#include "ExitCode.h"

namespace rqtool {

/// A place in a document; lines and columns count from 1.
struct Place {
  std::uint64_t line = 0;
  std::uint64_t column = 0;
};

/// What the user is told when something fails. All texts are UTF-8 and may hold anything that a document holds: they
/// are made printable when they are shown.
struct Problem {
  std::string file{};            ///< the file in question as the user knows it; empty for none
  std::optional<Place> place{};  ///< where in the file, when that is known
  std::string element{};         ///< the element in question, e.g. `DataField "age"`; empty when not known
  std::string what{};            ///< what is wrong
  std::optional<long> status{};  ///< the library's status code; none for other failures
  std::string hint{};            ///< how to go on; empty for none
};

/// Ends the command with an exit code and a problem to tell.
class Failure : public std::exception {
 public:
  Failure(ExitCode exitCode, Problem problem);
  const char* what() const noexcept override { return fProblem.what.c_str(); }
  ExitCode GetExitCode() const { return fExitCode; }
  const Problem& GetProblem() const { return fProblem; }

 private:
  ExitCode fExitCode;
  Problem fProblem;
};

/// The lines that tell `problem`, ready for a terminal.
std::string Describe(const Problem& problem);

}  // namespace rqtool

#endif
