#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/XMLDouble.hpp>

#include "rqxml/common/RQMV.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/comma_locale.h"
#include "tests/support/dom.h"
#include "tests/support/platform.h"

namespace {

using rqtest::Document;
using RQXPrsUtil::AssembleDoublesList;
using RQXPrsUtil::GetDoubleAttribute;
using RQXPrsUtil::GetIntAttribute;
using xercesc::XMLDouble;

/// What the library's own number type makes of a text.
std::optional<double> Reference(const std::u16string& text) {
  try {
    const XMLDouble number(text.c_str());
    switch (number.getType()) {
      case XMLDouble::Normal:
        return number.getValue();
      case XMLDouble::NaN:
        return RQMV::gMissingValue;
      default:
        return std::nullopt;
    }
  } catch (const xercesc::NumberFormatException&) {
    return std::nullopt;
  }
}

std::u16string Widen(const std::string& text) { return {text.begin(), text.end()}; }

bool Same(double a, double b) { return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b); }

class Numbers : public rqtest::WithPlatform {
 protected:
  xercesc::DOMElement& With(const std::u16string& value) {
    document_.Root().setAttribute(u"n", value.c_str());
    return document_.Root();
  }

  /// Checks an attribute and, where the text is one token, a list of one number against the library.
  ::testing::AssertionResult ReadsLikeTheLibrary(const std::u16string& text) {
    const std::optional<double> expected = Reference(text);
    double value = 4711;
    const int result = GetDoubleAttribute(With(text), "n", value);
    const auto fail = [&](const char* what) {
      return ::testing::AssertionFailure()
             << what << " of " << ::testing::PrintToString(RQXPrsUtil::ToUTF8(text.c_str())) << ": " << result << ", "
             << value << ", expected " << (expected ? std::to_string(*expected) : std::string("a refusal"));
    };
    if (result != (expected ? 0 : 1)) return fail("result");
    if (!Same(value, expected.value_or(4711))) return fail("value");
    if (text.empty() || text.find_first_of(u" \t\r\n") != std::u16string::npos) return ::testing::AssertionSuccess();
    std::vector<double> values = {1, 2};
    if (AssembleDoublesList(List(text), values) != expected.has_value()) return fail("list result");
    if (values.size() != (expected ? 1U : 0U)) return fail("list size");
    if (expected && !Same(values.front(), *expected)) return fail("list value");
    return ::testing::AssertionSuccess();
  }

  /// An element with one text node.
  xercesc::DOMElement& List(const std::u16string& text) {
    if (list_ == nullptr) {
      list_ = document_.Get().createElement(u"list");
      text_ = document_.Get().createTextNode(u"");
      list_->appendChild(text_);
    }
    text_->setNodeValue(text.c_str());
    return *list_;
  }

 private:
  Document document_{"<a/>"};
  xercesc::DOMElement* list_ = nullptr;
  xercesc::DOMText* text_ = nullptr;
};

// Integers

TEST_F(Numbers, MissingIntegerIsMinusOneAndLeavesTheValue) {
  int value = 4711;
  for (const int sign : {-1, 0, 1}) EXPECT_EQ(GetIntAttribute(With(u"5"), "missing", sign, value), -1);
  EXPECT_EQ(value, 4711);
}

TEST_F(Numbers, IntegersMustMeetTheSignRequirement) {
  const struct {
    const char16_t* text;
    int number;
    int any, notNegative, positive;
  } rows[] = {{u"0", 0, 0, 0, 1},
              {u"1", 1, 0, 0, 0},
              {u"-1", -1, 0, 1, 1},
              {u"+5", 5, 0, 0, 0},
              {u" 5 ", 5, 0, 0, 0},
              {u"007", 7, 0, 0, 0},
              {u"-0", 0, 0, 0, 1},
              {u"-007", -7, 0, 1, 1},
              {u"2147483647", 2147483647, 0, 0, 0},
              {u"-2147483648", std::numeric_limits<int>::min(), 0, 1, 1},
              {u"2147483648", std::numeric_limits<int>::min(), 0, 1, 1},
              {u"4294967296", 0, 0, 0, 1},
              {u"4294967297", 1, 0, 0, 0},
              {u"99999999999999999999", -1, 0, 1, 1}};
  for (const auto& row : rows) {
    const std::string name = RQXPrsUtil::ToUTF8(row.text);
    const struct {
      int sign;
      int expected;
    } cases[] = {{-1, row.any}, {-77, row.any}, {0, row.notNegative}, {1, row.positive}, {77, row.positive}};
    for (const auto& one : cases) {
      int value = 4711;
      EXPECT_EQ(GetIntAttribute(With(row.text), "n", one.sign, value), one.expected) << name << " sign " << one.sign;
      EXPECT_EQ(value, row.number) << name << " sign " << one.sign;
    }
  }
}

