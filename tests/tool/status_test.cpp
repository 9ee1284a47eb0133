#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <regex>
#include <sstream>
#include <string>

#include "tests/support/files.h"
#include "tests/tool/run_tool.h"

using nlohmann::json;
using rqtest::ReadFile;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::ToolResult;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

// The codes that the library's header declares, and the flag that its comments give them.
std::map<long, bool> DeclaredCodes() {
  const std::string header = ReadFile(SourceFile("rqxml/xml/RQXStatusCodes.h"));
  const std::regex pattern(R"(\w+ = (\d+),?\s*///< ([^\n]*))");
  std::map<long, bool> codes;
  for (std::sregex_iterator i(header.begin(), header.end(), pattern), end; i != end; ++i) {
    codes[std::stol((*i)[1])] = (*i)[2].str().find("(flag true)") != std::string::npos;
  }
  return codes;
}

json AllCodes() { return json::parse(RunTool({"status", "--json"}).out).at("codes"); }

TEST(Status, ExplainsExactlyTheCodesThatTheLibraryHasWithTheirFlags) {
  std::map<long, bool> explained;
  for (const json& entry : AllCodes()) explained[entry.at("code")] = entry.at("flag");
  const std::map<long, bool> declared = DeclaredCodes();
  EXPECT_GE(declared.size(), 23u);
  EXPECT_EQ(explained, declared);
}

TEST(Status, EachCodeHasAMeaningACauseAndAnAdvice) {
  for (const json& entry : AllCodes()) {
    EXPECT_THAT(entry.at("meaning").get<std::string>(), ::testing::Not(IsEmpty())) << entry;
    EXPECT_THAT(entry.at("whatToDo").get<std::string>(), ::testing::Not(IsEmpty())) << entry;
    EXPECT_GE(entry.at("causes").size(), 1u) << entry;
    for (const json& cause : entry.at("causes")) EXPECT_FALSE(cause.get<std::string>().empty()) << entry;
  }
}

TEST(Status, TheTableHasALineForEachCode) {
  const ToolResult result = RunTool({"status"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.err, IsEmpty());
  for (const auto& [code, flag] : DeclaredCodes()) {
    EXPECT_THAT(result.out, HasSubstr("\n " + std::to_string(code) + "  " + (flag ? "true " : "false") + "  "));
  }
}

TEST(Status, OneCodeIsToldWithMeaningFlagCausesAndWhatToDo) {
  const ToolResult result = RunTool({"status", "120"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.out, AllOf(StartsWith("120: there is no parameter of the requested name\nflag: true\n"),
                                HasSubstr("\nCauses:\n  - "), HasSubstr("\nWhat to do:\n  ")));
}

TEST(Status, ZeroIsGood) {
  const ToolResult result = RunTool({"status", "0"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.out, StartsWith("0: good, nothing failed\nflag: false\n"));
  EXPECT_EQ(json::parse(RunTool({"status", "0", "--json"}).out).at("code"), 0);
}

TEST(Status, OneCodeAsJsonIsTheEntryOfTheWholeTable) {
  const json one = json::parse(RunTool({"status", "--json", "109"}).out);
  for (const json& entry : AllCodes()) {
    if (entry.at("code") == 109) {
      EXPECT_EQ(entry, one);
    }
  }
  EXPECT_EQ(one.at("code"), 109);
  EXPECT_EQ(one.at("flag"), false);
}

TEST(Status, FitsAnEightyColumnTerminal) {
  std::string text = RunTool({"status"}).out;
  for (const auto& entry : DeclaredCodes()) text += RunTool({"status", std::to_string(entry.first)}).out;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 80u) << line;
}

}  // namespace
