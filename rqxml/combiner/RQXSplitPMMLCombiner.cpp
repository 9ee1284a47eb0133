#include "rqxml/combiner/RQXSplitPMMLCombiner.h"

#include <algorithm>
#include <ostream>
#include <xercesc/dom/DOMDocument.hpp>

#include "rqxml/xml/RQXMLReadWrite.h"
#include "rqxml/xml/RQXPlatform.h"
#include "rqxml/xml/RQXStatusCodes.h"

namespace RQXPrsUtil {

RQXSplitPMMLCombiner::RQXSplitPMMLCombiner(const RQVarList& splitVars) : fSplitVars(splitVars) {
  InitStandardPMMLModels();
  InitSplitVarMetadata(splitVars);
  fPlatformStarted = StartPlatform().IsOK();  // last: when anything above throws, no destructor stops it
}

RQXSplitPMMLCombiner::~RQXSplitPMMLCombiner() {
  if (fPlatformStarted) StopPlatform();
}

RQCommon::RQStatus RQXSplitPMMLCombiner::AddModel(const std::string& file, const Strings& splitValues) {
  if (file.empty() || splitValues.empty()) return fStatus;
  fStatus = {};
  if (fSplitVars.Size() != static_cast<int>(splitValues.size())) fStatus = {BadSplitValues, false};
  if (!fStatus.IsOK()) return fStatus;
  RQXMLReadWrite reader;
  fStatus = reader.ParseToDOM(file);
  if (fStatus.IsOK()) fStatus = ParseSplitModelXML(reader.GetDocument(), reader, splitValues);
  return fStatus;
}

RQCommon::RQStatus RQXSplitPMMLCombiner::ParseSplitModelXML(DOMDocument* doc, const RQXMLReadWrite& /*reader*/,
                                                            const Strings& splitValues) {
  if (!doc) return {};
  bool created = false;
  CreateEmptyMiningModel(created);
  return created ? FillCommonToMiningModel(doc, splitValues) : MergeModelToMiningModel(doc, splitValues);
}

RQCommon::RQStatus RQXSplitPMMLCombiner::ExportMiningModel(const std::string& file) {
  if (!fOutput) return fStatus;
  fStatus = WriteDocToPMMLFile(fOutput, file);
  fOutput->release();
  fOutput = nullptr;
  fOutputDataDict = nullptr;
  fOutputMiningSchema = nullptr;
  fOutputSegmentation = nullptr;
  // The lists keep their entries, but what these point to is gone.
  std::fill(fDataFields.begin(), fDataFields.end(), nullptr);
  return fStatus;
}

RQCommon::RQStatus RQXSplitPMMLCombiner::WriteDocToPMMLFile(const DOMDocument* doc, const std::string& file) {
  if (!doc || file.empty()) return {};
  const RQXMLReadWrite writer;
  return writer.WriteFromDOM(file, doc);
}

int RQXSplitPMMLCombiner::GetNModels() const { return fModelCount; }

void RQXSplitPMMLCombiner::Display(std::ostream& /*stream*/) const {}

}  // namespace RQXPrsUtil
