#include "HistogramText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using rqtool::Bar;
using rqtool::HistogramText;
using rqtool::SpreadText;

namespace {

TEST(HistogramText, DrawsToAnEighthOfAColumnAndShowsWhatIsNotEmpty) {
  const std::vector<Bar> bars{
      {"a", "8", "1%", 1}, {"b", "1", "1%", 0.5 + 1.0 / 320}, {"c", "1", "1%", 1e-9}, {"d", "0", "0%", 0}};
  EXPECT_EQ(HistogramText(bars, std::nullopt),
            "  a  8  1%  ████████████████████████████████████████\n"
            "  b  1  1%  ████████████████████▏\n"
            "  c  1  1%  ▏\n"
            "  d  0  0%\n");
}

TEST(HistogramText, FitsTheWidthAndCutsLabels) {
  const std::vector<Bar> bars{{"a very long label indeed", "100", "100.0%", 1}};
  EXPECT_EQ(HistogramText(bars, 40), "  a very lon…  100  100.0%  ████████████\n");
  EXPECT_EQ(HistogramText(bars, 1), "  a very …  100  100.0%  ████████\n");
}

TEST(HistogramText, AlignsByWhatIsSeen) {
  EXPECT_EQ(HistogramText({{"日本", "1", "1%", 0}, {"x", "10", "2%", 0}}, std::nullopt),
            "  日本   1  1%\n  x     10  2%\n");
}

TEST(SpreadText, MarksTheMeanInItsSurroundings) {
  EXPECT_EQ(SpreadText({0, 0, 0}, "0", "1", 18), "  0 ├●─────────┤ 1\n");
  EXPECT_EQ(SpreadText({0.5, 1, 1}, "0", "1", 18), "  0 ├─────━━━━●┤ 1\n");
}

}  // namespace