TEST_F(Numbers, WhatIsNoIntegerIsRefusedAndLeavesTheValue) {
  for (const char16_t* const text : {u"", u" ", u"-", u"+", u"5.0", u"1e3", u"abc", u"5a", u"0x10", u"1 2", u"NaN",
                                     u"INF", u"--5", u"+-5", u"1,000", u"\u0665", u"\uFF15", u"\u00A05"}) {
    for (const int sign : {-1, 0, 1}) {
      int value = 4711;
      EXPECT_EQ(GetIntAttribute(With(text), "n", sign, value), 1) << RQXPrsUtil::ToUTF8(text);
      EXPECT_EQ(value, 4711) << RQXPrsUtil::ToUTF8(text);
    }
  }
}

// Doubles

TEST_F(Numbers, MissingDoubleIsMinusOneAndLeavesTheValue) {
  double value = 4711;
  EXPECT_EQ(GetDoubleAttribute(With(u"5"), "missing", value), -1);
  EXPECT_EQ(value, 4711);
}

TEST_F(Numbers, DoublesAreRead) {
  const struct {
    const char16_t* text;
    double number;
  } rows[] = {{u"0", 0},
              {u"1", 1},
              {u"-1", -1},
              {u"+1", 1},
              {u" 1 ", 1},
              {u"\t1\n", 1},
              {u".5", 0.5},
              {u"5.", 5},
              {u"007", 7},
              {u"1.5e3", 1500},
              {u"1.5E3", 1500},
              {u"1e+3", 1000},
              {u"1e-3", 0.001},
              {u"0.1", 0.1},
              {u"123456789012345678901234567890", 123456789012345678901234567890.0},
              {u"1.7976931348623157e308", std::numeric_limits<double>::max()},
              {u"-1.7976931348623157e308", std::numeric_limits<double>::lowest()},
              {u"2.2250738585072014e-308", std::numeric_limits<double>::min()},
              {u"NaN", RQMV::gMissingValue}};
  for (const auto& row : rows) {
    double value = 4711;
    EXPECT_EQ(GetDoubleAttribute(With(row.text), "n", value), 0) << RQXPrsUtil::ToUTF8(row.text);
    EXPECT_EQ(value, row.number) << RQXPrsUtil::ToUTF8(row.text);
  }
}

TEST_F(Numbers, InfinitiesNumbersBeyondTheRangeAndOtherTextsAreRefusedAndLeaveTheValue) {
  for (const char16_t* const text :
       {u"INF",   u"-INF", u"1e400",    u"-1e400", u"1.8e308", u"",       u" ",       u"abc",     u"nan",     u"NAN",
        u"inf",   u"+INF", u"Infinity", u"0x10",   u"1,5",     u"1e",     u"e5",      u"1e5.5",   u"--1",     u"1 2",
        u"1.2.3", u"1a",   u"1d",       u"1f",     u"\u0661",  u"\uFF11", u"\u00A01", u"\u22121", u"1e\u0663"}) {
    double value = 4711;
    EXPECT_EQ(GetDoubleAttribute(With(text), "n", value), 1) << RQXPrsUtil::ToUTF8(text);
    EXPECT_EQ(value, 4711) << RQXPrsUtil::ToUTF8(text);
  }
}

