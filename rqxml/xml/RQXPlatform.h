#ifndef RQXML_XML_RQXPLATFORM_H
#define RQXML_XML_RQXPLATFORM_H

#include <memory>

#include "rqxml/common/RQStatus.h"

namespace RQXPrsUtil {

class RQXDomParser;

/// Starts the XML library once more (it counts): OK, or 103 when it threw an XMLException.
RQCommon::RQStatus StartPlatform();

/// Balances one StartPlatform that returned OK.
void StopPlatform();

/// Makes a parser in place of the one held; false, and none held, when the XML library threw an XMLException.
bool MakeParser(std::unique_ptr<RQXDomParser>& parser);

/// Starts the XML library and makes a parser: OK, or 103 with no parser and the start balanced. Other exceptions pass,
/// with the start balanced too.
RQCommon::RQStatus StartParser(std::unique_ptr<RQXDomParser>& parser);

/// Destroys the parser and stops the XML library; nothing when there is no parser.
void StopParser(std::unique_ptr<RQXDomParser>& parser);

/// Keeps the XML library up until the process ends. Its exceptions live in its own memory: one that leaves while the
/// last owner of the library is unwound would otherwise be read after it was freed.
void KeepPlatform();

}  // namespace RQXPrsUtil

#endif
