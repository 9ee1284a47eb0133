#include "OutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "Failure.h"

namespace rqtool {

namespace {

namespace fs = std::filesystem;

constexpr std::array kEndingSignals{SIGINT, SIGTERM, SIGHUP};
constexpr const char* kRoomHint = "make room, or name a file elsewhere";
constexpr const char* kFolderHint = "check the folder and its permissions";
constexpr int kMostLinks = 40;

// A signal handler reaches nothing else. Empty when there is nothing to remove.
std::array<char, PATH_MAX> gToRemove{};

extern "C" void RemoveAndEnd(int number) {
  if (gToRemove.front() != '\0') ::unlink(gToRemove.data());
  ::raise(number);  // its default action is back, and takes effect on return
}

std::string SystemReason(int error) { return std::generic_category().message(error); }

void WatchSignals(const std::string& temporary) {
  if (temporary.size() < gToRemove.size()) std::memcpy(gToRemove.data(), temporary.c_str(), temporary.size() + 1);
  for (const int number : kEndingSignals) {
    struct sigaction before {};
    if (::sigaction(number, nullptr, &before) != 0 || before.sa_handler != SIG_DFL) continue;  // nohup stays nohup
    struct sigaction action {};
    action.sa_handler = RemoveAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    ::sigaction(number, &action, nullptr);
  }
}

void ForgetSignals() { gToRemove.front() = '\0'; }

// Where `name` leads to, also when nothing is there yet.
std::string FollowLinks(const std::string& name) {
  fs::path path = name;
  std::error_code error;
  for (int links = 0; links < kMostLinks && fs::is_symlink(path, error); ++links) {
    const fs::path next = fs::read_symlink(path, error);
    if (error) break;
    path = path.parent_path() / next;  // an absolute one stands for itself
  }
  return path.string();
}

std::string FolderOf(const std::string& file) {
  const std::string folder = fs::path(file).parent_path().string();
  return folder.empty() ? "." : folder;
}

mode_t UsualPermissions() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// A rename is on the disk only when its folder is. Where a folder cannot be synchronised, nothing more can be done.
void SynchroniseFolder(const std::string& folder) {
  const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return;
  ::fsync(descriptor);
  ::close(descriptor);
}

}  // namespace

OutputFile::OutputFile(const std::string& name) : fName(name), fTarget(FollowLinks(name)) {
  struct stat target {};
  // By its name: some links, such as that of standard output, lead to what no name of a file stands for.
  const bool exists = ::stat(name.c_str(), &target) == 0;
  std::error_code error;
  if (fs::is_symlink(fTarget, error)) Fail("is a link that leads in a circle", "name a file");
  if (exists && S_ISDIR(target.st_mode)) Fail("is a directory", "name a file in it");
  if (exists && !S_ISREG(target.st_mode)) {
    Fail("is a pipe or a device, not a regular file", "the output is written whole and then renamed: name a file");
  }
  if (exists && ::access(fTarget.c_str(), W_OK) != 0) Fail("may not be written: " + SystemReason(errno), kFolderHint);
  MakeTemporary();
}

OutputFile::~OutputFile() {
  Remove();
  if (fDescriptor >= 0) ::close(fDescriptor);
}

void OutputFile::MakeTemporary() {
  std::string pattern = (fs::path(FolderOf(fTarget)) / ".rqxml-XXXXXX").string();
  fDescriptor = ::mkostemp(pattern.data(), O_CLOEXEC);
  if (fDescriptor < 0) Fail("cannot be written: " + SystemReason(errno), kFolderHint);
  fTemporary = pattern;
  WatchSignals(fTemporary);
}

void OutputFile::SetPermissions() const {
  struct stat target {};
  const bool exists = ::stat(fTarget.c_str(), &target) == 0;
  if (exists && ::fchown(fDescriptor, target.st_uid, target.st_gid) != 0) {
    // Only root may hand files to others; the permissions follow all the same.
  }
  const mode_t mode = exists ? target.st_mode & 0777 : UsualPermissions();
  if (::fchmod(fDescriptor, mode) != 0) Fail("cannot be written: " + SystemReason(errno), kFolderHint);
}

void OutputFile::Write(std::string_view text) const {
  while (!text.empty()) {
    const ssize_t written = ::write(fDescriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail("cannot be written: " + SystemReason(errno), kRoomHint);
    text.remove_prefix(static_cast<std::size_t>(written));
  }
}

std::uint64_t OutputFile::Finish() {
  SetPermissions();
  struct stat written {};
  if (::fsync(fDescriptor) != 0 || ::fstat(fDescriptor, &written) != 0) {
    Fail("cannot be written: " + SystemReason(errno), kRoomHint);
  }
  if (::rename(fTemporary.c_str(), fTarget.c_str()) != 0) {
    Fail("cannot be replaced: " + SystemReason(errno), kFolderHint);
  }
  ForgetSignals();
  fTemporary.clear();
  SynchroniseFolder(FolderOf(fTarget));
  return static_cast<std::uint64_t>(written.st_size);
}

void OutputFile::Fail(const std::string& what, const std::string& hint) const {
  throw Failure(ExitCode::FileFailed, {.file = fName, .what = what, .hint = hint});
}

void OutputFile::Remove() {
  if (fTemporary.empty()) return;
  ::unlink(fTemporary.c_str());
  ForgetSignals();
  fTemporary.clear();
}

void WriteWholeFile(const std::string& name, std::string_view text) {
  OutputFile file(name);
  file.Write(text);
  file.Finish();
}

bool IsSameFile(const std::string& a, const std::string& b) {
  struct stat first {};
  struct stat second {};
  if (::stat(a.c_str(), &first) != 0 || ::stat(b.c_str(), &second) != 0) return false;
  return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace rqtool
