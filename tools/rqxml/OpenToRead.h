#ifndef RQXML_TOOLS_OPENTOREAD_H
#define RQXML_TOOLS_OPENTOREAD_H

#include <string>
#include <utility>

namespace rqtool {

/// What is read besides regular files and standard input.
enum class SpecialFiles {
  Refuse,      ///< nothing
  Read,        ///< pipes and devices too
  RegularOnly  ///< not even standard input: the file is opened by its name again
};

/// The name that stands for standard input.
inline constexpr const char* kStandardInput = "-";

/// The name of an input for people: "standard input" for "-", and two quotes for an empty name.
std::string InputDisplayName(const std::string& name);

/// Ends the command because an input cannot be read.
/// @throws Failure (FileFailed)
[[noreturn]] void FailToRead(const std::string& name, const std::string& what, const std::string& hint);

/// A file descriptor that is closed at the end.
class Descriptor {
 public:
  explicit Descriptor(int number) : fNumber(number) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : fNumber(std::exchange(other.fNumber, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;

  int Get() const { return fNumber; }
  int HandOver() { return std::exchange(fNumber, -1); }

 private:
  int fNumber;
};

/// A file that is open for reading.
struct OpenedFile {
  Descriptor descriptor;
  bool regular;  ///< false for a pipe or a device
};

/// Opens the file of that name; one of the name "-" as well.
/// @throws Failure (FileFailed) for what is not there, cannot be opened, is a directory, or is a pipe or a device and
///   `specialFiles` refuses it
OpenedFile OpenToRead(const std::string& name, SpecialFiles specialFiles);

}  // namespace rqtool

#endif
