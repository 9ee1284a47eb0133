#include "metadata_workload.h"

#include <istream>
#include <utility>
#include <xercesc/dom/DOMElement.hpp>

#include "metadata_documents.h"
#include "rqxml/common/RQVariable.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "workload.h"

namespace rqxml_bench {

using RQMTD_NAMESPACE::RQUniStats;

DataModelSubject::DataModelSubject(const Document& document) {
  Require(fParser.ParseToDOM(document.text).IsOK(), "the document is parsed");
}

void DataModelSubject::Fill() {
  Require(fParser.FillVarList(fVariables, true, true, 10).IsOK(), "the fields are read");
}

void DataModelSubject::Check(const Document& document) const {
  Require(fVariables.Size() == document.variables, "every field becomes a variable");
  const auto& first = *fVariables.GetVariable(0);
  Require(first.GetName() == "field_0" && first.GetLabel() == "Field number 0" && first.GetMaximum() == 99.5 &&
              first.GetCount() == 10 && first.GetRole() == 5,
          "the first field is there, with its range");
  Require(fVariables.GetVariable(1)->GetNumericValues() == std::vector<double>({1, 2, 3}), "the numbers are there");
  Require(fVariables.GetVariable(2)->GetLabels().size() == 3, "the labels are there");
}

StatisticsSubject::StatisticsSubject(const Document& document) {
  TextBuffer buffer(document.text);
  std::istream in(&buffer);
  Require(fParser.ParseToDOM(in).IsOK(), "the document is parsed");
  const auto* const root = fParser.GetRootElement();
  Require(fParser.SetModelElmt(*RQXPrsUtil::GetFirstChildElmt(*root, "TreeModel")), "there is a model");
}

void StatisticsSubject::Fill() {
  const xercesc::DOMElement* cursor = nullptr;
  while (true) {
    RQUniStats stats;
    Require(fParser.FillUniStats(stats, cursor).IsOK(), "the statistics are read");
    if (!cursor) return;
    fLast = std::move(stats);
    ++fFields;
  }
}

void StatisticsSubject::Check(const Document& document) const {
  Require(fFields == document.variables, "every field has statistics");
  Require(fLast.GetName() == "field_" + std::to_string(document.variables - 1), "the last field is there");
  Require(fLast.GetCutPoints().size() == kIntervals + 1 && fLast.GetFrequencies().size() == kIntervals &&
              fLast.GetCutPoints().front() == 0.5 && fLast.GetFrequencies().back() == 100 * (kIntervals - 1),
          "the histogram is there");
  Require(fLast.GetSummStats().mean == 13.25, "the summary is there");
}

}  // namespace rqxml_bench
