#include "rqxml/combiner/RQXNodeCopy.h"

#include <set>
#include <string>
#include <string_view>
#include <vector>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMNamedNodeMap.hpp>
#include <xercesc/dom/DOMNode.hpp>

#include "rqxml/combiner/RQXSubtree.h"

namespace RQXPrsUtil {

namespace {

using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;
using Prefixes = std::set<std::u16string_view>;

/// A parent whose children are being copied.
struct Level {
  const DOMNode* next;  // the next child to copy
  DOMNode* copy;        // what the children's copies go to
  bool reference;       // an entity reference: its children go to the level above
};

const DOMNode* NextChild(Level& level) {
  const DOMNode* const child = level.next;
  if (child) level.next = child->getNextSibling();
  return child;
}

/// The node itself without what is below it; null when the library refuses to copy what it was willing to read.
DOMNode* ImportAlone(DOMDocument& document, const DOMNode& node) {
  try {
    return document.importNode(&node, false);
  } catch (const xercesc::DOMException&) {
    return nullptr;
  }
}

void AddPrefix(std::u16string_view name, Prefixes& prefixes) {
  const std::size_t colon = name.find(u':');
  if (colon != std::u16string_view::npos) prefixes.insert(name.substr(0, colon));
}

/// The prefixes of all names of elements and attributes in the tree.
Prefixes GetPrefixes(const DOMElement& top) {
  Prefixes prefixes;
  for (const DOMNode* node = &top; node; node = NextInSubtree(&top, node)) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    AddPrefix(node->getNodeName(), prefixes);
    const xercesc::DOMNamedNodeMap* const attributes = node->getAttributes();
    const XMLSize_t count = attributes->getLength();
    for (XMLSize_t i = 0; i < count; ++i) AddPrefix(attributes->item(i)->getNodeName(), prefixes);
  }
  return prefixes;
}

/// What the attribute says at the node or the nearest element around it that has it, or null.
const XMLCh* FindAround(const DOMNode* node, const XMLCh* attribute) {
  for (; node; node = node->getParentNode()) {
    if (node->getNodeType() != DOMNode::ELEMENT_NODE) continue;
    const auto& element = static_cast<const DOMElement&>(*node);
    if (element.hasAttribute(attribute)) return element.getAttribute(attribute);
  }
  return nullptr;
}

}  // namespace

void DeclarePrefixes(DOMElement& copy, const DOMNode& source, const DOMNode& target) {
  for (const std::u16string_view prefix : GetPrefixes(copy)) {
    const std::u16string name = u"xmlns:" + std::u16string(prefix);
    if (copy.hasAttribute(name.c_str()) || FindAround(&target, name.c_str())) continue;
    if (const XMLCh* const address = FindAround(source.getParentNode(), name.c_str())) {
      copy.setAttribute(name.c_str(), address);
    }
  }
}

DOMNode* CopyNode(DOMDocument& document, const DOMNode& source, bool deep) {
  DOMNode* const root = ImportAlone(document, source);
  if (!deep || !root) return root;
  std::vector<Level> levels{{source.getFirstChild(), root, false}};
  // A copy is attached to its parent when it is whole: the library looks at all ancestors of a node it attaches to.
  for (;;) {
    const DOMNode* const child = NextChild(levels.back());
    if (!child) {
      const Level done = levels.back();
      levels.pop_back();
      if (levels.empty()) return root;
      if (!done.reference) levels.back().copy->appendChild(done.copy);
    } else if (child->getNodeType() == DOMNode::ENTITY_REFERENCE_NODE) {
      levels.push_back({child->getFirstChild(), levels.back().copy, true});
    } else if (DOMNode* const copy = ImportAlone(document, *child)) {
      if (child->getFirstChild()) {
        levels.push_back({child->getFirstChild(), copy, false});
      } else {
        levels.back().copy->appendChild(copy);
      }
    }
  }
}

}  // namespace RQXPrsUtil
