// What is copied is what stood in the source, node by node, and what is written can be read again.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include "rqxml/xml/RQXMLReadWrite.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/combiner/combining.h"

namespace {

using namespace rqtest;
using RQXPrsUtil::RQXMLReadWrite;
using RQXPrsUtil::ToUTF8;
using ::testing::HasSubstr;
using ::testing::Not;
using xercesc::DOMElement;
using xercesc::DOMNode;

class Copy : public Combining {};

// Trees in lines, one for each node, references to entities replaced by what they stand for.

std::string AttributesOf(const DOMNode& node) {
  std::string text;
  const xercesc::DOMNamedNodeMap* const attributes = node.getAttributes();
  for (XMLSize_t i = 0; attributes != nullptr && i < attributes->getLength(); ++i) {
    text += " " + ToUTF8(attributes->item(i)->getNodeName()) + "=[" + ToUTF8(attributes->item(i)->getNodeValue()) + "]";
  }
  return text;
}

bool IsText(const DOMNode& node) { return node.getNodeType() == DOMNode::TEXT_NODE; }

void Append(const DOMNode& node, const std::string& indent, Texts& lines) {
  if (node.getNodeType() == DOMNode::ENTITY_REFERENCE_NODE) {
    for (const DOMNode* child = node.getFirstChild(); child; child = child->getNextSibling()) {
      Append(*child, indent, lines);
    }
    return;
  }
  const std::string value = node.getNodeValue() ? ToUTF8(node.getNodeValue()) : "";
  const std::string start = indent + std::to_string(node.getNodeType()) + " " + ToUTF8(node.getNodeName());
  // What an entity splits is one text in the written file.
  if (IsText(node) && !lines.empty() && lines.back().rfind(start, 0) == 0) {
    lines.back() += value;
    return;
  }
  lines.push_back(start + AttributesOf(node) + " " + value);
  for (const DOMNode* child = node.getFirstChild(); child; child = child->getNextSibling()) {
    Append(*child, indent + "  ", lines);
  }
}

Texts LinesOf(const DOMNode& node) {
  Texts lines;
  Append(node, "", lines);
  return lines;
}

const DOMElement* Child(const DOMNode* parent, const char* tag) {
  return parent ? RQXPrsUtil::GetFirstChildElmt(*parent, tag) : nullptr;
}

const DOMElement* ModelOf(const DOMNode& pmml) {
  for (const char* tag : {"AssociationModel", "ClusteringModel", "GeneralRegressionModel", "NaiveBayesModel",
                          "NeuralNetwork", "RegressionModel", "RuleSetModel", "SequenceModel",
                          "SupportVectorMachineModel", "TextModel", "TimeSeriesModel", "TreeModel"}) {
    if (const DOMElement* const model = Child(&pmml, tag)) return model;
  }
  return nullptr;
}

/// The models of a combined document's segments.
std::vector<const DOMElement*> SegmentModels(const DOMElement& pmml) {
  std::vector<const DOMElement*> models;
  const DOMElement* const segmentation = Child(Child(&pmml, "MiningModel"), "Segmentation");
  for (const DOMElement* segment = Child(segmentation, "Segment"); segment;
       segment = RQXPrsUtil::GetNextSiblingElmt(*segment, "Segment")) {
    if (const DOMElement* const model = ModelOf(*segment)) models.push_back(model);
  }
  return models;
}

/// The lines of what stands in the copy for the source's model: with its transformations as the last child.
Texts ExpectedLines(const DOMElement& pmml) {
  Texts lines = LinesOf(*ModelOf(pmml));
  if (const DOMElement* const dictionary = Child(&pmml, "TransformationDictionary")) {
    lines.push_back("  1 LocalTransformations ");
    for (const DOMElement* field = Child(dictionary, "DerivedField"); field;
         field = RQXPrsUtil::GetNextSiblingElmt(*field, "DerivedField")) {
      for (const std::string& line : LinesOf(*field)) lines.push_back("    " + line);
    }
  }
  return lines;
}

/// Merges the files, and compares each segment's model and the first file's pieces with the sources.
void ExpectCopiesLikeTheirSources(const Texts& files) {
  TempFolder folder;
  RQMTD_NAMESPACE::RQVarList vars;
  AddRegion(vars);
  RQXPrsUtil::RQXSplitPMMLCombiner combiner(vars);
  for (const std::string& file : files) ASSERT_EQ(combiner.AddModel(file, {"1"}), Ok()) << file;
  ASSERT_EQ(combiner.GetNModels(), static_cast<int>(files.size()));
  ASSERT_EQ(combiner.ExportMiningModel(folder.File("out.pmml")), Ok());
  RQXMLReadWrite written;
  ASSERT_EQ(written.ParseToDOM(folder.File("out.pmml")), Ok());
  const DOMElement& output = *written.GetDocument()->getDocumentElement();
  const std::vector<const DOMElement*> models = SegmentModels(output);
  ASSERT_EQ(models.size(), files.size());
  for (std::size_t i = 0; i < files.size(); ++i) {
    RQXMLReadWrite source;
    ASSERT_EQ(source.ParseToDOM(files[i]), Ok());
    const DOMElement& pmml = *source.GetDocument()->getDocumentElement();
    EXPECT_EQ(LinesOf(*models[i]), ExpectedLines(pmml)) << files[i];
    if (i > 0) continue;
    EXPECT_EQ(AttributesOf(output), AttributesOf(pmml));
    const DOMElement* const header = Child(&pmml, "Header");
    ASSERT_EQ(header == nullptr, Child(&output, "Header") == nullptr);
    if (header) {
      EXPECT_EQ(LinesOf(*Child(&output, "Header")), LinesOf(*header));
    }
  }
}

// Documents

std::vector<std::string> SourceFiles(const std::string& folder) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    if (entry.path().extension() == ".pmml") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// True for a file that can found a combined document.
bool CanFound(const std::string& file) {
  RQMTD_NAMESPACE::RQVarList vars;
  AddRegion(vars);
  RQXPrsUtil::RQXSplitPMMLCombiner combiner(vars);
  bool founds = false;
  try {
    founds = combiner.AddModel(file, {"1"}).IsOK() && combiner.GetNModels() == 1;
  } catch (const xercesc::SAXParseException&) {
    // Not well-formed.
  }
  combiner.ExportMiningModel("");
  return founds;
}

TEST_F(Copy, StoredDocumentsAreCopiedNodeByNode) {
  int founding = 0;
  for (const std::string& file : SourceFiles(DataFile("pmml"))) {
    if (!CanFound(file)) continue;
    ++founding;
    ExpectCopiesLikeTheirSources({file, file});
  }
  EXPECT_GT(founding, 0);
}

TEST_F(Copy, RealDocumentsAreCopiedNodeByNode) {
  const char* const samples = std::getenv("RQXML_SAMPLES");
  if (samples == nullptr) GTEST_SKIP() << "RQXML_SAMPLES names no folder";
  for (const std::string& file : SourceFiles(samples)) {
    if (CanFound(file)) ExpectCopiesLikeTheirSources({file, file});
  }
  const std::string splits = std::string(samples) + "/splits";
  if (std::filesystem::exists(splits)) ExpectCopiesLikeTheirSources(SourceFiles(splits));
}

TEST_F(Copy, RealNumbersAreKeptByteForByte) {
  const char* const samples = std::getenv("RQXML_SAMPLES");
  if (samples == nullptr || !std::filesystem::exists(std::string(samples) + "/splits")) {
    GTEST_SKIP() << "RQXML_SAMPLES names no folder with splits";
  }
  // Every quoted text of a source's model stands in the output, as often as in the sources together or more.
  const Texts files = SourceFiles(std::string(samples) + "/splits");
  for (const std::string& file : files) ASSERT_EQ(Combiner().AddModel(file, {"1"}), Ok());
  const std::string text = Export();
  const auto quoted = [](const std::string& document, std::size_t from) {
    Texts values;
    for (std::size_t at = document.find('"', from); at != std::string::npos; at = document.find('"', at + 1)) {
      const std::size_t end = document.find('"', at + 1);
      if (end == std::string::npos) break;
      values.push_back(document.substr(at, end - at + 1));
      at = end;
    }
    std::sort(values.begin(), values.end());
    return values;
  };
  Texts expected;
  for (const std::string& file : files) {
    const std::string document = ReadFile(file);
    const Texts values = quoted(document, document.find("Model "));
    expected.insert(expected.end(), values.begin(), values.end());
  }
  std::sort(expected.begin(), expected.end());
  const Texts actual = quoted(text, text.find("<Segmentation"));
  EXPECT_GT(expected.size(), 100U);
  EXPECT_TRUE(std::includes(actual.begin(), actual.end(), expected.begin(), expected.end()));
}

TEST_F(Copy, NumbersAreKeptByteForByte) {
  const std::string numbers = R"(<Node a="1e400" b="-0" c="0.1000000000000000055511151231257827" d="1.E+05" e="NaN">)"
                              R"(+007 -1e-400 1,5 0x10 .5 5.   </Node>)";
  EXPECT_THAT(Combine({InPmml(Model({"x"}, numbers))}), HasSubstr(numbers));
}

// Entities

std::string WithEntities(const std::string& content) {
  return "<!DOCTYPE PMML [<!ENTITY company \"M&#252;ller &#38;amp; Co\"><!ENTITY empty \"\">"
         "<!ENTITY node \"<Node id='e'>&company;<True/></Node>\"><!ENTITY twice \"&node;-&node;\">]>" +
         InPmml(content);
}

TEST_F(Copy, EntitiesAreReplacedByWhatTheyStandFor) {
  const std::string node = "<Node id=\"e\">M\xC3\xBCller &amp; Co<True/></Node>";
  const std::string source =
      WithEntities("<Header copyright=\"&company;\">by &company;&empty;!</Header>" + Dictionary(NamedField("x")) +
                   Model({"x"}, "<Node>a&company;b<Deep><Deeper>&twice;</Deeper></Deep></Node>&node;"));
  const std::string model = Model({"x"},
                                  "<Node>aM\xC3\xBCller &amp; Co"
                                  "b<Deep><Deeper>" +
                                      node + "-" + node + "</Deeper></Deep></Node>" + node);
  EXPECT_EQ(Combine({source, source}),
            InPmml("<Header copyright=\"M\xC3\xBCller &amp; Co\">by M\xC3\xBCller &amp; Co!</Header>" +
                   Dictionary(2, NamedField("x") + kRegionField) +
                   Mining(CombinedSchema({"x"}) + Segmentation(Segment("1", model) + Segment("2", model)))));
}

TEST_F(Copy, EntitiesOfFieldsValuesAndTransformationsAreReplaced) {
  const std::string source = WithEntities(
      Dictionary("<DataField name=\"y\"><Value value=\"v\">&company;</Value>&company;</DataField>") +
      "<TransformationDictionary><DerivedField name=\"d\">&node;</DerivedField></TransformationDictionary>" +
      "<TreeModel functionName=\"classification\"><MiningSchema><MiningField name=\"y\">&company;</MiningField>"
      "</MiningSchema></TreeModel>");
  const std::string text = Combine({InPmml(Dictionary(NamedField("x")) + Model({"x"})), source,
                                    WithEntities(Dictionary("<DataField name=\"x\"><Value value=\"w\">&company;</Value>"
                                                            "</DataField>"))});
  const std::string company = "M\xC3\xBCller &amp; Co";
  EXPECT_THAT(text, HasSubstr("<DataField name=\"y\"><Value value=\"v\">" + company + "</Value>" + company));
  EXPECT_THAT(text, HasSubstr("<LocalTransformations><DerivedField name=\"d\"><Node id=\"e\">" + company + "<True/>"));
  EXPECT_EQ(Count(text, "<MiningField name=\"y\">" + company + "</MiningField>"), 2);
  EXPECT_THAT(text, HasSubstr("<Value value=\"w\">" + company + "</Value>"));
  EXPECT_THAT(text, Not(HasSubstr("&company;")));
}

TEST_F(Copy, FieldsThatAnEntityStandsForAreFields) {
  const std::string start = "<!DOCTYPE PMML [<!ENTITY fields \"<DataField name='e'><Value value='1'/></DataField>\">]>";
  const std::string source = start + InPmml(Dictionary(NamedField("x") + "&fields;") + Model({"x"}));
  EXPECT_THAT(Combine({source, InPmml(Dictionary(NamedField("x") + NamedField("e", {"2"}))), source}),
              HasSubstr(Dictionary(3, NamedField("x") + NamedField("e", {"1", "2"}) + kRegionField)));
}

TEST_F(Copy, EntityDeeperThanTheStackOfTheLibraryIsReplaced) {
  std::string entities = "<!ENTITY e0 \"x\">";
  for (int i = 1; i < 200; ++i) {
    entities += "<!ENTITY e" + std::to_string(i) + " \"<n>&e" + std::to_string(i - 1) + ";</n>\">";
  }
  const std::string source = "<!DOCTYPE PMML [" + entities + "]>" + InPmml(Model({"x"}, "&e199;"));
  EXPECT_EQ(Count(Combine({source}), "<n>"), 199);
}

// Namespaces

TEST_F(Copy, PrefixesThatOnlyWhatStaysBehindDeclaresAreDeclaredAtTheCopies) {
  const std::string transformations =
      "<TransformationDictionary xmlns:t=\"urn:t\" xmlns:unused=\"u\"><DerivedField name=\"d\"><t:a t:b=\"c\"/>"
      "</DerivedField><DerivedField name=\"e\"/></TransformationDictionary>";
  const std::string model =
      "<TreeModel functionName=\"classification\" xmlns:m=\"urn:m\"><MiningSchema><MiningField m:a=\"b\" name=\"x\"/>"
      "</MiningSchema><q:Node/></TreeModel>";
  const std::string source =
      "<PMML xmlns:q=\"urn:q\" xmlns:x=\"urn:other\"><DataDictionary xmlns:d=\"urn:d\">"
      "<DataField name=\"x\"><Value d:a=\"b\" value=\"v\"/></DataField><DataField name=\"y\"><q:e "
      "x:f=\"\"/></DataField>"
      "</DataDictionary>" +
      transformations + model + "</PMML>";
  ASSERT_EQ(Add("<PMML xmlns:x=\"urn:x\">" + Dictionary(NamedField("x")) + Model({"z"}) + "</PMML>", {"1"}), Ok());
  ASSERT_EQ(Add(source, {"2"}), Ok());
  const std::string text = Export();
  EXPECT_THAT(text, HasSubstr("<DataField name=\"x\"><Value d:a=\"b\" value=\"v\" xmlns:d=\"urn:d\"/></DataField>"));
  EXPECT_THAT(text, HasSubstr("<DataField name=\"y\" xmlns:q=\"urn:q\"><q:e x:f=\"\"/></DataField>"));
  EXPECT_THAT(text, HasSubstr("<MiningField m:a=\"b\" name=\"x\" xmlns:m=\"urn:m\"/></MiningSchema><Segmentation"));
  EXPECT_THAT(text, HasSubstr("<TreeModel functionName=\"classification\" xmlns:m=\"urn:m\" xmlns:q=\"urn:q\">"
                              "<MiningSchema><MiningField m:a=\"b\" name=\"x\"/></MiningSchema><q:Node/>"
                              "<LocalTransformations><DerivedField name=\"d\" xmlns:t=\"urn:t\"><t:a t:b=\"c\"/>"
                              "</DerivedField><DerivedField name=\"e\"/></LocalTransformations></TreeModel>"));
  EXPECT_EQ(Count(text, "urn:other") + Count(text, "unused"), 0);
}

TEST_F(Copy, PrefixThatTheDocumentOrThePieceDeclaresIsNotDeclaredAgain) {
  const std::string content = "<p:a/><n xmlns:q=\"urn:inner\"><q:b/></n>";
  const std::string source = "<PMML xmlns:p=\"urn:p\">" + Model({"x"}, content) + "</PMML>";
  EXPECT_EQ(Combine({source, source}),
            "<PMML xmlns:p=\"urn:p\">" +
                Mining(Schema({"x", "x"}) +
                       Segmentation(Segment("1", Model({"x"}, content)) + Segment("2", Model({"x"}, content)))) +
                "</PMML>");
}

TEST_F(Copy, NearestDeclarationOfAPrefixIsTheOneThatIsCopied) {
  const std::string transformations =
      "<TransformationDictionary xmlns:p=\"urn:near\"><DerivedField p:a=\"b\"/></TransformationDictionary>";
  ASSERT_EQ(Add(Source({"x"}), {"1"}), Ok());
  ASSERT_EQ(Add("<PMML xmlns:p=\"urn:far\">" + transformations + Model({"x"}) + "</PMML>", {"2"}), Ok());
  EXPECT_THAT(Export(), HasSubstr("<DerivedField p:a=\"b\" xmlns:p=\"urn:near\"/>"));
}

// Whatever has a good status can be read again

struct OddSource {
  const char* behaviour;
  std::string document;
};

class Readable : public Combining, public ::testing::WithParamInterface<OddSource> {};

TEST_P(Readable, WhatIsWrittenWithAGoodStatus) {
  ASSERT_EQ(Add(GetParam().document, {"1"}), Ok());
  ASSERT_EQ(Add(GetParam().document, {"2"}), Ok());
  const std::string path = File("out.pmml");
  const RQCommon::RQStatus status = Combiner().ExportMiningModel(path);
  if (!status.IsOK()) {
    EXPECT_EQ(status, Failure(118));
    return;
  }
  RQXMLReadWrite reader;
  EXPECT_EQ(reader.ParseToDOM(path), Ok()) << ReadFile(path);
  if (std::filesystem::exists("/usr/bin/xmllint")) {
    EXPECT_EQ(std::system(("/usr/bin/xmllint --nonet --noout " + path).c_str()), 0) << ReadFile(path);
  }
  if (std::filesystem::exists("/usr/bin/python3")) {
    const std::string script =
        "import sys, xml.parsers.expat as e; e.ParserCreate(namespace_separator=' ').ParseFile(open(sys.argv[1], "
        "'rb'))";
    EXPECT_EQ(std::system(("/usr/bin/python3 -c \"" + script + "\" " + path).c_str()), 0) << ReadFile(path);
  }
}

std::string OneOne(const std::string& content) { return "<?xml version='1.1'?>" + InPmml(content); }

INSTANTIATE_TEST_SUITE_P(
    All, Readable,
    ::testing::Values(
        OddSource{"Plain", Source({"x"})}, OddSource{"Entities", WithEntities(Model({"x"}, "&twice;&company;"))},
        OddSource{"Sections", InPmml(Model({"x"}, "<![CDATA[ ]] > ]]]]><![CDATA[> <&]]>"))},
        OddSource{"EntityInASection", WithEntities(Model({"x"}, "<![CDATA[&company;]]>]]&gt;"))},
        OddSource{"CommentsAndInstructions", InPmml(Model({"x"}, "<!-- - --><?a b?><?c?><!---->"))},
        OddSource{"LineEnds",
                  InPmml(Model({"x"}, "<Node a='&#13;&#10;&#9;&#x85;&#x2028;'>&#13;\r\n&#x85;&#x2028;</Node>"))},
        OddSource{"Planes", InPmml(Model({"x"}, "<Node a='&#x1F600;'>&#x10FFFF;&#xFFFD;\xF0\x9F\x98\x80</Node>"))},
        OddSource{"Prefixes", "<PMML xmlns:p='urn:p'>" + Model({"x"}, "<p:a p:b='c'/>") + "</PMML>"},
        OddSource{"LocalPrefixes", InPmml(Model({"x"}, "<a xmlns='urn:a'><b xmlns=''/><q:c xmlns:q='urn:q'/></a>"))},
        OddSource{"PrefixesOfWhatStaysBehind",
                  InPmml("<TransformationDictionary xmlns:t='urn:t'><DerivedField><t:a/></DerivedField>"
                         "</TransformationDictionary>" +
                         Model({"x"}))},
        OddSource{"XmlAttributes", InPmml(Model({"x"}, "<a xml:space='preserve' xml:lang='de' xml:id='i'/>"))},
        OddSource{"DefaultAttributes", "<!DOCTYPE PMML [<!ATTLIST Node a CDATA 'default'>]>" + InPmml(Model({"x"}))},
        OddSource{"Notations",
                  "<!DOCTYPE PMML [<!NOTATION n SYSTEM 's'><!ENTITY u SYSTEM 'f' NDATA n>]>" + InPmml(Model({"x"}))},
        OddSource{"Standalone", "<?xml version='1.0' standalone='yes'?>" + Source({"x"})},
        OddSource{"NewerXml", OneOne(Model({"x"}))},
        OddSource{"ControlCharactersOfNewerXml", OneOne(Model({"x"}, "<Node a='&#1;'>&#x1F;&#x7F;</Node>"))}),
    [](const auto& tested) { return tested.param.behaviour; });

TEST_F(Copy, ValueThatXmlCannotHoldIsAFailedWrite) {
  for (const char* value : {"a\x01z", "\x1F", "\xEF\xBF\xBE", "\xEF\xBF\xBF"}) {
    ASSERT_EQ(Add(InPmml(Model({"x"})), {value}), Ok());
    EXPECT_EQ(Combiner().ExportMiningModel(File("out.pmml")), Failure(118)) << value;
  }
}

// The parser takes names beyond the basic plane; the library's import does not.

TEST_F(Copy, ElementWhoseNameCannotBeCopiedIsLeftOutWithItsContent) {
  const std::string odd = "<e\xF0\x9F\x98\x80><Node/></e\xF0\x9F\x98\x80>";
  const std::string source = InPmml(Dictionary(NamedField("x")) + Model({"x"}, odd + "<Node/>"));
  EXPECT_NO_THROW(EXPECT_EQ(Add(source, {"1"}), Ok()));
  EXPECT_NO_THROW(EXPECT_EQ(Add(source, {"2"}), Ok()));
  EXPECT_EQ(Combiner().GetNModels(), 2);
  EXPECT_THAT(Export(), HasSubstr(Segment("1", Model({"x"})) + Segment("2", Model({"x"}))));
}

TEST_F(Copy, ModelThatCannotBeCopiedLeavesItsSegmentWhichCounts) {
  const std::string odd = "<TreeModel functionName=\"classification\" a\xF0\x9F\x98\x80=\"1\"/>";
  const std::string dictionary = "<TransformationDictionary><DerivedField name=\"d\"/></TransformationDictionary>";
  ASSERT_EQ(Add(Source({"x"}), {"1"}), Ok());
  EXPECT_EQ(Add(InPmml(dictionary + odd), {"2"}), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 2);
  EXPECT_THAT(Export(), HasSubstr(Segmentation(Segment("1", Model({"x"})) + Segment("2", ""))));
}

TEST_F(Copy, FieldsAndValuesThatCannotBeCopiedAreNotTakenAsKnown) {
  const std::string odd = " a\xF0\x9F\x98\x80=\"1\"";
  const std::string oddFields =
      "<DataField name=\"x\"><Value value=\"v\"" + odd + "/></DataField><DataField name=\"y\"" + odd + "/>";
  const std::string oddSchema = "<MiningSchema><MiningField name=\"y\"" + odd + "/></MiningSchema>";
  const std::string oddSource =
      InPmml(Dictionary(oddFields) + "<TreeModel functionName=\"classification\">" + oddSchema + "</TreeModel>");
  ASSERT_EQ(Add(Source({"x"}), {"1"}), Ok());
  ASSERT_EQ(Add(oddSource, {"2"}), Ok());
  ASSERT_EQ(Add(InPmml(Dictionary(NamedField("x", {"v"}) + NamedField("y")) + Model({"y"})), {"1"}), Ok());
  const std::string text = Export();
  EXPECT_THAT(text, HasSubstr(Dictionary(3, NamedField("x", {"v"}) + kRegionField + NamedField("y"))));
  EXPECT_THAT(text, HasSubstr(CombinedSchema({"x"}, {"y"})));
}

// Deep documents

std::string Deep(int levels) {
  std::string text;
  for (int i = 0; i < levels; ++i) text += "<n>";
  for (int i = 0; i < levels; ++i) text += "</n>";
  return InPmml(Dictionary(NamedField("x")) + Model({"x"}, text));
}

constexpr int kTooDeep = 100000;

/// Runs the work on a thread with a stack of this many bytes.
void RunOnStack(std::size_t bytes, std::function<void()> work) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, bytes), 0);
  pthread_t thread{};
  const auto run = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
  ASSERT_EQ(pthread_join(thread, nullptr), 0);
  pthread_attr_destroy(&attributes);
}

