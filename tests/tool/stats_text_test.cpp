#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <sstream>
#include <string>

#include "tests/tool/stats_support.h"

using rqtest::HasTerminals;
using rqtest::RunTool;
using rqtest::SourceFile;
using rqtest::Statistics;
using rqtest::Stats;
using rqtest::ToolCall;
using rqtest::ToolResult;
using rqtest::WithStatistics;
using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

const std::string kHistogram =
    "<UnivariateStats field='age'><Counts totalFreq='1000' missingFreq='20' invalidFreq='3'/>"
    "<NumericInfo minimum='18' maximum='92' mean='44.216666666667' standardDeviation='15.3'/>"
    "<ContStats><Interval closure='closedOpen' rightMargin='18'/>"
    "<Interval closure='closedOpen' leftMargin='18' rightMargin='45'/>"
    "<Interval closure='closedClosed' leftMargin='50' rightMargin='60'/>"
    "<Interval closure='closedOpen' leftMargin='60'/>"
    "<Array type='int'>0 800 1 100 76</Array></ContStats></UnivariateStats>";

TEST(StatsText, OfAContinuousFieldIsASummaryAndABarForEachIntervalAndGap) {
  const ToolResult result = Stats(WithStatistics(kHistogram));
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.err, IsEmpty());
  EXPECT_EQ(result.out,
            "standard input: TreeModel \"m\", statistics of 1 field\n"
            "\n"
            "age: continuous, total 1000, counted 977, missing 20, invalid 3\n"
            "  minimum 18, maximum 92, mean 44.2167, standard deviation 15.3\n"
            "  (-∞, 18)    0   0.0%\n"
            "  [18, 45)  800  81.9%  ████████████████████████████████████████\n"
            "  [45, 50)    1   0.1%  ▏\n"
            "  [50, 60]  100  10.2%  █████\n"
            "  [60, ∞)    76   7.8%  ███▊\n");
}

TEST(StatsText, OfAnExampleNamesCategoriesByTheDataDictionary) {
  const ToolResult result = RunTool({"stats", SourceFile("examples/bicycles.pmml"), "--field", "weekday"});
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_EQ(result.out, SourceFile("examples/bicycles.pmml") +
                            ": RegressionModel \"duration\", model 1 of 2, statistics of 1 field\n"
                            "\n"
                            "weekday: categorical, total 1200\n"
                            "  1 = Monday     171  14.2%  █████████████████████████████████▊\n"
                            "  2 = Tuesday    168  14.0%  █████████████████████████████████▏\n"
                            "  3 = Wednesday  175  14.6%  ██████████████████████████████████▌\n"
                            "  4 = Thursday   181  15.1%  ███████████████████████████████████▋\n"
                            "  5 = Friday     203  16.9%  ████████████████████████████████████████\n"
                            "  6 = Saturday   160  13.3%  ███████████████████████████████▌\n"
                            "  7 = Sunday     142  11.8%  ████████████████████████████\n");
}

TEST(StatsText, MarksALenientReadingAndDrawsTheRangeWhereThereIsNoHistogram) {
  const ToolResult result = Stats(WithStatistics(
      Statistics("fee", "<NumericInfo minimum='0' maximum='100' mean='50' standardDeviation='25'/>") +
      Statistics("kind",
                 "<DiscrStats><Array type='string'>\"a b\" c</Array><Array type='int'>9 1</Array></DiscrStats>")));
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.out, HasSubstr("\nfee: continuous, total 10\n"
                                    "  read leniently: no \"ContStats\", so no histogram\n"
                                    "  minimum 0, maximum 100, mean 50, standard deviation 25\n"
                                    "  0 ├──────────━━━━━━━━━━●━━━━━━━━━──────────┤ 100\n"));
  EXPECT_THAT(result.out, HasSubstr("\nkind: categorical, total 10\n"
                                    "  read leniently: texts stand before the counts\n"
                                    "  a b  9  90.0%  ████████████████████████████████████████\n"
                                    "  c    1  10.0%  ████▌\n"));
}

TEST(StatsText, CategoriesWithoutTextsAreNumberedAndTextsOfAnotherNumberTold) {
  const ToolResult result = Stats(WithStatistics(
      Statistics("kind", "<DiscrStats><Array type='string'>a b c</Array><Array type='int'>10 0</Array></DiscrStats>")));
  EXPECT_THAT(result.out, HasSubstr("kind: categorical, total 10, 3 category texts for 2 counts\n"));
  EXPECT_THAT(result.out, AllOf(HasSubstr("  #1  10  100.0%  ████"), HasSubstr("  #2   0    0.0%\n")));
}

TEST(StatsText, OfFieldsWithNothingToDraw) {
  const ToolResult result = Stats(WithStatistics(
      Statistics("a", "<DiscrStats><Array type='int'/></DiscrStats>") + Statistics("b", "<NumericInfo/><ContStats/>") +
      Statistics("c", "<DiscrStats><Array type='real'>0 0</Array></DiscrStats>")));
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.out, HasSubstr("a: categorical, total 10\n  no categories\n"
                                    "\nb: continuous, total 10\n"
                                    "\nc: categorical, total 10, counted 0\n  #1  0  0.0%\n  #2  0  0.0%\n"));
}

