#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "bench/hostile_inputs.h"
#include "tests/support/address_sanitizer.h"
#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/run_tool.h"

using rqtest::RunTool;
using rqtest::TempFolder;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;

namespace {

std::string Pmml(const std::string& fields, const std::string& rest = "") {
  return "<PMML>\n<DataDictionary>\n" + fields + "\n</DataDictionary>" + rest + "</PMML>";
}

constexpr const char* kGood = "<DataField name='good' optype='continuous' dataType='double'/>\n";

std::string Repeat(const std::string& piece, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += piece;
  return text;
}

std::string ManyNames() {
  std::string elements;
  for (int i = 0; i < 20'000; ++i) elements += "<e" + std::to_string(i) + "/>";
  return elements;
}

// A document that is refused, and what is told.
struct Row {
  const char* description;
  std::string document;
  std::vector<std::string> options;
  std::string message;  // begins behind the file's name
  std::string status;   // empty for none
};

const std::vector<Row> kRows{
    {"empty", "", {}, ": the document is empty\n", ""},
    {"no XML", "hello", {}, ":1:1: not well-formed: ", ""},
    {"mismatched tags", "<PMML>\n  <a></b></PMML>", {}, ":2:8: not well-formed: expected end of tag 'a'\n", ""},
    {"cut off between tags", "<PMML>\n<DataDictionary>\n", {}, ":3:1: not well-formed: input ended before all", ""},
    {"cut off in a tag", "<PMML>\n<DataDic", {}, ":2:9: cannot be read as XML: unexpected end of input\n", "104"},
    {"compressed", "\x1f\x8b\x08\x08garbage", {}, ":1:2: cannot be read as XML: invalid byte 0x8b for UTF-8\n", "104"},
    {"unknown encoding", "<?xml version='1.0' encoding='nix'?><PMML/>", {}, ": cannot be read as XML: unable", "104"},
    {"a byte that is no UTF-8, far in",
     Pmml(Repeat(kGood, 2'000) + "<!-- caf\xE9 -->"),
     {},
     ":2003:9: cannot be read as XML: invalid byte 0xe9 for UTF-8\n",
     "104"},
    {"too many names", Pmml(ManyNames()), {}, ": cannot be read as XML: too many different names", "104"},
    {"unknown version", "<?xml version='1.2'?><PMML/>", {}, ": the XML declaration asks for a version other", ""},
    {"other root",
     "<!-- x -->\n<OtherData a='b'>\n</OtherData>",
     {},
     ":2:18: the document element is \"OtherData\", not \"PMML\"\n",
     "105"},
    {"prefixed root", "<p:PMML xmlns:p='u'/>", {}, "the document element is \"p:PMML\", not \"PMML\"\n", "105"},
    {"lower case root", "<pmml/>", {}, "the document element is \"pmml\", not \"PMML\"\n", "105"},
    {"no dictionary",
     "<PMML><a><DataDictionary/></a></PMML>",
     {},
     ":1:7: \"PMML\" has no child element \"DataDictionary\"\n",
     "106"},
    {"no name",
     Pmml(std::string(kGood) + "<DataField optype='continuous' dataType='double'/>"),
     {},
     ":4:51: DataField number 2: the attribute \"name\" is missing\n",
     "108"},
    {"no dataType",
     Pmml("<DataField name='a' optype='continuous'/>"),
     {},
     ":3:42: DataField \"a\": the attribute \"dataType\" is missing\n",
     "108"},
    {"no optype",
     Pmml("<DataField name='a' dataType='double'/>"),
     {},
     ":3:40: DataField \"a\": the attribute \"optype\" is missing\n",
     "108"},
    {"unknown dataType",
     Pmml("<DataField name='a' optype='categorical' dataType='boolean'/>"),
     {},
     ": DataField \"a\": dataType=\"boolean\" is not read\n",
     "109"},
    {"no transformations",
     Pmml(kGood),
     {"--bins"},
     ": DataField \"good\": the document has no \"TransformationDictionary\"",
     "110"},
    {"no bins",
     Pmml(kGood, "<TransformationDictionary/>"),
     {"--bins"},
     ": DataField \"good\": no \"Discretize\" in the \"TransformationDictionary\"",
     "110"},
    {"two of a name",
     Pmml(std::string(kGood) + kGood),
     {},
     ":4:63: DataField \"good\": a field before it has the same name\n",
     "111"},
    {"empty name",
     Pmml("<DataField name='' optype='continuous' dataType='double'/>"),
     {},
     ": DataField \"\": the name is empty\n",
     "111"},
    {"bins that descend",
     Pmml(kGood,
          "<TransformationDictionary><DerivedField><Discretize field='good'>"
          "<DiscretizeBin><Interval leftMargin='1' rightMargin='5'/></DiscretizeBin>"
          "<DiscretizeBin><Interval leftMargin='5' rightMargin='3'/></DiscretizeBin>"
          "<DiscretizeBin><Interval leftMargin='3' rightMargin='9'/></DiscretizeBin>"
          "</Discretize></DerivedField></TransformationDictionary>"),
     {"--bins"},
     ": DataField \"good\": its bins do not ascend\n",
     "111"},
    {"the filter passes over fields before the bad one",
     Pmml(std::string("<DataField name='skipped'/>\n") + kGood + "<DataField name='bad' dataType='double'/>"),
     {"--fields", "good,bad"},
     ":5:42: DataField \"bad\": the attribute \"optype\" is missing\n",
     "108"},
    {"a field without a name is bad whatever the filter",
     Pmml(std::string(kGood) + "<DataField/>" + kGood),
     {"--fields", "good"},
     ":4:13: DataField number 2: the attribute \"name\" is missing\n",
     "108"},
    {"a second dictionary does not count",
     "<PMML>\n<DataDictionary>\n<a><DataField/></a>\n<DataField name='a'/></DataDictionary>"
     "<DataDictionary><DataField/></DataDictionary></PMML>",
     {},
     ":4:22: DataField \"a\": the attribute \"dataType\" is missing\n",
     "108"},
};

TEST(Refusal, TellsFilePlaceElementReasonStatusAndHintAndPrintsNothing) {
  const TempFolder folder;
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.description);
    const std::string file = WriteFile(folder.File("x.pmml"), row.document);
    std::vector<std::string> arguments{"vars", file};
    arguments.insert(arguments.end(), row.options.begin(), row.options.end());
    const ToolResult result = RunTool(arguments);
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr("rqxml: " + file + ":"), HasSubstr(row.message), HasSubstr("\n  hint: ")))
        << result;
    if (row.status.empty()) {
      EXPECT_THAT(result.err, Not(HasSubstr("\n  status ")));
    } else {
      EXPECT_THAT(result.err, HasSubstr("\n  status " + row.status + ": "));
    }
  }
}

