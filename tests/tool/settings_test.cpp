#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/support/files.h"
#include "tests/support/temp_folder.h"
#include "tests/tool/run_tool.h"

// The order of the members is part of what is tested.
using json = nlohmann::ordered_json;
using rqtest::HasTerminals;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::TempFolder;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WriteFile;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

const std::string kRegression = SourceFile("examples/settings/regression.xml");
const std::string kEverything = SourceFile("examples/settings/everything.xml");

std::string Task(const std::string& parameters) {
  return "<PMML><MiningBuildTask><Extension><Parameters>" + parameters +
         "</Parameters></Extension></MiningBuildTask><DataDictionary/></PMML>";
}

std::string Text(const std::string& document) {
  const ToolResult result = RunTool(ToolCall{.arguments = {"settings", "-"}, .input = document});
  EXPECT_EQ(result.exitCode, 0) << result;
  return result.out;
}

json Settings(const std::string& file) {
  const ToolResult result = RunTool({"settings", "--json", "--allow-dtd", file});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.err, IsEmpty());
  return json::parse(result.out);
}

std::vector<std::string> Members(const json& object) {
  std::vector<std::string> members;
  for (const auto& [name, value] : object.items()) members.push_back(name);
  return members;
}

json Named(const json& nodes, const std::string& name) {
  for (const json& node : nodes) {
    if (node.at("name") == name) return node;
  }
  ADD_FAILURE() << "nothing is named " << name;
  return {};
}

TEST(Settings, ShowsParametersNestedOnesMatricesRolesAndVariables) {
  const ToolResult result = RunTool({"settings", kRegression});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out,
              StartsWith(kRegression + ": settings document\n\nParameters:\n"
                                       "  modelName (string) = Mietspiegel: rents of flats\n"
                                       "  method (enum) = stepwise\n"
                                       "  target (fieldName) = rent\n"
                                       "  inputs (fieldName) = [size, built, district, heating, balcony]\n"));
  EXPECT_THAT(result.out, HasSubstr("\n  quantiles (double) = [0.05, 0.5, 0.95]\n"
                                    "  stepping:\n"
                                    "    direction (enum) = forward\n"));
  EXPECT_THAT(result.out, HasSubstr("\n    limits:\n"
                                    "      steps (integer) = 25\n"
                                    "      effects (integer) = 12\n"
                                    "      minutes (double) = (system-missing)\n"
                                    "    forced (fieldName) = [size]\n"));
  EXPECT_THAT(result.out, HasSubstr("\n  hypotheses: matrix\n    [0, 1, 0]\n    [0, 1, -10]\n"));
  EXPECT_THAT(result.out, HasSubstr("\nRoles:\n"
                                    "  targets: [rent]\n"
                                    "  categorical responses: []\n"
                                    "  continuous responses: [rent]\n"
                                    "  inputs: [size, built, district, heating, balcony]\n"
                                    "  categorical inputs: [district, heating, balcony]\n"
                                    "  continuous inputs: [size, built]\n"
                                    "  frequency weight: [flats]\n"
                                    "\nVariables:\n"));
  EXPECT_THAT(result.out, HasSubstr("\n3  district  District "));
  EXPECT_THAT(result.out, HasSubstr("\nDerived variables:\n"));
  EXPECT_THAT(result.out,
              HasSubstr("\n4  log rent             Logarithm of the rent  continuous   numeric  0 .. 9.91\n"));
}

TEST(Settings, TellsWhatCannotBeReadWithItsStatusAndGoesOn) {
  const ToolResult result = RunTool({"settings", "--allow-dtd", kEverything});
  EXPECT_EQ(result.exitCode, 0) << result;
  for (const char* line : {
           "  of no known type (int) = 7",
           "  without type = 7",
           "  empty (string) = \"\"",
           "  negative (integer): \"-1\" is not read (status 109)",
           "  infinite (double): \"INF\" is not read (status 109)",
           "  shouted (boolean): \"TRUE\" is not read (status 109)",
           "  twice (integer) = 1",
           "  twice (integer): hidden by one of the same name before it",
           "  (without name) (integer): out of reach without a name",
           "  list with holes (string) = [first, third]",
           "  list with a bad item (integer): not read (status 109)",
           "  list with an item without value (string): not read (status 123)",
           "  list that does not say so (integer) = [5]",
           "  list in word only (integer) = 5",
           "  without value (integer): not read (status 123)",
           "      twice (integer) = 4",
           "      unit: matrix",
           "        [0, 1]",
           "  hollow: empty",
           "    [x, \"\", 4]",
           "  nothing: matrix without rows",
           "  categorical inputs: not read (status 122)",
           "  continuous inputs: not read (status 108)",
       }) {
    EXPECT_THAT(result.out, HasSubstr(std::string("\n") + line + '\n'));
  }
  EXPECT_THAT(result.out, Not(HasSubstr("misspelled")));
  EXPECT_THAT(result.out, Not(HasSubstr("never seen")));
}

