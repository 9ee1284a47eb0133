#ifndef RQXML_TOOLS_MARKUPTEXT_H
#define RQXML_TOOLS_MARKUPTEXT_H

#include <string>
#include <string_view>

namespace rqtool {

/// `text` as the content of an element or of a quoted attribute of an XML or HTML document. What Printable escapes, and
/// what XML cannot hold, is escaped in the same visible way.
std::string MarkupText(std::string_view text);

}  // namespace rqtool

#endif
