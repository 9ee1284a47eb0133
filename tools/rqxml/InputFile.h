#ifndef RQXML_TOOLS_INPUTFILE_H
#define RQXML_TOOLS_INPUTFILE_H

#include <ext/stdio_filebuf.h>

#include <istream>
#include <memory>
#include <string>

#include "OpenToRead.h"
#include "RecordingBuffer.h"

namespace rqtool {

/// A document to read: a local file, or standard input under the name "-". Names are never taken as addresses, so
/// that nothing is fetched from a network.
class InputFile {
 public:
  /// Opens `name`.
  /// @throws Failure (FileFailed) for what is not there, cannot be opened, is a directory, or is a pipe, a device or
  ///   standard input and `specialFiles` refuses it
  InputFile(const std::string& name, SpecialFiles specialFiles);

  /// The name as it was given.
  const std::string& GetName() const { return fName; }
  /// The name for people: "standard input" for "-", and two quotes for an empty name.
  std::string GetDisplayName() const;

  /// The bytes, from where reading got to.
  std::istream& Stream() { return *fStream; }
  /// The bytes from the beginning, also of what cannot be repositioned; its errors are cleared.
  std::istream& FromStart();

  /// True when the input holds no byte at all. Moves to the beginning.
  bool IsEmpty();

  /// @throws Failure (FileFailed) when reading broke off because of the file, not of what stands in it
  void RequireWhole() const;

 private:
  /// True for a regular file, false for a pipe or a device.
  bool OpenFile(SpecialFiles specialFiles);

  std::string fName;
  __gnu_cxx::stdio_filebuf<char> fFile;      ///< closed for standard input
  std::istream fPlain;                       ///< reads fFile
  std::unique_ptr<RecordingBuffer> fRecord;  ///< for what cannot be repositioned; null for a regular file
  std::unique_ptr<std::istream> fRecorded;
  std::istream* fStream;
};

}  // namespace rqtool

#endif
