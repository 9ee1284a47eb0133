#ifndef RQXML_TOOLS_FILENAMES_H
#define RQXML_TOOLS_FILENAMES_H

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace rqtool {

/// Makes names of files from any texts. No name leads to another folder, is hidden, looks like an option or is a device
/// of any common system; no two are the same, also where upper and lower case or the form of accents do not count.
class FileNames {
 public:
  /// @param extension stands at the end of each name, as in ".svg"
  explicit FileNames(std::string extension);

  /// A name that begins with the letters and digits of `text` (UTF-8), as far as it goes.
  std::string Make(std::string_view text);

 private:
  std::string fExtension;
  std::unordered_map<std::string, std::size_t> fTaken;  // with how often it was asked for
};

}  // namespace rqtool

#endif