std::vector<std::string> TrickyNumbers() {
  std::vector<std::string> texts = {"",
                                    " ",
                                    "\t",
                                    "+",
                                    "-",
                                    ".",
                                    "+.",
                                    "-.",
                                    "e",
                                    "E5",
                                    "1e",
                                    "1e+",
                                    "1e-",
                                    "1e1.5",
                                    "1e 5",
                                    "1 e5",
                                    "- 1",
                                    "+ 1",
                                    "-0",
                                    "+0",
                                    "0",
                                    "-0.0",
                                    "00",
                                    "-00.00e5",
                                    "0e0",
                                    "0e999999",
                                    "-0e-999999",
                                    "1.",
                                    ".5",
                                    "-.5",
                                    "+.5",
                                    "5.e3",
                                    ".e3",
                                    "..5",
                                    "5..",
                                    "1.2.3",
                                    "007",
                                    "-007.500",
                                    "0000000000000000000000000000001",
                                    "1_000",
                                    "1,5",
                                    "0x1p3",
                                    "0x10",
                                    "#1",
                                    "1%",
                                    "NaN",
                                    " NaN ",
                                    "NaN1",
                                    "nan",
                                    "-NaN",
                                    "+NaN",
                                    "nan(1)",
                                    "INF",
                                    "-INF",
                                    "+INF",
                                    " INF ",
                                    "inf",
                                    "-inf",
                                    "infinity",
                                    "Infinity",
                                    "INFINITY",
                                    "INF1",
                                    "1INF",
                                    "1e400",
                                    "-1e400",
                                    "1e309",
                                    "1.7976931348623157e308",
                                    "1.7976931348623158e308",
                                    "1.7976931348623159e308",
                                    "1.797693134862315807e308",
                                    "-1.7976931348623157e308",
                                    "-1.7976931348623159e308",
                                    "1e308",
                                    "1e-308",
                                    "2.2250738585072014e-308",
                                    "2.2250738585072013e-308",
                                    "2.2250738585072011e-308",
                                    "2.225073858507201e-308",
                                    "1e-309",
                                    "-1e-309",
                                    "4.9406564584124654e-324",
                                    "2.4703282292062327e-324",
                                    "2.4703282292062328e-324",
                                    "-4.9e-324",
                                    "1e-400",
                                    "-1e-400",
                                    "1e-99999",
                                    "1e99999",
                                    "1e2147483647",
                                    "1e2147483648",
                                    "1e-2147483649",
                                    "1e99999999999999999999",
                                    "1e-99999999999999999999",
                                    "0e99999999999999999999",
                                    "9007199254740992",
                                    "9007199254740993",
                                    "9007199254740994",
                                    "9007199254740995",
                                    "0.1",
                                    "0.2",
                                    "0.30000000000000004",
                                    "1e22",
                                    "1e23",
                                    "8.5e22",
                                    "123456789012345678",
                                    "1234567890123456789012",
                                    "18446744073709551615",
                                    "18446744073709551616",
                                    "9223372036854775807",
                                    "9223372036854775808",
                                    "3.14159265358979323846264338327950288",
                                    "1\xC2\xA0",
                                    "\xC2\xA0"
                                    "1",
                                    "\x0B"
                                    "1",
                                    "\x0C"
                                    "1",
                                    "1\x01",
                                    "\x7F"
                                    "1"};
  for (const int digits : {15,  16,  17,  18,  19,  20,  21,  40,  99,  100,  101,  127, 128,
                           129, 255, 256, 257, 308, 309, 310, 400, 999, 1000, 1001, 5000}) {
    const auto many = static_cast<std::size_t>(digits);
    texts.push_back(std::string(many, '9'));
    texts.push_back("1" + std::string(many, '0'));
    texts.push_back("0." + std::string(many, '0') + "1");
    texts.push_back(std::string(many, '0') + "1");
    texts.push_back("1." + std::string(many, '3'));
    texts.push_back("1." + std::string(many, '0'));
    texts.push_back("-" + std::string(many, '7') + "." + std::string(many, '7') + "e-" + std::to_string(digits));
    texts.push_back("1" + std::string(many, '0') + "e-" + std::to_string(digits));
    texts.push_back("0." + std::string(many, '0') + "1e" + std::to_string(digits));
    texts.push_back("1e" + std::string(many, '0') + "5");
  }
  return texts;
}

