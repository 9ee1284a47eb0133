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
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

const std::string kRegression = SourceFile("examples/settings/regression.xml");
const std::string kEverything = SourceFile("examples/settings/everything.xml");

ToolResult Get(const std::string& file, std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {"get", "--allow-dtd", file});
  return RunTool(arguments);
}

// What was asked for, and what is printed.
struct Row {
  std::string file;
  std::vector<std::string> arguments;
  std::string out;
};

TEST(Get, PrintsAParameterByItsShapeAndType) {
  const std::vector<Row> rows{
      {kRegression, {"method"}, "stepwise\n"},
      {kRegression, {"intercept"}, "true\n"},
      {kRegression, {"seed"}, "20240301\n"},
      {kRegression, {"confidenceLevel"}, "0.95\n"},
      {kRegression, {"quantiles"}, "0.05\n0.5\n0.95\n"},
      {kRegression, {"inputs"}, "size\nbuilt\ndistrict\nheating\nbalcony\n"},
      {kRegression, {"hypotheses"}, "[0, 1, 0]\n[0, 1, -10]\n"},
      {kRegression,
       {"stepping"},
       "direction (enum) = forward\nentry (double) = 0.05\nremoval (double) = 0.1\nlimits:\n  steps (integer) = 25\n"
       "  effects (integer) = 12\n  minutes (double) = (system-missing)\nforced (fieldName) = [size]\n"},
      {kEverything, {"padded"}, "7\n"},
      {kEverything, {"twice"}, "1\n"},
      {kEverything, {"empty"}, "\n"},
      {kEverything, {"not a number"}, "(system-missing)\n"},
      {kEverything, {"beyond unsigned"}, "1\n"},
      {kEverything, {"of no known type"}, "7\n"},
      {kEverything, {"list with holes"}, "first\nthird\n"},
      {kEverything, {"list and value"}, "6\n7\n"},
      {kEverything, {"list in word only"}, "5\n"},
      {kEverything, {"ragged"}, "[1, 2.5, -3]\n[]\n[x, \"\", 4]\n"},
      {kEverything, {"nothing"}, ""},
      {kEverything, {"hollow"}, ""},
      {kEverything, {"サイズ"}, "大きさ\n"},
  };
  for (const Row& row : rows) {
    const ToolResult result = Get(row.file, row.arguments);
    EXPECT_EQ(result.exitCode, 0) << result;
    EXPECT_EQ(result.out, row.out) << row.arguments.front();
    EXPECT_THAT(result.err, IsEmpty());
  }
}

TEST(Get, ReadsAParameterAsItIsTold) {
  const std::vector<Row> rows{
      {kRegression, {"seed", "--as", "string"}, "20240301\n"},
      {kRegression, {"seed", "--as", "double"}, "20240301\n"},
      {kRegression, {"seed", "--as", "int"}, "20240301\n"},
      {kRegression, {"seed", "--as", "array"}, "20240301\n"},
      {kRegression, {"seed", "--as=type"}, "integer\n"},
      {kRegression, {"hypotheses", "--as", "matrix"}, "[0, 1, 0]\n[0, 1, -10]\n"},
      {kEverything, {"fraction", "--as", "string"}, "3.5\n"},
      {kEverything, {"fraction", "--as", "double"}, "3.5\n"},
      {kEverything, {"a boolean", "--as", "bool"}, "false\n"},
      {kEverything, {"of no known type", "--as", "int"}, "7\n"},
      {kEverything, {"list and value", "--as", "int"}, "5\n"},
      {kEverything, {"empty", "--as", "array"}, ""},
      {kEverything, {"a string", "--as", "type"}, "string\n"},
      {kEverything, {"a double", "--as", "type"}, "double\n"},
      {kEverything, {"a boolean", "--as", "type"}, "boolean\n"},
      {kEverything, {"an enum", "--as", "type"}, "enum\n"},
      {kEverything, {"a field name", "--as", "type"}, "fieldName\n"},
      {kEverything, {"of no known type", "--as", "type"}, "unknown\n"},
      {kEverything, {"without type", "--as", "type"}, "unknown\n"},
      {kEverything, {"without value", "--as", "type"}, "integer\n"},
  };
  for (const Row& row : rows) {
    const ToolResult result = Get(row.file, row.arguments);
    EXPECT_EQ(result.exitCode, 0) << result;
    EXPECT_EQ(result.out, row.out) << ::testing::PrintToString(row.arguments);
  }
}

