#ifndef RQXML_FIELDS_RQXBINS_H
#define RQXML_FIELDS_RQXBINS_H

#include <string>
#include <string_view>
#include <vector>

#include "rqxml/common/RQNameIndex.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

/// The bins of one field: the first left edge and each bin's right edge, and a label for each bin that has one.
struct RQXBins {
  std::vector<double> edges;
  std::vector<std::string> labels;
};

/// Finds the "Discretize" elements of a transformation dictionary by the field that they name. All searches together
/// cost one walk through the dictionary, which goes no further than they demand.
class RQXDiscretizeIndex {
 public:
  /// Keeps views of the dictionary's attribute values; the document must outlive the index.
  explicit RQXDiscretizeIndex(const xercesc::DOMElement& transDictionary);

  /// The first "Discretize" of the field, in the first "DerivedField" that has one; null when there is none.
  const xercesc::DOMElement* Find(const XMLCh* fieldName);

 private:
  /// A field that the walk has met, by the bytes of its name, with its first "Discretize".
  struct Passed {
    std::string_view field;
    const xercesc::DOMElement* discretize;
  };

  const xercesc::DOMElement* Next();
  const xercesc::DOMElement* FindPassed(std::string_view field) const;
  void Pass(std::string_view field);

  const xercesc::DOMElement* fDerived;               // where the walk is; null at its end
  const xercesc::DOMElement* fDiscretize = nullptr;  // the last one met below it
  std::vector<Passed> fPassed;
  RQMTD_NAMESPACE::RQNameIndex fIndex;
};

/// Reads the bins of a "Discretize" in document order, neither sorted nor checked. A right margin that is absent or no
/// number is the largest double, the first left margin in that case the lowest; other left margins are ignored.
/// Without any interval there is the one edge 0.
void ReadBins(const xercesc::DOMElement& discretize, RQXBins& bins);

}  // namespace RQXPrsUtil

#endif
