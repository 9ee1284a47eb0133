#include <algorithm>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "rqxml/combiner/RQXSplitPMMLCombiner.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

namespace {

const xercesc::DOMElement* ChildOf(const xercesc::DOMNode* node, const char* tagName) {
  return node ? GetFirstChildElmt(*node, tagName) : nullptr;
}

}  // namespace

const xercesc::DOMElement* RQXSplitPMMLCombiner::GetPMML(const DOMDocument* doc) const { return ChildOf(doc, "PMML"); }

const xercesc::DOMElement* RQXSplitPMMLCombiner::GetDataDict(const DOMElement* pmml) const {
  return ChildOf(pmml, "DataDictionary");
}

const xercesc::DOMElement* RQXSplitPMMLCombiner::GetTransDict(const DOMElement* pmml) const {
  return ChildOf(pmml, "TransformationDictionary");
}

const xercesc::DOMElement* RQXSplitPMMLCombiner::GetMiningSchema(const DOMElement* model) const {
  return fOutput ? ChildOf(model, "MiningSchema") : nullptr;
}

const xercesc::DOMElement* RQXSplitPMMLCombiner::GetStandardModel(const DOMElement* pmml) const {
  for (const std::string& name : fStandardModels) {
    if (const DOMElement* const model = ChildOf(pmml, name.c_str())) return model;
  }
  return nullptr;
}

RQCommon::RQStatus RQXSplitPMMLCombiner::GetFunctionNameAtt(const DOMElement* model, std::string& out) {
  if (const RQStatus status = IsMiningModel(model); !status.IsOK()) return status;
  const XMLCh* const functionName = model ? GetAttribute(*model, "functionName") : nullptr;
  if (!functionName) return {AttributeMissing, false};
  out = ToUTF8(functionName);
  return {};
}

RQCommon::RQStatus RQXSplitPMMLCombiner::GetAlgorithmNameAtt(const DOMElement* model, std::string& out) {
  const RQStatus status = IsMiningModel(model);
  out.clear();
  if (!status.IsOK() || !model) return status;
  if (const XMLCh* const algorithmName = GetAttribute(*model, "algorithmName")) out = ToUTF8(algorithmName);
  return status;
}

RQCommon::RQStatus RQXSplitPMMLCombiner::IsMiningModel(const DOMElement* model) const {
  if (model && TagNameEquals(*model, "MiningModel")) return {NestedMiningModel, false};
  return {};
}

RQCommon::RQStatus RQXSplitPMMLCombiner::IsConsistentFunctionName(const DOMElement* model) {
  if (!model || fFunctionName.empty()) return {};
  std::string functionName;
  if (const RQStatus status = GetFunctionNameAtt(model, functionName); !status.IsOK()) return status;
  if (functionName != fFunctionName) return {FunctionNameDiffers, false};
  return {};
}

RQCommon::RQStatus RQXSplitPMMLCombiner::IsConsistentAlgorithmName(const DOMElement* model) {
  if (!model || fAlgorithmName.empty()) return {};
  std::string algorithmName;
  const RQStatus status = GetAlgorithmNameAtt(model, algorithmName);
  if (status.IsOK() && algorithmName != fAlgorithmName) fAlgorithmName.clear();
  return status;
}

RQCommon::RQStatus RQXSplitPMMLCombiner::IsEqualValues(const Strings& values) const {
  for (const std::string& value : values) {
    if (std::find(fAllCategories.begin(), fAllCategories.end(), value) == fAllCategories.end()) {
      return {BadSplitValues, false};
    }
  }
  return {};
}

}  // namespace RQXPrsUtil
