#ifndef RQXML_TOOLS_BYTESOURCE_H
#define RQXML_TOOLS_BYTESOURCE_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OpenToRead.h"

namespace rqtool {

/// Any bytes to read once, block by block: a file, a pipe, a device, or standard input under the name "-".
class ByteSource {
 public:
  /// @throws Failure (FileFailed) when `name` cannot be opened
  ByteSource(const std::string& name, std::size_t blockSize);

  /// The name for people.
  std::string GetDisplayName() const { return InputDisplayName(fName); }
  /// Its size in bytes, as far as that is known before.
  std::optional<std::uint64_t> GetSize() const;
  /// True when `descriptor` or `name` leads to the same regular file.
  bool IsSameFile(int descriptor) const;
  bool IsSameFile(const std::string& name) const;

  /// The next block, which is valid until the next call; an empty one at the end.
  /// @throws Failure (FileFailed) when reading fails
  std::string_view Next();

 private:
  int Number() const;

  std::string fName;
  std::optional<OpenedFile> fFile;  // none for standard input
  std::vector<char> fBlock;
};

}  // namespace rqtool

#endif
