#ifndef TESTS_TOOL_RUN_TOOL_H
#define TESTS_TOOL_RUN_TOOL_H

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace rqtest {

/// How to run the command.
struct ToolCall {
  std::vector<std::string> arguments{};
  std::string input{};                                             ///< comes through a pipe
  std::vector<std::pair<std::string, std::string>> environment{};  ///< added to that of the test
  std::string inputFile{};                                         ///< is standard input instead of the pipe
  std::string outputFile{};                                        ///< takes standard output instead of the test
  std::string errorFile{};                                         ///< takes standard error instead of the test
  bool closeInput = false;                                         ///< run without standard input
  bool closeOutput = false;                                        ///< run without standard output
  bool breakPipe = false;                                          ///< standard output is a pipe that nobody reads
  std::optional<unsigned short> terminalColumns{};                 ///< standard output is a terminal of that width
  std::optional<unsigned short> errorColumns{};                    ///< the same for standard error
  std::size_t fileSizeLimit = 0;                                   ///< largest file in bytes; 0 for no limit
  std::size_t memoryLimit = 0;                                     ///< address space in bytes; 0 for no limit
};

/// How it went.
struct ToolResult {
  int exitCode = -1;  ///< as the shell has it; -1 when the command was ended by a signal or took a minute
  std::string out;
  std::string err;
};

/// Runs the command to its end.
ToolResult RunTool(const ToolCall& call);

/// Runs the command with these arguments.
ToolResult RunTool(const std::vector<std::string>& arguments);

/// False where the machine has no pseudo-terminals, so that the calls with a terminal fail.
bool HasTerminals();

/// Shows all of a result in a failed test.
std::ostream& operator<<(std::ostream& out, const ToolResult& result);

/// The path of a file of the source tree.
std::string SourceFile(const std::string& name);

}  // namespace rqtest

#endif
