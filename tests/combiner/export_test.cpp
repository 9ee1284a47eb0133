#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "tests/combiner/combining.h"
#include "tests/support/leaks.h"

namespace {

using namespace rqtest;
using RQCommon::RQStatus;
using RQXPrsUtil::RQXSplitPMMLCombiner;
using ::testing::HasSubstr;
using ::testing::Not;

class Export : public Combining {
 protected:
  static bool Exists(const std::string& path) { return std::filesystem::exists(path); }
  RQStatus ExportTo(const std::string& path) { return Combiner().ExportMiningModel(path); }
};

TEST_F(Export, WithoutAnyFileIsOkAndWritesNothing) {
  EXPECT_EQ(ExportTo(File("out.pmml")), Ok());
  EXPECT_EQ(ExportTo(""), Ok());
  EXPECT_FALSE(Exists(File("out.pmml")));
}

TEST_F(Export, WithoutADocumentReturnsThePreviousStatus) {
  ASSERT_EQ(Add(Source({"x"}), {"1", "2"}), Failure(126));
  EXPECT_EQ(ExportTo(File("out.pmml")), Failure(126));
  EXPECT_EQ(ExportTo(""), Failure(126));
  ASSERT_EQ(Combiner().AddModel(File("nowhere"), {"1"}), Failure(104));
  EXPECT_EQ(ExportTo(File("out.pmml")), Failure(104));
  EXPECT_FALSE(Exists(File("out.pmml")));
}

TEST_F(Export, AfterARefusedLaterFileIsOk) {
  ASSERT_EQ(Add(Source({"x"})), Ok());
  ASSERT_EQ(Add(InPmml("<TreeModel functionName='other'/>")), Failure(124));
  EXPECT_EQ(ExportTo(File("out.pmml")), Ok());
  EXPECT_EQ(Combiner().AddModel("", {}), Ok()) << "the refusal is not repeated";
}

TEST_F(Export, AfterARefusedFirstFileWritesADocumentWithoutElement) {
  ASSERT_EQ(Add(InPmml("")), Failure(108));
  EXPECT_EQ(ExportTo(File("out.pmml")), Ok());
  EXPECT_EQ(ReadFile(File("out.pmml")), kDeclaration);
  EXPECT_EQ(Combiner().GetNModels(), 0);
}

TEST_F(Export, WrittenOnceOnly) {
  ASSERT_EQ(Add(Source({"x"})), Ok());
  ASSERT_EQ(ExportTo(File("first.pmml")), Ok());
  EXPECT_EQ(ExportTo(File("second.pmml")), Ok());
  EXPECT_TRUE(Exists(File("first.pmml")));
  EXPECT_FALSE(Exists(File("second.pmml")));
}

TEST_F(Export, EmptyNameDiscardsTheDocument) {
  ASSERT_EQ(Add(Source({"x"})), Ok());
  ASSERT_EQ(Add(InPmml("<TreeModel functionName='other'/>")), Failure(124));
  EXPECT_EQ(ExportTo(""), Ok());
  EXPECT_EQ(ExportTo(File("out.pmml")), Ok());
  EXPECT_FALSE(Exists(File("out.pmml")));
  EXPECT_EQ(Combiner().GetNModels(), 1);
}

TEST_F(Export, NumberOfModelsCountsAcrossExports) {
  // Without a mining schema nothing is kept of one document that could meet the next.
  const std::string source = InPmml(R"(<TreeModel functionName="classification"/>)");
  ASSERT_EQ(Add(source), Ok());
  ASSERT_EQ(Add(source), Ok());
  ASSERT_EQ(ExportTo(File("first.pmml")), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 2);
  ASSERT_EQ(Add(source), Ok());
  EXPECT_EQ(Combiner().GetNModels(), 3);
  ASSERT_EQ(ExportTo(File("second.pmml")), Ok());
  EXPECT_EQ(Count(ReadFile(File("first.pmml")), "<Segment>"), 2);
  EXPECT_EQ(Count(ReadFile(File("second.pmml")), "<Segment>"), 1);
}

TEST_F(Export, FileBehindAnExportFoundsADocumentOfItsOwn) {
  const auto source = [](const std::string& attributes) { return InPmml("<TreeModel" + attributes + "/>"); };
  ASSERT_EQ(Add(source(" functionName='a'")), Ok());
  ASSERT_EQ(ExportTo(""), Ok());
  ASSERT_EQ(Add(source(" functionName='b'")), Ok());
  EXPECT_EQ(Add(source(" functionName='a'")), Failure(124));
  EXPECT_EQ(ExportTo(""), Ok());
}

TEST_F(Export, FilesBehindAnExportDoNotReachForTheReleasedDocument) {
  // What is made of them means nothing, since the lists of the first document are kept; but it is a document.
  const std::string first = InPmml(Dictionary(NamedField("x", {"a"}) + NamedField("y")) + Model({"x", "y"}));
  const std::string second = InPmml(Dictionary(NamedField("y", {"b"}) + NamedField("z", {"c"})) + Model({"z"}));
  const std::string bare = InPmml(R"(<TreeModel functionName="classification"/>)");
  int models = 0;
  for (const Texts& documents :
       {Texts{first, second}, Texts{first, second, first}, Texts{bare, second}, Texts{first}}) {
    for (const std::string& document : documents) ASSERT_EQ(Add(document), Ok());
    models += static_cast<int>(documents.size());
    EXPECT_EQ(Combiner().GetNModels(), models);
    const std::string text = Combining::Export();
    EXPECT_EQ(Count(text, "<Segment>"), static_cast<int>(documents.size()));
  }
}

TEST_F(Export, AfterDiscardingARefusedFirstFileTheNextOneFounds) {
  const std::string expected = Combine({Source({"x"})});
  RQXSplitPMMLCombiner combiner(vars_);
  ASSERT_EQ(combiner.AddModel(WriteFile(File("bad.pmml"), InPmml("<MiningModel functionName='f'/>")), {"1"}),
            Failure(125));
  ASSERT_EQ(combiner.ExportMiningModel(""), Ok());
  ASSERT_EQ(combiner.AddModel(WriteFile(File("good.pmml"), Source({"x"})), {"1"}), Ok());
  EXPECT_EQ(combiner.GetNModels(), 1);
  ASSERT_EQ(combiner.ExportMiningModel(File("out.pmml")), Ok());
  EXPECT_EQ(ReadFile(File("out.pmml")), kDeclaration + expected);
}

TEST_F(Export, ReplacesAnOlderFile) {
  WriteFile(File("combined.pmml"), std::string(100000, 'x'));
  EXPECT_EQ(Combine({Source({"x"})}).substr(0, 5), "<PMML");
}

TEST_F(Export, NothingIsIndentedOrNormalised) {
  const std::string model = R"(<TreeModel functionName="classification">
    <MiningSchema> <MiningField name="x"/>	</MiningSchema><!-- c --><?pi d?><![CDATA[<&]]>
    <Node>  </Node></TreeModel>)";
  EXPECT_THAT(Combine({InPmml(model)}), HasSubstr(Segment("1", model)));
}

