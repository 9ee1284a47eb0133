#include "rqxml/pmml/RQPMMLParser.h"

#include <istream>
#include <xercesc/dom/DOMDocument.hpp>

#include "rqxml/fields/RQXBins.h"
#include "rqxml/fields/RQXFieldAdder.h"
#include "rqxml/fields/RQXFieldReader.h"
#include "rqxml/pmml/RQPMMLFieldFilter.h"
#include "rqxml/xml/RQXDomParser.h"
#include "rqxml/xml/RQXDomWalk.h"
#include "rqxml/xml/RQXNames.h"
#include "rqxml/xml/RQXPlatform.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

namespace {

// Storage types are accepted without being handed on.
constexpr RQXTypeWord kDataTypes[] = {
    {u"string", 0, false},
    {u"double", 0, true},
    {u"float", 0, true},
    {u"integer", 0, true},
    {u"date", 0, true},
    {u"time", 0, true},
    {u"dateTime", 0, true},
    {u"timeSeconds", 0, true},
    {u"dateDaysSince[0]", 0, true},
    {u"dateDaysSince[1960]", 0, true},
    {u"dateDaysSince[1970]", 0, true},
    {u"dateDaysSince[1980]", 0, true},
    {u"dateTimeSecondsSince[0]", 0, true},
    {u"dateTimeSecondsSince[1960]", 0, true},
    {u"dateTimeSecondsSince[1970]", 0, true},
    {u"dateTimeSecondsSince[1980]", 0, true},
};

/// The range that "Interval" children give is not read from models.
RQCommon::RQStatus ReadChild(const xercesc::DOMElement& child, RQXField& field) {
  if (HasTag(child, Names::kValueElement)) ReadValue(child, field);
  if (field.numeric && HasTag(child, Names::kExtension)) ReadInvalidRange(child, field);
  return {};
}

constexpr RQXFieldDialect kDataFieldDialect{u"displayName", u"dataType", kDataTypes, u"optype", ReadChild};

}  // namespace

RQPMMLParser::RQPMMLParser() { fStatus = StartParser(fParser); }

RQPMMLParser::~RQPMMLParser() { StopParser(fParser); }

RQCommon::RQStatus RQPMMLParser::ParseToDOM(std::istream& in) {
  fMessage.clear();
  ForgetDocument();
  if (fParser) {
    fStatus = {};
    RenewIfLocked(fParser);
    RQXDomParser::Result result = fParser->ParseStream(in);
    fStatus = result.status;
    fMessage = std::move(result.message);
    fDocument = result.document;
  }
  if (fStatus.IsOK()) fStatus = FindElements();
  if (!fStatus.IsOK()) ForgetDocument();
  return fStatus;
}

RQCommon::RQStatus RQPMMLParser::FindElements() {
  const xercesc::DOMElement* const root = fDocument->getDocumentElement();
  if (!root || !HasTag(*root, u"PMML")) return {WrongRootElement, false};
  fRootElement = root;
  fDataDictionary = FirstChild(*root, u"DataDictionary");
  if (!fDataDictionary) return {NoDataDictionary, false};
  fTransDictionary = FirstChild(*root, u"TransformationDictionary");
  return {};
}

void RQPMMLParser::ForgetDocument() {
  fDocument = nullptr;
  fRootElement = nullptr;
  fDataDictionary = nullptr;
  fTransDictionary = nullptr;
  fModelElement = nullptr;
}

RQCommon::RQStatus RQPMMLParser::GetStatus() const { return fStatus; }

std::string RQPMMLParser::GetXercesMessage() const { return fMessage; }

const xercesc::DOMElement* RQPMMLParser::GetRootElement() const { return fRootElement; }

bool RQPMMLParser::SetModelElmt(const xercesc::DOMElement& model) {
  if (!fStatus.IsOK() || !fDocument) return false;
  fModelElement = &model;
  return true;
}

RQCommon::RQStatus RQPMMLParser::GetReadiness() const {
  if (fStatus.IsOK() && !fDocument) return {NotParsed, false};
  return fStatus;
}

RQCommon::RQStatus RQPMMLParser::FillVarList(RQMTD_NAMESPACE::RQVarList& vars, const std::vector<std::string>& names,
                                             bool useBins) const {
  if (const RQCommon::RQStatus status = GetReadiness(); !status.IsOK()) return status;
  const RQPMMLFieldFilter filter(names);
  RQXBinSource bins(useBins, fTransDictionary);
  RQXField field;
  for (auto* element = FirstChild(*fDataDictionary, Names::kDataField); element;
       element = NextSibling(*element, Names::kDataField)) {
    PrefetchNext(*element);
    if (!filter.Wants(*element)) continue;
    Prefetch(*element);
    RQCommon::RQStatus status = ReadField(*element, kDataFieldDialect, field);
    if (status.IsOK()) status = AddFieldWithBins(vars, field, bins, RQXAddRules());
    if (!status.IsOK()) return status;
  }
  return {};
}

bool RQPMMLParser::SetBinsFrTransDict(const std::string& fieldName, std::vector<double>& cutPoints,
                                      std::vector<std::string>& labels) const {
  cutPoints.clear();
  labels.clear();
  const xercesc::DOMElement* const discretize =
      RQXDiscretizeIndex(*fTransDictionary).Find(DecodeUTF8(fieldName.c_str()).c_str());
  if (!discretize) return false;
  RQXBins bins;
  ReadBins(*discretize, bins);
  cutPoints = std::move(bins.edges);
  labels = std::move(bins.labels);
  return true;
}

}  // namespace RQXPrsUtil
