#ifndef RQXML_TOOLS_TERMINAL_H
#define RQXML_TOOLS_TERMINAL_H

#include <cstddef>
#include <optional>
#include <string_view>

namespace rqtool {

/// How many columns the terminal has that standard output goes to; nothing when it goes elsewhere.
std::optional<std::size_t> TerminalWidth();

/// Writes `text` to standard output and makes sure that it arrived. When the reader of a pipe is gone the command
/// ends in silence, with the exit code for a file that cannot be written.
/// @return false when not all of it was written
bool WriteToStdout(std::string_view text);

/// Writes `text` to standard output at once, and tells what goes wrong as WriteToStdout does. For output that is too
/// long to be held back.
/// @return false when not all of it was written
bool WritePartToStdout(std::string_view text);

/// Writes `text` to standard error, as far as it goes.
/// @return false when not all of it was written
bool WriteToStderr(std::string_view text);

}  // namespace rqtool

#endif
