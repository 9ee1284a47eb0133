#include "DisplayText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using rqtool::CutToWidth;
using rqtool::DisplayWidth;
using rqtool::Printable;
using rqtool::PrintableJson;

namespace {

TEST(Printable, EscapesWhatSteersATerminalAndLeavesAllElse) {
  struct Row {
    std::string text;
    std::string printable;
  };
  const std::vector<Row> rows{
      {"", ""},
      {"plain \\ text", "plain \\ text"},
      {"Größe 身長 😀 e\u0301", "Größe 身長 😀 e\u0301"},
      {"a\tb\nc\rd", "a\\tb\\nc\\rd"},
      {"\x1b[31m\x7f", "\\x1b[31m\\x7f"},
      {std::string(1, '\0'), "\\x00"},
      {"\u0085\u009b", "\\u{85}\\u{9b}"},
      {"\u2028\u2029\u202a\u202e\u2066\u2069", "\\u{2028}\\u{2029}\\u{202a}\\u{202e}\\u{2066}\\u{2069}"},
      {"\u200b\u200e\u200f\u061c\u2060\ufeff", "\\u{200b}\\u{200e}\\u{200f}\\u{61c}\\u{2060}\\u{feff}"},
      {"\U000E0001\U000E0041\U000E007F", "\\u{e0001}\\u{e0041}\\u{e007f}"},
      {"\u200c\u200d\u00ad\ufe0f\U000E0100", "\u200c\u200d\u00ad\ufe0f\U000E0100"},
      {"\xff", "\\xff"},
      {"a\xc3", "a\\xc3"},
      {"\xc3(", "\\xc3("},
      {"\xe8\xba", "\\xe8\\xba"},
      {"\xed\xa0\x80", "\\xed\\xa0\\x80"},
      {"\xc0\xaf", "\\xc0\\xaf"},
      {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},
  };
  for (const Row& row : rows) EXPECT_EQ(Printable(row.text), row.printable) << ::testing::PrintToString(row.text);
}

TEST(PrintableJson, EscapesTheSameCharactersAsJsonDoesAndKeepsLineEnds) {
  EXPECT_EQ(PrintableJson("{\n \"a\x7f\u009b\u202e\u2028\": \"身長 \\u001b\"\n}"),
            "{\n \"a\\u007f\\u009b\\u202e\\u2028\": \"身長 \\u001b\"\n}");
}

TEST(PrintableJson, EscapesTagsAsPairsOfSurrogates) {
  EXPECT_EQ(PrintableJson("\"\u200b\u200d\U000E0041\""), "\"\\u200b\u200d\\udb40\\udc41\"");
}

TEST(DisplayWidth, CountsColumnsOfATerminal) {
  struct Row {
    std::string text;
    std::size_t width;
  };
  const std::vector<Row> rows{
      {"", 0},
      {"abc", 3},
      {"Größe", 5},
      {"身長", 4},
      {"ｱ", 1},
      {"Ａ", 2},
      {"e\u0301", 1},
      {"भाषा", 4},
      {"हिन्दी", 5},
      {"성별", 4},
      {"😀", 2},
      {"\u200d\ufeff", 0},
      {"\u1100\u1161\u11a8", 2},
      {"co\u00adop", 5},
      {"\U00020000", 2},
      {"𝒙", 1},
  };
  for (const Row& row : rows) EXPECT_EQ(DisplayWidth(row.text), row.width) << row.text;
}

TEST(CutToWidth, EndsWithAnEllipsisAndKeepsCharactersWhole) {
  struct Row {
    std::string text;
    std::size_t width;
    std::string cut;
  };
  const std::vector<Row> rows{
      {"abc", 3, "abc"},
      {"abcd", 3, "ab…"},
      {"abcd", 1, "…"},
      {"abcd", 0, ""},
      {"", 0, ""},
      {"身長体重", 8, "身長体重"},
      {"身長体重", 7, "身長体…"},
      {"身長体重", 6, "身長…"},
      {"身長体重", 2, "…"},
      {"e\u0301e\u0301e\u0301", 2, "e\u0301…"},
      {"abc\u0301", 3, "abc\u0301"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(CutToWidth(row.text, row.width), row.cut) << row.text << ' ' << row.width;
    EXPECT_LE(DisplayWidth(CutToWidth(row.text, row.width)), row.width);
  }
}

}  // namespace
