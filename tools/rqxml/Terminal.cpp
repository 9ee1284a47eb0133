#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

namespace rqtool {

std::optional<std::size_t> TerminalWidth() {
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return std::nullopt;
  return size.ws_col;
}

bool WriteToStdout(std::string_view text) {
  errno = 0;
  const std::size_t written = std::fwrite(text.data(), 1, text.size(), stdout);
  // Closing tells of errors that come late, as on a network disk.
  if (written == text.size() && std::fclose(stdout) == 0) return true;
  const int error = errno;
  if (error != EPIPE) {
    WriteToStderr("rqxml: standard output cannot be written: " + std::generic_category().message(error) +
                  "\n  hint: make room, or send the output elsewhere\n");
  }
  return false;
}

void WriteToStderr(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stderr); }

}  // namespace rqtool
