// Summary statistics, and the histograms of continuous fields.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/statistics.h"

namespace {

using RQMTD_NAMESPACE::RQUniStats;
using rqtest::Failure;
using rqtest::Histogram;
using rqtest::IntArray;
using rqtest::Interval;
using rqtest::Ok;
using rqtest::Show;
using rqtest::Univariate;
using xercesc::DOMElement;

const char* const kNone = "LOWEST..LOWEST mean LOWEST sd LOWEST";

class ContinuousStatistics : public rqtest::WithStatistics {
 protected:
  /// What a histogram comes to: cut points and counts, or a code.
  std::string OfHistogram(const std::string& content) {
    const std::string text = Read(Histogram(content));
    const std::string start = std::string("OK: \"v\" 10 ") + kNone + " cuts ";
    return text.rfind(start, 0) == 0 ? text.substr(start.size()) : text;
  }
};

// Summary statistics

TEST_F(ContinuousStatistics, SummaryIsReadFromItsFourAttributes) {
  const struct {
    const char* attributes;
    const char* outcome;
  } rows[] = {{"", "LOWEST..LOWEST mean LOWEST sd LOWEST"},
              {"minimum='-1' maximum='2.5' mean='1e-3' standardDeviation='4'", "-1..2.5 mean 0.001 sd 4"},
              {"minimum='1'", "1..LOWEST mean LOWEST sd LOWEST"},
              {"maximum='1'", "LOWEST..1 mean LOWEST sd LOWEST"},
              {"mean='1'", "LOWEST..LOWEST mean 1 sd LOWEST"},
              {"standardDeviation='1'", "LOWEST..LOWEST mean LOWEST sd 1"},
              {"standardDeviation='0'", "LOWEST..LOWEST mean LOWEST sd 0"},
              {"standardDeviation='-0'", "LOWEST..LOWEST mean LOWEST sd -0"},
              {"minimum='3' maximum='3'", "3..3 mean LOWEST sd LOWEST"},
              {"mean='-7' minimum='0' maximum='1'", "0..1 mean -7 sd LOWEST"},
              {"median='x' interQuartileRange='' Minimum='x' p:mean='x'", "LOWEST..LOWEST mean LOWEST sd LOWEST"},
              {"minimum='NaN' maximum='NaN' mean='NaN'", "LOWEST..LOWEST mean LOWEST sd LOWEST"},
              // A deviation of NaN is missing, not negative; one that is no number at all counts as not given.
              {"standardDeviation='NaN'", "LOWEST..LOWEST mean LOWEST sd LOWEST"},
              {"standardDeviation='x'", "LOWEST..LOWEST mean LOWEST sd LOWEST"},
              {"standardDeviation=''", "LOWEST..LOWEST mean LOWEST sd LOWEST"},
              {"standardDeviation='INF'", "LOWEST..LOWEST mean LOWEST sd LOWEST"},
              {"standardDeviation='-INF'", "LOWEST..LOWEST mean LOWEST sd LOWEST"},
              {"standardDeviation='1,5'", "LOWEST..LOWEST mean LOWEST sd LOWEST"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Read(Univariate(std::string("<NumericInfo ") + row.attributes + "/><ContStats/>")),
              std::string("OK: \"v\" 10 ") + row.outcome + " cuts [] []")
        << row.attributes;
  }
}

TEST_F(ContinuousStatistics, BadSummaryIsReported) {
  const struct {
    const char* attributes;
    const char* outcome;
  } rows[] = {{"minimum=''", "109"},
              {"minimum='x'", "109"},
              {"minimum='INF'", "109"},
              {"maximum='-INF'", "109"},
              {"maximum='1e400'", "109"},
              {"mean='1,5'", "109"},
              {"mean='nan'", "109"},
              {"standardDeviation='-1'", "116"},
              {"standardDeviation='-1e-300'", "116"},
              {"standardDeviation='-1.7976931348623155e308'", "116"},
              // Read well, but not consistent.
              {"minimum='2' maximum='1'", "116"}};
  for (const auto& row : rows) {
    for (const char* const rest : {"<ContStats/>", ""}) {
      const std::string univariate = Univariate(std::string("<NumericInfo ") + row.attributes + "/>" + rest);
      const bool judgedBefore = *rest == 0 && std::string(row.attributes) == "minimum='2' maximum='1'";
      EXPECT_EQ(Read(univariate), judgedBefore ? "OK: kept" : row.outcome) << univariate;
    }
  }
}

TEST_F(ContinuousStatistics, OnlyTheFirstNumericInfoIsRead) {
  EXPECT_EQ(Read(Univariate("<x/><NumericInfo mean='1'/><NumericInfo mean='x'/><ContStats/>")),
            R"(OK: "v" 10 LOWEST..LOWEST mean 1 sd LOWEST cuts [] [])");
}

// Without a histogram

TEST_F(ContinuousStatistics, WithoutContStatsTheObjectOfTheCallerIsJudgedAsItStands) {
  for (const char* const content :
       {"<NumericInfo mean='1'/>", "<NumericInfo/><contStats/><p:ContStats/><x><ContStats/></x><DiscrStats/>"}) {
    Load(Univariate(content));
    const DOMElement* cursor = nullptr;
    RQUniStats invalid;
    EXPECT_EQ(parser_.FillUniStats(invalid, cursor), Failure(116)) << content;
    EXPECT_EQ(Show(invalid), Show(RQUniStats()));
    EXPECT_NE(cursor, nullptr);
    for (RQUniStats valid : {Before(), RQUniStats("other", 1, RQUniStats::SummStats(), {0, 1}, {5})}) {
      const std::string before = Show(valid);
      cursor = nullptr;
      EXPECT_EQ(parser_.FillUniStats(valid, cursor), Ok()) << content;
      EXPECT_EQ(Show(valid), before);
    }
    RQUniStats contradictory("other", 1, RQUniStats::SummStats(), {1, 0}, {5});
    const std::string before = Show(contradictory);
    cursor = nullptr;
    EXPECT_EQ(parser_.FillUniStats(contradictory, cursor), Failure(116)) << content;
    EXPECT_EQ(Show(contradictory), before);
  }
}

TEST_F(ContinuousStatistics, WithoutIntervalsThereIsNoHistogramAndNoArrayIsRead) {
  for (const char* const content :
       {"", "<Array type='int'>1</Array>", "<Array>x</Array>", "<interval/><p:Interval/><x><Interval/></x>text",
        "<!--<Interval/>--><Array type='string'>-1</Array>"}) {
    EXPECT_EQ(OfHistogram(content), "[] []") << content;
  }
}

// Histograms

struct HistogramRow {
  std::string content;
  const char* outcome;  // cut points and counts, or a code
};

TEST_F(ContinuousStatistics, IntervalsAreCutPointsWithACountBetweenEachTwo) {
  const HistogramRow rows[] = {
      {Interval("0", "1") + IntArray("5"), "[0, 1] [5]"},
      {Interval("0", "1") + Interval("1", "2.5") + IntArray("5 0"), "[0, 1, 2.5] [5, 0]"},
      {Interval("", "0") + Interval("0", "10") + Interval("10", "") + IntArray("1 2 3"),
       "[LOWEST, 0, 10, LOWEST] [1, 2, 3]"},
      {Interval("", "1") + IntArray("5"), "[LOWEST, 1] [5]"},
      {Interval("0", "") + IntArray("5"), "[0, LOWEST] [5]"},
      {Interval("NaN", "1") + IntArray("5"), "[LOWEST, 1] [5]"},
      // A gap between two intervals is an interval of its own.
      {Interval("", "5") + Interval("7", "10") + IntArray("1 0 2"), "[LOWEST, 5, 7, 10] [1, 0, 2]"},
      {Interval("0", "1") + Interval("2", "3") + Interval("4", "") + IntArray("1 2 3 4 5"),
       "[0, 1, 2, 3, 4, LOWEST] [1, 2, 3, 4, 5]"},
      // Counts may stand before or between the intervals, and among anything else.
      {"text" + IntArray("5 6") + Interval("0", "1") + "<!-- c --><x/>" + Interval("1", "2") + "<Extension/>",
       "[0, 1, 2] [5, 6]"},
      {Interval("0", "1") + IntArray("5") + IntArray("-1"), "[0, 1] [5]"},
      {Interval(" 0 ", "1e1") + IntArray("5"), "[0, 10] [5]"}};
  for (const HistogramRow& row : rows) EXPECT_EQ(OfHistogram(row.content), row.outcome) << row.content;
}

TEST_F(ContinuousStatistics, MarginsAreNumbersInAscendingOrderAndOneMustBeThere) {
  const struct {
    const char* interval;
    const char* outcome;
  } rows[] = {{"<Interval closure='closedOpen'/>", "108"},
              {"<Interval LeftMargin='1' p:rightMargin='2' closure='closedOpen'/>", "108"},
              // Given as "not a number" a margin is missing, and only the left one may be so beside a missing other.
              {"<Interval leftMargin='NaN' closure='closedOpen'/>", "108"},
              {"<Interval rightMargin='NaN' closure='closedOpen'/>", "[LOWEST, LOWEST] [5]"},
              {"<Interval leftMargin='0' rightMargin='NaN' closure='closedOpen'/>", "109"},
              {"<Interval leftMargin='x' rightMargin='1' closure='closedOpen'/>", "109"},
              {"<Interval leftMargin='' rightMargin='1' closure='closedOpen'/>", "109"},
              {"<Interval leftMargin='-INF' rightMargin='1' closure='closedOpen'/>", "109"},
              {"<Interval leftMargin='0' rightMargin='x' closure='closedOpen'/>", "109"},
              {"<Interval rightMargin='INF' closure='closedOpen'/>", "109"},
              {"<Interval leftMargin='5' rightMargin='5' closure='closedClosed'/>", "109"},
              {"<Interval leftMargin='6' rightMargin='5' closure='closedOpen'/>", "109"},
              {"<Interval leftMargin='0' rightMargin='1'/>", "108"},
              {"<Interval leftMargin='0' rightMargin='1' Closure='openOpen'/>", "108"},
              {"<Interval leftMargin='0' rightMargin='1' closure=''/>", "[0, 1] [5]"},
              {"<Interval leftMargin='0' rightMargin='1' closure='x'/>", "[0, 1] [5]"}};
  for (const auto& row : rows) EXPECT_EQ(OfHistogram(row.interval + IntArray("5")), row.outcome) << row.interval;
}

TEST_F(ContinuousStatistics, ClosuresOfTwoKindsContradict) {
  const struct {
    const char* closure;
    bool openAtLeft;
  } kinds[] = {{"openOpen", true},       {"openClosed", true}, {"closedOpen", false}, {"closedClosed", false},
               {"OpenOpen", false},      {"openopen", false},  {"open", false},       {" openOpen", false},
               {"anything else", false}, {"", false}};
  for (const auto& first : kinds) {
    for (const auto& second : kinds) {
      EXPECT_EQ(OfHistogram(Interval("0", "1", first.closure) + Interval("1", "2", second.closure) + IntArray("1 2")),
                first.openAtLeft == second.openAtLeft ? "[0, 1, 2] [1, 2]" : "115")
          << first.closure << " " << second.closure;
    }
  }
}

TEST_F(ContinuousStatistics, IntervalsThatContradictOneAnotherAreReported) {
  const HistogramRow rows[] = {{Interval("", "5") + Interval("4", "10") + IntArray("1 2"), "115"},
                               {Interval("0", "1") + Interval("0", "1") + IntArray("1 2"), "115"},
                               {Interval("5", "6") + Interval("0", "1") + IntArray("1 2"), "115"},
                               {Interval("0", "1") + Interval("", "2") + IntArray("1 2"), "115"},
                               {Interval("", "1") + Interval("", "2") + IntArray("1 2"), "115"},
                               {Interval("0", "1") + Interval("NaN", "2") + IntArray("1 2"), "115"},
                               {Interval("0", "") + Interval("1", "2") + IntArray("1 2"), "115"},
                               {Interval("", "NaN") + Interval("1", "2") + IntArray("1 2"), "115"},
                               {Interval("0", "1") + Interval("1", "") + Interval("2", "") + IntArray("1 2"), "115"}};
  for (const HistogramRow& row : rows) EXPECT_EQ(OfHistogram(row.content), row.outcome) << row.content;
}

TEST_F(ContinuousStatistics, NumberOfCountsFitsTheCutPoints) {
  const std::string two = Interval("0", "1") + Interval("1", "2");
  const HistogramRow rows[] = {{two, "113"},
                               {two + "<array type='int'>1 2</array><x>" + IntArray("1 2") + "</x>", "113"},
                               {two + IntArray("1"), "115"},
                               {two + IntArray("1 2 3"), "115"},
                               {two + IntArray(""), "115"},
                               {two + "<Array type='int'/>" + IntArray("1 2"), "115"},
                               {Interval("0", "1") + IntArray(""), "115"},
                               {Interval("0", "1") + Interval("2", "3") + IntArray("1 2"), "115"},
                               {two + IntArray("1 2"), "[0, 1, 2] [1, 2]"}};
  for (const HistogramRow& row : rows) EXPECT_EQ(OfHistogram(row.content), row.outcome) << row.content;
}

TEST_F(ContinuousStatistics, OnlyTheFirstContStatsIsRead) {
  EXPECT_EQ(Read(Univariate("<NumericInfo/><ContStats>" + Interval("0", "1") + IntArray("5") +
                            "</ContStats><ContStats><Interval/></ContStats>")),
            std::string("OK: \"v\" 10 ") + kNone + " cuts [0, 1] [5]");
}

TEST_F(ContinuousStatistics, ThousandsOfIntervalsAreRead) {
  std::string intervals, counts, cuts = "0", shown;
  for (int i = 0; i < 2000; ++i) {
    intervals += Interval(std::to_string(i), std::to_string(i + 1));
    counts += std::to_string(i) + " ";
    cuts += ", " + std::to_string(i + 1);
    shown += (i > 0 ? ", " : "") + std::to_string(i);
  }
  EXPECT_EQ(OfHistogram(intervals + IntArray(counts)), "[" + cuts + "] [" + shown + "]");
}

}  // namespace
