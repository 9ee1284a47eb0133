#include "InputFile.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <string_view>
#include <system_error>
#include <utility>

#include "Failure.h"

namespace rqtool {

namespace {

constexpr std::string_view kStandardInput = "-";

std::string DisplayName(const std::string& name) {
  if (name.empty()) return "\"\"";
  return name == kStandardInput ? "standard input" : name;
}

[[noreturn]] void Fail(const std::string& name, const std::string& what, const std::string& hint = {}) {
  throw Failure(ExitCode::FileFailed, Problem{.file = DisplayName(name), .what = what, .hint = hint});
}

std::string SystemReason(int error) { return std::generic_category().message(error); }

bool LooksLikeAddress(const std::string& name) { return name.find("://") != std::string::npos; }

[[noreturn]] void FailToOpen(const std::string& name, int error, SpecialFiles specialFiles) {
  std::string hint = "check the name and the permissions";
  if (specialFiles != SpecialFiles::RegularOnly) hint += "; - reads standard input";
  if (error == ENOENT && LooksLikeAddress(name)) {
    hint = "only local files are read, nothing is fetched from a network: save the document first";
  }
  Fail(name, "cannot be opened: " + SystemReason(error), hint);
}

// Refuses what is not read.
void RequireKind(const std::string& name, mode_t mode, SpecialFiles specialFiles) {
  if (S_ISREG(mode)) return;
  if (S_ISDIR(mode)) Fail(name, "is a directory", "name a file in it");
  if (specialFiles == SpecialFiles::Read) return;
  Fail(name, "is a pipe or a device, not a regular file",
       specialFiles == SpecialFiles::RegularOnly
           ? "save it to a file first"
           : "read it from standard input (-), or give --allow-dtd if you trust where it comes from");
}

// A file descriptor that is closed at the end.
class Descriptor {
 public:
  explicit Descriptor(int number) : fNumber(number) {}
  ~Descriptor() {
    if (fNumber >= 0) ::close(fNumber);
  }
  Descriptor(Descriptor&& other) noexcept : fNumber(std::exchange(other.fNumber, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;

  int Get() const { return fNumber; }
  int HandOver() { return std::exchange(fNumber, -1); }

 private:
  int fNumber;
};

// What stands behind the name may change at any time: only what was opened can be relied upon, and opening must not
// wait for the other end of a pipe. Looking before all the same spares devices that being opened has effects on.
Descriptor Open(const std::string& name, SpecialFiles specialFiles) {
  struct stat information {};
  if (::stat(name.c_str(), &information) != 0) FailToOpen(name, errno, specialFiles);
  RequireKind(name, information.st_mode, specialFiles);
  Descriptor file(::open(name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
  if (file.Get() < 0) FailToOpen(name, errno, specialFiles);
  return file;
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

InputFile::InputFile(const std::string& name, SpecialFiles specialFiles)
    : fName(name), fPlain(&fFile), fStream(&fPlain) {
  if (fName == kStandardInput && specialFiles == SpecialFiles::RegularOnly) {
    Fail(fName, "cannot be read here", "name a regular file; one of the name - is ./-");
  }
  const bool regular = fName != kStandardInput && OpenFile(specialFiles);
  if (regular) return;
  fRecord = std::make_unique<RecordingBuffer>(fFile.is_open() ? fFile : *std::cin.rdbuf());
  fRecorded = std::make_unique<std::istream>(fRecord.get());
  fStream = fRecorded.get();
}

bool InputFile::OpenFile(SpecialFiles specialFiles) {
  Descriptor file = Open(fName, specialFiles);
  struct stat information {};
  if (::fstat(file.Get(), &information) != 0) FailToOpen(fName, errno, specialFiles);
  RequireKind(fName, information.st_mode, specialFiles);
  const bool regular = S_ISREG(information.st_mode);
  if (!regular) ReadWithWaiting(file.Get(), information.st_mode);
  fFile = __gnu_cxx::stdio_filebuf<char>(file.Get(), std::ios::in | std::ios::binary);
  if (!fFile.is_open()) FailToOpen(fName, errno, specialFiles);
  file.HandOver();
  return regular;
}

std::string InputFile::GetDisplayName() const { return DisplayName(fName); }

std::istream& InputFile::FromStart() {
  fStream->clear();
  if (fRecord) {
    fRecord->Rewind();
  } else {
    fStream->seekg(0);
  }
  return *fStream;
}

bool InputFile::IsEmpty() { return FromStart().peek() == std::istream::traits_type::eof(); }

void InputFile::RequireWhole() const {
  if (!fStream->bad()) return;
  Fail(fName, "could not be read to its end", "check the disk or the connection that the file comes from");
}

}  // namespace rqtool
