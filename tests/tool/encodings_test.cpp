#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/tool/run_tool.h"

using nlohmann::json;
using rqtest::HasTerminals;
using rqtest::RunTool;
using rqtest::ToolCall;
using rqtest::ToolResult;
using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

namespace {

ToolResult InLocale(const std::string& locale, std::vector<std::string> arguments) {
  return RunTool(ToolCall{.arguments = std::move(arguments), .environment = {{"LC_ALL", locale}}});
}

TEST(Encodings, TellsTheEncodingsOfTheProcess) {
  const ToolResult result = InLocale("C.UTF-8", {"encodings"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_THAT(result.out, StartsWith("System encoding:    UTF-8\n"
                                     "Default converter:  UTF-8\n"
                                     "UTF-8 mode:         on\n\n"
                                     "Code page  Encoding "));
}

TEST(Encodings, TheSystemEncodingIsThatOfTheLocale) {
  EXPECT_EQ(json::parse(InLocale("C.UTF-8", {"encodings", "--json"}).out).at("systemEncoding"), "UTF-8");
  EXPECT_EQ(json::parse(InLocale("C", {"encodings", "--json"}).out).at("systemEncoding"), "CP1252");
}

TEST(Encodings, EachCodePageHasALineWithWhatItOpens) {
  const std::string text = RunTool({"encodings"}).out;
  const json pages = json::parse(RunTool({"encodings", "--json"}).out).at("codePages");
  std::vector<int> numbers;
  for (const json& page : pages) {
    numbers.push_back(page.at("number"));
    const std::string number = std::to_string(numbers.back());
    EXPECT_THAT(text,
                HasSubstr(std::string(9 - number.size(), ' ') + number + "  " + page.at("name").get<std::string>()));
  }
  EXPECT_THAT(numbers, ::testing::ElementsAre(932, 936, 949, 950, 1250, 1251, 1252, 1253, 1254, 1255, 1256, 1257, 1258,
                                              28591, 65001));
}

TEST(Encodings, ACodePageOpensTheEncodingOfItsStandardName) {
  const json pages = json::parse(RunTool({"encodings", "--json"}).out).at("codePages");
  const std::vector<std::string> expected{
      "Shift_JIS",    "GBK",          "EUC-KR",       "Big5",         "windows-1250", "windows-1251", "windows-1252",
      "windows-1253", "windows-1254", "windows-1255", "windows-1256", "windows-1257", "windows-1258", "ISO_8859-1:1987",
      "UTF-8"};
  ASSERT_EQ(pages.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(pages[i].at("iana"), expected[i]);
}

TEST(Encodings, TellsAboutOneByNumberOrByName) {
  const ToolResult result = RunTool({"encodings", "28591"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.out, AllOf(StartsWith("28591: ISO-8859-1\n"
                                           "IANA name: ISO_8859-1:1987\n"
                                           "MIME name: ISO-8859-1\n"
                                           "type: single-byte\n"
                                           "bytes: at least 1 for a character, at most 1 for a UTF-16 unit\n"
                                           "substitute: 3F\n"
                                           "\nAliases:\n  - "),
                                HasSubstr("\n  - latin1\n")));
  json byNumber = json::parse(RunTool({"encodings", "28591", "--json"}).out);
  json byName = json::parse(RunTool({"encodings", "Latin1", "--json"}).out);
  EXPECT_EQ(byNumber.at("given"), "28591");
  EXPECT_EQ(byName.at("given"), "Latin1");
  byNumber.erase("given");
  byName.erase("given");
  EXPECT_EQ(byNumber, byName);
}

TEST(Encodings, TellsTypeAndBytesOfEachKind) {
  struct Row {
    const char* name;
    const char* type;
    int least;
    int most;
    const char* substitute;
  };
  for (const Row& row : std::vector<Row>{{"1252", "single-byte", 1, 1, "3F"},
                                         {"932", "multi-byte", 1, 2, "3F"},
                                         {"GB18030", "multi-byte", 1, 4, "3F"},
                                         {"UTF-8", "Unicode", 1, 3, "3F"},
                                         {"UTF-16BE", "Unicode", 2, 2, "FFFD"},
                                         {"HZ", "stateful", 1, 4, "3F"},
                                         {"IBM037", "single-byte", 1, 1, "3F"},
                                         {"ibm-939", "stateful", 1, 3, "3F"}}) {
    const json facts = json::parse(RunTool({"encodings", "--json", row.name}).out);
    EXPECT_EQ(facts.at("type"), row.type) << row.name;
    EXPECT_EQ(facts.at("minBytes"), row.least) << row.name;
    EXPECT_EQ(facts.at("maxBytesOfUnit"), row.most) << row.name;
    EXPECT_EQ(facts.at("substitute"), row.substitute) << row.name;
  }
}

TEST(Encodings, ACodePageOutsideTheTableIsTriedByItsName) {
  EXPECT_EQ(json::parse(RunTool({"encodings", "--json", "874"}).out).at("name"), "windows-874-2000");
  EXPECT_EQ(json::parse(RunTool({"encodings", "--json", "37"}).out).at("iana"), "IBM037");
}

TEST(Encodings, AllOfThemCanBeOpenedByTheirNames) {
  const json all = json::parse(RunTool({"encodings", "--all", "--json"}).out).at("encodings");
  EXPECT_GT(all.size(), 100u);
  const std::string text = RunTool({"encodings", "--all"}).out;
  for (std::size_t i = 0; i < all.size(); i += 10) {
    const std::string name = all[i].at("name");
    EXPECT_THAT(text, HasSubstr("\n" + name + " "));
    EXPECT_EQ(RunTool({"encodings", name}).exitCode, 0) << name;
  }
}

TEST(Encodings, FitsTheTerminalUnlessToldOtherwise) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  const auto widest = [](const std::string& text) {
    std::size_t width = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) width = std::max(width, line.size());
    return width;
  };
  EXPECT_LE(widest(RunTool(ToolCall{.arguments = {"encodings"}, .terminalColumns = 100}).out), 102u);
  EXPECT_GT(widest(RunTool(ToolCall{.arguments = {"encodings", "--wide"}, .terminalColumns = 100}).out), 102u);
}

}  // namespace
