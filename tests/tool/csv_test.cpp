#include "Csv.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

using rqtool::CsvError;
using rqtool::CsvRecord;
using rqtool::ParseCsv;

namespace {

using Fields = std::vector<std::string>;

TEST(Csv, TakesTextApartByCommasLineEndsAndQuotes) {
  struct Row {
    std::string text;
    std::vector<Fields> fields;
    std::vector<std::size_t> lines;
  };
  const std::vector<Row> rows{
      {"", {}, {}},
      {"a", {{"a"}}, {1}},
      {"a,b\n", {{"a", "b"}}, {1}},
      {"a,b\r\nc,d\r\n", {{"a", "b"}, {"c", "d"}}, {1, 2}},
      {"a,b\r\nc,d", {{"a", "b"}, {"c", "d"}}, {1, 2}},
      {"\xEF\xBB\xBF"
       "a,b\n",
       {{"a", "b"}},
       {1}},
      {"a,\n,b\n", {{"a", ""}, {"", "b"}}, {1, 2}},
      {" a , b ", {{" a ", " b "}}, {1}},
      {"\"a,b\",\"c\"\"d\"\r\n", {{"a,b", "c\"d"}}, {1}},
      {"\"\",\"\"\"\"", {{"", "\""}}, {1}},
      {"\"a\nb\r\nc\",d\ne,f", {{"a\nb\r\nc", "d"}, {"e", "f"}}, {1, 4}},
      {"\n\r\na\n\nb\n", {{"a"}, {"b"}}, {3, 5}},
      {"\"a\"\n\"b\"", {{"a"}, {"b"}}, {1, 2}},
  };
  for (const Row& row : rows) {
    const std::vector<CsvRecord> records = ParseCsv(row.text);
    ASSERT_EQ(records.size(), row.fields.size()) << row.text;
    for (std::size_t i = 0; i < records.size(); ++i) {
      EXPECT_EQ(records[i].fields, row.fields[i]) << row.text;
      EXPECT_EQ(records[i].line, row.lines[i]) << row.text;
    }
  }
}

TEST(Csv, TellsTheLineOfAQuoteThatDoesNotFit) {
  struct Row {
    std::string text;
    std::size_t line;
  };
  for (const Row& row : std::vector<Row>{{"a\nb,\"c\nd\n", 2}, {"a\n\"b\"c\n", 2}, {"a\nb\nc\"d\n", 3}, {"\"", 1}}) {
    try {
      ParseCsv(row.text);
      ADD_FAILURE() << row.text;
    } catch (const CsvError& e) {
      EXPECT_EQ(e.GetLine(), row.line) << row.text;
    }
  }
}

}  // namespace