TEST_F(Copy, ModelTooDeepForTheWriterIsAddedAndAFailedWrite) {
  EXPECT_EQ(Add(Deep(kTooDeep), {"1"}), Ok());
  EXPECT_EQ(Add(Deep(kTooDeep), {"2"}), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 2);
  EXPECT_EQ(Combiner().ExportMiningModel(File("out.pmml")), Failure(118));
  EXPECT_FALSE(std::filesystem::exists(File("out.pmml")));
}

TEST_F(Copy, SmallStackIsNoReasonToCrash) {
  Combiner();
  const std::string tooDeep = WriteFile(File("deep.pmml"), Deep(kTooDeep));
  RunOnStack(256 * 1024, [&] {
    EXPECT_EQ(Combiner().AddModel(tooDeep, {"1"}), Ok());
    EXPECT_EQ(Combiner().AddModel(tooDeep, {"2"}), Ok());
    EXPECT_EQ(Combiner().ExportMiningModel(File("out.pmml")), Failure(118));
  });
}

TEST_F(Copy, DeepFieldsHeadersAndTransformationsAreNoReasonToCrash) {
  std::string deep;
  for (int i = 0; i < kTooDeep; ++i) deep += "<n>";
  for (int i = 0; i < kTooDeep; ++i) deep += "</n>";
  const std::string header = "<Header>" + deep + "</Header>";
  const std::string field = R"(<DataField name="x"><Value value="v">)" + deep + "</Value></DataField>";
  const std::string derived = "<DerivedField>" + deep + "</DerivedField>";
  const std::string transformations = "<TransformationDictionary>" + derived + "</TransformationDictionary>";
  EXPECT_EQ(Add(InPmml(header + Dictionary(field) + transformations + Model({"x"}))), Ok());
  EXPECT_EQ(Combiner().ExportMiningModel(File("out.pmml")), Failure(118));
}

TEST_F(Copy, DocumentOfAnyUsualDepthIsWritten) {
  EXPECT_EQ(Count(Combine({Deep(10000), Deep(10000)}), "<n>"), 2 * 9999);
}

}  // namespace