TEST(Settings, LeavesOutWhatTheDocumentDoesNotHave) {
  EXPECT_EQ(Text(Task("<Parameter name='a' value='b'/>")),
            "standard input: settings document\n\nParameters:\n  a = b\n");
  EXPECT_EQ(Text(Task("")), "standard input: settings document\n");
}

TEST(Settings, TextsOfTheDocumentCannotSteerTheTerminal) {
  const std::string text =
      "<?xml version='1.1'?>" + Task(
                                    "<Parameter name='a&#x1b;[31m' type='t&#x9b;' value='v&#x202e;&#xa;b'/>"
                                    "<ComplexParameter name='c&#x1b;'/><MatrixParmeter name='m&#xd;'><ArrayParameter>"
                                    "<Value value='&#x7f;'/></ArrayParameter></MatrixParmeter>");
  EXPECT_EQ(Text(text),
            "standard input: settings document\n\nParameters:\n"
            "  a\\x1b[31m (t\\u{9b}) = v\\u{202e}\\nb\n  c\\x1b: empty\n  m\\r: matrix\n    [\\x7f]\n");
}

TEST(Settings, TableIsFittedToTheTerminalUnlessItShallBeWide) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  const auto widest = [](const std::vector<std::string>& arguments) {
    const ToolResult result = RunTool(ToolCall{.arguments = arguments, .terminalColumns = 40});
    EXPECT_EQ(result.exitCode, 0) << result;
    return result.out.find("stove = stove") != std::string::npos;
  };
  EXPECT_FALSE(widest({"settings", kRegression}));
  EXPECT_TRUE(widest({"settings", kRegression, "--wide"}));
}

TEST(SettingsJson, HasParametersRolesAndBothListsOfVariables) {
  const json document = Settings(kRegression);
  EXPECT_THAT(Members(document), ElementsAre("file", "kind", "parameters", "roles", "variables", "derived"));
  EXPECT_EQ(document.at("file"), kRegression);
  EXPECT_EQ(document.at("kind"), "settings");
  EXPECT_EQ(document.at("parameters").size(), 18u);
  EXPECT_EQ(document.at("variables").size(), 7u);
  EXPECT_EQ(document.at("derived").size(), 5u);
}

TEST(SettingsJson, OfEachKindOfParameter) {
  const json nodes = Settings(kRegression).at("parameters");
  EXPECT_EQ(Named(nodes, "maxIterations"), json::parse(R"({"name": "maxIterations", "kind": "parameter",
    "hidden": false, "type": "integer", "list": false, "value": 200, "status": null})"));
  EXPECT_EQ(Named(nodes, "intercept").at("value"), true);
  EXPECT_EQ(Named(nodes, "confidenceLevel").at("value"), 0.95);
  EXPECT_EQ(Named(nodes, "modelName").at("value"), "Mietspiegel: rents of flats");
  EXPECT_EQ(Named(nodes, "quantiles"), json::parse(R"({"name": "quantiles", "kind": "parameter",
    "hidden": false, "type": "double", "list": true, "value": [0.05, 0.5, 0.95], "status": null})"));
  EXPECT_EQ(Named(nodes, "CatResponses"), json::parse(R"({"name": "CatResponses", "kind": "parameter",
    "hidden": false, "type": "fieldName", "list": true, "value": null, "status": 123})"));
  EXPECT_EQ(Named(nodes, "contrasts of district"), json::parse(R"({"name": "contrasts of district",
    "kind": "matrix", "hidden": false, "rows": [[1, -0.5, -0.5], [0, 1, -1]]})"));
  const json stepping = Named(nodes, "stepping");
  EXPECT_THAT(Members(stepping), ElementsAre("name", "kind", "hidden", "parameters"));
  EXPECT_EQ(stepping.at("kind"), "complex");
  const json limits = Named(stepping.at("parameters"), "limits").at("parameters");
  EXPECT_EQ(Named(limits, "effects").at("value"), 12);
  EXPECT_EQ(Named(limits, "minutes"), json::parse(R"({"name": "minutes", "kind": "parameter",
    "hidden": false, "type": "double", "list": false, "value": null, "status": null})"));
}

