#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/tool/run_tool.h"

using json = nlohmann::ordered_json;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::ToolCall;
using rqtest::ToolResult;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

const std::string kRegression = SourceFile("examples/settings/regression.xml");
const std::string kEverything = SourceFile("examples/settings/everything.xml");

json Vars(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"vars", "--json", "--allow-dtd"});
  const ToolResult result = RunTool(arguments);
  EXPECT_EQ(result.exitCode, 0) << result;
  return json::parse(result.out);
}

json Named(const json& variables, const std::string& name) {
  for (const json& variable : variables) {
    if (variable.at("name") == name) return variable;
  }
  ADD_FAILURE() << "no variable " << name;
  return {};
}

std::vector<std::string> Names(const json& variables) {
  std::vector<std::string> names;
  for (const json& variable : variables) names.push_back(variable.at("name"));
  return names;
}

TEST(SettingsVars, ASettingsDocumentIsKnownByItsBuildTask) {
  EXPECT_EQ(Vars({kRegression}).at("kind"), "settings");
  EXPECT_EQ(Vars({SourceFile("examples/customers.pmml")}).at("kind"), "pmml");
  EXPECT_THAT(RunTool({"vars", kRegression}).out,
              StartsWith(kRegression + ": settings document, 7 variables\n\n#  Name      Label "));
}

TEST(SettingsVars, HaveRangeAndStorageWithoutBins) {
  const json expected = json::parse(R"({
    "index": 0, "name": "rent", "label": "Rent per month, €", "type": "continuous", "valueType": "numeric",
    "storage": 2, "role": 4, "minimum": 0, "maximum": 20000, "cutPoints": [], "binLabels": [], "values": [],
    "labels": [], "missingValues": [{"value": -1, "label": "not told"}], "invalidRange": null, "flag": false,
    "count": -1})");
  EXPECT_EQ(Named(Vars({kRegression}).at("variables"), "rent"), expected);
}

TEST(SettingsVars, TakeBinsFromTheTransformations) {
  const json rent = Named(Vars({kRegression, "--bins"}).at("variables"), "rent");
  EXPECT_EQ(rent.at("cutPoints"), json::parse("[600, 1200]"));
  EXPECT_EQ(rent.at("binLabels"), json::parse(R"(["low", "middle", "high"])"));
  EXPECT_EQ(rent.at("flag"), true);
}

TEST(SettingsVars, OfEveryOddity) {
  const json variables = Vars({kEverything}).at("variables");
  EXPECT_THAT(Names(variables), ElementsAre("height", "weight", "count", "colour", "größe", "day", "hour", "moment"));
  EXPECT_EQ(Named(variables, "height").at("minimum"), 2.2250738585072014e-308);
  EXPECT_EQ(Named(variables, "height").at("invalidRange"), json::parse(R"({"lower": 251, "upper": 300})"));
  EXPECT_EQ(Named(variables, "colour").at("labels"), json::array());
  EXPECT_EQ(Named(variables, "moment").at("storage"), 6);
}

TEST(SettingsVars, DerivedOnesComeWhenTheyAreAskedFor) {
  EXPECT_FALSE(Vars({kRegression}).contains("derived"));
  const json derived = Vars({kRegression, "--derived"}).at("derived");
  EXPECT_THAT(Names(derived), ElementsAre("rent class", "size class", "epoch", "any number of flats", "log rent"));
  EXPECT_EQ(Named(derived, "log rent").at("maximum"), 9.91);
  EXPECT_EQ(Named(derived, "log rent").at("index"), 4);
  EXPECT_EQ(Named(derived, "rent class").at("values"), json::parse(R"(["low", "middle", "high"])"));
  EXPECT_THAT(RunTool({"vars", "--derived", kRegression}).out,
              ::testing::AllOf(StartsWith(kRegression + ": settings document, 7 variables and 5 derived variables\n"),
                               HasSubstr("\nDerived variables:\n\n#  Name ")));
}

TEST(SettingsVars, DerivedOnesMayHaveTheNameOfAField) {
  const std::string field = "Field name='a' optype='continuous' dataType='double'/>";
  const std::string document =
      "<PMML><MiningBuildTask><Extension><Parameters/></Extension></MiningBuildTask>"
      "<DataDictionary><Data" +
      field + "</DataDictionary><TransformationDictionary><Derived" + field + "</TransformationDictionary></PMML>";
  const ToolResult result = RunTool(ToolCall{.arguments = {"vars", "--json", "--derived", "-"}, .input = document});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_EQ(Names(json::parse(result.out).at("derived")), std::vector<std::string>{"a"});
}

TEST(SettingsVars, NamedFieldsAreShownWithTheRulesOfSettingsDocuments) {
  const json all = Vars({kRegression, "--bins", "--derived"});
  const json some = Vars({kRegression, "--bins", "--derived", "--fields", "log rent,size"});
  EXPECT_EQ(Names(some.at("variables")), std::vector<std::string>{"size"});
  EXPECT_EQ(Names(some.at("derived")), std::vector<std::string>{"log rent"});
  json expected = Named(all.at("variables"), "size");
  expected["index"] = 0;
  EXPECT_EQ(some.at("variables")[0], expected);
}

TEST(SettingsVars, NamesThatNothingHasAreNoted) {
  const ToolResult result = RunTool({"vars", kRegression, "--fields", "size,log rent,nobody"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.err, HasSubstr("no field is named \"log rent\""));
  EXPECT_THAT(result.err, HasSubstr("no field is named \"nobody\""));
  EXPECT_THAT(RunTool({"vars", kRegression, "--derived", "--fields", "size,log rent"}).err, IsEmpty());
}

}  // namespace
