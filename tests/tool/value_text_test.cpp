#include "ValueText.h"

#include <gtest/gtest.h>

#include "rqxml/common/RQMV.h"

using rqtool::ShortNumberText;

namespace {

TEST(ShortNumberText, HasSixDigitsAndAllOfTheWholePart) {
  EXPECT_EQ(ShortNumberText(44.216666666667), "44.2167");
  EXPECT_EQ(ShortNumberText(-119.58051327541905), "-119.581");
  EXPECT_EQ(ShortNumberText(1234567.8), "1234568");
  EXPECT_EQ(ShortNumberText(123456789012), "123456789012");
  EXPECT_EQ(ShortNumberText(0.000123456789), "0.000123457");
  EXPECT_EQ(ShortNumberText(0.5), "0.5");
  EXPECT_EQ(ShortNumberText(9.9999999), "10");
  EXPECT_EQ(ShortNumberText(0), "0");
  EXPECT_EQ(ShortNumberText(1e-300), "1e-300");
  EXPECT_EQ(ShortNumberText(1.7e308), "1.7e+308");
  EXPECT_EQ(ShortNumberText(RQMV::gMissingValue), "(system-missing)");
}

}  // namespace
