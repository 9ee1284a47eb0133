// Operations that no public one calls in all their cases, or not at all. This source alone is compiled with
// -fno-access-control: the operations are private members, which no derived class could reach.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "rqxml/xml/RQXMLReadWrite.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/combiner/combining.h"
#include "tests/support/dom.h"
#include "tests/support/platform.h"

namespace {

using namespace rqtest;
using RQMTD_NAMESPACE::IRQVariable;
using RQMTD_NAMESPACE::RQVarList;
using RQXPrsUtil::GetFirstChildElmt;
using RQXPrsUtil::RQXSplitPMMLCombiner;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;

/// A list with the split variable "region" from the start.
struct RegionList : RQVarList {
  RegionList() { AddRegion(*this); }
};

/// What an operation handed out must be the last child of its target.
void ExpectLast(const DOMNode* node, const DOMElement& target) {
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node, target.getLastChild());
}

class Private : public WithPlatform {
 protected:
  ~Private() override { combiner_.ExportMiningModel(""); }

  /// The output document, which the private operations need.
  DOMDocument& Output() {
    bool created = false;
    return *combiner_.CreateEmptyMiningModel(created);
  }
  /// A new element at the root of the output document.
  DOMElement& OutputRoot(const char* tag = "root") {
    DOMElement* const root = RQXPrsUtil::CreateElement(Output(), tag);
    Output().appendChild(root);
    return *root;
  }
  /// The output document as it is written.
  std::string Written() {
    const std::string path = folder_.File("out.xml");
    EXPECT_EQ(combiner_.WriteDocToPMMLFile(&Output(), path), Ok());
    return ReadFile(path).substr(std::string(kDeclaration).size());
  }

  RegionList vars_;
  RQXSplitPMMLCombiner combiner_{vars_};
  TempFolder folder_;
};

// Construction

TEST_F(Private, NewCombinerHoldsNothingButWhatTheVariablesTell) {
  vars_.AddContVar("age", "", IRQVariable::RoleInput);
  vars_.AddCatVar("n", "N", std::vector<double>{3, 1}, IRQVariable::RoleInput);
  const RQXSplitPMMLCombiner combiner(vars_);
  EXPECT_EQ(&combiner.fSplitVars, &vars_);
  EXPECT_EQ(combiner.fStatus, Ok());
  EXPECT_THAT(combiner.fSplitVarNames, ElementsAre("region", "age", "n"));
  EXPECT_THAT(combiner.fSplitVarLabels, ElementsAre("Region", "", "N"));
  EXPECT_THAT(combiner.fSplitVarOptypes, ElementsAre("categorical", "continuous", "categorical"));
  EXPECT_THAT(combiner.fSplitVarDataTypes, ElementsAre("string", "double", "integer"));
  EXPECT_THAT(combiner.fSplitVarCategories, ElementsAre(Texts{"1", "2"}, Texts{}, Texts{"3", "1"}));
  EXPECT_THAT(combiner.fAllCategories, ElementsAre("1", "2", "3", "1"));
  EXPECT_EQ(combiner.fModelCount, 0);
  EXPECT_EQ(combiner.fOutput, nullptr);
  EXPECT_EQ(combiner.fFunctionName, "");
  EXPECT_EQ(combiner.fAlgorithmName, "");
  EXPECT_EQ(combiner.fOutputDataDict, nullptr);
  EXPECT_EQ(combiner.fOutputMiningSchema, nullptr);
  EXPECT_EQ(combiner.fOutputSegmentation, nullptr);
  EXPECT_THAT(combiner.fDataFieldNames, IsEmpty());
  EXPECT_THAT(combiner.fDataFields, IsEmpty());
  EXPECT_THAT(combiner.fDataFieldValues, IsEmpty());
  EXPECT_THAT(combiner.fMiningFieldNames, IsEmpty());
}

TEST_F(Private, StandardModelsAreInTheOrderOfPriority) {
  EXPECT_THAT(combiner_.fStandardModels,
              ElementsAre("MiningModel", "AssociationModel", "ClusteringModel", "GeneralRegressionModel",
                          "NaiveBayesModel", "NeuralNetwork", "RegressionModel", "RuleSetModel", "SequenceModel",
                          "SupportVectorMachineModel", "TextModel", "TimeSeriesModel", "TreeModel"));
}

TEST_F(Private, SplitVarNameIsAskedOfTheList) {
  EXPECT_EQ(combiner_.GetSplitVarName(0), "region");
  EXPECT_EQ(combiner_.GetSplitVarName(1), "");
  EXPECT_EQ(combiner_.GetSplitVarName(-1), "");
  vars_.AddContVar("late", "", IRQVariable::RoleInput);
  EXPECT_EQ(combiner_.GetSplitVarName(1), "late");
}

