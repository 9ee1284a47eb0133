#ifndef RQXML_COMBINER_RQXSUBTREE_H
#define RQXML_COMBINER_RQXSUBTREE_H

#include <xercesc/dom/DOMNode.hpp>

namespace RQXPrsUtil {

/// The next node of the subtree of `root` in document order, or null.
inline xercesc::DOMNode* NextInSubtree(const xercesc::DOMNode* root, const xercesc::DOMNode* node) {
  if (xercesc::DOMNode* const child = node->getFirstChild()) return child;
  while (node != root && !node->getNextSibling()) node = node->getParentNode();
  return node == root ? nullptr : node->getNextSibling();
}

}  // namespace RQXPrsUtil

#endif