TEST(Refusal, IsToldTheSameWayForStandardInput) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.description);
    std::vector<std::string> arguments{"vars", "-"};
    arguments.insert(arguments.end(), row.options.begin(), row.options.end());
    const ToolResult result = RunTool(ToolCall{.arguments = arguments, .input = row.document});
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr("rqxml: standard input:"), HasSubstr(row.message))) << result;
  }
}

TEST(Refusal, OfBytesThatAnEncodingOtherThanUtf8DoesNotHaveTellsNoPlace) {
  const std::string document =
      "<?xml version='1.0' encoding='US-ASCII'?>\n" + Pmml(Repeat(kGood, 2'000) + "<!-- \xE9 -->");
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", "-"}, .input = document});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, AllOf(HasSubstr("rqxml: standard input: cannot be read as XML: "), HasSubstr("status 104")));
}

TEST(Refusal, OfTooManyNamesHasAHintOfItsOwn) {
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", "-"}, .input = Pmml(ManyNames())});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, HasSubstr("\n  hint: documents of this kind have a few hundred different names"));
}

TEST(Refusal, IsTheSameWithJson) {
  const TempFolder folder;
  const ToolResult result = RunTool({"vars", "--json", WriteFile(folder.File("x.pmml"), Pmml("<DataField/>"))});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, HasSubstr("status 108"));
}

TEST(Refusal, NamesFromTheDocumentCannotSteerTheTerminalNorFillIt) {
  const TempFolder folder;
  const std::string name = "a&#x9b;31m&#x202e;" + std::string(100'000, 'x');
  const std::string file = WriteFile(folder.File("x.pmml"), Pmml("<DataField name='" + name + "'/>"));
  const ToolResult result = RunTool({"vars", file});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, HasSubstr("DataField \"a\\u{9b}31m\\u{202e}xxx"));
  EXPECT_LT(result.err.size(), 2'000u);
}

// The bound only tells a hang from a slow machine; bench/ has the true figures.
TEST(HostileInput, OfAMegabyteIsReadOrRefusedInBoundedTimeMessageIncluded) {
  const TempFolder folder;
  for (const rqxml_bench::HostileShape& shape : rqxml_bench::HostileShapes()) {
    const std::string file = WriteFile(folder.File("x.pmml"), shape.make(1'000'000));
    const auto start = std::chrono::steady_clock::now();
    const ToolResult result = RunTool({"vars", file});
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    EXPECT_LT(taken.count(), 60) << shape.name;
    EXPECT_TRUE(result.exitCode == 0 || result.exitCode == 1) << shape.name << result.exitCode << result.err;
  }
}

TEST(Refusal, OfADocumentThatTheMemoryCannotHoldIsToldInOneLine) {
  if (rqtest::kAddressSanitizer) GTEST_SKIP() << "the sanitizer needs more address space than that";
  std::string fields;
  for (int i = 0; i < 150'000; ++i) {
    fields += "<DataField name='field" + std::to_string(i) + "' optype='continuous' dataType='double'/>\n";
  }
  const TempFolder folder;
  const std::string file = WriteFile(folder.File("x.pmml"), Pmml(fields));
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", file}, .memoryLimit = 100'000'000});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.out, IsEmpty());
  EXPECT_THAT(result.err, MatchesRegex("rqxml: there is not enough memory for this document\n"));
}

}  // namespace
