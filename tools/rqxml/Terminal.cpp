#include "Terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

namespace rqtool {

namespace {

void ReportStdoutError(int error) {
  if (error == EPIPE) return;
  WriteToStderr("rqxml: standard output cannot be written: " + std::generic_category().message(error) +
                "\n  hint: make room, or send the output elsewhere\n");
}

}  // namespace

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
  ReportStdoutError(errno);
  return false;
}

bool WritePartToStdout(std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) {
      ReportStdoutError(errno);
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool WriteToStderr(std::string_view text) { return std::fwrite(text.data(), 1, text.size(), stderr) == text.size(); }

}  // namespace rqtool
