#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/combine_support.h"
#include "tests/tool/run_tool.h"

using nlohmann::json;
using rqtest::HasTerminals;
using rqtest::ReadFile;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::SplitText;
using rqtest::TempFolder;
using rqtest::Text;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

using Arguments = std::vector<std::string>;

Arguments operator+(Arguments all, const Arguments& more) {
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

// A folder with three good documents.
class Combine : public ::testing::Test {
 protected:
  Combine() {
    for (const char* name : {"a.pmml", "b.pmml", "c.pmml"}) WriteFile(File(name), Text(SplitText{}));
  }
  std::string File(const std::string& name) const { return folder_.File(name); }
  std::string Out() const { return File("out.pmml"); }
  std::string Combined() const { return ReadFile(Out()); }
  ToolResult Run(const Arguments& more) const { return RunTool(Arguments{"combine", "-o", Out()} + more); }
  ToolResult RunBy(const Arguments& more) const {
    return Run(Arguments{"--by", "s", File("a.pmml") + "=1", File("b.pmml") + "=2"} + more);
  }
  ToolResult RunManifest(const std::string& text, const Arguments& more = {}) const {
    return Run(Arguments{"--manifest", WriteFile(File("splits.csv"), text)} + more);
  }

  TempFolder folder_;
};

TEST_F(Combine, MergesTheFilesOfTheCommandLine) {
  const ToolResult result = RunBy({});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out, HasSubstr("out.pmml: 2 segments from 2 files, 0 findings\n"));
  EXPECT_THAT(result.out, HasSubstr("added after the first file: 0 fields, 0 values, 0 mining fields\n"));
  EXPECT_THAT(result.out, HasSubstr("peak memory "));
  EXPECT_THAT(Combined(), HasSubstr("<Segment><SimplePredicate field=\"s\" operator=\"equal\" value=\"1\"/>"));
  EXPECT_THAT(Combined(), HasSubstr("<Segment><SimplePredicate field=\"s\" operator=\"equal\" value=\"2\"/>"));
}

TEST_F(Combine, DescribesTheSplitVariablesAsTheOptionsAsk) {
  struct Row {
    Arguments options;
    std::string field;
  };
  const std::string values12 = "<Value value=\"1\"/><Value value=\"2\"/>";
  const std::vector<Row> rows{
      {{}, "<DataField dataType=\"string\" displayName=\"\" name=\"s\" optype=\"categorical\">" + values12},
      {{"--type", "s=string"}, "<DataField dataType=\"string\" displayName=\"\" name=\"s\" optype=\"categorical\">"},
      {{"--type", "s=double"},
       "<DataField dataType=\"double\" displayName=\"\" name=\"s\" optype=\"categorical\">" + values12},
      {{"--type", "s=integer"},
       "<DataField dataType=\"integer\" displayName=\"\" name=\"s\" optype=\"categorical\">" + values12},
      {{"--label", "s=A = b"}, "displayName=\"A = b\""},
      {{"--label", "s="}, "displayName=\"\""},
      {{"--continuous", "s"}, "<DataField dataType=\"double\" displayName=\"\" name=\"s\" optype=\"continuous\"/>"},
      {{"--continuous", "s", "--type", "s=integer"},
       "<DataField dataType=\"integer\" displayName=\"\" name=\"s\" optype=\"continuous\"/>"},
      {{"--categories", "s=2,\"x, y\",1"},
       "optype=\"categorical\"><Value value=\"2\"/><Value value=\"x, y\"/><Value value=\"1\"/></DataField>"},
  };
  for (const Row& row : rows) {
    const ToolResult result = RunBy(row.options);
    EXPECT_EQ(result.exitCode, 0) << ::testing::PrintToString(row.options) << result;
    EXPECT_THAT(Combined(), HasSubstr(row.field));
  }
}

TEST_F(Combine, TakesTheDistinctValuesInOrderOfFirstAppearanceAsCategories) {
  EXPECT_EQ(RunManifest("file,s,t\nb.pmml,z,1\na.pmml,y,1.0\nc.pmml,z,02\n", {"--type", "t=double"}).exitCode, 0);
  EXPECT_THAT(Combined(), HasSubstr("name=\"s\" optype=\"categorical\"><Value value=\"z\"/><Value value=\"y\"/></"));
  EXPECT_THAT(Combined(), HasSubstr("name=\"t\" optype=\"categorical\"><Value value=\"1\"/><Value value=\"2\"/></"));
  EXPECT_THAT(Combined(), HasSubstr("value=\"02\"/></CompoundPredicate>")) << "the predicate keeps the text";
}

