#ifndef RQXML_XML_RQXERCESFWD_H
#define RQXML_XML_RQXERCESFWD_H

/// @file
/// The Xerces-C classes that public headers mention, declared without their definitions.

#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class BinInputStream;
class DOMDocument;
class DOMElement;
class DOMNode;
class XMLTranscoder;
XERCES_CPP_NAMESPACE_END

#endif