TEST_F(Numbers, TrickyTextsReadAsTheLibraryReadsThem) {
  for (const std::string& text : TrickyNumbers()) {
    for (const char* const sign : {"", "-", "+", " ", "\n"}) {
      for (const char* const end : {"", " ", "x"}) {
        EXPECT_TRUE(ReadsLikeTheLibrary(Widen(sign + text + end)));
      }
    }
  }
}

TEST_F(Numbers, CharactersBeyondAsciiReadAsTheLibraryReadsThem) {
  for (unsigned int unit = 0x80; unit < 0x10000; unit += unit < 0x3100 ? 1 : 13) {
    for (const char16_t* const before : {u"", u"1", u"1e"}) {
      std::u16string text(before);
      text += static_cast<char16_t>(unit);
      ASSERT_TRUE(ReadsLikeTheLibrary(text)) << std::hex << unit;
    }
  }
}

TEST_F(Numbers, UnitsWhoseLowByteIsADigitAreNoDigits) {
  for (const char16_t* const text : {u"\u0131", u"\u0231", u"1\u0130",
                                     u"1\u012E"
                                     u"5",
                                     u"1\u0165"
                                     u"3",
                                     u"\u012D"
                                     u"1"}) {
    double value = 4711;
    EXPECT_EQ(GetDoubleAttribute(With(text), "n", value), 1);
  }
}

TEST_F(Numbers, RandomTextsReadAsTheLibraryReadsThem) {
  std::mt19937 random(20240301);
  const std::string alphabet = "0123456789012345678900..+-eE NaIF\tx";
  for (int round = 0; round < 60000; ++round) {
    std::string text;
    for (std::size_t i = random() % 9; i > 0; --i) text += alphabet[random() % alphabet.size()];
    ASSERT_TRUE(ReadsLikeTheLibrary(Widen(text)));
  }
}

TEST_F(Numbers, RandomNumbersReadAsTheLibraryReadsThem) {
  std::mt19937_64 random(20240302);
  const auto digits = [&](std::size_t most) {
    std::string text;
    for (std::size_t i = random() % (most + 1); i > 0; --i) text += static_cast<char>('0' + random() % 10);
    return text;
  };
  for (int round = 0; round < 60000; ++round) {
    std::string text = random() % 4 == 0 ? "-" : random() % 8 == 0 ? "+" : "";
    text += digits(random() % 16 == 0 ? 40 : 20);
    if (random() % 2 == 0) text += "." + digits(22);
    if (random() % 2 == 0) text += (random() % 2 == 0 ? "e" : "E-") + digits(random() % 8 == 0 ? 5 : 3);
    if (random() % 64 == 0) text.insert(random() % (text.size() + 1), 1, " x,+.-"[random() % 6]);
    ASSERT_TRUE(ReadsLikeTheLibrary(Widen(text)));
  }
}

TEST_F(Numbers, DoublesOfEveryMagnitudeComeBackAsTheyWereWritten) {
  std::mt19937_64 random(20240303);
  const char* const formats[] = {"%.17g", "%.15g", "%.16e", "%.6f", "%.25g"};
  for (int round = 0; round < 40000; ++round) {
    const double number = std::bit_cast<double>(random());
    if (!std::isfinite(number)) continue;
    char text[512];
    std::snprintf(text, sizeof text, formats[round % 5], number);
    ASSERT_TRUE(ReadsLikeTheLibrary(Widen(text)));
    if (round % 5 != 0 || std::fpclassify(number) != FP_NORMAL) continue;
    double value = 0;
    ASSERT_EQ(GetDoubleAttribute(With(Widen(text)), "n", value), 0) << text;
    ASSERT_EQ(value, number) << text;
  }
}

TEST_F(Numbers, DecimalCommaOfTheLocaleDoesNotMatter) {
  const rqtest::CommaLocale locale;
  ASSERT_TRUE(locale.IsSet());
  for (const std::string& text : TrickyNumbers()) EXPECT_TRUE(ReadsLikeTheLibrary(Widen(text)));
  double value = 0;
  EXPECT_EQ(GetDoubleAttribute(With(u"1234.5"), "n", value), 0);
  EXPECT_EQ(value, 1234.5);
  EXPECT_EQ(GetDoubleAttribute(With(u"12345678901234567890.5e-3"), "n", value), 0);
  EXPECT_EQ(value, 12345678901234567.8905);
  EXPECT_EQ(GetDoubleAttribute(With(u"1,5"), "n", value), 1);
}