TEST_F(Combine, KeepsIntegersThatNoDoubleHolds) {
  const ToolResult result =
      Run({"--by", "s", "--type", "s=integer", File("a.pmml") + "=9007199254740993", File("b.pmml") + "=-1"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(Combined(), HasSubstr("<Value value=\"9007199254740993\"/><Value value=\"-1\"/>"));
}

TEST_F(Combine, ReadsAManifestWithPathsRelativeToIt) {
  std::filesystem::create_directory(File("deep"));
  WriteFile(File("deep/d.pmml"), Text(SplitText{}));
  const std::string manifest =
      "\xEF\xBB\xBF"
      "file,\"region, \"\"big\"\"\",s=t\r\n\"deep/d.pmml\",\"x, y\",1\r\n\r\na.pmml,\"li\nne\",2\r\n" +
      File("b.pmml") + ",z,3";
  const ToolResult result = RunManifest(manifest, {"--label", "s=t=Label"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(Combined(), HasSubstr("field=\"region, &quot;big&quot;\" operator=\"equal\" value=\"x, y\""));
  EXPECT_THAT(Combined(), HasSubstr("value=\"li&#xA;ne\""));
  EXPECT_THAT(Combined(), HasSubstr("displayName=\"Label\" name=\"s=t\""));
  EXPECT_THAT(result.out, HasSubstr("3 segments from 3 files"));
}

TEST_F(Combine, ReadsAManifestFromStandardInputWithPathsRelativeToTheCurrentFolder) {
  const ToolResult result = RunTool(ToolCall{.arguments = {"combine", "-o", Out(), "--manifest", "-"},
                                             .input = "file,s\n" + File("a.pmml") + ",1\n"});
  EXPECT_EQ(result.exitCode, 0) << result;
}

TEST_F(Combine, RefusesAManifestThatMakesNoSenseWithItsLine) {
  struct Row {
    std::string text;
    std::string message;
  };
  const std::vector<Row> rows{
      {"", ":1: the manifest is empty"},
      {"\n\n", ":1: the manifest is empty"},
      {"name,s\n", ":1: the first column is named \"name\", not \"file\""},
      {"file\na.pmml\n", ":1: no split variable is named"},
      {"file,s\n", ":1: no file is named"},
      {"\nfile,s,s\n", ":2: the split variable \"s\" is named twice"},
      {"file,\na.pmml,1\n", ":1: the name of a split variable is empty"},
      {"file,s\xff\n", ":1: the name \"s\\xff\" holds what no XML document can hold"},
      {"file,s\n\n,1\n", ":3: the name of the file is empty"},
      {std::string("file,s\na\0b,1\n", 13), ":2: the name of the file holds a zero byte"},
      {"file,s\na.pmml,\"1\n", ":2: a double quote is not closed"},
      {"file,s\na.pmml,\"1\"x\n", ":2: something stands between a closing quote"},
      {"file,s\na.pmml,x\"y\"\n", ":2: a double quote stands in a field"},
  };
  for (const Row& row : rows) {
    const ToolResult result = RunManifest(row.text);
    EXPECT_EQ(result.exitCode, 1) << row.text << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr("splits.csv" + row.message), HasSubstr("\n  hint: ")));
    EXPECT_FALSE(std::filesystem::exists(Out()));
  }
}

TEST_F(Combine, TellsWhenTheManifestIsNotThere) {
  const ToolResult result = Run({"--manifest", File("none.csv")});
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.err, HasSubstr("none.csv: cannot be opened: No such file or directory\n"));
}

// A split that is refused, and what is told.
struct Refusal {
  const char* description;
  std::string document;
  std::string values;
  int exitCode;
  std::string message;
  std::string status;
  bool alsoFirst;  // refused as the first file too
};

std::string Repeat(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

std::vector<Refusal> Refusals() {
  return {
      {"other function", Text({.attributes = "functionName='classification'"}), "2", 1,
       "functionName is \"classification\", but \"regression\" in the first file", "124", false},
      {"mining model", Text({.model = "MiningModel"}), "2", 1, "its model is a \"MiningModel\"", "125", true},
      {"too many values", Text({}), "2,3", 1, "has 2 split values for 1 split variable", "126", true},
      {"empty value", Text({}), "", 1, "the value of \"s\" is empty", "", true},
      {"bad character", Text({}), "\x01", 1, "the value of \"s\" holds what no XML document can hold", "", true},
      {"no UTF-8", Text({}), "\xff", 1, "the value of \"s\" holds what no XML document can hold", "", true},
      {"no functionName", Text({.attributes = ""}), "2", 1, "no attribute \"functionName\"", "108", true},
      {"malformed", "<PMML>\n<a></b></PMML>", "2", 1, ":2:6: not well-formed: ", "", true},
      {"cut off", "<PMML><Head", "2", 1, "cannot be read as XML", "104", true},
      {"no encoding", "<?xml version='1.0' encoding='nix'?><PMML/>", "2", 1, "cannot be read as XML", "104", true},
      {"empty", "", "2", 1, ": the document is empty", "", true},
      {"no PMML", "<DataModel/>", "2", 1, "the document element is \"DataModel\", not \"PMML\"", "105", true},
      {"nested too deep", Text({.local = Repeat("<Extension>", 20'000) + Repeat("</Extension>", 20'000)}), "2", 1,
       "is nested more than 10000 levels deep", "", true},
      {"a character of XML 1.1", "<?xml version='1.1'?>" + Text({.local = "<Extension>a&#1;</Extension>"}), "2", 1,
       "holds the character U+0001, which only XML 1.1 can", "", true},
      {"an attribute of XML 1.1", "<?xml version='1.1'?>" + Text({.local = "<Extension value='&#x1b;'/>"}), "2", 1,
       "holds the character U+001B", "", true},
      {"a name of XML 1.1", "<?xml version='1.1'?>" + Text({.local = "<A\xF0\x90\x80\x80/>"}), "2", 1,
       "uses the name \"A\xF0\x90\x80\x80\", which only XML 1.1 can", "", true},
      {"an element of a namespace that the first file does not declare",
       Text({.root = "<PMML xmlns:p='urn:p'>", .local = "<Extension><p:e/></Extension>"}), "2", 1,
       "uses names of xmlns:p=\"urn:p\", which the first file does not declare", "", false},
      {"an attribute of such a namespace", Text({.root = "<PMML xmlns:p='urn:p'>", .local = "<Extension p:a='1'/>"}),
       "2", 1, "uses names of xmlns:p=\"urn:p\"", "", false},
      {"a field of such a namespace",
       Text({.root = "<PMML xmlns:p='urn:p'>", .fields = "<DataField name='n'><p:e/></DataField>"}), "2", 1,
       "uses names of xmlns:p=\"urn:p\"", "", false},
      {"DOCTYPE", "<!DOCTYPE PMML>" + Text({}), "2", 1, "(DOCTYPE), which is refused", "", true},
  };
}

TEST_F(Combine, StopsAtARefusedFileWithReasonAndHintAndWritesNothing) {
  for (const Refusal& refusal : Refusals()) {
    SCOPED_TRACE(refusal.description);
    const std::string bad = WriteFile(File("bad.pmml"), refusal.document);
    const ToolResult result = Run({"--by", "s", File("a.pmml") + "=1", bad + "=" + refusal.values});
    EXPECT_EQ(result.exitCode, refusal.exitCode) << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr("rqxml: " + bad), HasSubstr(refusal.message), HasSubstr("\n  hint: ")));
    EXPECT_EQ(result.err.find("\n  status " + refusal.status) != std::string::npos, !refusal.status.empty()) << result;
    EXPECT_FALSE(std::filesystem::exists(Out()));
  }
}