// Split variables

struct AnyVariable final : IRQVariable {
  int type = 0;
  int integer = 0;
  int GetTypeCode() const override { return type; }
  std::string GetName() const override { return "n"; }
  std::string GetLabel() const override { return ""; }
  int GetNumCategories() const override { return 0; }
  int GetIntegerIndicator() const override { return integer; }
  std::string GetCategoryText(int) const override { return {}; }
  void SetStorageType(int) override {}
};

TEST_F(Private, VariableInfoOfEveryTypeCode) {
  struct Case {
    int type, integer;
    const char *optype, *dataType;
  };
  for (const Case& c :
       {Case{1, 0, "continuous", "double"}, Case{2, 0, "categorical", "double"}, Case{3, 0, "categorical", "string"},
        Case{0, 0, "before", "before"}, Case{4, 0, "before", "before"}, Case{-1, 0, "before", "before"},
        Case{1, 1, "continuous", "integer"}, Case{2, 1, "categorical", "integer"}, Case{3, 1, "categorical", "integer"},
        Case{0, 1, "before", "integer"}, Case{1, 2, "continuous", "double"}, Case{3, -1, "categorical", "string"}}) {
    AnyVariable variable;
    variable.type = c.type;
    variable.integer = c.integer;
    std::string name = "before", label = "before", optype = "before", dataType = "before";
    EXPECT_TRUE(combiner_.GetSplitVariableInfo(&variable, name, label, optype, dataType));
    EXPECT_EQ(name, "n");
    EXPECT_EQ(label, "");
    EXPECT_EQ(optype, c.optype) << c.type << " " << c.integer;
    EXPECT_EQ(dataType, c.dataType) << c.type << " " << c.integer;
  }
}

TEST_F(Private, VariableInfoOfNothingLeavesTheTextsAlone) {
  std::string name = "a", label = "b", optype = "c", dataType = "d";
  EXPECT_FALSE(combiner_.GetSplitVariableInfo(nullptr, name, label, optype, dataType));
  EXPECT_EQ(name + label + optype + dataType, "abcd");
}

// Looking up and checking

TEST_F(Private, LookupsOfNothingFindNothing) {
  Output();
  EXPECT_EQ(combiner_.GetPMML(nullptr), nullptr);
  EXPECT_EQ(combiner_.GetDataDict(nullptr), nullptr);
  EXPECT_EQ(combiner_.GetTransDict(nullptr), nullptr);
  EXPECT_EQ(combiner_.GetMiningSchema(nullptr), nullptr);
  EXPECT_EQ(combiner_.GetStandardModel(nullptr), nullptr);
}

TEST_F(Private, MiningSchemaIsFoundOnceThereIsAnOutputDocument) {
  Document source(Model({"x"}));
  EXPECT_EQ(combiner_.GetMiningSchema(&source.Root()), nullptr);
  Output();
  EXPECT_EQ(Tag(combiner_.GetMiningSchema(&source.Root())), u"MiningSchema");
}

TEST_F(Private, FunctionNameIsWrittenOnlyWhenThereIsOne) {
  std::string name = "before";
  Document mining("<MiningModel functionName='f'/>");
  EXPECT_EQ(combiner_.GetFunctionNameAtt(&mining.Root(), name), Failure(125));
  Document without("<TreeModel/>");
  EXPECT_EQ(combiner_.GetFunctionNameAtt(&without.Root(), name), Failure(108));
  EXPECT_EQ(combiner_.GetFunctionNameAtt(nullptr, name), Failure(108));
  EXPECT_EQ(name, "before");
  Document empty("<TreeModel functionName=''/>");
  EXPECT_EQ(combiner_.GetFunctionNameAtt(&empty.Root(), name), Ok());
  EXPECT_EQ(name, "");
  Document wide("<TreeModel functionName='\xC3\xBC\xF0\x9F\x98\x80'/>");
  EXPECT_EQ(combiner_.GetFunctionNameAtt(&wide.Root(), name), Ok());
  EXPECT_EQ(name, "\xC3\xBC\xF0\x9F\x98\x80");
}

TEST_F(Private, AlgorithmNameIsEmptiedInEveryCase) {
  std::string name = "before";
  Document mining("<MiningModel algorithmName='a'/>");
  EXPECT_EQ(combiner_.GetAlgorithmNameAtt(&mining.Root(), name), Failure(125));
  EXPECT_EQ(name, "");
  name = "before";
  Document without("<TreeModel/>");
  EXPECT_EQ(combiner_.GetAlgorithmNameAtt(&without.Root(), name), Ok());
  EXPECT_EQ(name, "");
  name = "before";
  EXPECT_EQ(combiner_.GetAlgorithmNameAtt(nullptr, name), Ok());
  EXPECT_EQ(name, "");
  Document with("<TreeModel algorithmName='a'/>");
  EXPECT_EQ(combiner_.GetAlgorithmNameAtt(&with.Root(), name), Ok());
  EXPECT_EQ(name, "a");
}

