#include "MarkupText.h"

#include <gtest/gtest.h>

using rqtool::MarkupText;

namespace {

TEST(MarkupText, EscapesMarkupAndWhatCannotStandInXml) {
  EXPECT_EQ(MarkupText("a<b>&\"'"), "a&lt;b&gt;&amp;&quot;&#39;");
  EXPECT_EQ(MarkupText("\x1b\x01\n"), "\\x1b\\x01\\n");
  EXPECT_EQ(MarkupText("a\uFFFEb\uFFFF"), "a\\u{fffe}b\\u{ffff}");
  EXPECT_EQ(MarkupText("\xff"), "\\xff");
  EXPECT_EQ(MarkupText("Größe \uFFFD 日本"), "Größe \uFFFD 日本");
  EXPECT_EQ(MarkupText(""), "");
}

}  // namespace
