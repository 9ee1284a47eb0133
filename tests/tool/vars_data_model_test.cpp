#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/run_tool.h"

using nlohmann::json;
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

const std::string kFields =
    "<Field name='age' displayLabel='Age' storage='integer' measure='continuous' role='input'>"
    "<Range minValue='18' maxValue='110'/></Field>\n"
    "<Field name='day' storage='timestamp' measure='continuous'/>\n"
    "<Field name='w' storage='real' measure='continuous' role='freqWeight'/>\n"
    "<Field name='sex' storage='string' measure='flag' role='target'><Values><Value value='f' displayLabel='female'/>"
    "<Value value='m' displayLabel='male'/></Values></Field>\n";

std::string DataModel(const std::string& fields) {
  return "<DataModel>\n<Fields>\n" + fields + "</Fields></DataModel>";
}

ToolResult Vars(const std::string& document, const std::vector<std::string>& options = {}) {
  ToolCall call{.arguments = {"vars", "-"}, .input = document};
  call.arguments.insert(call.arguments.end(), options.begin(), options.end());
  return RunTool(call);
}

json VarsJson(const std::string& document, std::vector<std::string> options = {}) {
  options.emplace_back("--json");
  const ToolResult result = Vars(document, options);
  EXPECT_EQ(result.exitCode, 0) << result;
  return json::parse(result.out, nullptr, false);
}

TEST(VarsOfADataModel, AreATableWithStorageAndRole) {
  const ToolResult result = Vars(DataModel(kFields));
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_EQ(result.out,
            "standard input: data-model document, 4 variables\n"
            "\n"
            "#  Name  Label  Kind         Type     Storage    Role    Range, bins or categories\n"
            "-  ----  -----  -----------  -------  ---------  ------  -------------------------\n"
            "0  age   Age    continuous   numeric  integer    input   18 .. 110\n"
            "1  day          continuous   numeric  timestamp\n"
            "2  w            weight       numeric  real       weight\n"
            "3  sex          categorical  string   string     target  f = female, m = male\n");
}

TEST(VarsOfADataModel, AsJsonHaveTheMembersOfAllVariables) {
  const json document = VarsJson(DataModel(kFields));
  EXPECT_EQ(document.at("kind"), "datamodel");
  EXPECT_EQ(document.at("variables")[0], json::parse(R"({
    "index": 0, "name": "age", "label": "Age", "type": "continuous", "valueType": "numeric", "storage": 1, "role": 4,
    "minimum": 18, "maximum": 110, "cutPoints": [], "binLabels": [], "values": [], "labels": [],
    "missingValues": [], "invalidRange": null, "flag": false, "count": -1})"));
  EXPECT_EQ(document.at("variables")[2].at("type"), "weight");
  EXPECT_EQ(document.at("variables")[3].at("labels"), json::parse(R"(["female", "male"])"));
}

TEST(VarsOfADataModel, FieldRolesGiveInputFieldsARoleOfTheirOwn) {
  const json variables = VarsJson(DataModel(kFields), {"--field-roles"}).at("variables");
  std::vector<int> roles;
  for (const json& variable : variables) roles.push_back(variable.at("role"));
  EXPECT_EQ(roles, (std::vector<int>{5, 0, 3, 2}));
  EXPECT_THAT(Vars(DataModel(kFields), {"--field-roles"}).out, HasSubstr("  input field  "));
}

TEST(VarsOfADataModel, FlagAndCountReachContinuousVariablesFromTwoOn) {
  for (const auto& [count, flag, kept] :
       {std::tuple{"5", true, 5}, {"2", true, 2}, {"1", false, -1}, {"-7", false, -1}}) {
    const json variables = VarsJson(DataModel(kFields), {"--flag", std::string("--count=") + count}).at("variables");
    EXPECT_EQ(variables[0].at("flag"), flag) << count;
    EXPECT_EQ(variables[0].at("count"), kept) << count;
    EXPECT_EQ(variables[3].at("count"), -1);
  }
  EXPECT_THAT(Vars(DataModel(kFields), {"--flag", "--count", "5"}).out, HasSubstr("  yes, 5  "));
}

TEST(VarsOfADataModel, MayBeChosen) {
  const json variables = VarsJson(DataModel(kFields), {"--fields", "w,age"}).at("variables");
  ASSERT_EQ(variables.size(), 2u);
  EXPECT_EQ(variables[1].at("name"), "w");
}

TEST(VarsOfADataModel, OfTheExampleAreAllThere) {
  const json document = json::parse(RunTool({"vars", "--json", SourceFile("examples/datamodel/loans.xml")}).out);
  EXPECT_EQ(document.at("kind"), "datamodel");
  EXPECT_EQ(document.at("variables").size(), 12u);
}

std::string Utf16(const std::string& text) {
  std::string wide = "\xFE\xFF";
  for (const char c : text) wide.append(1, '\0').append(1, c);
  return wide;
}

