// Two faults in one field: the order of the checks decides which of them is reported.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/support/statistics.h"

namespace {

using rqtest::IntArray;
using rqtest::Interval;

/// The parts of a field, all good.
struct Parts {
  std::string field = " field='v'";
  std::string counts = "<Counts totalFreq='10'/>";
  std::string minimum = " minimum='0'";
  std::string maximum = " maximum='9'";
  std::string mean = " mean='5'";
  std::string deviation = " standardDeviation='1'";
  std::string firstInterval = Interval("0", "1");
  std::string secondInterval = Interval("1", "2");
  std::string array = IntArray("4 6");
  bool discrStats = true;

  std::string Continuous() const {
    return "<UnivariateStats" + field + ">" + counts + "<NumericInfo" + minimum + maximum + mean + deviation +
           "/><ContStats>" + firstInterval + secondInterval + array + "</ContStats></UnivariateStats>";
  }
  std::string Categorical() const {
    const std::string stats = discrStats ? "<DiscrStats>" + array + "</DiscrStats>" : "";
    return "<UnivariateStats" + field + ">" + counts + stats + "</UnivariateStats>";
  }
};

/// Something that is wrong with one of the parts.
struct Fault {
  const char* name;
  std::string Parts::*part;
  std::string text;
  const char* code;
};

// In the order of the checks. Faults of one part exclude one another.
const Fault kHead[] = {{"no field", &Parts::field, "", "108"},
                       {"no counts", &Parts::counts, "", "113"},
                       {"no total", &Parts::counts, "<Counts/>", "108"},
                       {"bad total", &Parts::counts, "<Counts totalFreq='x'/>", "109"},
                       {"negative total", &Parts::counts, "<Counts totalFreq='-1'/>", "109"}};

const Fault kSummary[] = {{"bad minimum", &Parts::minimum, " minimum='x'", "109"},
                          {"bad maximum", &Parts::maximum, " maximum='x'", "109"},
                          {"bad mean", &Parts::mean, " mean='x'", "109"},
                          {"negative deviation", &Parts::deviation, " standardDeviation='-1'", "116"}};

const Fault kIntervals[] = {
    {"first without margins", &Parts::firstInterval, "<Interval closure='closedOpen'/>", "108"},
    {"first with bad margin", &Parts::firstInterval, Interval("0", "x"), "109"},
    {"first upside down", &Parts::firstInterval, Interval("2", "1"), "109"},
    {"first without closure", &Parts::firstInterval, "<Interval leftMargin='0' rightMargin='1'/>", "108"},
    {"second without margins", &Parts::secondInterval, "<Interval closure='closedOpen'/>", "108"},
    {"second with bad margin", &Parts::secondInterval, Interval("x", "2"), "109"},
    {"second upside down", &Parts::secondInterval, Interval("2", "1"), "109"},
    {"second without closure", &Parts::secondInterval, "<Interval leftMargin='1' rightMargin='2'/>", "108"},
    {"second of another kind", &Parts::secondInterval, Interval("1", "2", "openClosed"), "115"},
    {"second overlaps", &Parts::secondInterval, Interval("0.5", "2"), "115"},
    {"second open below", &Parts::secondInterval, Interval("", "2"), "115"}};

const Fault kArray[] = {{"no array", &Parts::array, "", "113"},
                        {"array without type", &Parts::array, "<Array>4 6</Array>", "108"},
                        {"array of texts", &Parts::array, "<Array type='string'>4 6</Array>", "109"},
                        {"array of no numbers", &Parts::array, IntArray("4 x"), "114"},
                        {"array with a negative", &Parts::array, IntArray("4 -6"), "114"}};

const Fault kNumberOfCounts[] = {{"too few counts", &Parts::array, IntArray("4"), "115"},
                                 {"no counts in the array", &Parts::array, IntArray(""), "115"}};

// What only the finished statistics show.
const Fault kValidity[] = {{"empty field", &Parts::field, " field=''", "116"},
                           {"minimum above maximum", &Parts::minimum, " minimum='99'", "116"}};

template <class... Lists>
std::vector<Fault> All(const Lists&... lists) {
  std::vector<Fault> all;
  (all.insert(all.end(), std::begin(lists), std::end(lists)), ...);
  return all;
}

class StatisticsOrder : public rqtest::WithStatistics {
 protected:
  /// Each fault alone gives its code; of each two, the one that stands first in the list.
  void ExpectFirstIsReported(const std::vector<Fault>& faults, std::string (Parts::*make)() const) {
    int pairs = 0;
    for (std::size_t i = 0; i < faults.size(); ++i) {
      Parts alone;
      alone.*faults[i].part = faults[i].text;
      EXPECT_EQ(Read((alone.*make)()), faults[i].code) << faults[i].name;
      for (std::size_t j = i + 1; j < faults.size(); ++j) {
        if (faults[i].part == faults[j].part) continue;
        Parts both = alone;
        both.*faults[j].part = faults[j].text;
        EXPECT_EQ(Read((both.*make)()), faults[i].code) << faults[i].name << ", " << faults[j].name;
        ++pairs;
      }
    }
    EXPECT_GT(pairs, 20);
  }
};

TEST_F(StatisticsOrder, PartsWithoutAFaultAreGood) {
  EXPECT_EQ(Read(Parts().Continuous()), R"(OK: "v" 10 0..9 mean 5 sd 1 cuts [0, 1, 2] [4, 6])");
  EXPECT_EQ(Read(Parts().Categorical()), R"(OK: "v" 10 [4, 6])");
}

TEST_F(StatisticsOrder, OfAContinuousFieldIsHeadSummaryIntervalsArrayAndThenTheWhole) {
  ExpectFirstIsReported(All(kHead, kSummary, kIntervals, kArray, kNumberOfCounts, kValidity), &Parts::Continuous);
}

TEST_F(StatisticsOrder, OfACategoricalFieldIsHeadArrayAndThenTheWhole) {
  const Fault emptyField[] = {kValidity[0]};
  ExpectFirstIsReported(All(kHead, kArray, emptyField), &Parts::Categorical);
}

TEST_F(StatisticsOrder, MissingDiscrStatsComesBehindTheHead) {
  for (const Fault& fault : kHead) {
    Parts parts;
    parts.discrStats = false;
    EXPECT_EQ(Read(parts.Categorical()), "113");
    parts.*fault.part = fault.text;
    EXPECT_EQ(Read(parts.Categorical()), fault.code) << fault.name;
  }
}

TEST_F(StatisticsOrder, MissingContStatsComesBehindTheSummary) {
  for (const Fault& fault : All(kHead, kSummary)) {
    Parts parts;
    parts.*fault.part = fault.text;
    std::string univariate = parts.Continuous();
    univariate.erase(univariate.find("<ContStats>"),
                     univariate.find("</ContStats>") + 12 - univariate.find("<ContStats>"));
    EXPECT_EQ(Read(univariate), fault.code) << fault.name;
  }
}

TEST_F(StatisticsOrder, IntervalBehindOneThatIsOpenAboveIsNotExamined) {
  for (const Fault& fault : kIntervals) {
    if (fault.part != &Parts::secondInterval) continue;
    Parts parts;
    parts.firstInterval = Interval("0", "");
    parts.*fault.part = fault.text;
    EXPECT_EQ(Read(parts.Continuous()), "115") << fault.name;
  }
}

TEST_F(StatisticsOrder, WithinAnIntervalIsLeftMarginRightMarginClosureKindPlace) {
  const struct {
    const char* interval;  // the second one, behind 0 to 1 closed at the left
    const char* code;
  } rows[] = {{"<Interval leftMargin='x'/>", "109"},
              {"<Interval leftMargin='x' rightMargin='x'/>", "109"},
              {"<Interval rightMargin='x'/>", "109"},
              {"<Interval leftMargin='1' rightMargin='x'/>", "109"},
              {"<Interval leftMargin='2' rightMargin='1'/>", "109"},
              {"<Interval leftMargin='0.5' rightMargin='0.5' closure='openOpen'/>", "109"},
              {"<Interval/>", "108"},
              {"<Interval leftMargin='0.5' rightMargin='2'/>", "108"},
              {"<Interval rightMargin='2'/>", "108"},
              {"<Interval rightMargin='2' closure='openOpen'/>", "115"},
              {"<Interval leftMargin='0.5' rightMargin='2' closure='openOpen'/>", "115"}};
  for (const auto& row : rows) {
    Parts parts;
    parts.secondInterval = row.interval;
    EXPECT_EQ(Read(parts.Continuous()), row.code) << row.interval;
  }
}

}  // namespace