TEST_F(Private, MiningModelIsKnownByItsWholeTag) {
  Document mining("<MiningModel/>"), prefixed("<p:MiningModel/>"), longer("<MiningModels/>");
  EXPECT_EQ(combiner_.IsMiningModel(nullptr), Ok());
  EXPECT_EQ(combiner_.IsMiningModel(&mining.Root()), Failure(125));
  EXPECT_EQ(combiner_.IsMiningModel(&prefixed.Root()), Ok());
  EXPECT_EQ(combiner_.IsMiningModel(&longer.Root()), Ok());
}

TEST_F(Private, FunctionNameIsConsistentUntilOneIsStored) {
  Document mining("<MiningModel functionName='a'/>"), without("<TreeModel/>"), same("<TreeModel functionName='a'/>"),
      other("<TreeModel functionName='ab'/>");
  for (Document* document : {&mining, &without, &same, &other}) {
    EXPECT_EQ(combiner_.IsConsistentFunctionName(&document->Root()), Ok());
  }
  combiner_.fFunctionName = "a";
  EXPECT_EQ(combiner_.IsConsistentFunctionName(nullptr), Ok());
  EXPECT_EQ(combiner_.IsConsistentFunctionName(&mining.Root()), Failure(125));
  EXPECT_EQ(combiner_.IsConsistentFunctionName(&without.Root()), Failure(108));
  EXPECT_EQ(combiner_.IsConsistentFunctionName(&same.Root()), Ok());
  EXPECT_EQ(combiner_.IsConsistentFunctionName(&other.Root()), Failure(124));
  EXPECT_EQ(combiner_.fFunctionName, "a");
}

TEST_F(Private, AnotherAlgorithmNameEmptiesTheStoredOneAndIsNoFailure) {
  Document mining("<MiningModel algorithmName='b'/>"), same("<TreeModel algorithmName='a'/>"),
      other("<TreeModel algorithmName='b'/>"), without("<TreeModel/>");
  EXPECT_EQ(combiner_.IsConsistentAlgorithmName(&mining.Root()), Ok()) << "nothing is stored yet";
  combiner_.fAlgorithmName = "a";
  EXPECT_EQ(combiner_.IsConsistentAlgorithmName(nullptr), Ok());
  EXPECT_EQ(combiner_.IsConsistentAlgorithmName(&mining.Root()), Failure(125));
  EXPECT_EQ(combiner_.IsConsistentAlgorithmName(&same.Root()), Ok());
  EXPECT_EQ(combiner_.fAlgorithmName, "a");
  EXPECT_EQ(combiner_.IsConsistentAlgorithmName(&other.Root()), Ok());
  EXPECT_EQ(combiner_.fAlgorithmName, "");
  combiner_.fAlgorithmName = "a";
  EXPECT_EQ(combiner_.IsConsistentAlgorithmName(&without.Root()), Ok());
  EXPECT_EQ(combiner_.fAlgorithmName, "");
}

TEST_F(Private, ValuesAreLookedForInTheCategoriesOfAllVariables) {
  vars_.AddCatVar("sex", "", Texts{"m", ""}, IRQVariable::RoleInput);
  const RQXSplitPMMLCombiner combiner(vars_);
  EXPECT_EQ(combiner.IsEqualValues({}), Ok());
  EXPECT_EQ(combiner.IsEqualValues({"2", "m"}), Ok());
  EXPECT_EQ(combiner.IsEqualValues({"m", "2", "m"}), Ok()) << "whatever the position and the number";
  EXPECT_EQ(combiner.IsEqualValues({""}), Ok());
  EXPECT_EQ(combiner.IsEqualValues({"2", "3"}), Failure(126));
  EXPECT_EQ(combiner.IsEqualValues({"3", "2"}), Failure(126));
  EXPECT_EQ(combiner.IsEqualValues({"2 "}), Failure(126));
  EXPECT_EQ(combiner.IsEqualValues({"M"}), Failure(126));
  RQVarList none;
  EXPECT_EQ(RQXSplitPMMLCombiner(none).IsEqualValues({""}), Failure(126));
}

// Parsed documents

