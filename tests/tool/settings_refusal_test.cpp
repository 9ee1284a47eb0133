#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/run_tool.h"

using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::TempFolder;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

constexpr const char* kTask = "<MiningBuildTask><Extension><Parameters/></Extension></MiningBuildTask>";

std::string Fields(const std::string& fields, const std::string& derived = "") {
  return std::string("<PMML>") + kTask + "\n<DataDictionary>\n" + fields +
         "\n</DataDictionary>\n<TransformationDictionary>\n" + derived + "</TransformationDictionary></PMML>";
}

std::string Numeric(const std::string& tag, const std::string& content) {
  return "<" + tag + " name='a' optype='continuous' dataType='double'>" + content + "</" + tag + ">";
}

// A document that is refused, and what is told.
struct Row {
  const char* description;
  std::string document;
  std::vector<std::string> arguments;
  std::string message;  // begins behind the file's name
  std::string status;   // empty for none
};

const std::vector<std::string> kVars{"vars"};
const std::vector<std::string> kSettings{"settings"};
const std::vector<std::string> kDerived{"vars", "--derived"};
const std::vector<std::string> kBins{"vars", "--bins"};

const std::vector<Row> kRows{
    {"no extension", "<PMML>\n<DataDictionary/>\n <MiningBuildTask/></PMML>", kVars,
     ":3:20: MiningBuildTask: no child element \"Extension\"\n", "119"},
    {"no parameters",
     "<PMML>\n<DataDictionary/>\n<MiningBuildTask><Extension/><Extension><Parameters/></Extension></MiningBuildTask>"
     "</PMML>",
     kVars, ":3:18: MiningBuildTask: no \"Parameters\" in its first child element \"Extension\"\n", "119"},
    {"no parameters, to settings", "<PMML>\n<DataDictionary/>\n<MiningBuildTask><Extension/></MiningBuildTask></PMML>",
     kSettings, ":3:18: MiningBuildTask: no \"Parameters\"", "119"},
    {"plain PMML", "<PMML><DataDictionary/></PMML>", kSettings, ": a PMML document without \"MiningBuildTask\"", "119"},
    {"derived variables of plain PMML", "<PMML><DataDictionary/></PMML>", kDerived,
     ": a PMML document without \"MiningBuildTask\" gives no derived variables\n", ""},
    {"no dictionary", std::string("<PMML>") + kTask + "</PMML>", kSettings, "no child element \"DataDictionary\"",
     "106"},
    {"not well-formed", "<PMML>\n<a></b></PMML>", kSettings, ":2:6: not well-formed", ""},
    {"no dataType", Fields("<DataField name='a' optype='continuous'/>"), kSettings,
     ":3:42: DataField \"a\": the attribute \"dataType\" is missing\n", "108"},
    {"a type of PMML that settings do not know",
     Fields("<DataField name='a' optype='continuous' dataType='dateDaysSince[1970]'/>"), kVars,
     ":3:73: DataField \"a\": dataType=\"dateDaysSince[1970]\" is not read\n", "109"},
    {"a margin that is no number",
     Fields(Numeric("DataField", "<Interval leftMargin='1'/><Interval leftMargin='x' rightMargin='2'/>")), kVars,
     "DataField \"a\": Interval: leftMargin=\"x\" is no number\n", "109"},
    {"a right margin that is no number", Fields(Numeric("DataField", "<Interval rightMargin='INF'/>")), kVars,
     "Interval: rightMargin=\"INF\" is no number\n", "109"},
    {"margins upside down", Fields(Numeric("DataField", "<Interval leftMargin='5' rightMargin='1'/>")), kVars,
     "Interval: the \"leftMargin\" lies above the \"rightMargin\"\n", "109"},
    {"only a right margin, below zero", Fields(Numeric("DataField", "<Interval rightMargin='-1'/>")), kVars,
     "Interval: without \"leftMargin\" the \"rightMargin\" must be above zero\n", "109"},
    {"no bins", Fields(Numeric("DataField", "")), kBins, "DataField \"a\": no \"Discretize\"", "110"},
    {"no bins of a field that is not shown",
     Fields(Numeric("DataField", "")),
     {"vars", "--bins", "--fields", "b"},
     "DataField \"a\": no \"Discretize\"",
     "110"},
    {"two fields of a name", Fields(Numeric("DataField", "") + "\n" + Numeric("DataField", "")), kSettings,
     ":4:59: DataField \"a\": a field before it has the same name\n", "111"},
    {"a derived field without name", Fields("", "<DerivedField optype='continuous' dataType='double'/>"), kDerived,
     "DerivedField number 1: the attribute \"name\" is missing\n", "108"},
    {"the second derived field",
     Fields(Numeric("DataField", ""), Numeric("DerivedField", "") + "\n<DerivedField name='b' dataType='double'/>"),
     kDerived, ":7:43: DerivedField \"b\": the attribute \"optype\" is missing\n", "108"},
    {"a range in an extension of a derived field",
     Fields("", Numeric("DerivedField", "<Extension><Interval leftMargin='?'/></Extension>")), kSettings,
     "DerivedField \"a\": Interval: leftMargin=\"?\" is no number\n", "109"},
    {"two derived fields of a name", Fields("", Numeric("DerivedField", "") + Numeric("DerivedField", "")), kSettings,
     "DerivedField \"a\": a field before it has the same name\n", "111"},
};