TEST_F(Combine, SkipsARefusedFileWithKeepGoingWhereverItStands) {
  for (const Refusal& refusal : Refusals()) {
    for (const bool first : {false, true}) {
      if (first && !refusal.alsoFirst) continue;
      SCOPED_TRACE(refusal.description);
      const std::string bad = WriteFile(File("bad.pmml"), refusal.document) + "=" + refusal.values;
      Arguments splits{"--by", "s"};
      if (first) splits.push_back(bad);
      splits.push_back(File("a.pmml") + "=1");
      if (!first) splits.push_back(bad);
      splits.push_back(File("b.pmml") + "=3");
      const ToolResult result = Run(splits + Arguments{"--keep-going"});
      EXPECT_EQ(result.exitCode, 1) << result;
      EXPECT_THAT(result.out, AllOf(HasSubstr("skipped: " + File("bad.pmml")), HasSubstr(refusal.message),
                                    HasSubstr("2 segments from 3 files, 1 skipped, 0 findings")));
      EXPECT_THAT(Combined(), AllOf(HasSubstr("value=\"1\"/><TreeModel"), HasSubstr("value=\"3\"/><TreeModel")));
    }
  }
}

TEST_F(Combine, TakesADocumentOfXml11ThatXml10CanHold) {
  const std::string other =
      WriteFile(File("other.pmml"), "<?xml version='1.1'?>" + Text({.local = "<Extension>\t\n</Extension>"}));
  EXPECT_EQ(Run({"--by", "s", other + "=1", File("a.pmml") + "=2"}).exitCode, 0);
  EXPECT_EQ(RunTool({"vars", Out()}).exitCode, 0);
}

