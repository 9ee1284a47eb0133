#include "rqxml/fields/RQXBins.h"

#include "rqxml/fields/RQXField.h"
#include "rqxml/fields/RQXFieldReader.h"
#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXNames.h"
#include "rqxml/xml/RQXNumbers.h"

namespace RQXPrsUtil {

namespace {

constexpr XMLCh kDiscretize[] = u"Discretize";
constexpr XMLCh kDiscretizeBin[] = u"DiscretizeBin";
constexpr XMLCh kField[] = u"field";

double ReadMargin(const xercesc::DOMElement& interval, const XMLCh* name, double otherwise) {
  double margin = otherwise;
  ReadDoubleAttribute(interval, name, margin);
  return margin;
}

}  // namespace

RQXDiscretizeIndex::RQXDiscretizeIndex(const xercesc::DOMElement& transDictionary)
    : fDerived(FirstChild(transDictionary, Names::kDerivedField)) {}

const xercesc::DOMElement* RQXDiscretizeIndex::Next() {
  while (fDerived) {
    fDiscretize = fDiscretize ? NextSibling(*fDiscretize, kDiscretize) : FirstChild(*fDerived, kDiscretize);
    if (fDiscretize) return fDiscretize;
    fDerived = NextSibling(*fDerived, Names::kDerivedField);
    if (fDerived) Prefetch(*fDerived);
  }
  return nullptr;
}

const xercesc::DOMElement* RQXDiscretizeIndex::Find(const XMLCh* fieldName) {
  if (const auto passed = fPassed.find(AsView(fieldName)); passed != fPassed.end()) return passed->second;
  while (const xercesc::DOMElement* const discretize = Next()) {
    const XMLCh* const field = AttributeOf(*discretize, kField);
    if (!field || !fPassed.emplace(AsView(field), discretize).second) continue;  // the first one stays
    if (XStrEquals(field, fieldName)) return discretize;
  }
  return nullptr;
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
