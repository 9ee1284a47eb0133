#ifndef RQXML_XML_RQXDEPTH_H
#define RQXML_XML_RQXDEPTH_H

#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// True when the XML library can walk `node` recursively, as its serialiser does, on what is left of the calling
/// thread's stack. False means that it is nested too deep and must not be handed to it.
bool FitsTheStack(const xercesc::DOMNode& node);

}  // namespace RQXPrsUtil

#endif
