#include "InputFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <iostream>
#include <string_view>
#include <system_error>

#include "Failure.h"

namespace rqtool {

namespace {

constexpr std::string_view kStandardInput = "-";

[[noreturn]] void Fail(const std::string& name, const std::string& what, const std::string& hint = {}) {
  throw Failure(ExitCode::FileFailed, Problem{.file = name, .what = what, .hint = hint});
}

std::string SystemReason(int error) { return std::generic_category().message(error); }

bool LooksLikeAddress(const std::string& name) { return name.find("://") != std::string::npos; }

[[noreturn]] void FailToOpen(const std::string& name, int error) {
  const bool address = error == ENOENT && LooksLikeAddress(name);
  Fail(name, "cannot be opened: " + SystemReason(error),
       address ? "only local files are read, nothing is fetched from a network: save the document first"
               : "check the name and the permissions; - reads standard input");
}

// True for a regular file, false for a pipe or a device.
bool IsRegularFile(const std::string& name, SpecialFiles specialFiles) {
  struct stat information {};
  if (::stat(name.c_str(), &information) != 0) FailToOpen(name, errno);
  if (S_ISREG(information.st_mode)) return true;
  if (S_ISDIR(information.st_mode)) Fail(name, "is a directory", "name a file in it");
  if (specialFiles == SpecialFiles::Refuse) {
    Fail(name, "is a pipe or a device, not a regular file",
         "read it from standard input (-), or give --allow-dtd if you trust where it comes from");
  }
  return false;
}

}  // namespace

InputFile::InputFile(const std::string& name, SpecialFiles specialFiles) : fName(name), fStream(&fFile) {
  const bool standardInput = fName == kStandardInput;
  const bool regular = !standardInput && IsRegularFile(fName, specialFiles);
  if (!standardInput) {
    errno = 0;
    fFile.open(fName, std::ios::in | std::ios::binary);
    if (!fFile.is_open()) FailToOpen(fName, errno);
  }
  if (regular) return;
  fRecord = std::make_unique<RecordingBuffer>(standardInput ? *std::cin.rdbuf() : *fFile.rdbuf());
  fRecorded = std::make_unique<std::istream>(fRecord.get());
  fStream = fRecorded.get();
}

std::string InputFile::GetDisplayName() const { return fName == kStandardInput ? "standard input" : fName; }

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
  Fail(GetDisplayName(), "could not be read to its end", "check the disk or the connection that the file comes from");
}

}  // namespace rqtool