TEST(StatsText, LargestCountsOverflowNothing) {
  const ToolResult result =
      Stats(WithStatistics(Statistics("x", "<NumericInfo minimum='-1.7e308' maximum='1.7e308' mean='0'/><ContStats/>") +
                           Statistics("y", "<DiscrStats><Array type='real'>1.7e308 1.7e308</Array></DiscrStats>")));
  EXPECT_EQ(result.exitCode, 0) << result;
  EXPECT_THAT(result.out, AllOf(HasSubstr("●"), HasSubstr("  #2  1.7e+308  50.0%  ████")));
}

TEST(StatsText, SumBeyondAllNumbersIsNotTold) {
  const ToolResult result =
      Stats(WithStatistics(Statistics("y", "<DiscrStats><Array type='real'>1.7e308 1.7e308</Array></DiscrStats>")));
  EXPECT_THAT(result.out, HasSubstr("y: categorical, total 10\n"));
}

std::string Nested(int levels) {
  std::string text;
  for (int i = 0; i < levels; ++i) text += "<a>";
  text += '1';
  for (int i = 0; i < levels; ++i) text += "</a>";
  return text;
}

TEST(StatsText, OfArraysNestedToAnyDepthIsShown) {
  constexpr int kLevels = 200'000;
  const ToolResult result = Stats(WithStatistics(
      Statistics("texts", "<DiscrStats><Array type='string'>" + Nested(kLevels) +
                              "</Array><Array type='int'>5</Array></DiscrStats>") +
      Statistics("counts", "<DiscrStats><Array type='int'>" + Nested(kLevels) + "</Array></DiscrStats>")));
  EXPECT_EQ(result.exitCode, 1) << result.err;
  EXPECT_THAT(result.out, AllOf(HasSubstr("\n  1  5  100.0%  "),
                                HasSubstr("the text of the \"Array\" of counts is broken up by other markup\n")));
}

TEST(StatsText, OfManyFieldsOfOneNameIsMadeInBoundedTime) {
  std::string values, statistics;
  for (int i = 0; i < 20'000; ++i) values += "<Value value='" + std::to_string(i) + "'/>";
  for (int i = 0; i < 4'000; ++i) statistics += Statistics("x", "<DiscrStats><Array type='int'>1</Array></DiscrStats>");
  const auto start = std::chrono::steady_clock::now();
  const ToolResult result =
      Stats("<PMML><DataDictionary><DataField name='x' dataType='string' optype='categorical'>" + values +
            "</DataField></DataDictionary><TreeModel><ModelStats>" + statistics + "</ModelStats></TreeModel></PMML>");
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_LT(seconds.count(), 20);
}

TEST(StatsText, NamesAndCategoriesCannotSteerTheTerminal) {
  const std::string document =
      "<?xml version='1.1'?>" +
      WithStatistics(Statistics("a&#x1b;[31m&#x202e;",
                                "<DiscrStats><Array type='string'>\"&#x1b;]0;x&#x7;\"</Array>"
                                "<Array type='int'>1</Array></DiscrStats>") +
                     "<UnivariateStats field='&#x1b;c'><Counts totalFreq='&#x9b;'/></UnivariateStats>");
  const ToolResult result = Stats(document);
  EXPECT_EQ(result.exitCode, 1) << result;
  EXPECT_THAT(result.out,
              AllOf(HasSubstr("a\\x1b[31m\\u{202e}"), HasSubstr("\\x1b]0;x\\x07"), HasSubstr("totalFreq=\"\\u{9b}\""),
                    Not(HasSubstr("\x1b")), Not(HasSubstr("\u009b")), Not(HasSubstr("\u202e"))));
}

std::size_t Columns(const std::string& line) {
  std::size_t columns = 0;
  for (const char c : line) columns += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
  return columns;
}

TEST(StatsOnATerminal, IsAsWideAsTheTerminal) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  const std::string longText(200, 'x');
  const std::string document =
      WithStatistics(kHistogram + Statistics(longText, "<DiscrStats><Array type='string'>" + longText +
                                                           " b</Array>"
                                                           "<Array type='int'>5 5</Array></DiscrStats>"));
  for (const unsigned short width : {std::uint16_t{40}, std::uint16_t{80}, std::uint16_t{200}}) {
    const ToolResult result = RunTool(ToolCall{.arguments = {"stats", "-", "--field", "age", "--field", longText},
                                               .input = document,
                                               .terminalColumns = width});
    EXPECT_EQ(result.exitCode, 0) << result;
    std::istringstream lines(result.out);
    std::size_t widest = 0;
    for (std::string line; std::getline(lines, line);) {
      if (line.find("█") != std::string::npos || line.find("xxx") != std::string::npos)
        widest = std::max(widest, Columns(line));
    }
    EXPECT_EQ(widest, width) << result;
  }
}

TEST(StatsOnATerminal, ManyCategoriesAreCountedAndWideShowsAll) {
  if (!HasTerminals()) GTEST_SKIP() << "no pseudo-terminals here";
  std::string counts;
  for (int i = 0; i < 1000; ++i) counts += " 1";
  ToolCall call{
      .arguments = {"stats", "-"},
      .input = WithStatistics(Statistics("x", "<DiscrStats><Array type='int'>" + counts + "</Array></DiscrStats>")),
      .terminalColumns = 80};
  const ToolResult some = RunTool(call);
  EXPECT_THAT(some.out,
              AllOf(HasSubstr("  #40  1"), Not(HasSubstr("  #41")), HasSubstr("… and 960 more; --wide shows all\n")));
  call.arguments.emplace_back("--wide");
  EXPECT_THAT(RunTool(call).out, AllOf(HasSubstr("  #1000  1"), Not(HasSubstr("more"))));
}

}  // namespace
