#ifndef RQXML_FIELDS_RQXBINS_H
#define RQXML_FIELDS_RQXBINS_H

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// The bins of one field: the first left edge and each bin's right edge, and a label for each bin that has one.
struct RQXBins {
  std::vector<double> edges;
  std::vector<std::string> labels;
};

/// The "Discretize" element that a transformation dictionary defines for the field (its name in UTF-8): that of the
/// first "DerivedField" which has one. Null when there is none.
const xercesc::DOMElement* FindDiscretize(const xercesc::DOMElement& transDictionary, const std::string& fieldName);

/// The same search for many fields: each costs O(1) after one walk through the dictionary.
class RQXDiscretizeIndex {
 public:
  /// Keeps views of the dictionary's attribute values; the document must outlive the index.
  explicit RQXDiscretizeIndex(const xercesc::DOMElement& transDictionary);

  const xercesc::DOMElement* Find(const XMLCh* fieldName) const;

 private:
  std::unordered_map<std::u16string_view, const xercesc::DOMElement*> fByField;
};

/// Reads the bins of a "Discretize" in document order, neither sorted nor checked. A right margin that is absent or no
/// number is the largest double, the first left margin in that case the lowest; other left margins are ignored.
/// Without any interval there is the one edge 0.
void ReadBins(const xercesc::DOMElement& discretize, RQXBins& bins);

}  // namespace RQXPrsUtil

#endif
