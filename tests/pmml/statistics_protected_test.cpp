// The steps of reading statistics, as derived classes call them.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rqxml/common/RQMV.h"
#include "tests/support/dom.h"
#include "tests/support/statistics.h"

namespace {

using RQCommon::RQStatus;
using RQMTD_NAMESPACE::RQUniStats;
using rqtest::Failure;
using rqtest::IntArray;
using rqtest::Interval;
using rqtest::Ok;
using rqtest::Show;
using xercesc::DOMElement;

using Numbers = std::vector<double>;

class Steps : public RQXPrsUtil::RQPMMLParser {
 public:
  using RQPMMLParser::ExtractInterval;
  using RQPMMLParser::FillCutPointsFreqs;
  using RQPMMLParser::FillUniStatsCat;
  using RQPMMLParser::FillUniStatsCont;
};

// A pointer to a member is initialised by an operation of exactly that signature only.
template <class Member>
constexpr bool Is(Member) {
  return true;
}
using Fill = RQStatus (RQXPrsUtil::RQPMMLParser::*)(RQUniStats&, const std::string&, double, const DOMElement&) const;
static_assert(Is<Fill>(&Steps::FillUniStatsCat));
static_assert(Is<Fill>(&Steps::FillUniStatsCont));
static_assert(Is<RQStatus (RQXPrsUtil::RQPMMLParser::*)(Numbers&, Numbers&, bool&, const DOMElement&) const>(
    &Steps::FillCutPointsFreqs));
static_assert(Is<RQStatus (RQXPrsUtil::RQPMMLParser::*)(double&, double&, bool&, const DOMElement&) const>(
    &Steps::ExtractInterval));

class StatisticsSteps : public rqtest::WithPlatform {
 protected:
  Steps steps_;

  /// What ExtractInterval comes to.
  std::string Extract(const std::string& interval) const {
    rqtest::Document document(interval);
    double left = 4.75;
    double right = 4.75;
    bool open = true;
    bool other = false;
    const RQStatus status = steps_.ExtractInterval(left, right, open, document.Root());
    EXPECT_EQ(steps_.ExtractInterval(left, right, other, document.Root()), status);
    if (!status.IsOK()) return rqtest::ShowStatus(status);
    EXPECT_EQ(open, other);
    return Show(left) + " to " + Show(right) + (open ? " open" : " closed");
  }

