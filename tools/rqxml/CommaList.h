#ifndef RQXML_TOOLS_COMMALIST_H
#define RQXML_TOOLS_COMMALIST_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rqtool {

/// Splits a list as RFC 4180 writes one: items with commas between them; an item that begins with a double quote
/// reaches to the closing one and may hold commas, and two double quotes in it stand for one. Blanks count.
/// @return nothing when a quote is not closed, or when anything but a comma follows the closing one
std::optional<std::vector<std::string>> SplitCommaList(std::string_view list);

}  // namespace rqtool

#endif
