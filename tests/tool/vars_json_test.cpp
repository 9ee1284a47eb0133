#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/run_tool.h"

// The order of the members is part of what is tested.
using json = nlohmann::ordered_json;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::TempFolder;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

std::string Example(const std::string& name) { return SourceFile("examples/" + name); }

json Vars(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"vars", "--json"});
  const ToolResult result = RunTool(arguments);
  EXPECT_EQ(result.exitCode, 0) << result;
  return json::parse(result.out);
}

json VarsOf(const std::string& fields, const std::vector<std::string>& options = {}) {
  const TempFolder folder;
  std::vector<std::string> arguments{
      WriteFile(folder.File("x.pmml"), "<PMML><DataDictionary>" + fields + "</DataDictionary></PMML>")};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return Vars(arguments).at("variables");
}

json Named(const json& document, const std::string& name) {
  for (const json& variable : document.at("variables")) {
    if (variable.at("name") == name) return variable;
  }
  ADD_FAILURE() << "no variable " << name;
  return {};
}

std::vector<std::string> Names(const json& document) {
  std::vector<std::string> names;
  for (const json& variable : document.at("variables")) names.push_back(variable.at("name"));
  return names;
}

TEST(VarsJson, IsOneObjectWithTheFileTheKindAndTheVariables) {
  const json document = Vars({Example("customers.pmml")});
  std::vector<std::string> members;
  for (const auto& [name, value] : document.items()) members.push_back(name);
  EXPECT_THAT(members, ElementsAre("file", "kind", "variables"));
  EXPECT_EQ(document.at("file"), Example("customers.pmml"));
  EXPECT_EQ(document.at("kind"), "pmml");
  EXPECT_EQ(document.at("variables").size(), 9u);
}

TEST(VarsJson, EachVariableHasAllMembersInTheirOrder) {
  const json document = Vars({Example("customers.pmml"), "--bins"});
  int index = 0;
  for (const json& variable : document.at("variables")) {
    std::vector<std::string> members;
    for (const auto& [name, value] : variable.items()) members.push_back(name);
    EXPECT_THAT(members, ElementsAre("index", "name", "label", "type", "valueType", "storage", "role", "minimum",
                                     "maximum", "cutPoints", "binLabels", "values", "labels", "missingValues",
                                     "invalidRange", "flag", "count"));
    EXPECT_EQ(variable.at("index"), index++);
  }
}

TEST(VarsJson, OfAContinuousVariableWithBins) {
  const json expected = json::parse(R"({
    "index": 0, "name": "age", "label": "Age in years", "type": "continuous", "valueType": "numeric",
    "storage": 0, "role": 4, "minimum": 18, "maximum": 110, "cutPoints": [30, 60],
    "binLabels": ["young", "middle", "old"], "values": [], "labels": [],
    "missingValues": [{"value": -1, "label": "not asked"}],
    "invalidRange": {"lower": -1000, "upper": -2}, "flag": true, "count": -1})");
  EXPECT_EQ(Named(Vars({Example("customers.pmml"), "--bins"}), "age"), expected);
}

TEST(VarsJson, OfAContinuousVariableWithoutBins) {
  const json expected = json::parse(R"({
    "index": 0, "name": "age", "label": "Age in years", "type": "continuous", "valueType": "numeric",
    "storage": 0, "role": 4, "minimum": null, "maximum": null, "cutPoints": [], "binLabels": [],
    "values": [], "labels": [], "missingValues": [{"value": -1, "label": "not asked"}],
    "invalidRange": {"lower": -1000, "upper": -2}, "flag": false, "count": -1})");
  EXPECT_EQ(Named(Vars({Example("customers.pmml")}), "age"), expected);
}

TEST(VarsJson, OfALabelledStringVariable) {
  const json expected = json::parse(R"({
    "index": 4, "name": "contract", "label": "Kind of contract", "type": "categorical", "valueType": "string",
    "storage": 0, "role": 4, "minimum": null, "maximum": null, "cutPoints": [], "binLabels": [],
    "values": ["M", "Y", "2Y"], "labels": ["monthly", "one year", "two years"],
    "missingValues": [{"value": "?", "label": "contract lost"}], "invalidRange": null, "flag": false, "count": -1})");
  EXPECT_EQ(Named(Vars({Example("customers.pmml")}), "contract"), expected);
}

