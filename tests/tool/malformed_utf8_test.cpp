#include "MalformedUtf8.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

using rqtool::FindMalformedUtf8;
using rqtool::IsMeantAsUtf8;

namespace {

std::string Find(const std::string& text) {
  std::istringstream in(text);
  const auto found = FindMalformedUtf8(in);
  if (!found) return "none";
  char shown[64];
  std::snprintf(shown, sizeof shown, "%02x at %lu:%lu", static_cast<unsigned>(found->value),
                static_cast<unsigned long>(found->place.line), static_cast<unsigned long>(found->place.column));
  return shown;
}

TEST(FindMalformedUtf8, TellsTheFirstByteWithLineAndColumn) {
  struct Row {
    std::string text;
    std::string found;
  };
  const std::vector<Row> rows{
      {"", "none"},
      {"plain\n", "none"},
      {"Größe 身長 😀 e\u0301", "none"},
      {"\xEF\xBB\xBFok", "none"},
      {"\xFF", "ff at 1:1"},
      {"\xEF\xBB\xBF\xFF", "ff at 1:1"},
      {"a\xEF\xBB\xBF\xFF", "ff at 1:3"},
      {"Größe\xE9 x\xFF", "e9 at 1:6"},
      {"one\ntwo\xE9", "e9 at 2:4"},
      {"one\r\ntwo\rthree\n\n\xA0", "a0 at 5:1"},
      {"😀\xE9", "e9 at 1:3"},
      {"cut \xE8\xBA", "e8 at 1:5"},
      {"\xC0\xAF", "c0 at 1:1"},
      {"x\xED\xA0\x80", "ed at 1:2"},
      {"\xF4\x90\x80\x80", "f4 at 1:1"},
  };
  for (const Row& row : rows) EXPECT_EQ(Find(row.text), row.found) << ::testing::PrintToString(row.text);
}

TEST(FindMalformedUtf8, CountsFarIntoADocument) {
  std::string text;
  for (int i = 0; i < 100'000; ++i) text += "schön\n";
  EXPECT_EQ(Find(text + "sch\xF6n"), "f6 at 100001:4");
}

TEST(IsMeantAsUtf8, GoesByTheFirstBytesAndTheDeclaration) {
  struct Row {
    std::string document;
    bool utf8;
  };
  const std::vector<Row> rows{
      {"", true},
      {"<a/>", true},
      {"\xEF\xBB\xBF<a/>", true},
      {"\x1f\x8b\x08", true},
      {"<?xml version='1.0'?><a encoding='latin1'/>", true},
      {"<?xml version='1.0' encoding='utf-8'?>", true},
      {"<?xml version=\"1.0\" encoding = \"UTF8\" standalone='yes'?>", true},
      {"<?xml-stylesheet encoding='latin1'?>", true},
      {"<?xml version='1.0' encoding='ISO-8859-1'?>", false},
      {"\xEF\xBB\xBF<?xml version='1.0'\n encoding='windows-1252'?>", false},
      {"<?xml version='1.0' encoding='UTF-16'?>", false},
      {"<?xml version='1.0' ", false},
      {"\xFF\xFE<\0", false},
      {"\xFE\xFF", false},
      {std::string("<\0a\0", 4), false},
      {std::string("\0<\0a", 4), false},
      {"\x4C\x6F\xA7\x94", false},
  };
  for (const Row& row : rows) {
    std::istringstream in(row.document);
    EXPECT_EQ(IsMeantAsUtf8(in), row.utf8) << ::testing::PrintToString(row.document);
  }
}

}  // namespace
