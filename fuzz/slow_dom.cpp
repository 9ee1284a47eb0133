#include "slow_dom.h"

#include <xercesc/dom/DOM.hpp>

#include "reference_text.h"

namespace rqxml_fuzz {

using xercesc::DOMElement;
using xercesc::DOMNode;

const DOMElement* AsNamed(const DOMNode* node, const std::string& tag) {
  if (node->getNodeType() != DOMNode::ELEMENT_NODE || SlowUTF8(node->getNodeName()) != tag) return nullptr;
  return static_cast<const DOMElement*>(node);
}

std::vector<const DOMElement*> Children(const DOMElement& element, const std::string& tag) {
  std::vector<const DOMElement*> found;
  for (const DOMNode* child = element.getFirstChild(); child != nullptr; child = child->getNextSibling())
    if (const DOMElement* match = AsNamed(child, tag)) found.push_back(match);
  return found;
}

const DOMElement* FirstChild(const DOMElement& element, const std::string& tag) {
  const std::vector<const DOMElement*> found = Children(element, tag);
  return found.empty() ? nullptr : found.front();
}

const XMLCh* AttributeText(const DOMElement& element, const std::string& name) {
  const xercesc::DOMAttr* attribute = element.getAttributeNode(SlowUTF16(name).data());
  return attribute == nullptr ? nullptr : attribute->getValue();
}

std::optional<std::string> Attribute(const DOMElement& element, const std::string& name) {
  const XMLCh* text = AttributeText(element, name);
  if (text == nullptr) return std::nullopt;
  return SlowUTF8(text);
}

std::optional<double> NumberAttribute(const DOMElement& element, const std::string& name) {
  const XMLCh* text = AttributeText(element, name);
  return text == nullptr ? std::nullopt : SlowDouble(text);
}

}  // namespace rqxml_fuzz
