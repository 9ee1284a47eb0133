// The forms that many writers use: read when that is asked for, refused otherwise.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/statistics.h"

namespace {

using RQMTD_NAMESPACE::RQUniStats;
using rqtest::Discrete;
using rqtest::Failure;
using rqtest::Histogram;
using rqtest::IntArray;
using rqtest::Interval;
using rqtest::Show;
using rqtest::Univariate;
using xercesc::DOMElement;

const std::string kTexts = "<Array type='string' n='2'>\"a\" \"b c\"</Array>";

class LenientStatistics : public rqtest::WithStatistics {
 protected:
  std::string ReadLeniently(const std::string& univariate) {
    parser_.SetLenientStatistics(true);
    std::string text = Read(univariate);
    parser_.SetLenientStatistics(false);
    return text;
  }
};

TEST_F(LenientStatistics, AreOffByDefaultAndCanBeSwitchedAtAnyTime) {
  const std::string univariate = Discrete(kTexts + IntArray("1 2"));
  EXPECT_EQ(Read(univariate), "109");
  EXPECT_EQ(ReadLeniently(univariate), R"(OK: "v" 10 [1, 2])");
  EXPECT_EQ(Read(univariate), "109");
}

TEST_F(LenientStatistics, StaySetOverParses) {
  parser_.SetLenientStatistics(true);
  EXPECT_EQ(Read(Discrete(kTexts + IntArray("1 2"))), R"(OK: "v" 10 [1, 2])");
  EXPECT_EQ(rqtest::Parse(parser_, "<x/>"), Failure(105));
  EXPECT_EQ(Read(Discrete(kTexts + IntArray("3"))), R"(OK: "v" 10 [3])");
}

TEST_F(LenientStatistics, CountsStandBehindLeadingTextArrays) {
  const struct {
    std::string arrays;
    const char* outcome;
  } rows[] = {{kTexts + IntArray("1 2"), R"(OK: "v" 10 [1, 2])"},
              {kTexts + "<Array type='real'>1.5</Array>", R"(OK: "v" 10 [1.5])"},
              {"text" + kTexts + "<!-- c --><x/>" + kTexts + IntArray("1 2") + IntArray("-1"), R"(OK: "v" 10 [1, 2])"},
              {IntArray("1 2") + kTexts, R"(OK: "v" 10 [1, 2])"},
              {kTexts, "109"},
              {kTexts + kTexts, "109"},
              {kTexts + IntArray("-1"), "114"},
              {kTexts + "<Array type='int'>1<!-- c -->2</Array>", "114"},
              {kTexts + "<Array>1</Array>", "108"},
              {kTexts + "<Array type='double'>1</Array>" + IntArray("1"), "109"},
              {"<Array type='String'>a</Array>" + IntArray("1"), "109"},
              {"<Array>a</Array>" + IntArray("1"), "108"},
              {"", "113"}};
  for (const auto& row : rows) EXPECT_EQ(ReadLeniently(Discrete(row.arrays)), row.outcome) << row.arrays;
}

TEST_F(LenientStatistics, NumericInfoAloneGivesStatisticsWithoutAHistogram) {
  EXPECT_EQ(ReadLeniently(Univariate("<NumericInfo minimum='1' maximum='3' mean='2' standardDeviation='0.5'/>")),
            R"(OK: "v" 10 1..3 mean 2 sd 0.5 cuts [] [])");
  EXPECT_EQ(ReadLeniently(Univariate("<NumericInfo/>" + Discrete(IntArray("1")))),
            R"(OK: "v" 10 LOWEST..LOWEST mean LOWEST sd LOWEST cuts [] [])");
  EXPECT_EQ(ReadLeniently(Univariate("<NumericInfo standardDeviation='-1'/>")), "116");
  EXPECT_EQ(ReadLeniently(Univariate("<NumericInfo minimum='2' maximum='1'/>")), "116");
  EXPECT_EQ(ReadLeniently(Univariate("<NumericInfo mean='x'/>")), "109");
}

TEST_F(LenientStatistics, NumericInfoAloneReplacesTheObjectOfTheCallerWhateverItHeld) {
  parser_.SetLenientStatistics(true);
  Load(Univariate("<NumericInfo mean='2'/>"));
  for (RQUniStats stats : {RQUniStats(), Before()}) {
    const DOMElement* cursor = nullptr;
    EXPECT_EQ(parser_.FillUniStats(stats, cursor), rqtest::Ok());
    EXPECT_EQ(Show(stats), R"("v" 10 LOWEST..LOWEST mean 2 sd LOWEST cuts [] [])");
  }
}

TEST_F(LenientStatistics, AllElseIsAsStrictAsWithout) {
  for (const std::string& univariate :
       {std::string("<UnivariateStats/>"), std::string("<UnivariateStats field='v'/>"), Univariate(""),
        Univariate("<DiscrStats/>"), Discrete(IntArray("1 2")), Discrete(IntArray("-1")), Discrete("<Array>1</Array>"),
        Univariate("<NumericInfo/><ContStats/>"), Univariate("<NumericInfo mean=''/><ContStats/>"), Histogram(kTexts),
        Histogram(Interval("0", "1") + kTexts + IntArray("5")), Histogram(Interval("0", "1")),
        Histogram(Interval("0", "1") + IntArray("5")), Histogram(Interval("0", "1") + IntArray("5 6")),
        Histogram(Interval("0", "1") + Interval("1", "2", "openOpen") + IntArray("5 6")), Histogram("<Interval/>"),
        Univariate("<ContStats>" + Interval("0", "1") + IntArray("5") + "</ContStats>"),
        std::string("<UnivariateStats field=''><Counts totalFreq='1'/><DiscrStats><Array type='int'/></DiscrStats>"
                    "</UnivariateStats>")}) {
    EXPECT_EQ(ReadLeniently(univariate), Read(univariate)) << univariate;
  }
}

}  // namespace
