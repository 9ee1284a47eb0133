#ifndef TESTS_SUPPORT_DOM_H
#define TESTS_SUPPORT_DOM_H

#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <xercesc/dom/DOM.hpp>

#include "rqxml/xml/RQXMLReadWrite.h"

namespace rqtest {

/// A parsed document and its owner.
class Document {
 public:
  explicit Document(const std::string& text) {
    std::istringstream stream(text);
    if (!owner_.ParseToDOM(stream).IsOK()) throw std::runtime_error("no document: " + text);
  }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  xercesc::DOMDocument& Get() { return *owner_.GetDocument(); }
  xercesc::DOMElement& Root() { return *Get().getDocumentElement(); }
  const RQXPrsUtil::RQXMLReadWrite& Owner() const { return owner_; }

 private:
  RQXPrsUtil::RQXMLReadWrite owner_;
};

/// A zero-terminated UTF-16 text as a string; the text "(null)" for a null pointer.
inline std::u16string Text(const XMLCh* text) { return text == nullptr ? u"(null)" : std::u16string(text); }

/// The tag name of an element, "(null)" for a null pointer.
inline std::u16string Tag(const xercesc::DOMElement* element) {
  return element == nullptr ? u"(null)" : Text(element->getTagName());
}

/// The value of an attribute that tells elements apart, "(null)" for a null pointer.
inline std::u16string Id(const xercesc::DOMElement* element) {
  return element == nullptr ? u"(null)" : Text(element->getAttribute(u"id"));
}

}  // namespace rqtest

#endif
