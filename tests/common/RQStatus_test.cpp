#include "rqxml/common/RQStatus.h"

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

namespace {

using RQCommon::RQStatus;

static_assert(std::is_trivially_copyable_v<RQStatus>);
static_assert(std::is_nothrow_default_constructible_v<RQStatus>);
static_assert(std::is_same_v<decltype(RQStatus().GetCode()), long>);
static_assert(RQStatus().IsOK() && !RQStatus(104, false).IsOK());

TEST(RQStatus, IsOkWithCodeZeroAndNoFlagByDefault) {
  const RQStatus status;
  EXPECT_TRUE(status.IsOK());
  EXPECT_EQ(status.GetCode(), 0);
  EXPECT_FALSE(status.GetFlag());
}

TEST(RQStatus, KeepsTheCodeAndTheFlagOfAFailure) {
  struct Row {
    long code;
    bool flag;
  };
  for (const Row& row : {Row{104, false}, Row{120, true}, Row{1, false}, Row{-1, true},
                         Row{std::numeric_limits<long>::max(), true}, Row{std::numeric_limits<long>::min(), false}}) {
    SCOPED_TRACE(row.code);
    const RQStatus status(row.code, row.flag);
    EXPECT_FALSE(status.IsOK());
    EXPECT_EQ(status.GetCode(), row.code);
    EXPECT_EQ(status.GetFlag(), row.flag);
  }
}

TEST(RQStatus, IsOkForTheCodeZeroAndKeepsItsFlag) {
  const RQStatus status(0, true);
  EXPECT_TRUE(status.IsOK());
  EXPECT_EQ(status.GetCode(), 0);
  EXPECT_TRUE(status.GetFlag());
}

TEST(RQStatus, IsEqualWhenCodeAndFlagAre) {
  EXPECT_TRUE(RQStatus() == RQStatus(0, false));
  EXPECT_TRUE(RQStatus(104, true) == RQStatus(104, true));
  EXPECT_FALSE(RQStatus(104, true) == RQStatus(105, true));
  EXPECT_FALSE(RQStatus(104, true) == RQStatus(104, false));
  EXPECT_FALSE(RQStatus() == RQStatus(0, true));
}

TEST(RQStatus, IsUnequalWhenCodeOrFlagDiffers) {
  EXPECT_FALSE(RQStatus() != RQStatus(0, false));
  EXPECT_FALSE(RQStatus(104, true) != RQStatus(104, true));
  EXPECT_TRUE(RQStatus(104, true) != RQStatus(105, true));
  EXPECT_TRUE(RQStatus(104, true) != RQStatus(104, false));
}

TEST(RQStatus, IsCopiedWhole) {
  const RQStatus failure(111, true);
  RQStatus copy(failure);
  EXPECT_EQ(copy, failure);
  copy = RQStatus();
  EXPECT_TRUE(copy.IsOK());
  EXPECT_EQ(failure.GetCode(), 111);
  copy = failure;
  EXPECT_EQ(copy.GetCode(), 111);
  EXPECT_TRUE(copy.GetFlag());
}

}  // namespace