TEST(VarsJson, OfALabelledNumericVariable) {
  const json satisfaction = Named(Vars({Example("customers.pmml")}), "satisfaction");
  EXPECT_EQ(satisfaction.at("type"), "categorical");
  EXPECT_EQ(satisfaction.at("valueType"), "numeric");
  EXPECT_EQ(satisfaction.at("values"), json::parse("[1, 2, 3, 4, 5]"));
  EXPECT_EQ(satisfaction.at("labels"), json::parse(R"(["very low", "low", "neither, nor", "high", "very high"])"));
  EXPECT_EQ(satisfaction.at("missingValues"),
            json::parse(R"([{"value": 8, "label": "no answer"}, {"value": 9, "label": "not asked"}])"));
}

TEST(VarsJson, AnUnlabelledListHasAnEmptyListOfLabels) {
  EXPECT_EQ(Named(Vars({Example("customers.pmml")}), "region").at("labels"), json::array());
  EXPECT_EQ(Named(Vars({Example("survey.pmml")}), "heating").at("labels"), json::array());
}

TEST(VarsJson, BinsThatAreOnlyNumberedHaveNoLabels) {
  const json fee = Named(Vars({Example("customers.pmml"), "--bins"}), "fee");
  EXPECT_EQ(fee.at("binLabels"), json::array());
  EXPECT_EQ(fee.at("cutPoints"), json::parse("[9.99, 24.99, 49.99]"));
}

TEST(VarsJson, AnOpenLowerEndIsTheSystemMissingValueAndNull) {
  const json months = Named(Vars({Example("customers.pmml"), "--bins"}), "months");
  EXPECT_EQ(months.at("minimum"), nullptr);
  EXPECT_EQ(months.at("maximum"), std::numeric_limits<double>::max());
  EXPECT_EQ(Named(Vars({Example("travellers.pmml")}), "Größe").at("invalidRange"),
            json::parse(R"({"lower": null, "upper": 0})"));
}

TEST(VarsJson, ASystemMissingNumberIsNull) {
  EXPECT_EQ(Named(Vars({Example("survey.pmml")}), "income").at("missingValues"),
            json::parse(R"([{"value": null, "label": "not computed"}, {"value": -7, "label": "refused"}])"));
  const json variables = VarsOf(
      "<DataField name='x' optype='categorical' dataType='double'><Value value='NaN'/>"
      "<Value value='1.5'/></DataField>");
  EXPECT_EQ(variables[0].at("values"), json::parse("[null, 1.5]"));
}

TEST(VarsJson, NumbersReadBackAsTheSameDoubles) {
  const std::vector<std::string> numbers{
      "0.1", "-0",  "1e-300",           "2.2250738585072014e-308", "1.7976931348623157e308", "1e22",
      "3",   "-17", "9007199254740993", "123456789012345680000",   "0.30000000000000004"};
  std::string values;
  for (const std::string& number : numbers) values += "<Value value='" + number + "'/>";
  const json variables =
      VarsOf("<DataField name='x' optype='categorical' dataType='double'>" + values + "</DataField>");
  ASSERT_EQ(variables[0].at("values").size(), numbers.size());
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    EXPECT_EQ(variables[0].at("values")[i].get<double>(), std::stod(numbers[i])) << numbers[i];
  }
}

TEST(VarsJson, WholeNumbersStandWithoutAFraction) {
  const ToolResult result = RunTool({"vars", "--json", "--bins", Example("customers.pmml")});
  EXPECT_THAT(result.out, HasSubstr("\"minimum\": 18,\n"));
}

TEST(VarsJson, NamesOfAllScriptsComeThroughInEveryLocale) {
  const std::vector<std::string> expected{"Größe", "вес",  "ηλικία",         "職業",   "성별",
                                          "البلد", "भाषा", "fe\u0301erique", "𝒙 mood", "arrival"};
  for (const char* locale : {"C", "POSIX", "de_DE.ISO-8859-1", "C.UTF-8"}) {
    const ToolResult result = RunTool(ToolCall{.arguments = {"vars", "--json", Example("travellers.pmml")},
                                               .environment = {{"LC_ALL", locale}, {"LANG", locale}}});
    EXPECT_EQ(result.exitCode, 0) << locale << result;
    EXPECT_EQ(Names(json::parse(result.out)), expected) << locale;
  }
}