TEST_F(Combine, SkipsAFirstFileWithoutAModel) {
  const std::string bad = WriteFile(File("bad.pmml"), Text({.model = "Scorecard"}));
  const std::string empty = WriteFile(File("empty.pmml"), Text({.attributes = "functionName=''"}));
  const ToolResult result =
      Run({"--by", "s", bad + "=1", empty + "=2", File("a.pmml") + "=3", File("b.pmml") + "=4", "--keep-going"});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.out, AllOf(HasSubstr("has no model that can be combined"), HasSubstr("\"functionName\" of its")));
  EXPECT_THAT(result.out, HasSubstr("2 segments from 4 files, 2 skipped"));
}

TEST_F(Combine, WritesNothingWhenEachFileIsSkipped) {
  const ToolResult result = Run({"--by", "s", File("none") + "=1", File("nix") + "=2", "--keep-going"});
  EXPECT_EQ(result.exitCode, 3) << result;
  EXPECT_THAT(result.out, AllOf(HasSubstr("skipped: " + File("none")), HasSubstr("skipped: " + File("nix")),
                                HasSubstr(": nothing was written")));
  EXPECT_FALSE(std::filesystem::exists(Out()));
}

TEST_F(Combine, TellsTheLineOfTheManifestThatHasAWrongNumberOfValues) {
  const ToolResult result = RunManifest("file,s\na.pmml,1\nb.pmml\n");
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, HasSubstr("b.pmml: has 0 split values for 1 split variable (line 3 of the manifest)\n"));
}

TEST_F(Combine, RefusesValuesThatAreNoNumbersOfTheType) {
  for (const char* value : {"x", "1x", "", "nan", "inf", "1e999", "0x10", "+-1"}) {
    const ToolResult result = Run({"--by", "s", "--type", "s=double", File("a.pmml") + "=" + value});
    EXPECT_EQ(result.exitCode, 1) << value << result;
  }
  for (const char* value : {"1.5", "1e3", "-", "+", "--1"}) {
    const ToolResult result = Run({"--by", "s", "--type", "s=integer", File("a.pmml") + "=" + value});
    EXPECT_EQ(result.exitCode, 1) << value << result;
    EXPECT_THAT(result.err, HasSubstr("is no integer"));
  }
}

TEST_F(Combine, AcceptsADoctypeOnlyWhenItIsTrusted) {
  WriteFile(File("b.pmml"), "<!DOCTYPE PMML [<!ENTITY e 'text'>]>" + Text(SplitText{}));
  EXPECT_EQ(RunBy({}).exitCode, 1);
  EXPECT_EQ(RunBy({"--allow-dtd"}).exitCode, 0);
}

TEST_F(Combine, ReadsFilesWhoseNamesTheXmlLibraryWouldMisread) {
  for (const char* name : {"Größe.pmml", "a b.pmml", "a%41.pmml", "a#b.pmml", "http:x.pmml", "x=y.pmml", "a\xff.pmml",
                           "a\"b.pmml", "x=\"y\",z=.pmml"}) {
    const std::string file = WriteFile(File(name), Text(SplitText{}));
    const ToolResult result = RunTool(
        ToolCall{.arguments = {"combine", "-o", Out(), "--by", "s", file + "=1"}, .environment = {{"LC_ALL", "C"}}});
    EXPECT_EQ(result.exitCode, 0) << name << result;
  }
}

