#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/combine_support.h"
#include "tests/tool/run_tool.h"

using nlohmann::json;
using rqtest::ReadFile;
using rqtest::RunTool;
using rqtest::SplitText;
using rqtest::TempFolder;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

namespace {

using Kinds = std::vector<std::string>;

const char* const kX = "<DataField name='x' optype='continuous' dataType='double'/>";
const char* const kC =
    "<DataField name='c' optype='categorical' dataType='string'><Value value='u'/><Value value='v'/></DataField>";

struct Row {
  const char* description;
  SplitText first;
  SplitText second;
  std::vector<std::string> options;
  std::string values;  // of the second file
  Kinds kinds;
  std::string text;  // stands in the report
};

const std::vector<Row>& Rows() {
  static const std::vector<Row> rows{
      {"nothing", {}, {}, {}, "2", {}, ""},
      {"another dataType",
       {},
       {.fields = std::string("<DataField name='x' optype='continuous' dataType='integer'/>") + kC},
       {},
       "2",
       {"dataTypeDiffers"},
       "field \"x\": dataType \"integer\", but \"double\" in the combined"},
      {"another optype",
       {},
       {.fields = std::string("<DataField name='x' optype='ordinal' dataType='double'/>") + kC},
       {},
       "2",
       {"optypeDiffers"},
       "field \"x\": optype \"ordinal\", but \"continuous\" in the combined"},
      {"another order",
       {},
       {.fields = std::string(kC) + kX},
       {},
       "2",
       {"valuesAtOtherPosition", "valuesAdded"},
       "field \"c\": its values were compared with those of \"x\""},
      {"known name beyond the last field",
       {},
       {.fields = std::string(kX) + kX + kX + kC},
       {},
       "2",
       {"valuesLeftOut"},
       "field \"c\": its values \"u\", \"v\" were left out"},
      {"a new field",
       {},
       {.fields = std::string(kX) + kC + "<DataField name='z' optype='continuous' dataType='double'/>"},
       {},
       "2",
       {"fieldAdded"},
       "field \"z\" was added"},
      {"a new value",
       {},
       {.fields = std::string(kX) +
                  "<DataField name='c' optype='categorical' dataType='string'><Value value='w'/></DataField>"},
       {},
       "2",
       {"valuesAdded"},
       "field \"c\" gained the values \"w\""},
      {"a new mining field",
       {},
       {.schema = "<MiningSchema><MiningField name='x'/><MiningField name='n'/></MiningSchema>"},
       {},
       "2",
       {"miningFieldAdded"},
       "mining field \"n\" was added"},
      {"another algorithm",
       {},
       {.attributes = "functionName='regression' algorithmName='two'"},
       {},
       "2",
       {"algorithmNameDiffers"},
       "algorithmName \"two\", but \"one\" in the combined"},
      {"no algorithm",
       {},
       {.attributes = "functionName='regression'"},
       {},
       "2",
       {"algorithmNameDiffers"},
       "algorithmName (none), but \"one\""},
      {"no mining schema", {}, {.schema = ""}, {}, "2", {"miningSchemaMissing"}, "no \"MiningSchema\""},
      {"no header", {}, {.header = ""}, {}, "2", {"headerMissing"}, "no \"Header\""},
      {"no dictionary", {}, {.dictionary = ""}, {}, "2", {"dataDictionaryMissing"}, "no \"DataDictionary\""},
      {"no dictionary in the first file",
       {.dictionary = ""},
       {},
       {},
       "2",
       {"dataDictionaryMissing", "splitVariablesNotDescribed", "miningFieldAdded", "miningFieldAdded"},
       "describes no split variable"},
      {"no mining schema in the first file",
       {.schema = ""},
       {},
       {},
       "2",
       {"miningSchemaMissing", "splitVariablesNotDescribed", "fieldAdded", "fieldAdded"},
       "describes no split variable"},
      {"two transformations",
       {},
       {.transformations = "<TransformationDictionary/>", .local = "<LocalTransformations/>"},
       {},
       "2",
       {"secondLocalTransformations"},
       "gained a second one"},
      {"transformations once", {}, {.transformations = "<TransformationDictionary/>"}, {}, "2", {}, ""},
      {"functions",
       {},
       {.transformations = "<TransformationDictionary><DefineFunction name='f'/><DerivedField name='d'/>"
                           "<DefineFunction name='g'/></TransformationDictionary>"},
       {},
       "2",
       {"functionsLeftOut"},
       "the functions \"f\", \"g\" of the \"TransformationDictionary\" were left out"},
      {"another version",
       {.root = "<PMML version='4.1' xmlns='urn:1'>"},
       {.root = "<PMML version='3.2' xmlns='urn:1'>"},
       {},
       "2",
       {"versionDiffers"},
       "the version of PMML is \"3.2\", but \"4.1\" in the combined document"},
      {"another namespace",
       {.root = "<PMML xmlns='urn:1'>"},
       {.root = "<PMML xmlns='urn:2'>"},
       {},
       "2",
       {"namespaceDiffers"},
       "the declaration \"xmlns\" is \"urn:2\", but \"urn:1\" in the combined document"},
      {"no namespace",
       {.root = "<PMML xmlns='urn:1'>"},
       {},
       {},
       "2",
       {"namespaceDiffers"},
       "the declaration \"xmlns\" is (none), but \"urn:1\""},
      {"a prefix that means something else",
       {.root = "<PMML xmlns:p='urn:1'>"},
       {.root = "<PMML xmlns:p='urn:2'>", .local = "<Extension><p:e/></Extension>"},
       {},
       "2",
       {"namespaceDiffers"},
       "the declaration \"xmlns:p\" is \"urn:2\", but \"urn:1\""},
      {"prefixes that are the same, not used or declared where they are used",
       {.root = "<PMML xmlns:p='urn:1'>"},
       {.root = "<PMML xmlns:p='urn:1' xmlns:q='urn:2'>", .local = "<p:e p:a='1'><r:e xmlns:r='urn:3'/></p:e>"},
       {},
       "2",
       {},
       ""},
      {"a value outside the categories",
       {},
       {},
       {"--categories", "s=1,3"},
       "2",
       {"valueOutsideCategories"},
       "split variable \"s\": the value \"2\" is none of its categories"},
      {"a number written otherwise is in the categories",
       {},
       {},
       {"--type", "s=double", "--categories", "s=1,2"},
       "2.0",
       {},
       ""},
      {"the same values", {}, {}, {}, "1", {"sameSplitValues"}, "the split values \"1\" are those of"},
      {"the same number", {}, {}, {"--type", "s=integer"}, "+01", {"sameSplitValues"}, "can never be chosen"},
      {"a split variable in the files",
       {},
       {.fields = std::string(kX) + kC + "<DataField name='s' optype='categorical' dataType='string'/>"},
       {},
       "2",
       {"splitVariableIsField"},
       "the split variable \"s\" is a data field"},
      {"wrong number of fields",
       {},
       {.dictionary = "<DataDictionary numberOfFields='3'>"},
       {},
       "2",
       {"numberOfFieldsWrong"},
       "numberOfFields is \"3\", but the \"DataDictionary\" has \"2\""},
      {"right number of fields", {}, {.dictionary = "<DataDictionary numberOfFields='2'>"}, {}, "2", {}, ""},
      {"no model", {}, {.model = "Scorecard"}, {}, "2", {"modelMissing"}, "the file gave no segment"},
      {"two models",
       {},
       {.more = "<RegressionModel functionName='regression'><MiningSchema/></RegressionModel>"},
       {},
       "2",
       {"modelLeftOut", "algorithmNameDiffers"},
       "the models \"TreeModel\" were left out"},
  };
  return rows;
}

ToolResult Combine(const TempFolder& folder, const Row& row, const std::vector<std::string>& more) {
  const std::string first = WriteFile(folder.File("a.pmml"), Text(row.first));
  const std::string second = WriteFile(folder.File("b.pmml"), Text(row.second));
  std::vector<std::string> arguments{"combine", "-o",         folder.File("out.pmml"),  "--by",
                                     "s",       first + "=1", second + "=" + row.values};
  arguments.insert(arguments.end(), row.options.begin(), row.options.end());
  arguments.insert(arguments.end(), more.begin(), more.end());
  return RunTool(arguments);
}

std::size_t CountOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

TEST(CombineFindings, AreOfTheKindsThatTheFilesGive) {
  for (const Row& row : Rows()) {
    SCOPED_TRACE(row.description);
    const TempFolder folder;
    const ToolResult result = Combine(folder, row, {"--json"});
    ASSERT_EQ(result.exitCode, 0) << result;
    Kinds kinds;
    const json parsed = json::parse(result.out);
    for (const json& finding : parsed.at("findings")) kinds.push_back(finding.at("kind"));
    EXPECT_EQ(kinds, row.kinds) << result;
  }
}

TEST(CombineFindings, AreToldInWordsUnderTheirFile) {
  for (const Row& row : Rows()) {
    SCOPED_TRACE(row.description);
    const TempFolder folder;
    const ToolResult result = Combine(folder, row, {});
    EXPECT_EQ(result.exitCode, 0) << result;
    EXPECT_THAT(result.out, HasSubstr(row.text));
    if (!row.kinds.empty()) {
      EXPECT_THAT(result.out, HasSubstr(".pmml:\n  "));
    }
  }
}

TEST(CombineFindings, CountWhatTheDocumentReallyGained) {
  for (const Row& row : Rows()) {
    SCOPED_TRACE(row.description);
    const TempFolder folder;
    const ToolResult result = Combine(folder, row, {"--json"});
    ASSERT_EQ(result.exitCode, 0) << result;
    const json sums = json::parse(result.out);
    const std::string first = Text(row.first);
    const std::string combined = ReadFile(folder.File("out.pmml"));
    const bool described = combined.find("<DataField displayName=") != std::string::npos ||
                           combined.find("displayName=\"\"") != std::string::npos;
    EXPECT_EQ(CountOf(combined, "<DataField "),
              CountOf(first, "<DataField ") + (described ? 1 : 0) + sums.at("fieldsAdded").get<std::size_t>());
    EXPECT_EQ(CountOf(combined, "<Segment>"), sums.at("segments").get<std::size_t>());
  }
}

TEST(CombineFindings, AreAnErrorWithStrictAndNothingIsWritten) {
  for (const Row& row : Rows()) {
    SCOPED_TRACE(row.description);
    const TempFolder folder;
    const ToolResult result = Combine(folder, row, {"--strict"});
    EXPECT_EQ(result.exitCode, row.kinds.empty() ? 0 : 4) << result;
    EXPECT_EQ(std::filesystem::exists(folder.File("out.pmml")), row.kinds.empty());
    if (!row.kinds.empty()) {
      EXPECT_THAT(result.out, HasSubstr(": nothing was written, "));
    }
  }
}

TEST(CombineFindings, CannotSteerTheTerminal) {
  const TempFolder folder;
  Row row = Rows().front();
  row.second.attributes = "functionName='regression' algorithmName='&#x9b;31m'";
  const ToolResult result = Combine(folder, row, {});
  EXPECT_THAT(result.out, HasSubstr("\\u{9b}31m"));
  EXPECT_THAT(result.err, IsEmpty());
}

TEST(CombineFindings, TellBothValuesToPrograms) {
  const TempFolder folder;
  Row row = Rows().front();
  row.second.attributes = "functionName='regression' algorithmName='two'";
  const json finding = json::parse(Combine(folder, row, {"--json"}).out).at("findings").at(0);
  EXPECT_EQ(finding.at("file"), folder.File("b.pmml"));
  EXPECT_EQ(finding.at("known"), "one");
  EXPECT_EQ(finding.at("found"), "two");
}

}  // namespace
