#include "TextTable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using rqtool::ShortenList;
using rqtool::TextTable;
using Fit = TextTable::Fit;

namespace {

TEST(ShortenList, KeepsWhatFitsAndTellsTheNumberOfAllItems) {
  const std::vector<std::string> items{"red", "green", "blue", "yellow"};
  struct Row {
    std::size_t width;
    std::string text;
  };
  const std::vector<Row> rows{
      {24, "red, green, blue, yellow"},
      {23, "red, green, … (4 in all)"},
      {22, "red, … (4 in all)"},
      {17, "red, … (4 in all)"},
      {16, "… (4 in all)"},
      {12, "… (4 in all)"},
      {5, "… (4…"},
  };
  for (const Row& row : rows) {
    if (row.width == 23) continue;  // the tail takes 24 columns
    EXPECT_EQ(ShortenList(items, row.width), row.text) << row.width;
  }
  EXPECT_EQ(ShortenList(items, 23), "red, … (4 in all)");
  EXPECT_EQ(ShortenList({}, 5), "");
  EXPECT_EQ(ShortenList({"a"}, 1), "a");
}

TextTable MakeTable() {
  TextTable table({{.title = "#", .alignRight = true},
                   {.title = "Name", .fit = Fit::CutText},
                   {.title = "Note", .optional = true},
                   {.title = "List", .fit = Fit::ShortenList, .optional = true, .beneath = "list"}});
  table.AddRow({{"1"}, {"short"}, {}, {"a", "b"}});
  table.AddRow({{"10"}, {"a name that is rather long"}, {}, {"aaaaaaaaaaaa", "bbbbbbbbbbbb", "cccccccccccc"}});
  return table;
}

TEST(TextTable, WithoutAWidthShowsAllWithoutBlanksAtTheEnds) {
  EXPECT_EQ(MakeTable().Render(std::nullopt), R"( #  Name                        List
--  --------------------------  ----------------------------------------
 1  short                       a, b
10  a name that is rather long  aaaaaaaaaaaa, bbbbbbbbbbbb, cccccccccccc
)");
}

TEST(TextTable, IsFittedIntoAWidth) {
  EXPECT_EQ(MakeTable().Render(60), R"( #  Name                        List
--  --------------------------  ----------------------------
 1  short                       a, b
10  a name that is rather long  aaaaaaaaaaaa, … (3 in all)
)");
}

TEST(TextTable, PutsListsBeneathTheirRowsWhereTheWidthIsTooSmall) {
  EXPECT_EQ(MakeTable().Render(40), R"( #  Name
--  --------------------------
 1  short
    list: a, b
10  a name that is rather long
    list: aaaaaaaaaaaa, … (3 in all)
)");
}

TEST(TextTable, CutsTextsWhereNothingElseHelps) {
  EXPECT_EQ(MakeTable().Render(20), R"( #  Name
--  ----------------
 1  short
    list: a, b
10  a name that is …
    list: … (3 in a…
)");
}

TEST(TextTable, WithoutRowsHasItsHeadAlone) {
  EXPECT_EQ(TextTable({{.title = "A"}, {.title = "B", .optional = true}}).Render(80), "A\n-\n");
}

}  // namespace
