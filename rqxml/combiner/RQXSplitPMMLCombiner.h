#ifndef RQXML_COMBINER_RQXSPLITPMMLCOMBINER_H
#define RQXML_COMBINER_RQXSPLITPMMLCOMBINER_H

#include <cstddef>
#include <iosfwd>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "rqxml/common/IRQVariable.h"
#include "rqxml/common/RQExport.h"
#include "rqxml/common/RQStatus.h"
#include "rqxml/common/RQVarList.h"
#include "rqxml/xml/RQXercesFwd.h"

namespace RQXPrsUtil {

class RQXMLReadWrite;

/// Merges the PMML files of many splits of the data into one PMML document, whose "MiningModel" holds one guarded
/// "Segment" for each of them.
///
/// The first file founds the combined document; later ones add the data fields, category values and mining fields that
/// it lacks, and a segment. What the document already has is never changed: the first definition of a field wins. One
/// combiner makes one document: after an export use a new one.
///
/// What is copied is copied as it stands, with two exceptions that keep the document readable: references to entities
/// are replaced by what they stand for, and a copied piece declares the namespace prefixes that it uses when what was
/// around it declared them and nothing around the copy does.
///
/// The XML library is held up as long as the object lives. Constructing and destroying objects must not run
/// concurrently with anything else that starts or stops the XML library; one object is used by one thread at a time.
class RQ_API RQXSplitPMMLCombiner {
 public:
  /// @param splitVars the split variables, in split order; borrowed, and read again by AddModel: it must outlive the
  ///   combiner. Reports nothing; entries that the list does not hand out are skipped.
  explicit RQXSplitPMMLCombiner(const RQMTD_NAMESPACE::RQVarList& splitVars);
  /// Does not release a document that was not exported: export with an empty file name discards it.
  ~RQXSplitPMMLCombiner();
  RQXSplitPMMLCombiner(const RQXSplitPMMLCombiner&) = delete;
  RQXSplitPMMLCombiner& operator=(const RQXSplitPMMLCombiner&) = delete;

  /// Merges the file of one split. The split values, one for each split variable, stand in the segment's predicate
  /// as they are given; they are not compared with the variables' categories.
  /// @return OK, also for a later file without a model, whose data fields are merged all the same; the status of the
  ///   previous call when `file` or `splitValues` is empty; 126 when the number of values differs from the number of
  ///   split variables; 103 or 104 when the file cannot be parsed; 108 for a model without "functionName", and for a
  ///   first file without a model; 124 when "functionName" differs from the first file's; 125 for a file whose model
  ///   is a "MiningModel". A refused file contributes nothing, but a refused first file leaves an empty document
  ///   that later files cannot found: discard the combiner then.
  /// @throws xercesc::SAXParseException for a file that is not well-formed; it contributes nothing
  RQCommon::RQStatus AddModel(const std::string& file, const std::vector<std::string>& splitValues);

  /// Writes the combined document and discards it, whether or not it could be written; an empty name only discards it.
  /// @return the status of RQXMLReadWrite::WriteFromDOM; OK for an empty name; the status of the previous call when
  ///   there is no document
  /// @throws xercesc::XMLException when the file cannot be opened for writing; the document is kept then
  RQCommon::RQStatus ExportMiningModel(const std::string& file);

  /// The number of segments inserted since construction, across exports.
  int GetNModels() const;

  /// Writes nothing.
  void Display(std::ostream& stream) const;

 private:
  using DOMDocument = xercesc::DOMDocument;
  using DOMElement = xercesc::DOMElement;
  using DOMNode = xercesc::DOMNode;
  using IRQVariable = RQMTD_NAMESPACE::IRQVariable;
  using RQVarList = RQMTD_NAMESPACE::RQVarList;
  using RQStatus = RQCommon::RQStatus;
  using Strings = std::vector<std::string>;

  // Split variables.
  void InitStandardPMMLModels();
  void InitSplitVarMetadata(const RQVarList& splitVars);
  bool GetSplitVariableInfo(const IRQVariable* var, std::string& name, std::string& label, std::string& optype,
                            std::string& dataType);
  std::string GetSplitVarName(int index) const;

  // The parts of a split document and their checks.
  RQStatus ParseSplitModelXML(DOMDocument* doc, const RQXMLReadWrite& reader, const Strings& splitValues);
  const DOMElement* GetPMML(const DOMDocument* doc) const;
  const DOMElement* GetDataDict(const DOMElement* pmml) const;
  const DOMElement* GetTransDict(const DOMElement* pmml) const;
  const DOMElement* GetMiningSchema(const DOMElement* model) const;
  const DOMElement* GetStandardModel(const DOMElement* pmml) const;
  RQStatus GetFunctionNameAtt(const DOMElement* model, std::string& out);
  RQStatus GetAlgorithmNameAtt(const DOMElement* model, std::string& out);
  RQStatus IsMiningModel(const DOMElement* model) const;
  RQStatus IsConsistentFunctionName(const DOMElement* model);
  RQStatus IsConsistentAlgorithmName(const DOMElement* model);
  RQStatus IsEqualValues(const Strings& values) const;