// Lists

struct ListRow {
  const char* what;
  const char* content;
  bool good;
  std::vector<double> values;
};

const std::vector<double> kBefore = {47, 11};

TEST_F(Numbers, ListsAreReadFromTheTextOfAnElement) {
  const ListRow rows[] = {
      {"no children", "", true, {}},
      {"one number", "5", true, {5}},
      {"blank, tab and line feed between", "1 2\t3\n4", true, {1, 2, 3, 4}},
      {"a carriage return between", "1&#13;2", true, {1, 2}},
      {"several delimiters and some around", " \n1 \t\t 2\n\n", true, {1, 2}},
      {"blanks only", " \n\t ", true, {}},
      {"not a number", "1 NaN 3", true, {1, RQMV::gMissingValue, 3}},
      {"a character reference", "1&#32;2&#x33;", true, {1, 23}},
      {"a predefined entity", "1&lt;2", false, {}},
      {"a letter", "1 x 3", false, {}},
      {"a letter at the end", "1 2 x", false, {}},
      {"an infinity", "1 INF 3", false, {}},
      {"a number beyond the range", "1 1e999", false, {}},
      {"commas", "1,2", false, {}},
      {"a non-breaking blank", "1&#160;2", false, {}},
      {"a next-line character", "1&#133;2", false, {}},
      {"a comment before", "<!--c-->1 2", false, kBefore},
      {"a comment between", "1 <!--c--> 2", false, kBefore},
      {"a comment alone", "<!--c-->", false, kBefore},
      {"CDATA", "<![CDATA[1 2]]>", false, kBefore},
      {"text and CDATA", "1 <![CDATA[2]]>", false, kBefore},
      {"a processing instruction", "1<?p i?>", false, kBefore},
      {"an element", "<b/>", false, kBefore},
      {"text and an element", "1 <b/>", false, kBefore},
      {"an entity reference alone", "&two;", false, kBefore},
      {"an entity reference and text", "1 &two; 3", false, kBefore},
  };
  for (const ListRow& row : rows) {
    Document document("<!DOCTYPE a [<!ENTITY two '2'>]><a>" + std::string(row.content) + "</a>");
    std::vector<double> values = kBefore;
    EXPECT_EQ(AssembleDoublesList(document.Root(), values), row.good) << row.what;
    EXPECT_EQ(values, row.values) << row.what;
  }
}

TEST_F(Numbers, ListOfAnEmptyTextNodeIsEmpty) {
  std::vector<double> values = kBefore;
  EXPECT_TRUE(AssembleDoublesList(List(u""), values));
  EXPECT_EQ(values, std::vector<double>{});
}

TEST_F(Numbers, TwoTextNodesAreNoList) {
  Document document("<a>1</a>");
  document.Root().appendChild(document.Get().createTextNode(u" 2"));
  std::vector<double> values = kBefore;
  EXPECT_FALSE(AssembleDoublesList(document.Root(), values));
  EXPECT_EQ(values, kBefore);
}

TEST_F(Numbers, OtherBlanksDoNotSeparateNumbers) {
  for (const char16_t* const text : {u"1\u00A02", u"1\u20282", u"1\v2", u"1\f2", u"1\u30002", u"1\u00852"}) {
    std::vector<double> values = kBefore;
    EXPECT_FALSE(AssembleDoublesList(List(text), values));
    EXPECT_TRUE(values.empty());
  }
}

TEST_F(Numbers, ListOfAMillionNumbersIsRead) {
  std::string text = "<a>";
  for (int i = 0; i < 1000000; ++i) text += std::to_string(i) + (i % 3 == 0 ? ".5 " : i % 3 == 1 ? "\n" : "e1\t");
  Document document(text + "</a>");
  std::vector<double> values;
  ASSERT_TRUE(AssembleDoublesList(document.Root(), values));
  ASSERT_EQ(values.size(), 1000000U);
  EXPECT_EQ(values[0], 0.5);
  EXPECT_EQ(values[499999], 499999.0);
  EXPECT_EQ(values[500000], 5000000.0);
  EXPECT_EQ(values[999999], 999999.5);
}

}  // namespace
