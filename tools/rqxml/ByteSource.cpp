#include "ByteSource.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace rqtool {

namespace {

bool IsSame(const struct stat& a, const struct stat& b) {
  return S_ISREG(a.st_mode) && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace

ByteSource::ByteSource(const std::string& name, std::size_t blockSize) : fName(name), fBlock(blockSize) {
  if (fName != kStandardInput) fFile.emplace(OpenToRead(fName, SpecialFiles::Read));
}

int ByteSource::Number() const { return fFile ? fFile->descriptor.Get() : STDIN_FILENO; }

std::optional<std::uint64_t> ByteSource::GetSize() const {
  struct stat own {};
  if (::fstat(Number(), &own) != 0 || !S_ISREG(own.st_mode)) return std::nullopt;
  return static_cast<std::uint64_t>(own.st_size);
}

bool ByteSource::IsSameFile(int descriptor) const {
  struct stat own {};
  struct stat other {};
  return ::fstat(Number(), &own) == 0 && ::fstat(descriptor, &other) == 0 && IsSame(own, other);
}

bool ByteSource::IsSameFile(const std::string& name) const {
  struct stat own {};
  struct stat other {};
  return ::fstat(Number(), &own) == 0 && ::stat(name.c_str(), &other) == 0 && IsSame(own, other);
}

std::string_view ByteSource::Next() {
  ssize_t length = 0;
  do {
    length = ::read(Number(), fBlock.data(), fBlock.size());
  } while (length < 0 && errno == EINTR);
  if (length < 0) {
    FailToRead(fName, "could not be read to its end: " + std::generic_category().message(errno),
               "check the disk or the connection that it comes from");
  }
  return {fBlock.data(), static_cast<std::size_t>(length)};
}

}  // namespace rqtool