TEST_F(Private, ParsedDocumentsAreAddedLikeFiles) {
  Document first(Source({"x"})), second(Source({"x", "y"}));
  EXPECT_EQ(combiner_.ParseSplitModelXML(nullptr, first.Owner(), {"1"}), Ok());
  EXPECT_EQ(combiner_.fOutput, nullptr);
  EXPECT_EQ(combiner_.ParseSplitModelXML(&first.Get(), first.Owner(), {"1"}), Ok());
  EXPECT_EQ(combiner_.ParseSplitModelXML(&second.Get(), second.Owner(), {"2"}), Ok());
  EXPECT_EQ(combiner_.GetNModels(), 2);
  EXPECT_EQ(Written(), InPmml("<Header/>" + Dictionary(3, NamedField("x") + kRegionField + NamedField("y")) +
                              Mining(CombinedSchema({"x"}, {"y"}) +
                                     Segmentation(Segment("1", Model({"x"})) + Segment("2", Model({"x", "y"}))))));
}

TEST_F(Private, ParsedDocumentThatIsRefusedSaysWhy) {
  Document mining("<PMML><MiningModel/></PMML>");
  EXPECT_EQ(combiner_.ParseSplitModelXML(&mining.Get(), mining.Owner(), {"1"}), Failure(125));
  EXPECT_NE(combiner_.fOutput, nullptr);
  EXPECT_EQ(combiner_.GetNModels(), 0);
}

// Founding

TEST_F(Private, OutputDocumentIsMadeOnceAndEmpty) {
  bool created = false;
  DOMDocument* const output = combiner_.CreateEmptyMiningModel(created);
  EXPECT_TRUE(created);
  ASSERT_NE(output, nullptr);
  EXPECT_EQ(output->getFirstChild(), nullptr);
  EXPECT_EQ(output->getDoctype(), nullptr);
  EXPECT_EQ(combiner_.CreateEmptyMiningModel(created), output);
  EXPECT_FALSE(created);
}

TEST_F(Private, FoundingNeedsBothDocuments) {
  Document source(Source({"x"}));
  EXPECT_EQ(combiner_.FillCommonToMiningModel(&source.Get(), {"1"}), Ok());
  EXPECT_EQ(combiner_.fFunctionName, "") << "without an output document nothing is done";
  Output();
  EXPECT_EQ(combiner_.FillCommonToMiningModel(nullptr, {"1"}), Ok());
  EXPECT_EQ(combiner_.FillCommonToMiningModel(&source.Get(), {}), Ok());
  EXPECT_EQ(combiner_.GetNModels(), 0);
  EXPECT_EQ(Written(), InPmml("<Header/>" + Dictionary(2, NamedField("x") + kRegionField) +
                              Mining(CombinedSchema({"x"}) + Segmentation(""))));
}

TEST_F(Private, MergingNeedsADocumentAndValues) {
  Document mining("<PMML><MiningModel/></PMML>");
  combiner_.fFunctionName = "f";
  EXPECT_EQ(combiner_.MergeModelToMiningModel(nullptr, {"1"}), Ok());
  EXPECT_EQ(combiner_.MergeModelToMiningModel(&mining.Get(), {}), Ok());
  EXPECT_EQ(combiner_.MergeModelToMiningModel(&mining.Get(), {"1"}), Failure(125));
}

TEST_F(Private, RootIsCopiedDeepOrShallow) {
  Document source("<PMML a=\"b\"><c/>t</PMML>");
  EXPECT_EQ(combiner_.CopyPMML(&source.Root(), false), nullptr) << "there is no output document";
  Output();
  EXPECT_EQ(combiner_.CopyPMML(nullptr, true), nullptr);
  DOMNode* const shallow = combiner_.CopyPMML(&source.Root(), false);
  ASSERT_NE(shallow, nullptr);
  EXPECT_EQ(shallow, Output().getDocumentElement());
  EXPECT_EQ(Written(), "<PMML a=\"b\"/>");
  Output().removeChild(shallow)->release();
  EXPECT_NE(combiner_.CopyPMML(&source.Root(), true), nullptr);
  EXPECT_EQ(Written(), "<PMML a=\"b\"><c/>t</PMML>");
}

