#ifndef RQXML_TOOLS_EXITCODE_H
#define RQXML_TOOLS_EXITCODE_H

#include <array>
#include <string_view>

namespace rqtool {

/// How the command ends. The numbers are a promise to scripts.
enum class ExitCode : int {
  Good = 0,           ///< all went well
  Refused = 1,        ///< the input was refused
  WrongUsage = 2,     ///< the command line makes no sense
  FileFailed = 3,     ///< a file cannot be read or written
  StrictFindings = 4  ///< something was found that --strict makes an error
};

/// An exit code with what --help says of it.
struct ExitCodeEntry {
  ExitCode code;
  std::string_view meaning;
};

/// All exit codes, ascending.
inline constexpr std::array kExitCodes{
    ExitCodeEntry{ExitCode::Good, "all went well"},
    ExitCodeEntry{ExitCode::Refused, "the input was refused (the message says why)"},
    ExitCodeEntry{ExitCode::WrongUsage, "wrong usage of the command line"},
    ExitCodeEntry{ExitCode::FileFailed, "a file cannot be read or written"},
    ExitCodeEntry{ExitCode::StrictFindings, "findings that --strict makes an error"},
};

}  // namespace rqtool

#endif
