#ifndef RQXML_FUZZ_SLOW_DOM_H
#define RQXML_FUZZ_SLOW_DOM_H

#include <optional>
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace rqxml_fuzz {

/// The slow and obvious ways through a tree, written on the XML library alone; names are UTF-8.

/// The node when it is an element of that tag, else null.
const xercesc::DOMElement* AsNamed(const xercesc::DOMNode* node, const std::string& tag);

/// The children of that tag, in document order.
std::vector<const xercesc::DOMElement*> Children(const xercesc::DOMElement& element, const std::string& tag);

/// The first of them, or null.
const xercesc::DOMElement* FirstChild(const xercesc::DOMElement& element, const std::string& tag);

/// The attribute's value, null when there is none.
const XMLCh* AttributeText(const xercesc::DOMElement& element, const std::string& name);

/// The attribute's value in UTF-8.
std::optional<std::string> Attribute(const xercesc::DOMElement& element, const std::string& name);

/// The attribute's value when it is a number.
std::optional<double> NumberAttribute(const xercesc::DOMElement& element, const std::string& name);

}  // namespace rqxml_fuzz

#endif