TEST_F(Private, PiecesAreCopiedDeepOrShallowToTheirTarget) {
  Document source(
      "<PMML><Header a=\"1\"><h/></Header><DataDictionary b=\"2\"><d/></DataDictionary>"
      "<MiningSchema c=\"3\"><m/></MiningSchema></PMML>");
  Document bare("<PMML/>");
  DOMElement& target = OutputRoot();
  using Copy = DOMNode* (RQXSplitPMMLCombiner::*)(const DOMElement*, DOMNode*, bool);
  for (const Copy copy : {&RQXSplitPMMLCombiner::CopyHeader, &RQXSplitPMMLCombiner::CopyDataDict,
                          &RQXSplitPMMLCombiner::CopyMiningSchema}) {
    EXPECT_EQ((combiner_.*copy)(nullptr, &target, true), nullptr);
    EXPECT_EQ((combiner_.*copy)(&source.Root(), nullptr, true), nullptr);
    EXPECT_EQ((combiner_.*copy)(&bare.Root(), &target, true), nullptr);
    ExpectLast((combiner_.*copy)(&source.Root(), &target, false), target);
    ExpectLast((combiner_.*copy)(&source.Root(), &target, true), target);
  }
  EXPECT_EQ(Written(),
            "<root><Header a=\"1\"/><Header a=\"1\"><h/></Header><DataDictionary b=\"2\"/><DataDictionary b=\"2\"><d/>"
            "</DataDictionary><MiningSchema c=\"3\"/><MiningSchema c=\"3\"><m/></MiningSchema></root>");
}

TEST_F(Private, TransformationsNeedADictionaryAndAModel) {
  Document dictionary("<TransformationDictionary><DerivedField name=\"a\"/></TransformationDictionary>");
  DOMElement& model = OutputRoot();
  EXPECT_EQ(combiner_.CopyTransDictToLocal(nullptr, &model), nullptr);
  EXPECT_EQ(combiner_.CopyTransDictToLocal(&dictionary.Root(), nullptr), nullptr);
  EXPECT_EQ(model.getFirstChild(), nullptr);
  ExpectLast(combiner_.CopyTransDictToLocal(&dictionary.Root(), &model), model);
  EXPECT_EQ(Written(), "<root><LocalTransformations><DerivedField name=\"a\"/></LocalTransformations></root>");
}

TEST_F(Private, MiningModelNeedsAFunctionName) {
  DOMElement& root = OutputRoot();
  EXPECT_EQ(combiner_.CreateMiningModel(nullptr, "f", "a"), nullptr);
  EXPECT_EQ(combiner_.CreateMiningModel(&root, "", "a"), nullptr);
  EXPECT_EQ(root.getFirstChild(), nullptr);
  ExpectLast(combiner_.CreateMiningModel(&root, "f", ""), root);
  ExpectLast(combiner_.CreateMiningModel(&root, "f", "a"), root);
  EXPECT_EQ(Written(),
            "<root><MiningModel functionName=\"f\"/><MiningModel algorithmName=\"a\" functionName=\"f\"/></root>");
}

TEST_F(Private, SegmentationNeedsAModel) {
  DOMElement& root = OutputRoot();
  EXPECT_EQ(combiner_.CreateSegmentation(nullptr), nullptr);
  ExpectLast(combiner_.CreateSegmentation(&root), root);
  EXPECT_EQ(Written(), "<root>" + Segmentation("") + "</root>");
}

// Segments and predicates

TEST_F(Private, SegmentNeedsSegmentationModelAndValues) {
  Document source(Model({"x"}));
  DOMElement& root = OutputRoot();
  EXPECT_EQ(combiner_.InsertSegment(nullptr, &source.Root(), nullptr, {"1"}), nullptr);
  EXPECT_EQ(combiner_.InsertSegment(&root, nullptr, nullptr, {"1"}), nullptr);
  EXPECT_EQ(combiner_.InsertSegment(&root, &source.Root(), nullptr, {}), nullptr);
  EXPECT_EQ(root.getFirstChild(), nullptr);
  EXPECT_EQ(combiner_.GetNModels(), 0);
  ExpectLast(combiner_.InsertSegment(&root, &source.Root(), nullptr, {"1"}), root);
  EXPECT_EQ(combiner_.GetNModels(), 1);
  EXPECT_EQ(Written(), "<root>" + Segment("1", Model({"x"})) + "</root>");
}

TEST_F(Private, PredicateIsTheLastChildOfItsSegment) {
  DOMElement& segment = OutputRoot();
  EXPECT_EQ(combiner_.InsertPredicate(nullptr, {"1"}), nullptr);
  EXPECT_EQ(combiner_.InsertPredicate(&segment, {}), nullptr);
  EXPECT_EQ(combiner_.InsertPredicate(&segment, {""}), nullptr);
  EXPECT_EQ(segment.getFirstChild(), nullptr);
  DOMNode* const predicate = combiner_.InsertPredicate(&segment, {"1"});
  ASSERT_NE(predicate, nullptr);
  ExpectLast(predicate, segment);
  EXPECT_EQ(Written(), "<root>" + Simple("region", "1") + "</root>") << "appended twice it stands there once";
}