TEST_F(Combine, NeverReadsPipesDevicesFoldersOrStandardInput) {
  for (const char* name : {"/dev/zero", "/dev/stdin", "/tmp", "-", "none.pmml"}) {
    const ToolResult result = RunTool(ToolCall{
        .arguments = {"combine", "-o", Out(), "--by", "s", "--", std::string(name) + "=1"}, .input = "<PMML/>"});
    EXPECT_EQ(result.exitCode, 3) << name << result;
    EXPECT_THAT(result.err, AllOf(HasSubstr("\n  hint: "), Not(HasSubstr("--allow-dtd")), Not(HasSubstr("(-)")),
                                  Not(HasSubstr("- reads standard input"))));
  }
}

TEST_F(Combine, TakesEqualsSignsCommasAndQuotesInQuotedValues) {
  for (const auto& [argument, value] : std::vector<std::pair<std::string, std::string>>{
           {"\"x=1\"", "x=1"}, {"\"a,\"\"=\"\",b\"", "a,&quot;=&quot;,b"}, {"\"=\"", "="}}) {
    const ToolResult result = Run({"--by", "s", File("a.pmml") + "=" + argument});
    EXPECT_EQ(result.exitCode, 0) << result;
    EXPECT_THAT(Combined(), HasSubstr("operator=\"equal\" value=\"" + value + "\"/>"));
  }
  EXPECT_EQ(Run({"--by", "s", File("a.pmml") + "=\"x=1"}).exitCode, 2) << "a quote that is not closed";
}

TEST_F(Combine, PrintsTheSumsAsJson) {
  const std::string bad = WriteFile(File("bad.pmml"), "<PMML>\n<a></b></PMML>");
  const ToolResult result = RunBy({bad + "=3", "--keep-going", "--json"});
  EXPECT_EQ(result.exitCode, 1) << result;
  const json sums = json::parse(result.out);
  std::set<std::string> members;
  for (const auto& [key, value] : sums.items()) members.insert(key);
  EXPECT_EQ(members,
            (std::set<std::string>{"output", "written", "files", "segments", "fieldsAdded", "valuesAdded",
                                   "miningFieldsAdded", "bytes", "seconds", "peakMemory", "findings", "skipped"}));
  EXPECT_EQ(sums.at("output"), Out());
  EXPECT_EQ(sums.at("written"), true);
  EXPECT_EQ(sums.at("files"), 3);
  EXPECT_EQ(sums.at("segments"), 2);
  EXPECT_EQ(sums.at("bytes"), std::filesystem::file_size(Out()));
  EXPECT_GT(sums.at("peakMemory"), 1'000'000);
  const json& skipped = sums.at("skipped").at(0);
  EXPECT_EQ(skipped.at("file"), bad);
  EXPECT_EQ(skipped.at("line"), 2);
  EXPECT_TRUE(skipped.at("status").is_null());
  EXPECT_THAT(skipped.at("reason").get<std::string>(), HasSubstr("not well-formed"));
}

TEST_F(Combine, ShowsProgressOnATerminalOnlyAndWipesIt) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  const Arguments arguments{"combine", "-o", Out(), "--by", "s", File("a.pmml") + "=1", File("b.pmml") + "=2"};
  const ToolResult shown = RunTool(ToolCall{.arguments = arguments, .errorColumns = 80});
  EXPECT_EQ(shown.exitCode, 0) << shown;
  EXPECT_THAT(shown.err, AllOf(HasSubstr("2 of 2 files, 2 segments, "), HasSubstr(" files/s")));
  EXPECT_EQ(shown.err.substr(shown.err.size() - 4), "\r\x1b[K");
  const ToolResult quiet = RunTool(ToolCall{.arguments = arguments + Arguments{"--quiet"}, .errorColumns = 80});
  EXPECT_EQ(quiet.exitCode, 0) << quiet;
  EXPECT_THAT(quiet.err, IsEmpty());
  EXPECT_THAT(quiet.out, HasSubstr("2 segments"));
}

TEST_F(Combine, MergesTheDocumentsOfTheExamples) {
  const ToolResult result = Run({"--manifest", SourceFile("examples/splits/splits.csv")});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.out, HasSubstr("4 segments from 4 files, 1 finding\n"));
  EXPECT_THAT(RunTool({"vars", Out()}).out, HasSubstr("6 variables"));
}

}  // namespace
