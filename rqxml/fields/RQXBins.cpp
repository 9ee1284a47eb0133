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

const xercesc::DOMElement* RQXDiscretizeIndex::FindPassed(std::string_view field) const {
  const std::size_t position = fIndex.Find(field, [this](std::size_t at) { return fPassed[at].field; });
  return position == RQMTD_NAMESPACE::RQNameIndex::kNone ? nullptr : fPassed[position].discretize;
}

void RQXDiscretizeIndex::Pass(std::string_view field) {
  fIndex.ReserveOne();
  fPassed.push_back({field, fDiscretize});
  fIndex.Insert(field, fPassed.size() - 1);
}

const xercesc::DOMElement* RQXDiscretizeIndex::Find(const XMLCh* fieldName) {
  const std::string_view wanted = AsBytes(AsView(fieldName));
  if (const xercesc::DOMElement* const passed = FindPassed(wanted)) return passed;
  while (const xercesc::DOMElement* const discretize = Next()) {
    const XMLCh* const field = AttributeOf(*discretize, kField);
    if (!field) continue;
    const std::string_view name = AsBytes(AsView(field));
    const bool found = name == wanted;
    if (found || !FindPassed(name)) Pass(name);  // the first one stays
    if (found) return discretize;
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