  /// What FillCutPointsFreqs comes to.
  std::string CutPoints(const std::string& content) const {
    rqtest::Document document("<ContStats>" + content + "</ContStats>");
    Numbers cuts = {1, 2, 3};
    Numbers counts = {4, 5};
    bool open = false;
    const RQStatus status = steps_.FillCutPointsFreqs(cuts, counts, open, document.Root());
    if (!status.IsOK()) return rqtest::ShowStatus(status);
    return Show(cuts) + " " + Show(counts) + (open ? " open" : " closed");
  }
};

TEST_F(StatisticsSteps, IntervalHasTwoMarginsAndAKind) {
  const struct {
    std::string interval;
    const char* outcome;
  } rows[] = {{Interval("1", "2", "openOpen"), "1 to 2 open"},
              {Interval("1", "2", "openClosed"), "1 to 2 open"},
              {Interval("1", "2", "closedOpen"), "1 to 2 closed"},
              {Interval("1", "2", "closedClosed"), "1 to 2 closed"},
              {Interval("1", "2", ""), "1 to 2 closed"},
              {Interval("1", "2", "OpenOpen"), "1 to 2 closed"},
              {Interval("-1", ""), "-1 to LOWEST closed"},
              {Interval("", "-1"), "LOWEST to -1 closed"},
              {Interval("NaN", "-1"), "LOWEST to -1 closed"},
              {Interval("", "NaN"), "LOWEST to LOWEST closed"},
              {Interval("NaN", "NaN"), "LOWEST to LOWEST closed"},
              {Interval("NaN", ""), "108"},
              {Interval("", ""), "108"},
              {Interval("1", "NaN"), "109"},
              {Interval("2", "1"), "109"},
              {Interval("1", "1"), "109"},
              {Interval("x", "1"), "109"},
              {Interval("1", "x"), "109"},
              {Interval("x", ""), "109"},
              {"<Interval leftMargin='1'/>", "108"},
              {"<Interval leftMargin='x'/>", "109"}};
  for (const auto& row : rows) EXPECT_EQ(Extract(row.interval), row.outcome) << row.interval;
}

TEST_F(StatisticsSteps, CutPointsReplaceWhatTheListsHeld) {
  const std::string open = "openClosed";
  const struct {
    std::string content;
    const char* outcome;
  } rows[] = {{"", "[] [] open"},
              {IntArray("1 2"), "[] [] open"},
              {Interval("0", "1") + IntArray("7"), "[0, 1] [7] closed"},
              {Interval("0", "1", open) + IntArray("7"), "[0, 1] [7] open"},
              {Interval("0", "1", open) + Interval("1", "2", "openOpen") + IntArray("7 8"), "[0, 1, 2] [7, 8] open"},
              // The first left margin is compared with nothing.
              {Interval("-1e300", "1") + IntArray("7"), "[-1e+300, 1] [7] closed"},
              {Interval("", "1") + Interval("3", "") + IntArray("7 8 9"), "[LOWEST, 1, 3, LOWEST] [7, 8, 9] closed"},
              {Interval("0", "1") + Interval("1", "2", open) + IntArray("7 8"), "115"},
              {Interval("0", "1") + Interval("0.5", "2") + IntArray("7 8"), "115"},
              {Interval("0", "1"), "113"},
              {Interval("0", "1") + IntArray("x"), "114"},
              {Interval("0", "1") + IntArray("1 2"), "115"}};
  for (const auto& row : rows) EXPECT_EQ(CutPoints(row.content), row.outcome) << row.content;
}

TEST_F(StatisticsSteps, ListsStartEmptyAlsoWhenTheFirstIntervalFails) {
  rqtest::Document document("<ContStats><Interval/></ContStats>");
  Numbers cuts = {1};
  Numbers counts = {2};
  bool open = false;
  EXPECT_EQ(steps_.FillCutPointsFreqs(cuts, counts, open, document.Root()), Failure(108));
  EXPECT_EQ(cuts, Numbers());
  EXPECT_EQ(counts, Numbers());
}

TEST_F(StatisticsSteps, CategoricalStepBuildsFromNameTotalAndCountsWithoutJudging) {
  rqtest::Document document("<UnivariateStats><DiscrStats>" + IntArray("1 2") + "</DiscrStats></UnivariateStats>");
  RQUniStats stats;
  EXPECT_EQ(steps_.FillUniStatsCat(stats, "name", 7, document.Root()), Ok());
  EXPECT_EQ(Show(stats), R"("name" 7 [1, 2])");
  EXPECT_EQ(steps_.FillUniStatsCat(stats, "", -7, document.Root()), Ok());
  EXPECT_EQ(Show(stats), R"("" -7 [1, 2])");
  EXPECT_FALSE(stats.IsValid());
}

TEST_F(StatisticsSteps, ContinuousStepNeedsNumericInfoAndLeavesTheObjectAloneWithoutContStats) {
  const std::string histogram = "<ContStats>" + Interval("0", "1") + IntArray("5") + "</ContStats>";
  const struct {
    std::string content;
    const char* outcome;
  } rows[] = {{histogram, R"(113 "before" 1 [])"},
              {"<NumericInfo/>", R"(OK "before" 1 [])"},
              {"<NumericInfo mean='1'/><x/>", R"(OK "before" 1 [])"},
              {"<NumericInfo standardDeviation='-1'/>", R"(116 "before" 1 [])"},
              {"<NumericInfo mean='x'/>" + histogram, R"(109 "before" 1 [])"},
              {"<NumericInfo/><ContStats><Interval/></ContStats>", R"(108 "before" 1 [])"},
              {"<NumericInfo minimum='2' maximum='1'/>" + histogram,
               R"(OK "name" -7 2..1 mean LOWEST sd LOWEST cuts [0, 1] [5])"}};
  for (const auto& row : rows) {
    rqtest::Document document("<UnivariateStats>" + row.content + "</UnivariateStats>");
    RQUniStats stats("before", 1, {});
    const RQStatus status = steps_.FillUniStatsCont(stats, "name", -7, document.Root());
    EXPECT_EQ(rqtest::ShowStatus(status) + " " + Show(stats), row.outcome) << row.content;
  }
}

TEST_F(StatisticsSteps, MissingMarginsAreTheMissingValue) {
  rqtest::Document document(Interval("", "1"));
  double left = 0;
  double right = 0;
  bool open = true;
  EXPECT_EQ(steps_.ExtractInterval(left, right, open, document.Root()), Ok());
  EXPECT_EQ(left, RQMV::gMissingValue);
}

}  // namespace