TEST(SettingsRefusal, TellsFilePlaceElementReasonStatusAndHintAndPrintsNothing) {
  const TempFolder folder;
  for (const Row& row : kRows) {
    for (const bool asJson : {false, true}) {
      SCOPED_TRACE(row.description);
      std::vector<std::string> arguments = row.arguments;
      arguments.push_back(WriteFile(folder.File("x.xml"), row.document));
      if (asJson) arguments.push_back("--json");
      const ToolResult result = RunTool(arguments);
      EXPECT_EQ(result.exitCode, 1) << result;
      EXPECT_THAT(result.out, IsEmpty());
      EXPECT_THAT(result.err, AllOf(StartsWith("rqxml: " + folder.File("x.xml") + ":"), HasSubstr(row.message),
                                    HasSubstr("\n  hint: ")));
      if (row.status.empty()) continue;
      EXPECT_THAT(result.err, HasSubstr("\n  status " + row.status + ": "));
    }
  }
}

TEST(SettingsRefusal, OfADoctypeTellsTheWayOut) {
  const std::string file = SourceFile("examples/settings/everything.xml");
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"settings", file}, std::vector<std::string>{"get", file, "list"}}) {
    const ToolResult result = RunTool(arguments);
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, AllOf(HasSubstr("(DOCTYPE), which is refused"), HasSubstr("--allow-dtd")));
  }
}

TEST(SettingsRefusal, OfAFileThatIsNotThereGivesThree) {
  EXPECT_EQ(RunTool({"settings", "/nowhere/x.xml"}).exitCode, 3);
  EXPECT_EQ(RunTool({"get", "/nowhere/x.xml", "a"}).exitCode, 3);
}

std::string Parameters(const std::string& parameters) {
  return "<PMML><DataDictionary/><MiningBuildTask><Extension><Parameters>" + parameters +
         "</Parameters></Extension></MiningBuildTask></PMML>";
}

std::string Nested(int levels) {
  std::string text;
  for (int i = 0; i < levels; ++i) text += "<ComplexParameter name='c'>";
  for (int i = 0; i < levels; ++i) text += "</ComplexParameter>";
  return Parameters(text);
}

TEST(SettingsRefusal, OfTreesThatAreTooDeepToShow) {
  EXPECT_EQ(RunTool(ToolCall{.arguments = {"settings", "-"}, .input = Nested(99)}).exitCode, 0);
  for (const int levels : {100, 10'000}) {
    const ToolResult result = RunTool(ToolCall{.arguments = {"settings", "-"}, .input = Nested(levels)});
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("complex parameters are nested more than 100 deep\n"));
  }
}

TEST(SettingsRefusal, OfSoManyParametersThatTheTreeWouldTakeMinutesWhileGetReadsThem) {
  std::string parameters;
  for (int i = 0; i < 30'000; ++i) parameters += "<Parameter name='p" + std::to_string(i) + "' value='v'/>";
  const TempFolder folder;
  const std::string file = WriteFile(folder.File("x.xml"), Parameters(parameters));
  const ToolResult result = RunTool({"settings", file});
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.err, HasSubstr("too many parameters stand in one scope"));
  EXPECT_EQ(RunTool({"get", file, "p29999"}).out, "v\n");
}

}  // namespace
