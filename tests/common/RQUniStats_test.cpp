#include "rqxml/common/RQUniStats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "rqxml/common/RQMV.h"

namespace {

using RQMTD_NAMESPACE::RQUniStats;
using SummStats = RQUniStats::SummStats;
using Numbers = std::vector<double>;

constexpr double kMissing = std::numeric_limits<double>::lowest();
constexpr double kHighest = std::numeric_limits<double>::max();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

static_assert(std::is_copy_constructible_v<RQUniStats> && std::is_copy_assignable_v<RQUniStats>);
static_assert(std::is_nothrow_move_constructible_v<RQUniStats> && std::is_nothrow_move_assignable_v<RQUniStats>);

SummStats Summary(double minimum, double maximum, double mean, double standardDeviation) {
  SummStats summary;
  summary.minimum = minimum;
  summary.maximum = maximum;
  summary.mean = mean;
  summary.standardDeviation = standardDeviation;
  return summary;
}

const SummStats kSummary = Summary(-1, 9, 4, 2.5);

void ExpectSameSummary(const SummStats& seen, const SummStats& expected) {
  EXPECT_EQ(seen.minimum, expected.minimum);
  EXPECT_EQ(seen.maximum, expected.maximum);
  EXPECT_EQ(seen.mean, expected.mean);
  EXPECT_EQ(seen.standardDeviation, expected.standardDeviation);
}

TEST(RQUniStats, DefaultConstructedIsNotValidAndDescribesNothing) {
  const RQUniStats stats;
  EXPECT_FALSE(stats.IsValid());
  EXPECT_FALSE(stats.IsContinuous());
  EXPECT_EQ(stats.GetName(), "");
  EXPECT_EQ(stats.GetTotalFrequency(), kMissing);
  EXPECT_TRUE(stats.GetFrequencies().empty());
  EXPECT_TRUE(stats.GetCutPoints().empty());
  ExpectSameSummary(stats.GetSummStats(), SummStats());
}

TEST(RQUniStats, SummaryStatisticsAreMissingUntilGiven) {
  ExpectSameSummary(SummStats(), Summary(kMissing, kMissing, kMissing, kMissing));
}

TEST(RQUniStats, CategoricalKeepsNameTotalAndFrequencies) {
  const RQUniStats stats("colour", 10, Numbers{7, 0, 3});
  EXPECT_TRUE(stats.IsValid());
  EXPECT_FALSE(stats.IsContinuous());
  EXPECT_EQ(stats.GetName(), "colour");
  EXPECT_EQ(stats.GetTotalFrequency(), 10);
  EXPECT_EQ(stats.GetFrequencies(), (Numbers{7, 0, 3}));
  EXPECT_TRUE(stats.GetCutPoints().empty());
  ExpectSameSummary(stats.GetSummStats(), SummStats());
}

TEST(RQUniStats, ContinuousKeepsNameTotalSummaryCutPointsAndFrequencies) {
  const RQUniStats stats("age", 10.5, kSummary, Numbers{kMissing, 4, kMissing}, Numbers{6.5, 4});
  EXPECT_TRUE(stats.IsValid());
  EXPECT_TRUE(stats.IsContinuous());
  EXPECT_EQ(stats.GetName(), "age");
  EXPECT_EQ(stats.GetTotalFrequency(), 10.5);
  EXPECT_EQ(stats.GetFrequencies(), (Numbers{6.5, 4}));
  EXPECT_EQ(stats.GetCutPoints(), (Numbers{kMissing, 4, kMissing}));
  ExpectSameSummary(stats.GetSummStats(), kSummary);
}

struct NameAndTotalRow {
  const char* text;
  std::string name;
  double total;
  bool valid;
};

TEST(RQUniStats, IsValidNeedsANameAndAFiniteTotalThatIsNotNegative) {
  const NameAndTotalRow rows[] = {
      {"all given", "x", 10, true},
      {"no name", "", 10, false},
      {"a blank is a name", " ", 10, true},
      {"zero", "x", 0, true},
      {"negative zero", "x", -0.0, true},
      {"the largest number", "x", kHighest, true},
      {"just negative", "x", -kTiny, false},
      {"negative", "x", -1, false},
      {"missing", "x", kMissing, false},
      {"infinite", "x", kInfinity, false},
      {"minus infinite", "x", -kInfinity, false},
      {"not a number", "x", kNaN, false},
  };
  for (const NameAndTotalRow& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(RQUniStats(row.name, row.total, Numbers{1}).IsValid(), row.valid);
    EXPECT_EQ(RQUniStats(row.name, row.total, kSummary, Numbers{0, 1}, Numbers{1}).IsValid(), row.valid);
  }
}

TEST(RQUniStats, IsValidNeedsFrequenciesThatAreFiniteAndNotNegative) {
  const std::pair<double, bool> rows[] = {
      {0, true},   {-0.0, true},      {0.5, true},        {kHighest, true},    {-kTiny, false},
      {-1, false}, {kMissing, false}, {kInfinity, false}, {-kInfinity, false}, {kNaN, false},
  };
  for (const auto& [frequency, valid] : rows) {
    SCOPED_TRACE(frequency);
    EXPECT_EQ(RQUniStats("x", 10, Numbers{frequency}).IsValid(), valid);
    EXPECT_EQ(RQUniStats("x", 10, Numbers{1, 2, frequency}).IsValid(), valid);
    EXPECT_EQ(RQUniStats("x", 10, kSummary, Numbers{0, 1}, Numbers{frequency}).IsValid(), valid);
    EXPECT_EQ(RQUniStats("x", 10, kSummary, Numbers{0, 1, 2, 3}, Numbers{frequency, 1, 2}).IsValid(), valid);
  }
}

TEST(RQUniStats, CategoricalStatisticsMayHaveNoFrequencies) { EXPECT_TRUE(RQUniStats("x", 0, Numbers{}).IsValid()); }

TEST(RQUniStats, FrequenciesNeedNotAddUpToTheTotal) { EXPECT_TRUE(RQUniStats("x", 1, Numbers{7, 8}).IsValid()); }

struct SummaryRow {
  const char* text;
  SummStats summary;
  bool valid;
};

TEST(RQUniStats, IsValidNeedsConsistentSummaryStatisticsOfAContinuousField) {
  const SummaryRow rows[] = {
      {"all given", Summary(1, 3, 2, 0.5), true},
      {"nothing given", SummStats(), true},
      {"zero deviation", Summary(1, 3, 2, 0), true},
      {"negative zero deviation", Summary(1, 3, 2, -0.0), true},
      {"missing deviation", Summary(1, 3, 2, kMissing), true},
      {"infinite deviation", Summary(1, 3, 2, kInfinity), true},
      {"just negative deviation", Summary(1, 3, 2, -kTiny), false},
      {"negative deviation", Summary(1, 3, 2, -0.5), false},
      {"the second lowest number as deviation", Summary(1, 3, 2, std::nextafter(kMissing, 0)), false},
      {"minus infinite deviation", Summary(1, 3, 2, -kInfinity), false},
      {"deviation not a number", Summary(1, 3, 2, kNaN), false},
      {"minimum at maximum", Summary(3, 3, 3, 0), true},
      {"minimum just above maximum", Summary(std::nextafter(3.0, 4.0), 3, 3, 0), false},
      {"minimum above maximum", Summary(4, 3, 3, 0), false},
      {"minimum missing", Summary(kMissing, 3, 3, 0), true},
      {"maximum missing", Summary(4, kMissing, 3, 0), true},
      {"minimum missing below a maximum of minus infinity", Summary(kMissing, -kInfinity, 3, 0), true},
      {"minimum and maximum missing", Summary(kMissing, kMissing, 3, 0), true},
      {"infinite range", Summary(-kInfinity, kInfinity, 3, 0), true},
      {"infinite range upside down", Summary(kInfinity, -kInfinity, 3, 0), false},
      {"minimum not a number", Summary(kNaN, 3, 3, 0), false},
      {"maximum not a number", Summary(1, kNaN, 3, 0), false},
      {"mean outside the range", Summary(1, 3, 9, 0), true},
      {"mean missing", Summary(1, 3, kMissing, 0), true},
  };
  for (const SummaryRow& row : rows) {
    SCOPED_TRACE(row.text);
    EXPECT_EQ(RQUniStats("x", 10, row.summary, Numbers{}, Numbers{}).IsValid(), row.valid);
  }
}

TEST(RQUniStats, IsValidNeedsOneCutPointMoreThanFrequenciesOrNeither) {
  for (std::size_t cuts = 0; cuts < 5; ++cuts) {
    for (std::size_t counts = 0; counts < 5; ++counts) {
      SCOPED_TRACE(::testing::Message() << cuts << " cut points, " << counts << " frequencies");
      Numbers cutPoints;
      for (std::size_t i = 0; i < cuts; ++i) cutPoints.push_back(static_cast<double>(i));
      const bool valid = (cuts == 0 && counts == 0) || cuts == counts + 1;
      EXPECT_EQ(RQUniStats("x", 10, kSummary, cutPoints, Numbers(counts, 1.0)).IsValid(), valid);
    }
  }
}

struct CutPointRow {
  const char* text;
  Numbers cutPoints;
  bool valid;
};

TEST(RQUniStats, IsValidNeedsAscendingCutPointsOfWhichOnlyTheEndsMayBeMissing) {
  const CutPointRow rows[] = {
      {"ascending", {0, 1, 2}, true},
      {"ascending by the smallest step", {1, std::nextafter(1.0, 2.0)}, true},
      {"descending", {2, 1, 0}, false},
      {"descending at the end", {0, 2, 1}, false},
      {"descending at the beginning", {1, 0, 2}, false},
      {"equal", {1, 1}, false},
      {"equal at the end", {0, 1, 1}, false},
      {"both zeros", {-0.0, 0.0}, false},
      {"first missing", {kMissing, 1, 2}, true},
      {"last missing", {1, 2, kMissing}, true},
      {"both ends missing", {kMissing, 1, kMissing}, true},
      {"nothing but missing ends", {kMissing, kMissing}, true},
      {"one, missing", {kMissing}, true},
      {"one, given", {3}, true},
      {"missing in the middle", {0, kMissing, 1}, false},
      {"the second missing too", {kMissing, kMissing, 1}, false},
      {"the last but one missing too", {1, kMissing, kMissing}, false},
      {"three missing", {kMissing, kMissing, kMissing}, false},
      {"descending between missing ends", {kMissing, 2, 1, kMissing}, false},
      {"infinite ends", {-kInfinity, 0, kInfinity}, true},
      {"infinite ends upside down", {kInfinity, 0, -kInfinity}, false},
      {"first not a number", {kNaN, 1, 2}, false},
      {"middle not a number", {0, kNaN, 2}, false},
      {"last not a number", {0, 1, kNaN}, false},
      {"one, not a number", {kNaN}, false},
  };
  for (const CutPointRow& row : rows) {
    SCOPED_TRACE(row.text);
    const Numbers frequencies(row.cutPoints.size() - 1, 1.0);
    EXPECT_EQ(RQUniStats("x", 10, kSummary, row.cutPoints, frequencies).IsValid(), row.valid);
  }
}

TEST(RQUniStats, CopiesAreEqualAndIndependent) {
  const RQUniStats original("age", 10, kSummary, Numbers{0, 4, 9}, Numbers{6, 4});
  RQUniStats copy(original);
  RQUniStats assigned("other", 1, Numbers{1});
  assigned = original;
  for (const RQUniStats* stats : {&copy, &assigned}) {
    EXPECT_TRUE(stats->IsValid());
    EXPECT_TRUE(stats->IsContinuous());
    EXPECT_EQ(stats->GetName(), "age");
    EXPECT_EQ(stats->GetTotalFrequency(), 10);
    EXPECT_EQ(stats->GetCutPoints(), (Numbers{0, 4, 9}));
    EXPECT_EQ(stats->GetFrequencies(), (Numbers{6, 4}));
    ExpectSameSummary(stats->GetSummStats(), kSummary);
  }
  copy = RQUniStats();
  EXPECT_FALSE(copy.IsValid());
  EXPECT_EQ(original.GetName(), "age");
  EXPECT_TRUE(assigned.IsValid());
}

TEST(RQUniStats, AssigningToItselfChangesNothing) {
  RQUniStats stats("age", 10, kSummary, Numbers{0, 4, 9}, Numbers{6, 4});
  const RQUniStats& same = stats;
  stats = same;
  EXPECT_TRUE(stats.IsValid());
  EXPECT_EQ(stats.GetName(), "age");
  EXPECT_EQ(stats.GetFrequencies(), (Numbers{6, 4}));
}

TEST(RQUniStats, MovingHandsEverythingOn) {
  RQUniStats original("age", 10, kSummary, Numbers{0, 4, 9}, Numbers{6, 4});
  const double* const frequencies = original.GetFrequencies().data();
  RQUniStats moved(std::move(original));
  RQUniStats assigned;
  assigned = std::move(moved);
  EXPECT_TRUE(assigned.IsValid());
  EXPECT_TRUE(assigned.IsContinuous());
  EXPECT_EQ(assigned.GetName(), "age");
  EXPECT_EQ(assigned.GetTotalFrequency(), 10);
  EXPECT_EQ(assigned.GetCutPoints(), (Numbers{0, 4, 9}));
  EXPECT_EQ(assigned.GetFrequencies().data(), frequencies) << "the numbers were copied, not moved";
  ExpectSameSummary(assigned.GetSummStats(), kSummary);
}

}  // namespace
