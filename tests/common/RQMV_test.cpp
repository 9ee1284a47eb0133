#include "rqxml/common/RQMV.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

// Runs before the dynamic initialisation of everything else in this program.
double gSeenEarly = 0;
__attribute__((constructor(101))) void ReadEarly() { gSeenEarly = RQMV::gMissingValue; }

TEST(RQMV, TheMissingValueIsTheLowestFiniteDouble) {
  EXPECT_EQ(RQMV::gMissingValue, std::numeric_limits<double>::lowest());
  EXPECT_EQ(RQMV::gMissingValue, -1.7976931348623157e308);
}

TEST(RQMV, TheMissingValueIsThereBeforeAnyGlobalIsConstructed) {
  EXPECT_EQ(gSeenEarly, std::numeric_limits<double>::lowest());
}

}  // namespace