TEST_F(Private, PredicateOfValuesBeyondTheVariablesLeavesThemOut) {
  DOMElement& segment = OutputRoot();
  ExpectLast(combiner_.InsertPredicate(&segment, {"1", "2"}), segment);
  EXPECT_EQ(Written(), "<root><CompoundPredicate booleanOperator=\"and\">" + Simple("region", "1") +
                           "</CompoundPredicate></root>");
}

TEST_F(Private, SimplePredicateNeedsParentValueAndVariable) {
  DOMElement& parent = OutputRoot();
  EXPECT_EQ(combiner_.InsertSimplePredicate(nullptr, 0, "1"), nullptr);
  EXPECT_EQ(combiner_.InsertSimplePredicate(&parent, 0, ""), nullptr);
  EXPECT_EQ(combiner_.InsertSimplePredicate(&parent, 1, "1"), nullptr);
  EXPECT_EQ(combiner_.InsertSimplePredicate(&parent, -1, "1"), nullptr);
  EXPECT_EQ(parent.getFirstChild(), nullptr);
  ExpectLast(combiner_.InsertSimplePredicate(&parent, 0, "1"), parent);
  EXPECT_EQ(Written(), "<root>" + Simple("region", "1") + "</root>");
}

TEST_F(Private, CompoundPredicateNeedsTwoValues) {
  DOMElement& parent = OutputRoot();
  EXPECT_EQ(combiner_.InsertCompoundPredicate(nullptr, {"1", "2"}), nullptr);
  EXPECT_EQ(combiner_.InsertCompoundPredicate(&parent, {}), nullptr);
  EXPECT_EQ(combiner_.InsertCompoundPredicate(&parent, {"1"}), nullptr);
  EXPECT_EQ(parent.getFirstChild(), nullptr);
  ExpectLast(combiner_.InsertCompoundPredicate(&parent, {"1", "2"}), parent);
}

// Fields

TEST_F(Private, SplitVariablesGoNowhereUnlessBothTargetsAreThere) {
  DOMElement& target = OutputRoot();
  combiner_.InsertSplitVarsToMiningModel(nullptr, &target);
  combiner_.InsertSplitVarsToMiningModel(&target, nullptr);
  EXPECT_EQ(Written(), "<root/>");
  EXPECT_THAT(combiner_.fDataFieldNames, IsEmpty());
  EXPECT_THAT(combiner_.fMiningFieldNames, IsEmpty());
}

TEST_F(Private, SplitVariablesFieldsAreInsertedOneByOneAndNeverHandedOut) {
  DOMElement& target = OutputRoot();
  EXPECT_EQ(combiner_.InsertDataFieldElem(nullptr, 0), nullptr);
  EXPECT_EQ(combiner_.InsertDataFieldElem(&target, -1), nullptr);
  EXPECT_EQ(combiner_.InsertMiningFieldElem(nullptr, 0), nullptr);
  EXPECT_EQ(combiner_.InsertMiningFieldElem(&target, -1), nullptr);
  EXPECT_EQ(target.getFirstChild(), nullptr);
  EXPECT_EQ(combiner_.InsertDataFieldElem(&target, 0), nullptr);
  EXPECT_EQ(combiner_.InsertMiningFieldElem(&target, 0), nullptr);
  EXPECT_EQ(Written(), "<root>" + kRegionField + kRegionMining + "</root>");
}

TEST_F(Private, BookkeepingMirrorsTheDocument) {
  Document first(InPmml(Dictionary("<DataField/>" + NamedField("x", {"a", "a"})) + Model({"x", "x"})));
  Document second(InPmml(Dictionary(NamedField("x", {"b"}) + NamedField("y", {"p"})) + Model({"y"})));
  ASSERT_EQ(combiner_.ParseSplitModelXML(&first.Get(), first.Owner(), {"1"}), Ok());
  EXPECT_THAT(combiner_.fDataFieldNames, ElementsAre("x", "region"));
  EXPECT_EQ(combiner_.fDataFields.size(), 3U);
  EXPECT_THAT(combiner_.fDataFieldValues, ElementsAre(Texts{}, Texts{"a", "a"}, Texts{"1", "2"}));
  EXPECT_THAT(combiner_.fMiningFieldNames, ElementsAre("x", "x", "region"));
  ASSERT_EQ(combiner_.ParseSplitModelXML(&second.Get(), second.Owner(), {"2"}), Ok());
  EXPECT_THAT(combiner_.fDataFieldNames, ElementsAre("x", "region", "y"));
  EXPECT_EQ(combiner_.fDataFields.size(), 4U);
  EXPECT_THAT(combiner_.fDataFieldValues, ElementsAre(Texts{"b"}, Texts{"a", "a"}, Texts{"1", "2"}, Texts{"p"}));
  EXPECT_THAT(combiner_.fMiningFieldNames, ElementsAre("x", "x", "region", "y"));
  EXPECT_EQ(Tag(static_cast<DOMElement*>(combiner_.fOutputDataDict)), u"DataDictionary");
  EXPECT_EQ(Tag(static_cast<DOMElement*>(combiner_.fOutputMiningSchema)), u"MiningSchema");
  EXPECT_EQ(Tag(static_cast<DOMElement*>(combiner_.fOutputSegmentation)), u"Segmentation");
}

