#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/dom/DOMImplementation.hpp>
#include <xercesc/dom/DOMImplementationRegistry.hpp>

#include "rqxml/combiner/RQXNodeCopy.h"
#include "rqxml/combiner/RQXSplitPMMLCombiner.h"
#include "rqxml/xml/RQXMLUtil.h"

namespace RQXPrsUtil {

using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

DOMDocument* RQXSplitPMMLCombiner::CreateEmptyMiningModel(bool& created) {
  created = false;
  if (fOutput) return fOutput;
  fOutput = xercesc::DOMImplementationRegistry::getDOMImplementation(u"Core")->createDocument();
  created = true;
  return fOutput;
}

RQCommon::RQStatus RQXSplitPMMLCombiner::FillCommonToMiningModel(DOMDocument* doc, const Strings& splitValues) {
  if (!fOutput || !doc) return {};
  const DOMElement* const sourcePMML = GetPMML(doc);
  const DOMElement* const model = GetStandardModel(sourcePMML);
  RQStatus status = GetFunctionNameAtt(model, fFunctionName);
  if (status.IsOK()) status = GetAlgorithmNameAtt(model, fAlgorithmName);
  if (!status.IsOK()) return status;
  DOMNode* const pmml = CopyPMML(sourcePMML, false);
  CopyHeader(sourcePMML, pmml, true);
  fOutputDataDict = CopyDataDict(sourcePMML, pmml, true);
  const DOMElement* const transDict = GetTransDict(sourcePMML);
  DOMNode* const miningModel = CreateMiningModel(pmml, fFunctionName, fAlgorithmName);
  fOutputMiningSchema = CopyMiningSchema(model, miningModel, true);
  InsertSplitVarsToMiningModel(fOutputDataDict, fOutputMiningSchema);
  fOutputSegmentation = CreateSegmentation(miningModel);
  InsertSegment(fOutputSegmentation, model, transDict, splitValues);
  return {};
}

RQCommon::RQStatus RQXSplitPMMLCombiner::MergeModelToMiningModel(DOMDocument* doc, const Strings& splitValues) {
  if (!doc || splitValues.empty()) return {};
  const DOMElement* const sourcePMML = GetPMML(doc);
  const DOMElement* const model = GetStandardModel(sourcePMML);
  if (const RQStatus status = IsConsistentFunctionName(model); !status.IsOK()) return status;
  const DOMElement* const dataDict = GetDataDict(sourcePMML);
  const DOMElement* const transDict = GetTransDict(sourcePMML);
  const DOMElement* const miningSchema = GetMiningSchema(model);
  UpdateDataDict(dataDict, fOutputDataDict);
  UpdateMiningSchema(miningSchema, fOutputMiningSchema);
  InsertSegment(fOutputSegmentation, model, transDict, splitValues);
  return {};
}

DOMNode* RQXSplitPMMLCombiner::CopyInto(const DOMNode* source, DOMNode* target, bool deep) {
  if (!source || !target || !fOutput) return nullptr;
  DOMNode* const copy = CopyNode(*fOutput, *source, deep);
  if (!copy) return nullptr;
  // The elements around a piece stay behind, with what they declare.
  if (deep && AsElement(*copy, nullptr)) DeclarePrefixes(*static_cast<DOMElement*>(copy), *source, *target);
  return target->appendChild(copy);
}

DOMElement* RQXSplitPMMLCombiner::CreateInto(DOMNode* target, const char* tagName) {
  if (!target || !fOutput) return nullptr;
  DOMElement* const element = CreateElement(*fOutput, tagName);
  if (element) target->appendChild(element);
  return element;
}

DOMNode* RQXSplitPMMLCombiner::CopyPMML(const DOMElement* pmml, bool deep) { return CopyInto(pmml, fOutput, deep); }

DOMNode* RQXSplitPMMLCombiner::CopyHeader(const DOMElement* pmml, DOMNode* target, bool deep) {
  return CopyInto(pmml ? GetFirstChildElmt(*pmml, "Header") : nullptr, target, deep);
}

DOMNode* RQXSplitPMMLCombiner::CopyDataDict(const DOMElement* pmml, DOMNode* target, bool deep) {
  return CopyInto(GetDataDict(pmml), target, deep);
}

DOMNode* RQXSplitPMMLCombiner::CopyMiningSchema(const DOMElement* model, DOMNode* target, bool deep) {
  return CopyInto(GetMiningSchema(model), target, deep);
}

DOMNode* RQXSplitPMMLCombiner::CopyTransDictToLocal(const DOMElement* transDict, DOMNode* model) {
  if (!transDict || !model) return nullptr;
  DOMNode* const local = CreateInto(model, "LocalTransformations");
  for (auto* field = GetFirstChildElmt(*transDict, "DerivedField"); field;
       field = GetNextSiblingElmt(*field, "DerivedField")) {
    CopyInto(field, local, true);
  }
  return local;
}

DOMNode* RQXSplitPMMLCombiner::CreateMiningModel(DOMNode* pmml, const std::string& functionName,
                                                 const std::string& algorithmName) {
  if (!pmml || functionName.empty()) return nullptr;
  DOMElement* const model = CreateInto(pmml, "MiningModel");
  if (!model) return nullptr;
  if (SetAttribute(*model, "functionName", functionName.c_str()) && !algorithmName.empty()) {
    SetAttribute(*model, "algorithmName", algorithmName.c_str());
  }
  return model;
}

DOMNode* RQXSplitPMMLCombiner::CreateSegmentation(DOMNode* miningModel) {
  DOMElement* const segmentation = CreateInto(miningModel, "Segmentation");
  if (segmentation) SetAttribute(*segmentation, "multipleModelMethod", "selectFirst");
  return segmentation;
}

DOMNode* RQXSplitPMMLCombiner::InsertSegment(DOMNode* segmentation, const DOMElement* model,
                                             const DOMElement* transDict, const Strings& splitValues) {
  if (!segmentation || !model || splitValues.empty()) return nullptr;
  DOMNode* const segment = CreateInto(segmentation, "Segment");
  if (!segment) return nullptr;
  InsertPredicate(segment, splitValues);
  DOMNode* const copy = CopyInto(model, segment, true);
  if (copy && transDict) CopyTransDictToLocal(transDict, copy);
  ++fModelCount;
  return segment;
}

DOMNode* RQXSplitPMMLCombiner::InsertPredicate(DOMNode* segment, const Strings& splitValues) {
  if (!segment || splitValues.empty()) return nullptr;
  DOMNode* const predicate = splitValues.size() < 2 ? InsertSimplePredicate(segment, 0, splitValues.front())
                                                    : InsertCompoundPredicate(segment, splitValues);
  // It is the last child already, which appending it once more leaves as it is.
  return predicate ? segment->appendChild(predicate) : nullptr;
}

DOMNode* RQXSplitPMMLCombiner::InsertSimplePredicate(DOMNode* parent, int index, const std::string& value) {
  if (!parent || value.empty()) return nullptr;
  const std::string field = GetSplitVarName(index);
  if (index < 0 || field.empty()) return nullptr;
  DOMElement* const predicate = CreateInto(parent, "SimplePredicate");
  if (!predicate) return nullptr;
  SetAttribute(*predicate, "field", field.c_str());
  SetAttribute(*predicate, "operator", "equal");
  SetAttribute(*predicate, "value", value.c_str());
  return predicate;
}

DOMNode* RQXSplitPMMLCombiner::InsertCompoundPredicate(DOMNode* parent, const Strings& values) {
  if (!parent || values.size() < 2) return nullptr;
  DOMElement* const predicate = CreateInto(parent, "CompoundPredicate");
  if (!predicate) return nullptr;
  SetAttribute(*predicate, "booleanOperator", "and");
  for (std::size_t i = 0; i < values.size(); ++i) InsertSimplePredicate(predicate, static_cast<int>(i), values[i]);
  return predicate;
}

}  // namespace RQXPrsUtil
