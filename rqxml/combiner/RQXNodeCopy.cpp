#include "rqxml/combiner/RQXNodeCopy.h"

#include <vector>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/dom/DOMNode.hpp>

namespace RQXPrsUtil {

namespace {

using xercesc::DOMDocument;
using xercesc::DOMNode;

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

}  // namespace

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
