#ifndef RQXML_TOOLS_DOCUMENTTEXT_H
#define RQXML_TOOLS_DOCUMENTTEXT_H

#include <string_view>

namespace rqtool {

/// True when an XML 1.0 document can hold `text`: it is UTF-8, without control characters but tab and line ends.
bool IsDocumentText(std::string_view text);

}  // namespace rqtool

#endif
