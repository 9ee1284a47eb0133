// Every allocation of reading statistics fails once, and nothing may be left behind.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/failing_heap.h"
#include "tests/support/statistics.h"

namespace {

using RQMTD_NAMESPACE::RQUniStats;
using rqtest::heap;
using rqtest::IntArray;
using rqtest::Ok;
using rqtest::Outcome;
using rqtest::Show;
using rqtest::WithFailureAt;
using xercesc::DOMElement;

// The name is longer than what fits into a string without an allocation; one number is left to the XML library.
const std::string& Document() {
  static const std::string document = rqtest::WithModelStats(
      "<UnivariateStats field='the f\xC3\xBCrst field, with a long name'><Counts totalFreq='10'/>"
      "<NumericInfo minimum=' 0 ' maximum='9'/><ContStats>" +
      rqtest::Interval("0", "5") + rqtest::Interval("5", "9") + IntArray("4 +6") +
      "</ContStats></UnivariateStats>"
      "<UnivariateStats field='the second field, with a long name'><Counts totalFreq='10'/><DiscrStats>" +
      IntArray("1 2 3 4 5") + "</DiscrStats></UnivariateStats>");
  return document;
}

class StatisticsAllocation : public rqtest::WithFailingHeap {
 protected:
  StatisticsAllocation() : WithFailingHeap(Document()) {
    EXPECT_EQ(rqtest::Parse(parser_, Document()), Ok());
    parser_.SetModelElmt(*RQXPrsUtil::GetFirstChildElmt(*parser_.GetRootElement(), "Model"));
  }
  std::string ReadAll() const {
    std::string text;
    RQUniStats stats;
    const DOMElement* cursor = nullptr;
    while (parser_.FillUniStats(stats, cursor).IsOK() && cursor) text += Show(stats) + "\n";
    return text;
  }

  RQXPrsUtil::RQPMMLParser parser_;
};

TEST_F(StatisticsAllocation, EachMayFailAndKeepsTheObjectOfTheCaller) {
  const std::string all = ReadAll();
  EXPECT_NE(all.find("[4, 6]"), std::string::npos) << all;
  EXPECT_NE(all.find("[1, 2, 3, 4, 5]"), std::string::npos) << all;
  FailEachOnceWithoutLeaks([&](long allocation) {
    const DOMElement* cursor = nullptr;
    RQUniStats stats("what the caller had before, whatever it is", 1, {1, 2, 3});
    long left = allocation;  // counted on over the two fields
    for (int field = 0; field < 2; ++field) {
      const std::string before = Show(stats);
      const DOMElement* next = cursor;
      const long failing = heap.failed ? -1 : left;
      const Outcome outcome = WithFailureAt(failing, [&] {
        const auto status = parser_.FillUniStats(stats, next);
        left = heap.untilFailure;
        return status;
      });
      ASSERT_NE(next, cursor);
      cursor = next;
      if (outcome.outOfMemory) {
        ASSERT_EQ(Show(stats), before) << allocation;
      } else {
        ASSERT_EQ(outcome.status, Ok()) << allocation;
        ASSERT_NE(all.find(Show(stats)), std::string::npos) << allocation;
      }
    }
    ASSERT_EQ(ReadAll(), all) << "after a failure at allocation " << allocation;
  });
}

TEST_F(StatisticsAllocation, FiftyRoundsHoldNothing) {
  ReadAll();
  const long before = heap.LiveBlocks();
  for (int i = 0; i < 50; ++i) ReadAll();
  EXPECT_EQ(heap.LiveBlocks(), before);
}

}  // namespace
