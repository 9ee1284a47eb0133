#ifndef RQXML_TOOLS_TEXTARRAY_H
#define RQXML_TOOLS_TEXTARRAY_H

#include <string>
#include <string_view>
#include <vector>

namespace rqtool {

/// The items of an "Array" of texts: blanks stand between them, double quotes around an item with blanks in it, and a
/// backslash before a double quote that belongs to the item.
std::vector<std::string> SplitTextArray(std::string_view text);

}  // namespace rqtool

#endif
