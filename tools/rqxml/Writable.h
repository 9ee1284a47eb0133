#ifndef RQXML_TOOLS_WRITABLE_H
#define RQXML_TOOLS_WRITABLE_H

#include <string>

#include "rqxml/xml/RQXercesFwd.h"

namespace rqtool {

/// Why a document that takes over what `document` holds could not be written, or not be read back; empty when it can.
/// Told before it is taken over, the file can be named, and skipped.
std::string WhyNotWritable(const xercesc::DOMDocument& document);

}  // namespace rqtool

#endif