TEST_F(Private, FieldsAndValuesAreEnumeratedBelowAnyDepthInDocumentOrder) {
  Document source(
      "<DataDictionary><DataField name='a'><e><DataField/></e></DataField><e><DataField name='b'>"
      "<Value value='1'><Value/></Value><e><Value value='2'/></e></DataField></e></DataDictionary>");
  std::vector<DOMNode*> elements;
  Texts names = {"before"};
  combiner_.EnumDataFields(&source.Root(), elements, names);
  ASSERT_EQ(elements.size(), 3U);
  EXPECT_THAT(names, ElementsAre("before", "a", "b"));
  std::vector<DOMNode*> valueElements = {nullptr};
  Texts values;
  combiner_.EnumValuesOfDataField(elements[2], valueElements, values);
  EXPECT_EQ(valueElements.size(), 4U);
  EXPECT_THAT(values, ElementsAre("1", "2"));
}

TEST_F(Private, EnumerationDoesNotReturnTheRootItself) {
  Document source("<DataField name='a'/>");
  std::vector<DOMNode*> elements;
  Texts names;
  combiner_.EnumDataFields(&source.Root(), elements, names);
  EXPECT_THAT(elements, IsEmpty());
}

TEST_F(Private, DirectNamesLeaveOutOtherChildrenAndThoseWithoutName) {
  Document source(
      "<a> <DataField name='x'/><!-- c --><DataField/><e><DataField name='deep'/></e>"
      "<MiningField name='x'/><MiningField/><e><MiningField name='deep'/></e>"
      "<DataField name=''/><MiningField name=''/></a>");
  std::vector<const DOMElement*> elements;
  Texts names;
  combiner_.ReadNamesOfDataFields(&source.Root(), elements, names);
  EXPECT_THAT(names, ElementsAre("x", ""));
  ASSERT_EQ(elements.size(), 2U);
  EXPECT_EQ(Tag(elements[1]), u"DataField");
  combiner_.ReadNamesOfMiningFields(&source.Root(), elements, names);
  EXPECT_THAT(names, ElementsAre("x", "", "x", ""));
  ASSERT_EQ(elements.size(), 4U);
  EXPECT_EQ(Tag(elements[2]), u"MiningField");
}

TEST_F(Private, NumberOfFieldsIsSetUnlessItIsNegative) {
  DOMElement& target = OutputRoot();
  combiner_.UpdateNumOfDataFields(nullptr, 3);
  combiner_.UpdateNumOfDataFields(&target, -1);
  EXPECT_EQ(Written(), "<root/>");
  combiner_.UpdateNumOfDataFields(&target, 1234567);
  EXPECT_EQ(Written(), "<root numberOfFields=\"1234567\"/>");
  combiner_.UpdateNumOfDataFields(&target, 0);
  EXPECT_EQ(Written(), "<root numberOfFields=\"0\"/>");
}

TEST_F(Private, InsertedFieldIsKeptInTheLists) {
  Document named(NamedField("a", {"1", "2"})), nameless("<DataField><Value/></DataField>");
  DOMElement& target = OutputRoot();
  EXPECT_EQ(combiner_.InsertDataField(nullptr, &target), nullptr);
  EXPECT_EQ(combiner_.InsertDataField(&named.Root(), nullptr), nullptr);
  EXPECT_THAT(combiner_.fDataFields, IsEmpty());
  ExpectLast(combiner_.InsertDataField(&named.Root(), &target), target);
  ExpectLast(combiner_.InsertDataField(&nameless.Root(), &target), target);
  EXPECT_THAT(combiner_.fDataFieldNames, ElementsAre("a"));
  EXPECT_THAT(combiner_.fDataFields, ElementsAre(target.getFirstChild(), target.getLastChild()));
  EXPECT_THAT(combiner_.fDataFieldValues, ElementsAre(Texts{"1", "2"}, Texts{}));
}

