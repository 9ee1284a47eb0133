#ifndef RQXML_TOOLS_NODEWALK_H
#define RQXML_TOOLS_NODEWALK_H

#include <cstddef>
#include <xercesc/dom/DOMNode.hpp>

namespace rqtool {

/// Calls `use` with `root` and each node below it in document order, and how many levels below `root` that is, until
/// `use` returns false. Documents may be nested deeper than a recursion could go.
template <typename Use>
void WalkNodes(const xercesc::DOMNode& root, Use use) {
  const xercesc::DOMNode* node = &root;
  std::size_t depth = 0;
  while (use(*node, depth)) {
    if (const xercesc::DOMNode* const child = node->getFirstChild()) {
      node = child;
      ++depth;
      continue;
    }
    while (node != &root && node->getNextSibling() == nullptr) {
      node = node->getParentNode();
      --depth;
    }
    if (node == &root) return;
    node = node->getNextSibling();
  }
}

}  // namespace rqtool

#endif
