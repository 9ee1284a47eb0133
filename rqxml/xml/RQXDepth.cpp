#include "rqxml/xml/RQXDepth.h"

#include <cstddef>
#include <cstdint>
#include <xercesc/dom/DOMNode.hpp>

#if defined(__linux__)
#include <pthread.h>
#endif

namespace RQXPrsUtil {

namespace {

/// What one level of the XML library's recursion takes (128 bytes measured), with a margin.
constexpr std::size_t kBytesPerLevel = 160;
/// Kept free below the recursion for the innermost calls, signal handlers and the like.
constexpr std::size_t kReserve = 64 * 1024;
/// Levels that cost no more than the calls of any other operation; shallower trees need no look at the stack.
constexpr std::size_t kAlwaysFits = 64;

/// The number of levels below `root`.
std::size_t GetDepth(const xercesc::DOMNode& root) {
  std::size_t depth = 0;
  std::size_t deepest = 0;
  const xercesc::DOMNode* node = &root;
  for (;;) {
    if (const xercesc::DOMNode* const child = node->getFirstChild()) {
      node = child;
      if (++depth > deepest) deepest = depth;
      continue;
    }
    while (node != &root && !node->getNextSibling()) {
      node = node->getParentNode();
      --depth;
    }
    if (node == &root) return deepest;
    node = node->getNextSibling();
  }
}

/// Bytes between here and the end of the calling thread's stack.
std::size_t GetFreeStack() {
#if defined(__linux__)
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return 0;
  void* lowest = nullptr;
  std::size_t size = 0;
  const int failed = pthread_attr_getstack(&attributes, &lowest, &size);
  pthread_attr_destroy(&attributes);
  const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  const auto end = reinterpret_cast<std::uintptr_t>(lowest);
  // A caller may run on a stack of its own making, of which nothing is known.
  if (failed != 0 || here < end || here - end > size) return 0;
  return here - end;
#else
  return 0;
#endif
}

}  // namespace

bool FitsTheStack(const xercesc::DOMNode& node) {
  const std::size_t depth = GetDepth(node);
  if (depth <= kAlwaysFits) return true;
  return depth * kBytesPerLevel + kReserve <= GetFreeStack();
}

}  // namespace RQXPrsUtil
