#ifndef RQXML_XML_RQXINPUTLIMITS_H
#define RQXML_XML_RQXINPUTLIMITS_H

#include <array>
#include <cstddef>
#include <unordered_set>
#include <xercesc/util/XercesDefs.hpp>

namespace RQXPrsUtil {

/// Keeps an eye on what makes the XML library slow out of proportion: many different names.
///
/// Its name tables have a fixed size, and names with one hash are easy to find, so that n different names cost time in
/// proportion to n * n: one megabyte of them takes half a minute. The documents that this library is for have a few
/// hundred. Each of these operations is false once a document goes beyond what is bearable.
class RQXInputLimits {
 public:
  /// How many different element names, different attribute names, and attributes of one element are bearable.
  static constexpr std::size_t kMostNames = 12'000;

  /// A new document starts.
  void Restart() {
    fRecent.fill(nullptr);
    fNames.clear();
  }

  /// `number` counts the different element names so far.
  static bool AdmitsElement(std::size_t number, std::size_t attributeCount) {
    return number <= kMostNames && attributeCount <= kMostNames;
  }

  /// `pooledName` is the name's one copy in the document's name pool.
  bool AdmitsAttribute(const XMLCh* pooledName) {
    const XMLCh*& recent = fRecent[(reinterpret_cast<std::size_t>(pooledName) >> 4) % fRecent.size()];
    if (recent == pooledName) return true;
    recent = pooledName;
    return fNames.size() < kMostNames ? (fNames.insert(pooledName), true) : fNames.count(pooledName) > 0;
  }

  /// How many attributes the start tag has that is being read; the scanner compares them with each other before it
  /// reports any.
  static bool AdmitsTag(std::size_t attributeCount) { return attributeCount <= kMostNames; }

 private:
  std::array<const XMLCh*, 64> fRecent{};
  std::unordered_set<const XMLCh*> fNames;
};

}  // namespace RQXPrsUtil

#endif
