#ifndef RQXML_XML_RQXINPUTLIMITS_H
#define RQXML_XML_RQXINPUTLIMITS_H

#include <array>
#include <cstddef>
#include <unordered_set>
#include <xercesc/framework/XMLElementDecl.hpp>

namespace RQXPrsUtil {

/// Counts different names. Each name has one object of its own, by whose address it is known.
class RQXNameCount {
 public:
  void Restart() {
    fRecent.fill(nullptr);
    fNames.clear();
  }

  /// False when this name would be one more than `most`.
  bool Admits(const void* name, std::size_t most) {
    const void*& recent = fRecent[(reinterpret_cast<std::size_t>(name) >> 4) % fRecent.size()];
    if (recent == name) return true;
    recent = name;
    return fNames.size() < most ? (fNames.insert(name), true) : fNames.count(name) > 0;
  }

 private:
  std::array<const void*, 64> fRecent{};
  std::unordered_set<const void*> fNames;
};

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
    fElements.Restart();
    fAttributes.Restart();
  }

  /// `declaration` is what the library made for elements of this name.
  bool AdmitsElement(const xercesc::XMLElementDecl& declaration, std::size_t attributeCount) {
    return attributeCount <= kMostNames && fElements.Admits(&declaration, kMostNames);
  }

  /// `pooledName` is the name's one copy in the document's name pool.
  bool AdmitsAttribute(const XMLCh* pooledName) { return fAttributes.Admits(pooledName, kMostNames); }

  /// How many attributes the start tag has that is being read; the scanner compares them with each other before it
  /// reports any.
  static bool AdmitsTag(std::size_t attributeCount) { return attributeCount <= kMostNames; }

 private:
  RQXNameCount fElements;
  RQXNameCount fAttributes;
};

}  // namespace RQXPrsUtil

#endif