TEST_F(Export, IsInUtf8WhateverTheSources) {
  const std::string latin =
      "<?xml version='1.0' encoding='ISO-8859-1'?>" + InPmml(Dictionary(NamedField("\xFC")) + Model({"\xFC"}));
  const std::string expected = "\xC3\xBC";
  EXPECT_EQ(Combine({latin, InPmml(Dictionary(NamedField(expected)) + Model({expected}))}),
            InPmml(Dictionary(2, NamedField(expected) + kRegionField) +
                   Mining(CombinedSchema({expected}) +
                          Segmentation(Segment("1", Model({expected})) + Segment("2", Model({expected}))))));
}

// Failures

TEST_F(Export, FullDiskIsAFailedWriteAndReleasesTheDocument) {
  if (!Exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full";
  ASSERT_EQ(Add(Source({"x"})), Ok());
  EXPECT_EQ(ExportTo("/dev/full"), Failure(118));
  EXPECT_EQ(ExportTo(File("out.pmml")), Failure(118)) << "there is no document any more";
  EXPECT_FALSE(Exists(File("out.pmml")));
}

TEST_F(Export, FullDiskIsSeenForLargeDocumentsToo) {
  if (!Exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full";
  ASSERT_EQ(Add(InPmml(Model({"x"}, "<Node>" + std::string(1000000, 'x') + "</Node>"))), Ok());
  EXPECT_EQ(ExportTo("/dev/full"), Failure(118));
}

TEST_F(Export, ExceptionOfAPlaceThatCannotBeWrittenPassesAndTheDocumentIsKept) {
  ASSERT_EQ(Add(Source({"x"})), Ok());
  ASSERT_EQ(Add(InPmml("<TreeModel functionName='other'/>")), Failure(124));
  EXPECT_THROW(ExportTo(File("no/such/folder/out.pmml")), xercesc::XMLException);
  EXPECT_THROW(ExportTo(File("")), xercesc::XMLException);
  EXPECT_EQ(Combiner().AddModel("", {}), Failure(124)) << "the last status is that of the call before";
  EXPECT_EQ(Add(Source({"x"}), {"2"}), Ok()) << "and more files can be added";
  EXPECT_EQ(ExportTo(File("out.pmml")), Ok());
  EXPECT_EQ(Count(ReadFile(File("out.pmml")), "<Segment>"), 2);
}

TEST_F(Export, FolderWithoutPermissionKeepsTheDocument) {
  if (geteuid() == 0) GTEST_SKIP() << "the superuser may write everywhere";
  const std::string folder = File("locked");
  ASSERT_EQ(mkdir(folder.c_str(), 0500), 0);
  ASSERT_EQ(Add(Source({"x"})), Ok());
  EXPECT_THROW(ExportTo(folder + "/out.pmml"), xercesc::XMLException);
  EXPECT_EQ(ExportTo(File("out.pmml")), Ok());
}

TEST_F(Export, DestructorWritesNothingAndKeepsOtherCombinersWhole) {
  // A document that was not exported is not given back.
  const LeaksOfTheLibrary leaks;
  const std::string source = WriteFile(File("a.pmml"), Source({"x"}));
  ASSERT_EQ(Combiner().AddModel(source, {"1"}), Ok());
  {
    RQXSplitPMMLCombiner other(vars_);
    ASSERT_EQ(other.AddModel(source, {"1"}), Ok());
  }
  EXPECT_EQ(Combiner().AddModel(source, {"2"}), Ok());
  EXPECT_EQ(ExportTo(File("out.pmml")), Ok());
}

}  // namespace
