#ifndef RQXML_XML_RQXDOMWALK_H
#define RQXML_XML_RQXDOMWALK_H

/// @file
/// Walking a DOM tree by names that are UTF-16 already: the same searches as in RQXMLUtil.h without any conversion.

#include <cstdint>
#include <xercesc/dom/DOMAttr.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "rqxml/xml/RQXText.h"

namespace RQXPrsUtil {

/// Hints for the processor, without any effect on what is read. Reading a large document is mostly waiting for memory,
/// and the library lays the nodes of a parsed document out in document order.
namespace Memory {

/// Asks for `size` bytes from an address on.
inline void Prefetch(std::uintptr_t first, std::uintptr_t size) {
  constexpr std::uintptr_t kCacheLine = 64;
  for (std::uintptr_t line = first; line < first + size; line += kCacheLine) {
    __builtin_prefetch(reinterpret_cast<const void*>(line));
  }
}

/// How many bytes the element takes with all that is below it; 0 when that cannot be told, or is much.
inline std::uintptr_t SizeOf(const xercesc::DOMElement& element) {
  constexpr std::uintptr_t kMost = 16 * 1024;
  const auto first = reinterpret_cast<std::uintptr_t>(&element);
  const auto end = reinterpret_cast<std::uintptr_t>(element.getNextSibling());
  return end < first || end - first > kMost ? 0 : end - first;
}

}  // namespace Memory

/// Asks for the element with all that is below it.
inline void Prefetch(const xercesc::DOMElement& element) {
  Memory::Prefetch(reinterpret_cast<std::uintptr_t>(&element), Memory::SizeOf(element));
}

/// Asks for the beginning of what follows the element, where an element like it has its attributes.
inline void PrefetchNext(const xercesc::DOMElement& element) {
  constexpr std::uintptr_t kBeginning = 1024;
  const std::uintptr_t size = Memory::SizeOf(element);
  Memory::Prefetch(reinterpret_cast<std::uintptr_t>(&element) + size, size < kBeginning ? size : kBeginning);
}

/// The first of `node` and its following siblings that is an element and fits; null when there is none.
template <class Fits>
const xercesc::DOMElement* FindElement(const xercesc::DOMNode* node, Fits fits) {
  for (; node; node = node->getNextSibling()) {
    if (node->getNodeType() != xercesc::DOMNode::ELEMENT_NODE) continue;
    const auto& element = static_cast<const xercesc::DOMElement&>(*node);
    if (fits(element)) return &element;
  }
  return nullptr;
}

/// True for an element of that tag name.
inline bool HasTag(const xercesc::DOMElement& element, const XMLCh* tagName) {
  return XStrEquals(element.getTagName(), tagName);
}

/// The first child element of that tag name, or null.
inline const xercesc::DOMElement* FirstChild(const xercesc::DOMNode& node, const XMLCh* tagName) {
  return FindElement(node.getFirstChild(), [=](const auto& element) { return HasTag(element, tagName); });
}

/// The first following sibling element of that tag name, or null.
inline const xercesc::DOMElement* NextSibling(const xercesc::DOMNode& node, const XMLCh* tagName) {
  return FindElement(node.getNextSibling(), [=](const auto& element) { return HasTag(element, tagName); });
}

/// The attribute's value. Nearly every attribute holds one text node, which can be asked at a fraction of the cost.
inline const XMLCh* ValueOf(const xercesc::DOMAttr& attribute) {
  const xercesc::DOMNode* const text = attribute.getFirstChild();
  const bool alone = text && text->getNodeType() == xercesc::DOMNode::TEXT_NODE && !text->getNextSibling();
  return alone ? text->getNodeValue() : attribute.getValue();
}

/// The attribute's value, or null when the element has no such attribute.
inline const XMLCh* AttributeOf(const xercesc::DOMElement& element, const XMLCh* name) {
  const xercesc::DOMAttr* const attribute = element.getAttributeNode(name);
  return attribute ? ValueOf(*attribute) : nullptr;
}

}  // namespace RQXPrsUtil

#endif