  // Founding the combined document, and merging into it.
  DOMDocument* CreateEmptyMiningModel(bool& created);
  RQStatus FillCommonToMiningModel(DOMDocument* doc, const Strings& splitValues);
  RQStatus MergeModelToMiningModel(DOMDocument* doc, const Strings& splitValues);
  DOMNode* CopyPMML(const DOMElement* pmml, bool deep);
  DOMNode* CopyHeader(const DOMElement* pmml, DOMNode* target, bool deep);
  DOMNode* CopyDataDict(const DOMElement* pmml, DOMNode* target, bool deep);
  DOMNode* CopyMiningSchema(const DOMElement* model, DOMNode* target, bool deep);
  DOMNode* CopyTransDictToLocal(const DOMElement* transDict, DOMNode* model);
  DOMNode* CreateMiningModel(DOMNode* pmml, const std::string& functionName, const std::string& algorithmName);
  DOMNode* CreateSegmentation(DOMNode* miningModel);
  DOMNode* InsertSegment(DOMNode* segmentation, const DOMElement* model, const DOMElement* transDict,
                         const Strings& splitValues);
  DOMNode* InsertPredicate(DOMNode* segment, const Strings& splitValues);
  DOMNode* InsertSimplePredicate(DOMNode* parent, int index, const std::string& value);
  DOMNode* InsertCompoundPredicate(DOMNode* parent, const Strings& values);
  void InsertSplitVarsToMiningModel(DOMNode* dataDict, DOMNode* miningSchema);
  DOMNode* InsertDataFieldElem(DOMElement* dataDict, int i);
  DOMNode* InsertMiningFieldElem(DOMElement* miningSchema, int i);
  void EnumDataFields(const DOMNode* dataDict, std::vector<DOMNode*>& elements, Strings& names);
  void EnumValuesOfDataField(DOMNode* field, std::vector<DOMNode*>& elements, Strings& values);
  void UpdateNumOfDataFields(DOMNode* dataDict, int n);
  void UpdateDataDict(const DOMElement* source, DOMNode* target);
  DOMNode* InsertDataField(const DOMElement* field, DOMNode* dataDict);
  DOMNode* InsertValueOfDataField(const DOMNode* value, DOMNode* field, Strings& values);
  void UpdateMiningSchema(const DOMElement* source, DOMNode* target);
  void ReadNamesOfMiningFields(const DOMElement* miningSchema, std::vector<const DOMElement*>& elements,
                               Strings& names);
  DOMNode* InsertMiningField(const DOMElement* field, DOMNode* miningSchema);
  void ReadNamesOfDataFields(const DOMElement* dataDict, std::vector<const DOMElement*>& elements, Strings& names);

  // Writing.
  RQStatus WriteDocToPMMLFile(const DOMDocument* doc, const std::string& file);

  // Shared steps of the above.
  void MergeValues(DOMNode* sourceField, std::size_t position);
  DOMNode* CopyInto(const DOMNode* source, DOMNode* target, bool deep);
  DOMElement* CreateInto(DOMNode* target, const char* tagName);

  const RQVarList& fSplitVars;
  RQStatus fStatus;
  Strings fSplitVarNames;
  Strings fAllCategories;
  Strings fSplitVarLabels;
  Strings fSplitVarOptypes;
  Strings fSplitVarDataTypes;
  std::vector<Strings> fSplitVarCategories;
  int fModelCount = 0;
  DOMDocument* fOutput = nullptr;
  Strings fStandardModels;
  std::string fFunctionName;
  std::string fAlgorithmName;
  DOMNode* fOutputDataDict = nullptr;
  Strings fDataFieldNames;
  std::vector<DOMNode*> fDataFields;
  std::vector<Strings> fDataFieldValues;
  DOMNode* fOutputMiningSchema = nullptr;
  DOMNode* fOutputSegmentation = nullptr;
  Strings fMiningFieldNames;

  // What the lists above hold, for a search in constant time.
  std::unordered_set<std::string> fKnownDataFields;
  std::vector<std::unordered_set<std::string>> fKnownValues;
  std::unordered_set<std::string> fKnownMiningFields;
  bool fPlatformStarted = false;
};

}  // namespace RQXPrsUtil

#endif
