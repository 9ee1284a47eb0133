#include "ElementPlace.h"

#include <algorithm>
#include <xercesc/dom/DOMElement.hpp>

#include "DocumentScan.h"
#include "NodeWalk.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace rqtool {

namespace {

using xercesc::DOMNode;

std::size_t ElementsBefore(const DOMNode& node) {
  std::size_t count = 0;
  for (const DOMNode* other = node.getPreviousSibling(); other != nullptr; other = other->getPreviousSibling()) {
    if (other->getNodeType() == DOMNode::ELEMENT_NODE) ++count;
  }
  return count;
}

// Nothing when anything but elements lies between the document and `element`.
std::optional<ElementPath> PathTo(const xercesc::DOMElement& element) {
  ElementPath path;
  const DOMNode* node = &element;
  const DOMNode* parent = node->getParentNode();
  for (; parent != nullptr && parent->getNodeType() == DOMNode::ELEMENT_NODE; parent = node->getParentNode()) {
    path.push_back(ElementsBefore(*node));
    node = parent;
  }
  if (parent == nullptr || parent->getNodeType() != DOMNode::DOCUMENT_NODE) return std::nullopt;
  std::reverse(path.begin(), path.end());
  return path;
}

}  // namespace

std::optional<Place> PlaceOf(InputFile& input, const xercesc::DOMElement& element) {
  const std::optional<ElementPath> path = PathTo(element);
  return path ? FindElement(input.FromStart(), *path) : std::nullopt;
}

std::optional<std::string> Attribute(const xercesc::DOMElement& element, const char* name) {
  const XMLCh* const value = RQXPrsUtil::GetAttribute(element, name);
  if (value == nullptr) return std::nullopt;
  return RQXPrsUtil::ToUTF8(value);
}

std::optional<double> NumberAttribute(const xercesc::DOMElement& element, const char* name) {
  double value = 0;
  if (RQXPrsUtil::GetDoubleAttribute(element, name, value) != 0) return std::nullopt;
  return value;
}

std::string TextOf(const xercesc::DOMElement& element) {
  std::string text;
  WalkNodes(element, [&text](const DOMNode& node, std::size_t) {
    const auto type = node.getNodeType();
    if (type == DOMNode::TEXT_NODE || type == DOMNode::CDATA_SECTION_NODE) {
      text += RQXPrsUtil::ToUTF8(node.getNodeValue());
    }
    return true;
  });
  return text;
}

const xercesc::DOMElement* ChildOf(const xercesc::DOMElement* element, const char* tag) {
  return element == nullptr ? nullptr : RQXPrsUtil::GetFirstChildElmt(*element, tag);
}

}  // namespace rqtool