TEST(DataModel, IsRecognisedByItsDocumentElementInEveryDisguise) {
  const std::vector<std::string> documents{"\xEF\xBB\xBF" + DataModel(kFields), Utf16(DataModel(kFields)),
                                           "<?xml version='1.0'?><!-- <PMML> --><?p <PMML>?>\n" + DataModel(kFields),
                                           "<DataModel\n><Fields/></DataModel>",
                                           "<DataModel a='b'><Fields/></DataModel>"};
  for (const std::string& document : documents) {
    EXPECT_EQ(VarsJson(document).at("kind"), "datamodel") << document;
  }
  const ToolResult behindDoctype = Vars("<!DOCTYPE DataModel[]>" + DataModel(kFields), {"--allow-dtd"});
  EXPECT_EQ(behindDoctype.exitCode, 0) << behindDoctype;
  EXPECT_THAT(Vars("<DataModels><Fields/></DataModels>").err,
              HasSubstr("is \"DataModels\", not \"PMML\"\n  status 105"));
}

// A data model that is refused, and what is told.
struct Row {
  std::string document;
  std::vector<std::string> options;
  std::string message;
  std::string status;  // empty for none
};

const std::vector<Row> kRows{
    {"<DataModel>\n</DataModel>", {}, ":1:12: \"DataModel\" has no child element \"Fields\"\n", "113"},
    {"<DataModel>", {}, ":1:12: not well-formed: ", ""},
    {"<DataModel>\xE9</DataModel>", {}, ":1:12: cannot be read as XML: invalid byte 0xe9 for UTF-8\n", "104"},
    {"<?xml version='1.0' encoding='nix'?><DataModel/>", {}, ": cannot be read as XML: unable", "104"},
    {"<?xml version='1.2'?><DataModel/>", {}, ": the XML declaration asks for a version", ""},
    {"<!DOCTYPE DataModel><DataModel/>", {}, ": has a document type declaration", ""},
    {"<!DOCTYPE DataModel><PMML/>", {"--allow-dtd"}, ": the DOCTYPE names \"DataModel\", and", "105"},
    {"<!DOCTYPE DataModel>" + DataModel(kFields + "<Field/>"),
     {"--allow-dtd"},
     ": Field number 5: the field cannot",
     "108"},
    {DataModel(kFields + "<Field storage='real'/>"), {}, ":7:24: Field number 5: the attribute \"name\" is", "108"},
    {DataModel(kFields + "<Field name='a' measure='x'/>"), {}, ": Field \"a\": the attribute \"storage\" is", "108"},
    {DataModel(kFields + "<Field name='a' storage='real'/>"), {}, ": Field \"a\": the attribute \"measure\" is", "108"},
    {DataModel("<Field name='a' storage='Real' measure='x'/>"),
     {},
     ":3:45: Field \"a\": storage=\"Real\" is not",
     "109"},
    {DataModel(kFields + "<Field name='' storage='real' measure='x'/>"),
     {},
     ": Field \"\": the name is empty\n",
     "111"},
    {DataModel(kFields + "<Field name='w' storage='real' measure='x'/>"),
     {},
     ": Field \"w\": a field before it has",
     "111"},
    {DataModel(kFields + "<Field name='v' storage='real' measure='continuous' role='freqWeight'/>"),
     {},
     ": Field \"v\": a field before it is the frequency weight already\n",
     "111"},
    {DataModel("<Field name='a' storage='real' measure='continuous'><Range minValue='2' maxValue='1'/></Field>"),
     {},
     ": Field \"a\": the \"minValue\" of its range lies above the \"maxValue\"\n",
     "111"},
    {DataModel(kFields), {"--bins"}, ": a data-model document defines no bins\n", ""},
    {DataModel(kFields), {"--derived"}, ": a data-model document gives no derived variables\n", ""},
};

TEST(DataModel, ThatIsRefusedIsToldWithFilePlaceElementReasonStatusAndHint) {
  const TempFolder folder;
  for (const Row& row : kRows) {
    const std::string file = WriteFile(folder.File("x.xml"), row.document);
    ToolCall call{.arguments = {"vars", file}};
    call.arguments.insert(call.arguments.end(), row.options.begin(), row.options.end());
    const ToolResult result = RunTool(call);
    EXPECT_EQ(result.exitCode, 1) << row.document << result;
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, StartsWith("rqxml: " + file)) << row.document;
    EXPECT_THAT(result.err, HasSubstr(row.message)) << row.document;
    if (row.status.empty()) continue;
    EXPECT_THAT(result.err, HasSubstr("\n  status " + row.status + ": ")) << row.document;
  }
}

TEST(DataModel, OptionsAreForDataModelsAlone) {
  const std::string pmml = "<PMML><DataDictionary/></PMML>";
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{"--field-roles"}, {"--flag", "--count", "2"}}) {
    const ToolResult result = Vars(pmml, options);
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.err, HasSubstr("is no data-model document, and " + options.front() + " is for those alone\n"));
  }
}

TEST(DataModel, IsRefusedWhereOtherDocumentsAreAskedFor) {
  for (const char* const command : {"settings", "stats"}) {
    const ToolResult result = RunTool(ToolCall{.arguments = {command, "-"}, .input = DataModel(kFields)});
    EXPECT_EQ(result.exitCode, 1) << result;
    EXPECT_THAT(result.err, AllOf(HasSubstr("the document element is \"DataModel\", not \"PMML\"\n  status 105"),
                                  HasSubstr("  hint: rqxml vars lists the variables of data-model documents\n")));
  }
}

}  // namespace