TEST(Get, LooksIntoComplexParameters) {
  const std::vector<Row> rows{
      {kRegression, {"direction", "--scope", "stepping"}, "forward\n"},
      {kRegression, {"steps", "--scope", "stepping/limits"}, "25\n"},
      {kRegression, {"steps", "--scope", "stepping", "--scope", "limits"}, "25\n"},
      {kRegression, {"treatment", "--scope", "missing values"}, "listwise\n"},
      {kEverything, {"twice", "--scope", "outer"}, "3\n"},
      {kEverything, {"twice", "--scope", "outer/inner"}, "4\n"},
      {kEverything, {"unit", "--scope", "outer/inner"}, "[1, 0]\n[0, 1]\n"},
      {kEverything, {"inner", "--scope", "outer"}, "twice (integer) = 4\nunit: matrix\n  [1, 0]\n  [0, 1]\n"},
  };
  for (const Row& row : rows) {
    const ToolResult result = Get(row.file, row.arguments);
    EXPECT_EQ(result.exitCode, 0) << result;
    EXPECT_EQ(result.out, row.out) << ::testing::PrintToString(row.arguments);
  }
}

TEST(Get, TakesAScopeWithASlashInItsNameWhole) {
  const std::string document =
      "<PMML><MiningBuildTask><Extension><Parameters>"
      "<ComplexParameter name='a/b'><Parameter name='x' value='whole'/><ComplexParameter name=''>"
      "<Parameter name='x' value='nameless'/></ComplexParameter></ComplexParameter>"
      "<ComplexParameter name='a'><ComplexParameter name='b'><Parameter name='x' value='two'/></ComplexParameter>"
      "</ComplexParameter></Parameters></Extension></MiningBuildTask><DataDictionary/></PMML>";
  const auto get = [&](std::vector<std::string> scopes) {
    std::vector<std::string> arguments{"get", "-", "x"};
    for (const std::string& scope : scopes) arguments.insert(arguments.end(), {"--scope", scope});
    return RunTool(ToolCall{.arguments = arguments, .input = document}).out;
  };
  EXPECT_EQ(get({"a/b"}), "whole\n");
  EXPECT_EQ(get({"a", "b"}), "two\n");
  EXPECT_EQ(get({"a/b", ""}), "nameless\n");
}

TEST(Get, GivesJson) {
  const auto value = [](const std::string& file, std::vector<std::string> arguments) {
    arguments.push_back("--json");
    json document = json::parse(Get(file, arguments).out);
    EXPECT_EQ(document.at("file"), file);
    document.erase("file");
    return document;
  };
  EXPECT_EQ(value(kRegression, {"steps", "--scope", "stepping/limits"}),
            json::parse(R"({"scope": ["stepping", "limits"], "name": "steps", "as": "int", "value": 25})"));
  EXPECT_EQ(value(kRegression, {"minutes", "--scope", "stepping/limits"}).at("value"), nullptr);
  EXPECT_EQ(value(kRegression, {"quantiles"}),
            json::parse(R"({"scope": [], "name": "quantiles", "as": "array", "value": [0.05, 0.5, 0.95]})"));
  EXPECT_EQ(value(kRegression, {"seed", "--as", "array"}).at("value"), json::parse("[20240301]"));
  EXPECT_EQ(value(kRegression, {"seed", "--as", "string"}).at("value"), "20240301");
  EXPECT_EQ(value(kRegression, {"seed", "--as", "type"}),
            json::parse(R"({"scope": [], "name": "seed", "as": "type", "value": "integer"})"));
  EXPECT_EQ(value(kRegression, {"intercept"}).at("value"), true);
  EXPECT_EQ(value(kRegression, {"hypotheses"}),
            json::parse(R"({"scope": [], "name": "hypotheses", "as": "matrix", "value": [[0, 1, 0], [0, 1, -10]]})"));
  EXPECT_EQ(value(kEverything, {"hollow"}),
            json::parse(R"({"scope": [], "name": "hollow", "as": "complex", "value": []})"));
}

