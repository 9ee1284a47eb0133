#ifndef RQXML_XML_RQXPROLOG_H
#define RQXML_XML_RQXPROLOG_H

#include <string_view>

namespace RQXPrsUtil {

/// True when the first bytes of a document show that it has no document type declaration: what stands before the
/// document element is all there and is white space, comments, processing instructions and an XML declaration that
/// names no encoding, or one that writes markup in ASCII. False when it has one and when this is not plain to see.
bool ShowsNoDoctype(std::string_view beginning);

}  // namespace RQXPrsUtil

#endif
