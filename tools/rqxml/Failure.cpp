#include "Failure.h"

#include <utility>

#include "DisplayText.h"
#include "StatusTable.h"

namespace rqtool {

namespace {

// A document may hold names and values of any length; a message stays readable.
constexpr std::size_t kLongestText = 400;

std::string Shown(const std::string& text) { return CutToWidth(Printable(text), kLongestText); }

std::string Location(const Problem& problem) {
  if (problem.file.empty()) return "";
  std::string location = Shown(problem.file);
  if (problem.place) {
    location += ':' + std::to_string(problem.place->line) + ':' + std::to_string(problem.place->column);
  }
  return location + ": ";
}

std::string StatusLine(long code) {
  std::string line = "  status " + std::to_string(code);
  if (const StatusEntry* entry = FindStatus(code)) line += ": " + std::string(entry->meaning);
  return line + '\n';
}

}  // namespace

Failure::Failure(ExitCode exitCode, Problem problem) : fExitCode(exitCode), fProblem(std::move(problem)) {}

std::string Describe(const Problem& problem) {
  std::string text = "rqxml: " + Location(problem);
  if (!problem.element.empty()) text += Shown(problem.element) + ": ";
  text += Shown(problem.what) + '\n';
  if (problem.status) text += StatusLine(*problem.status);
  if (!problem.hint.empty()) text += "  hint: " + Shown(problem.hint) + '\n';
  return text;
}

}  // namespace rqtool