TEST(Get, TextsOfTheDocumentCannotSteerTheTerminal) {
  const std::string document =
      "<?xml version='1.1'?><PMML><MiningBuildTask><Extension><Parameters><Parameter name='x' value='&#x1b;[31m'/>"
      "</Parameters></Extension></MiningBuildTask><DataDictionary/></PMML>";
  EXPECT_EQ(RunTool(ToolCall{.arguments = {"get", "-", "x"}, .input = document}).out, "\\x1b[31m\n");
}

// What was asked for, and what is told.
struct RefusedRow {
  std::string file;
  std::vector<std::string> arguments;
  std::string message;  // begins behind the file's name
  std::string status;
  std::string hint;
};

TEST(Get, TellsPlaceParameterReasonStatusAndHintAndPrintsNothing) {
  const std::vector<RefusedRow> rows{
      {kRegression, {"nope"}, ":11:19: there is no parameter \"nope\" in the parameters of the task\n", "120", "lists"},
      {kRegression, {"Method"}, ":11:19: there is no parameter \"Method\"", "120", "exactly as written"},
      {kRegression, {"nope", "--as", "type"}, ":11:19: there is no parameter \"nope\"", "120", "lists"},
      {kRegression, {"steps"}, ":11:19: there is no parameter \"steps\"", "120", "lists"},
      {kRegression, {"hypotheses", "--as", "array"}, "no parameter \"hypotheses\"", "120", "it is a matrix"},
      {kRegression, {"seed", "--as", "matrix"}, "no matrix \"seed\"", "120", "a value or a list"},
      {kRegression, {"stepping", "--as", "string"}, "no parameter \"stepping\"", "120", "complex parameter"},
      {kRegression,
       {"x", "--scope", "stepping/nope"},
       ":59:43: there is no complex parameter \"nope\" in the complex parameter \"stepping\"\n",
       "120",
       "lists"},
      {kRegression, {"x", "--scope", "seed"}, "no complex parameter \"seed\"", "120", "a value or a list"},
      {kRegression,
       {"method", "--as", "int"},
       ":13:64: Parameter \"method\": value=\"stepwise\" is no integer of zero or more\n",
       "109",
       "--as string"},
      {kRegression, {"method", "--as", "double"}, "value=\"stepwise\" is no finite number\n", "109", "--as string"},
      {kRegression, {"seed", "--as", "bool"}, "is neither \"true\" nor \"false\"\n", "109", "--as string"},
      {kRegression, {"inputs", "--as", "string"}, ":15:65: Parameter \"inputs\": it is a list", "121", "--as array"},
      {kRegression, {"CatResponses"}, "Parameter \"CatResponses\": its list has no items\n", "123", "value"},
      {kEverything, {"fraction"}, "value=\"3.5\" is no integer of zero or more\n", "109", "--as string"},
      {kEverything, {"infinite"}, "value=\"INF\" is no finite number\n", "109", "--as string"},
      {kEverything, {"negative", "--as", "array"}, "\"negative\": value=\"-1\" is no integer", "109", "type"},
      {kEverything, {"list with a bad item"}, ": item 2 of its list: value=\"-2\" is no integer", "109", "type"},
      {kEverything, {"list with an item without value"}, "an item of its list has no \"value\"\n", "123", "each item"},
      {kEverything, {"without value"}, "it has neither \"value\" nor a child \"ListValue\"\n", "123", "value"},
      {kEverything, {"misspelled"}, "there is no parameter \"misspelled\"", "120", "lists"},
      {kEverything, {"never seen"}, "there is no parameter \"never seen\"", "120", "lists"},
  };
  for (const RefusedRow& row : rows) {
    for (const bool asJson : {false, true}) {
      std::vector<std::string> arguments = row.arguments;
      if (asJson) arguments.push_back("--json");
      const ToolResult result = Get(row.file, arguments);
      EXPECT_EQ(result.exitCode, 1) << result;
      EXPECT_THAT(result.out, IsEmpty());
      EXPECT_THAT(result.err, AllOf(StartsWith("rqxml: " + row.file + ":"), HasSubstr(row.message),
                                    HasSubstr("\n  status " + row.status + ": ")));
      EXPECT_THAT(result.err.substr(result.err.find("\n  hint: ")), HasSubstr(row.hint)) << result;
    }
  }
}

}  // namespace
