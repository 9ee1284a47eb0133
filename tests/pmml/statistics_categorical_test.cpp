// The counts of discrete fields, and the arrays in which all counts stand.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/statistics.h"

namespace {

using rqtest::Discrete;
using rqtest::Histogram;
using rqtest::IntArray;
using rqtest::Interval;
using rqtest::Univariate;

class CategoricalStatistics : public rqtest::WithStatistics {};

TEST_F(CategoricalStatistics, NeedDiscrStatsAndAnArrayInIt) {
  const std::string array = IntArray("1 2");
  const struct {
    std::string content;
    const char* outcome;
  } rows[] = {
      {"", "113"},
      {array, "113"},
      {"<discrStats>" + array + "</discrStats>", "113"},
      {"<p:DiscrStats>" + array + "</p:DiscrStats>", "113"},
      {"<x><DiscrStats>" + array + "</DiscrStats></x>", "113"},
      {"<ContStats>" + array + "</ContStats>", "113"},
      {"<DiscrStats/>", "113"},
      {"<DiscrStats>1 2</DiscrStats>", "113"},
      {"<DiscrStats><array type='int'>1</array><p:Array type='int'>1</p:Array></DiscrStats>", "113"},
      {"<DiscrStats><x>" + array + "</x></DiscrStats>", "113"},
      {"<DiscrStats/><DiscrStats>" + array + "</DiscrStats>", "113"},
      {"<DiscrStats modalValue='x'>text<!-- c --><Extension/>" + array + "</DiscrStats>", R"(OK: "v" 10 [1, 2])"},
      {"<DiscrStats>" + array + "</DiscrStats><DiscrStats/>", R"(OK: "v" 10 [1, 2])"},
      {"<DiscrStats>" + array + IntArray("-1") + "</DiscrStats>", R"(OK: "v" 10 [1, 2])"}};
  for (const auto& row : rows) EXPECT_EQ(Read(Univariate(row.content)), row.outcome) << row.content;
}

TEST_F(CategoricalStatistics, OnlyTheFirstArrayCountsAlsoWhenItHoldsTheCategories) {
  EXPECT_EQ(Read(Discrete("<Array type='string'>a b</Array>" + IntArray("1 2"))), "109");
  EXPECT_EQ(Read(Discrete("<Array>a b</Array>" + IntArray("1 2"))), "108");
  EXPECT_EQ(Read(Discrete(IntArray("1 2") + "<Array type='string'>a b</Array>")), R"(OK: "v" 10 [1, 2])");
}

TEST_F(CategoricalStatistics, CountsNeitherFitTheTotalNorTheSizeThatTheArrayStates) {
  EXPECT_EQ(Read(Discrete("<Array type='int' n='7'>1 2</Array>")), R"(OK: "v" 10 [1, 2])");
  EXPECT_EQ(Read(Discrete("<Array type='int' n='x'>100</Array>")), R"(OK: "v" 10 [100])");
}

// The array of counts, in the histogram of a continuous field (which needs two of them) as well

struct ArrayRow {
  const char* array;
  const char* outcome;  // "OK: " and the counts, or a code
};

const ArrayRow kArrays[] = {
    {"<Array type='int'>1 2</Array>", "OK: [1, 2]"},
    {"<Array type='real'>1 2</Array>", "OK: [1, 2]"},
    {"<Array type='int'>1.5 2e1</Array>", "OK: [1.5, 20]"},
    {"<Array type='real'> \t1\n\r 2\n</Array>", "OK: [1, 2]"},
    {"<Array type='int'>&#49;&#32;2</Array>", "OK: [1, 2]"},
    {"<Array type='int'>0 0</Array>", "OK: [0, 0]"},
    {"<Array type='int'>-0 0</Array>", "OK: [-0, 0]"},
    {"<Array>1 2</Array>", "108"},
    {"<Array Type='int' p:type='int'>1 2</Array>", "108"},
    {"<Array type=''>1 2</Array>", "109"},
    {"<Array type='string'>1 2</Array>", "109"},
    {"<Array type='Int'>1 2</Array>", "109"},
    {"<Array type='REAL'>1 2</Array>", "109"},
    {"<Array type='integer'>1 2</Array>", "109"},
    {"<Array type='double'>1 2</Array>", "109"},
    {"<Array type=' int'>1 2</Array>", "109"},
    {"<Array type='int '>1 2</Array>", "109"},
    {"<Array type='int'>1 -2</Array>", "114"},
    {"<Array type='int'>-1 2</Array>", "114"},
    {"<Array type='real'>1 -1e-300</Array>", "114"},
    {"<Array type='int'>1 x</Array>", "114"},
    {"<Array type='int'>1,2</Array>", "114"},
    {"<Array type='int'>\"1\" \"2\"</Array>", "114"},
    {"<Array type='int'>1 INF</Array>", "114"},
    {"<Array type='int'>1 1e400</Array>", "114"},
    // The missing value is the lowest number of all, and so negative.
    {"<Array type='int'>1 NaN</Array>", "114"},
    {"<Array type='int'>1<!-- c --> 2</Array>", "114"},
    {"<Array type='int'>1 <?p?>2</Array>", "114"},
    {"<Array type='int'><x/>1 2</Array>", "114"},
    {"<Array type='int'><![CDATA[1 2]]></Array>", "114"},
    {"<Array type='int'><x>1 2</x></Array>", "114"},
};

TEST_F(CategoricalStatistics, ArrayOfCountsIsNumericAndWithoutNegatives) {
  for (const ArrayRow& row : kArrays) {
    const std::string outcome(row.outcome);
    const bool good = outcome.rfind("OK: ", 0) == 0;
    EXPECT_EQ(Read(Discrete(row.array)), good ? "OK: \"v\" 10 " + outcome.substr(4) : outcome) << row.array;
    EXPECT_EQ(Read(Histogram(Interval("0", "1") + Interval("1", "2") + row.array)),
              good ? "OK: \"v\" 10 LOWEST..LOWEST mean LOWEST sd LOWEST cuts [0, 1, 2] " + outcome.substr(4) : outcome)
        << row.array;
  }
}

TEST_F(CategoricalStatistics, EmptyArrayIsNoCounts) {
  for (const char* const array :
       {"<Array type='int'/>", "<Array type='real'></Array>", "<Array type='int'> \n </Array>"}) {
    EXPECT_EQ(Read(Discrete(array)), R"(OK: "v" 10 [])") << array;
  }
}

TEST_F(CategoricalStatistics, ThousandsOfCountsAreRead) {
  std::string numbers, shown;
  for (int i = 0; i < 5000; ++i) {
    numbers += std::to_string(i) + "\n";
    shown += (i > 0 ? ", " : "") + std::to_string(i);
  }
  EXPECT_EQ(Read(Discrete(IntArray(numbers))), "OK: \"v\" 10 [" + shown + "]");
}

}  // namespace
