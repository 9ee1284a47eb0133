#include "TextArray.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using rqtool::SplitTextArray;
using Texts = std::vector<std::string>;

namespace {

TEST(TextArray, SplitsAtBlanksOutsideQuotes) {
  EXPECT_EQ(SplitTextArray(" a\tb\r\n c "), (Texts{"a", "b", "c"}));
  EXPECT_EQ(SplitTextArray("\"a b\" \"\" c"), (Texts{"a b", "", "c"}));
  EXPECT_EQ(SplitTextArray(""), Texts{});
  EXPECT_EQ(SplitTextArray(" \n"), Texts{});
}

TEST(TextArray, TakesQuotesBehindABackslashAsText) {
  EXPECT_EQ(SplitTextArray(R"("a \"b\"" c\"d \n \ )"), (Texts{"a \"b\"", "c\"d", "\\n", "\\"}));
}

TEST(TextArray, TakesTheRestWhereAQuoteIsNotClosed) { EXPECT_EQ(SplitTextArray("a \"b c"), (Texts{"a", "b c"})); }

}  // namespace
