#include "InputFile.h"

#include <cerrno>
#include <iostream>
#include <system_error>

namespace rqtool {

InputFile::InputFile(const std::string& name, SpecialFiles specialFiles)
    : fName(name), fPlain(&fFile), fStream(&fPlain) {
  if (fName == kStandardInput && specialFiles == SpecialFiles::RegularOnly) {
    FailToRead(fName, "cannot be read here", "name a regular file; one of the name - is ./-");
  }
  const bool regular = fName != kStandardInput && OpenFile(specialFiles);
  if (regular) return;
  fRecord = std::make_unique<RecordingBuffer>(fFile.is_open() ? fFile : *std::cin.rdbuf());
  fRecorded = std::make_unique<std::istream>(fRecord.get());
  fStream = fRecorded.get();
}

bool InputFile::OpenFile(SpecialFiles specialFiles) {
  OpenedFile file = OpenToRead(fName, specialFiles);
  fFile = __gnu_cxx::stdio_filebuf<char>(file.descriptor.Get(), std::ios::in | std::ios::binary);
  if (!fFile.is_open()) {
    FailToRead(fName, "cannot be opened: " + std::generic_category().message(errno),
               "check the name and the permissions");
  }
  file.descriptor.HandOver();
  return file.regular;
}

std::string InputFile::GetDisplayName() const { return InputDisplayName(fName); }

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
  FailToRead(fName, "could not be read to its end", "check the disk or the connection that the file comes from");
}

}  // namespace rqtool