TEST(SettingsJson, OfEveryOddity) {
  const json nodes = Settings(kEverything).at("parameters");
  EXPECT_EQ(Named(nodes, "fraction").at("status"), 109);
  EXPECT_EQ(Named(nodes, "fraction").at("value"), nullptr);
  EXPECT_EQ(Named(nodes, "list with a bad item").at("value"), nullptr);
  EXPECT_EQ(Named(nodes, "list with a bad item").at("status"), 109);
  EXPECT_EQ(Named(nodes, "without type").at("type"), nullptr);
  EXPECT_EQ(Named(nodes, "without type").at("value"), "7");
  EXPECT_EQ(Named(nodes, "of no known type").at("type"), "int");
  EXPECT_EQ(Named(nodes, "ragged").at("rows"), json::parse(R"([["1", "2.5", "-3"], [], ["x", "", "4"]])"));
  EXPECT_EQ(Named(nodes, "nothing").at("rows"), json::array());
  EXPECT_EQ(Named(nodes, "hollow").at("parameters"), json::array());
  EXPECT_EQ(Named(nodes, "two lines").at("value"), "a line break in an attribute is a blank, \nwritten so it stays");
  EXPECT_EQ(Named(nodes, "escapes").at("value"), "<&> \"' AB Müller & Söhne");
  EXPECT_EQ(Named(nodes, "😀").at("value"), "😀 beyond the basic plane 𝕏");
  std::vector<json> hidden;
  for (const json& node : nodes) {
    if (node.at("hidden").get<bool>()) hidden.push_back({node.at("name"), node.at("value"), node.at("status")});
  }
  EXPECT_THAT(hidden, ElementsAre(json::parse(R"(["twice", null, null])"), json::parse("[null, null, null]")));
}

TEST(SettingsJson, OfTheRoles) {
  EXPECT_EQ(Settings(kRegression).at("roles"), json::parse(R"({
    "target": {"names": ["rent"], "status": null},
    "CatResponses": {"names": [], "status": null},
    "ContResponses": {"names": ["rent"], "status": null},
    "inputs": {"names": ["size", "built", "district", "heating", "balcony"], "status": null},
    "CatPredictors": {"names": ["district", "heating", "balcony"], "status": null},
    "ContPredictors": {"names": ["size", "built"], "status": null},
    "FrequencyWeightVar": {"names": ["flats"], "status": null}})"));
  const json everything = Settings(kEverything).at("roles");
  EXPECT_EQ(everything.at("CatPredictors"), json::parse(R"({"names": [], "status": 122})"));
  EXPECT_EQ(everything.at("ContPredictors"), json::parse(R"({"names": [], "status": 108})"));
}

TEST(SettingsJson, HasTheVariablesAsVarsHasThem) {
  for (const std::string& file : {kRegression, kEverything}) {
    const json vars = json::parse(RunTool({"vars", "--json", "--derived", "--allow-dtd", file}).out);
    const json settings = Settings(file);
    EXPECT_EQ(settings.at("variables"), vars.at("variables"));
    EXPECT_EQ(settings.at("derived"), vars.at("derived"));
  }
}

TEST(SettingsJson, HasTheValuesThatGetGives) {
  int compared = 0;
  for (const std::string& file : {kRegression, kEverything}) {
    const json document = Settings(file);
    for (const json& node : document.at("parameters")) {
      if (node.at("hidden").get<bool>()) continue;
      ++compared;
      const ToolResult result = RunTool({"get", "--json", "--allow-dtd", file, node.at("name")});
      if (node.at("kind") == "parameter" && !node.at("status").is_null()) {
        EXPECT_EQ(result.exitCode, 1) << node;
        EXPECT_THAT(result.err, HasSubstr("\n  status " + node.at("status").dump() + ": ")) << node;
        continue;
      }
      const std::string member = node.at("kind") == "matrix"    ? "rows"
                                 : node.at("kind") == "complex" ? "parameters"
                                                                : "value";
      EXPECT_EQ(json::parse(result.out).at("value"), node.at(member)) << node;
    }
  }
  EXPECT_GT(compared, 50);
}

}  // namespace
