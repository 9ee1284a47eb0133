#ifndef RQXML_TOOLS_DISPLAYTEXT_H
#define RQXML_TOOLS_DISPLAYTEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace rqtool {

/// `text` (UTF-8) with everything escaped that would steer a terminal or disorder a line instead of being shown:
/// control characters as \n, \t, \r, \x1b or \u{9b}, line and paragraph separators, characters that change the writing
/// direction and marks that cannot be seen as \u{202e}, bytes that are no UTF-8 as \xff. All else stays, backslashes
/// too: the result is for reading, not for reading back.
std::string Printable(std::string_view text);

/// `json`, the text of a JSON document, with the same characters escaped as JSON asks for, except its own line ends.
std::string PrintableJson(std::string_view json);

/// True when `text` is UTF-8 throughout.
bool IsUtf8(std::string_view text);

/// How many columns of a terminal `text` (UTF-8, printable) takes: two for wide and full-width characters, none for
/// combining and format characters, one for all others. Emoji that are joined into one are counted one by one, as
/// most terminals show them.
std::size_t DisplayWidth(std::string_view text);

/// `text` itself when it takes `width` columns or fewer, else its beginning with an ellipsis, `width` columns at most.
/// A width of 0 gives an empty text. Combining characters stay with what they belong to.
std::string CutToWidth(std::string_view text, std::size_t width);

}  // namespace rqtool

#endif
