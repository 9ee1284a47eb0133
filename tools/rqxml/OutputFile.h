#ifndef RQXML_TOOLS_OUTPUTFILE_H
#define RQXML_TOOLS_OUTPUTFILE_H

#include <cstdint>
#include <string>
#include <string_view>

namespace rqtool {

/// A file that appears under its name only when it is whole: it is written under another name in the same folder, and
/// renamed at the end. Where the name is that of a symbolic link, the file that it leads to is replaced, and the link
/// stays. A file that is replaced hands its permissions on; a new one gets the usual ones.
///
/// While an object lives, SIGINT, SIGTERM and SIGHUP remove what was written so far before they end the process; one
/// object may live at a time.
class OutputFile {
 public:
  /// Makes the temporary file.
  /// @throws Failure (FileFailed) when the target is not a regular file or may not be written, or its folder may not
  explicit OutputFile(const std::string& name);
  /// Removes the temporary file unless it was renamed.
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  /// The name as it was given.
  const std::string& GetName() const { return fName; }
  /// The name to write to.
  const std::string& GetTemporaryName() const { return fTemporary; }

  /// Writes `text` behind what was written before.
  /// @throws Failure (FileFailed) when that fails
  void Write(std::string_view text) const;

  /// Gives the file its name, once everything is on the disk.
  /// @return its size in bytes
  /// @throws Failure (FileFailed) when that fails; the target is as it was
  std::uint64_t Finish();

  /// A failure to write this file.
  [[noreturn]] void Fail(const std::string& what, const std::string& hint) const;

 private:
  void MakeTemporary();
  void SetPermissions() const;
  void Remove();

  std::string fName;       // as given
  std::string fTarget;     // with symbolic links followed
  std::string fTemporary;  // empty when it is gone
  int fDescriptor = -1;
};

/// Writes a file that appears when it is whole.
/// @throws Failure (FileFailed) when that fails
void WriteWholeFile(const std::string& name, std::string_view text);

/// True when both names lead to one file that is there.
bool IsSameFile(const std::string& a, const std::string& b);

}  // namespace rqtool

#endif
