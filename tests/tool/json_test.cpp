#include "Json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "rqxml/common/RQMV.h"

using rqtool::JsonNumber;
using rqtool::JsonNumbers;
using rqtool::JsonText;

namespace {

TEST(JsonNumber, ReadsBackAsTheSameDoubleAndKeepsWholeNumbersPlain) {
  struct Row {
    double value;
    std::string text;
  };
  const std::vector<Row> rows{
      {0, "0"},
      {-0.0, "-0.0"},
      {1, "1"},
      {-17, "-17"},
      {0.1, "0.1"},
      {9007199254740991.0, "9007199254740991"},
      {1e300, "1e+300"},
      {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
      {std::numeric_limits<double>::denorm_min(), "5e-324"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(JsonNumber(row.value).dump(), row.text);
    const double back = rqtool::Json::parse(JsonNumber(row.value).dump()).get<double>();
    EXPECT_EQ(back, row.value);
    EXPECT_EQ(std::signbit(back), std::signbit(row.value));
  }
}

TEST(JsonNumber, IsNullForTheSystemMissingValue) {
  EXPECT_TRUE(JsonNumber(RQMV::gMissingValue).is_null());
  EXPECT_EQ(JsonNumbers({1, RQMV::gMissingValue}).dump(), "[1,null]");
  EXPECT_EQ(JsonNumbers({}).dump(), "[]");
}

TEST(JsonText, ReplacesBytesThatAreNoUtf8AndEscapesControls) {
  EXPECT_EQ(JsonText(rqtool::Json("a\xff\u009b")), "\"a\uFFFD\\u009b\"\n");
}

}  // namespace
