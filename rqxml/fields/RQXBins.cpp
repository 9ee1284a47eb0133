#include "rqxml/fields/RQXBins.h"

#include "rqxml/fields/RQXField.h"
#include "rqxml/fields/RQXFieldReader.h"
#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXNames.h"
#include "rqxml/xml/RQXNumbers.h"

namespace RQXPrsUtil {

namespace {

constexpr XMLCh kDiscretize[] = u"Discretize";
constexpr XMLCh kDiscretizeBin[] = u"DiscretizeBin";
constexpr XMLCh kField[] = u"field";

/// Shows each "Discretize" that names its field, in document order, to `visit` until that is true.
template <class Visit>
void VisitDiscretizes(const xercesc::DOMElement& transDictionary, Visit visit) {
  for (auto* derived = FirstChild(transDictionary, Names::kDerivedField); derived;
       derived = NextSibling(*derived, Names::kDerivedField)) {
    for (auto* discretize = FirstChild(*derived, kDiscretize); discretize;
         discretize = NextSibling(*discretize, kDiscretize)) {
      const XMLCh* const field = AttributeOf(*discretize, kField);
      if (field && visit(*discretize, field)) return;
    }
  }
}

double ReadMargin(const xercesc::DOMElement& interval, const XMLCh* name, double otherwise) {
  double margin = otherwise;
  ReadDoubleAttribute(interval, name, margin);
  return margin;
}

}  // namespace

const xercesc::DOMElement* FindDiscretize(const xercesc::DOMElement& transDictionary, const std::string& fieldName) {
  const xercesc::DOMElement* found = nullptr;
  VisitDiscretizes(transDictionary, [&](const xercesc::DOMElement& discretize, const XMLCh* field) {
    if (!XStrEqualsUTF8Str(field, fieldName.c_str())) return false;
    found = &discretize;
    return true;
  });
  return found;
}

RQXDiscretizeIndex::RQXDiscretizeIndex(const xercesc::DOMElement& transDictionary) {
  VisitDiscretizes(transDictionary, [this](const xercesc::DOMElement& discretize, const XMLCh* field) {
    fByField.emplace(AsView(field), &discretize);  // the first one stays
    return false;
  });
}

const xercesc::DOMElement* RQXDiscretizeIndex::Find(const XMLCh* fieldName) const {
  const auto found = fByField.find(AsView(fieldName));
  return found == fByField.end() ? nullptr : found->second;
}

void ReadBins(const xercesc::DOMElement& discretize, RQXBins& bins) {
  bins.edges.assign(1, 0);
  bins.labels.clear();
  bool first = true;
  for (auto* bin = FirstChild(discretize, kDiscretizeBin); bin; bin = NextSibling(*bin, kDiscretizeBin)) {
    AppendLabel(*bin, u"binValue", bins.labels);
    for (auto* interval = FirstChild(*bin, Names::kInterval); interval;
         interval = NextSibling(*interval, Names::kInterval)) {
      bins.edges.push_back(ReadMargin(*interval, Names::kRightMargin, RQXField::kHighest));
      if (first) bins.edges.front() = ReadMargin(*interval, Names::kLeftMargin, RQXField::kLowest);
      first = false;
    }
  }
}

}  // namespace RQXPrsUtil