TEST(VarsJson, ControlCharactersAreEscapedAndReadBack) {
  const TempFolder folder;
  const std::string file =
      WriteFile(folder.File("x.pmml"),
                "<?xml version='1.1'?><PMML><DataDictionary><DataField name='a&#x1b;[31m&#x9b;&#x7f;&#x202e;&#x2028;b' "
                "optype='continuous' dataType='double'/></DataDictionary></PMML>");
  const ToolResult result = RunTool({"vars", "--json", file});
  EXPECT_THAT(result.out, HasSubstr(R"("a\u001b[31m\u009b\u007f\u202e\u2028b")")) << result;
  EXPECT_EQ(json::parse(result.out).at("variables")[0].at("name"), "a\x1b[31m\u009b\x7f\u202e\u2028b");
}

TEST(VarsJson, OfADocumentWithoutFieldsHasAnEmptyList) { EXPECT_EQ(VarsOf(""), json::array()); }

TEST(VarsJson, NamesStandardInputAsItWasGiven) {
  const ToolResult result =
      RunTool(ToolCall{.arguments = {"vars", "--json", "-"}, .input = "<PMML><DataDictionary/></PMML>"});
  EXPECT_EQ(json::parse(result.out), json::parse(R"({"file": "-", "kind": "pmml", "variables": []})"));
}

TEST(Fields, AreTakenInTheOrderOfTheDocument) {
  EXPECT_THAT(Names(Vars({Example("customers.pmml"), "--fields", "left,age"})), ElementsAre("age", "left"));
}

TEST(Fields, MayBeGivenSeveralTimes) {
  EXPECT_THAT(Names(Vars({"--fields", "left", Example("customers.pmml"), "--fields", "age,fee", "--fields=age"})),
              ElementsAre("age", "fee", "left"));
}

TEST(Fields, MayHaveCommasAndQuotesInTheirNames) {
  EXPECT_THAT(Names(Vars({Example("survey.pmml"), "--fields", "id,\"q1, first part\",tenure"})),
              ElementsAre("id", "q1, first part", "tenure"));
  const std::string field = "<DataField name='\"a\",[b]' optype='continuous' dataType='double'/>";
  EXPECT_EQ(VarsOf(field, {"--fields", "\"\"\"a\"\",[b]\""}).size(), 1u);
}

TEST(Fields, InBracketsAreNames) {
  EXPECT_EQ(VarsOf("<DataField name='[a' optype='continuous' dataType='double'/>"
                   "<DataField name='b]' optype='continuous' dataType='double'/>",
                   {"--fields", "[a,b]"})
                .size(),
            2u);
}

TEST(Fields, ThatDoNotExistAreNotedOnceAndForgiven) {
  const ToolResult result =
      RunTool({"vars", "--json", Example("survey.pmml"), "--fields", "nobody,age,no\x1b one", "--fields", "nobody"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_EQ(result.err, "rqxml: note: no field is named \"nobody\" in " + Example("survey.pmml") +
                            "\nrqxml: note: no field is named \"no\\x1b one\" in " + Example("survey.pmml") + "\n");
  EXPECT_THAT(Names(json::parse(result.out)), ElementsAre("age"));
}

TEST(Fields, ThatDoNotExistAreSummedUpAfterTen) {
  const auto notesOn = [](int count) {
    std::string names = "age";
    for (int i = 0; i < count; ++i) names += ",none" + std::to_string(i);
    const ToolResult result = RunTool({"vars", Example("survey.pmml"), "--fields", names});
    EXPECT_EQ(result.exitCode, 0) << result;
    return result.err;
  };
  const std::string tenth = "no field is named \"none9\" in " + Example("survey.pmml") + "\n";
  EXPECT_THAT(notesOn(10), ::testing::EndsWith(tenth));
  EXPECT_THAT(notesOn(11), ::testing::EndsWith(tenth + "rqxml: note: 1 more name of --fields belongs to no field\n"));
  EXPECT_THAT(notesOn(1000),
              ::testing::EndsWith(tenth + "rqxml: note: 990 more names of --fields belong to no field\n"));
}

TEST(Fields, ThatAreNotNamedNeedNoBins) {
  EXPECT_THAT(RunTool({"vars", Example("survey.pmml"), "--bins"}).err, HasSubstr("DataField \"id\""));
  const json document = Vars({Example("survey.pmml"), "--bins", "--fields", "age,income,state"});
  EXPECT_EQ(Named(document, "income").at("cutPoints"), json::parse("[1500.5, 4200]"));
  EXPECT_EQ(Named(document, "state").at("values").size(), 16u);
}

}  // namespace
