#include "OpenToRead.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "Failure.h"

namespace rqtool {

namespace {

std::string SystemReason(int error) { return std::generic_category().message(error); }

bool LooksLikeAddress(const std::string& name) { return name.find("://") != std::string::npos; }

[[noreturn]] void FailToOpen(const std::string& name, int error, SpecialFiles specialFiles) {
  std::string hint = "check the name and the permissions";
  if (specialFiles != SpecialFiles::RegularOnly) hint += "; - reads standard input";
  if (error == ENOENT && LooksLikeAddress(name)) {
    hint = "only local files are read, nothing is fetched from a network: save the document first";
  }
  FailToRead(name, "cannot be opened: " + SystemReason(error), hint);
}

// Refuses what is not read.
void RequireKind(const std::string& name, mode_t mode, SpecialFiles specialFiles) {
  if (S_ISREG(mode)) return;
  if (S_ISDIR(mode)) FailToRead(name, "is a directory", "name a file in it");
  if (specialFiles == SpecialFiles::Read) return;
  FailToRead(name, "is a pipe or a device, not a regular file",
             specialFiles == SpecialFiles::RegularOnly
                 ? "save it to a file first"
                 : "read it from standard input (-), or give --allow-dtd if you trust where it comes from");
}

// What stands behind the name may change at any time: only what was opened can be relied upon, and opening must not
// wait for the other end of a pipe. Looking before all the same spares devices that being opened has effects on. Where
// the command was started without standard input, output or error, the file must not be taken for one of them.
Descriptor Open(const std::string& name, SpecialFiles specialFiles) {
  struct stat information {};
  if (::stat(name.c_str(), &information) != 0) FailToOpen(name, errno, specialFiles);
  RequireKind(name, information.st_mode, specialFiles);
  Descriptor file(::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (file.Get() < 0) FailToOpen(name, errno, specialFiles);
  if (file.Get() > STDERR_FILENO) return file;
  Descriptor other(::fcntl(file.Get(), F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
  if (other.Get() < 0) FailToOpen(name, errno, specialFiles);
  return other;
}

// Until somebody writes to a pipe that was opened without waiting, it seems to be at its end.
void AwaitWriter(int pipe) {
  pollfd request{pipe, POLLIN, 0};
  while (::poll(&request, 1, -1) < 0 && errno == EINTR) {
  }
}

void ReadWithWaiting(int file, mode_t mode) {
  if (S_ISFIFO(mode)) AwaitWriter(file);
  const int flags = ::fcntl(file, F_GETFL);
  if (flags >= 0) ::fcntl(file, F_SETFL, flags & ~O_NONBLOCK);
}

}  // namespace

Descriptor::~Descriptor() {
  if (fNumber >= 0) ::close(fNumber);
}

std::string InputDisplayName(const std::string& name) {
  if (name.empty()) return "\"\"";
  return name == kStandardInput ? "standard input" : name;
}

void FailToRead(const std::string& name, const std::string& what, const std::string& hint) {
  throw Failure(ExitCode::FileFailed, Problem{.file = InputDisplayName(name), .what = what, .hint = hint});
}

OpenedFile OpenToRead(const std::string& name, SpecialFiles specialFiles) {
  Descriptor file = Open(name, specialFiles);
  struct stat information {};
  if (::fstat(file.Get(), &information) != 0) FailToOpen(name, errno, specialFiles);
  RequireKind(name, information.st_mode, specialFiles);
  const bool regular = S_ISREG(information.st_mode);
  if (!regular) ReadWithWaiting(file.Get(), information.st_mode);
  return {std::move(file), regular};
}

}  // namespace rqtool
