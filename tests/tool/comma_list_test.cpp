#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "CommaList.h"

namespace {

using Items = std::optional<std::vector<std::string>>;

TEST(CommaList, IsSplitAsRfc4180WritesLists) {
  struct Row {
    const char* list;
    Items items;
  };
  const std::vector<Row> rows{
      {"a", {{"a"}}},
      {"a,b,c", {{"a", "b", "c"}}},
      {"", {{""}}},
      {",", {{"", ""}}},
      {"a,,b", {{"a", "", "b"}}},
      {" a , b ", {{" a ", " b "}}},
      {"\"a,b\",c", {{"a,b", "c"}}},
      {"a,\"b,c\"", {{"a", "b,c"}}},
      {"\"a\"\"b\"", {{"a\"b"}}},
      {"\"\"", {{""}}},
      {"\"\"\"\"", {{"\""}}},
      {"a\"b,c", {{"a\"b", "c"}}},
      {"\"line\nend\"", {{"line\nend"}}},
      {"a\\,b", {{"a\\", "b"}}},
      {"\"a", std::nullopt},
      {"\"a\"b", std::nullopt},
      {"\"a\" ,b", std::nullopt},
      {"\"a\"\"", std::nullopt},
      {"a,\"", std::nullopt},
  };
  for (const Row& row : rows) EXPECT_EQ(rqtool::SplitCommaList(row.list), row.items) << row.list;
}

}  // namespace