TEST_F(Private, InsertedValueIsKeptInTheListGiven) {
  Document value("<Value value='1'><e/></Value>"), bare("<Value/>");
  DOMElement& target = OutputRoot();
  Texts values;
  EXPECT_EQ(combiner_.InsertValueOfDataField(nullptr, &target, values), nullptr);
  EXPECT_EQ(combiner_.InsertValueOfDataField(&value.Root(), nullptr, values), nullptr);
  ExpectLast(combiner_.InsertValueOfDataField(&value.Root(), &target, values), target);
  ExpectLast(combiner_.InsertValueOfDataField(&bare.Root(), &target, values), target);
  EXPECT_THAT(values, ElementsAre("1"));
  EXPECT_EQ(Written(), "<root><Value value=\"1\"><e/></Value><Value/></root>");
}

TEST_F(Private, InsertedMiningFieldIsKeptInTheList) {
  Document named("<MiningField name='a'/>"), nameless("<MiningField/>");
  DOMElement& target = OutputRoot();
  EXPECT_EQ(combiner_.InsertMiningField(nullptr, &target), nullptr);
  EXPECT_EQ(combiner_.InsertMiningField(&named.Root(), nullptr), nullptr);
  ExpectLast(combiner_.InsertMiningField(&named.Root(), &target), target);
  ExpectLast(combiner_.InsertMiningField(&nameless.Root(), &target), target);
  EXPECT_THAT(combiner_.fMiningFieldNames, ElementsAre("a"));
}

TEST_F(Private, UpdatesNeedSourceAndTarget) {
  Document fields(Dictionary(NamedField("a"))), schema(Schema({"a"}));
  DOMElement& target = OutputRoot();
  combiner_.UpdateDataDict(nullptr, &target);
  combiner_.UpdateDataDict(&fields.Root(), nullptr);
  combiner_.UpdateMiningSchema(nullptr, &target);
  combiner_.UpdateMiningSchema(&schema.Root(), nullptr);
  EXPECT_EQ(Written(), "<root/>");
  combiner_.UpdateDataDict(&fields.Root(), &target);
  EXPECT_EQ(Written(), "<root numberOfFields=\"1\">" + NamedField("a") + "</root>");
}

TEST_F(Private, SchemaThatStandsInARowAddsNothing) {
  // By the names alone some of these would have fields to add: the lists are prepared to differ from the known names.
  struct Case {
    Texts known, source;
    bool adds;
  };
  for (const Case& c :
       {Case{{"a", "b", "c"}, {"b", "c"}, false}, Case{{"a", "b", "c"}, {"a"}, false}, Case{{"a", "b", "c"}, {}, false},
        Case{{"a", "a", "b"}, {"a", "b"}, false}, Case{{"a", "b", "a", "b", "c"}, {"a", "b", "c"}, false},
        Case{{"a", "b", "c"}, {"a", "c"}, true}, Case{{"a", "b"}, {"b", "a"}, true}, Case{{"a"}, {"a", "a"}, true},
        Case{{}, {"a"}, true}}) {
    RQXSplitPMMLCombiner combiner(vars_);
    bool created = false;
    DOMDocument* const output = combiner.CreateEmptyMiningModel(created);
    DOMElement* const target = RQXPrsUtil::CreateElement(*output, "MiningSchema");
    output->appendChild(target);
    combiner.fMiningFieldNames = c.known;
    Document source(Schema(c.source));
    combiner.UpdateMiningSchema(&source.Root(), target);
    EXPECT_EQ(target->getFirstChild() != nullptr, c.adds)
        << ::testing::PrintToString(c.known) << " " << ::testing::PrintToString(c.source);
    combiner.ExportMiningModel("");
  }
}

// Writing

TEST_F(Private, WritingNeedsADocumentAndAName) {
  OutputRoot();
  EXPECT_EQ(combiner_.WriteDocToPMMLFile(nullptr, folder_.File("a.xml")), Ok());
  EXPECT_EQ(combiner_.WriteDocToPMMLFile(&Output(), ""), Ok());
  EXPECT_FALSE(std::filesystem::exists(folder_.File("a.xml")));
  EXPECT_EQ(combiner_.WriteDocToPMMLFile(&Output(), folder_.File("a.xml")), Ok());
  EXPECT_EQ(ReadFile(folder_.File("a.xml")), std::string(kDeclaration) + "<root/>");
  EXPECT_NE(combiner_.fOutput, nullptr) << "the combiner keeps its document";
}

TEST_F(Private, WritingReturnsTheFailureOfTheWriteAndKeepsTheStatus) {
  OutputRoot();
  EXPECT_EQ(combiner_.WriteDocToPMMLFile(&Output(), "/dev/full"), Failure(118));
  EXPECT_EQ(combiner_.fStatus, Ok());
  EXPECT_NE(combiner_.fOutput, nullptr);
}

}  // namespace
