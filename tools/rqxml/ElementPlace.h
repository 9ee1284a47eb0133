#ifndef RQXML_TOOLS_ELEMENTPLACE_H
#define RQXML_TOOLS_ELEMENTPLACE_H

#include <optional>
#include <string>

#include "Failure.h"
#include "InputFile.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace rqtool {

/// Finds where in `input` the start tag of `element` ends, by a second look at the document. Nothing for what stands in
/// an entity.
std::optional<Place> PlaceOf(InputFile& input, const xercesc::DOMElement& element);

/// The attribute's value in UTF-8; nothing when the element has no such attribute.
std::optional<std::string> Attribute(const xercesc::DOMElement& element, const char* name);

/// The attribute's value as an XML Schema double; nothing when it is absent or none.
std::optional<double> NumberAttribute(const xercesc::DOMElement& element, const char* name);

/// All text in `element`, however deep it stands, in UTF-8.
std::string TextOf(const xercesc::DOMElement& element);

/// The first child element `tag` of `element`, or null; also when `element` is.
const xercesc::DOMElement* ChildOf(const xercesc::DOMElement* element, const char* tag);

}  // namespace rqtool

#endif
