#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>
#include <xercesc/util/NumberFormatException.hpp>
#include <xercesc/util/XMLBigInteger.hpp>
#include <xercesc/util/XMLDouble.hpp>

#include "rqxml/settings/RQSettingsParser.h"
#include "rqxml/xml/RQXMLUtil.h"
#include "tests/support/settings.h"

namespace {

using rqtest::Absent;
using rqtest::Complex;
using rqtest::Failure;
using rqtest::ListValue;
using rqtest::Matrix;
using rqtest::Ok;
using rqtest::Parameter;
using rqtest::Parse;
using rqtest::Row;
using rqtest::Settings;
using rqtest::Show;
using rqtest::Valued;
using RQXPrsUtil::RQSettingsParser;

class Scalar : public rqtest::WithSettings {
 protected:
  /// A parameter of each value, named by its number.
  void LoadValues(const std::vector<std::string>& values) {
    std::string parameters;
    for (std::size_t i = 0; i < values.size(); ++i) parameters += Valued(std::to_string(i), values[i]);
    Load(parameters);
  }
};

// Texts

TEST_F(Scalar, TextIsTheValueAsItStands) {
  const std::vector<std::string> values = {"x",  " x ", "1",   "true", "NaN", "a'b\"c",
                                           "-1", "0x",  "<>&", "",     " ",   "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"};
  std::string parameters;
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::string escaped;
    for (const char c : values[i]) {
      escaped += c == '\'' ? "&apos;" : c == '<' ? "&lt;" : c == '&' ? "&amp;" : std::string(1, c);
    }
    parameters += Valued(std::to_string(i), escaped);
  }
  Load(parameters);
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(ask_.String(std::to_string(i).c_str()), "OK: " + Show(values[i]));
  }
}

TEST_F(Scalar, EmptyTextIsAValueAndEmptiesTheOutput) {
  Load(Valued("p", ""));
  EXPECT_EQ(ask_.String("p"), "OK: \"\"");
}

TEST_F(Scalar, WhiteSpaceAndReferencesInValuesComeAsXmlNormalisesThem) {
  const struct {
    const char* written;
    const char* read;
  } rows[] = {{"a\nb", "a b"},
              {"a\tb", "a b"},
              {"a\r\nb", "a b"},
              {"a\rb", "a b"},
              {"a\n\n  b", "a    b"},
              {"\na\n", " a "},
              {"a&#10;b", "a\nb"},
              {"a&#x9;b", "a\tb"},
              {"a&#13;b", "a\rb"},
              {"&#65;&#x42;", "AB"},
              {"&lt;&gt;&amp;&apos;&quot;", "<>&'\""},
              {"&#x1F600;", "\xF0\x9F\x98\x80"},
              {"&#8364;", "\xE2\x82\xAC"},
              {"&amp;lt;", "&lt;"},
              {"]]>", "]]>"}};
  for (const auto& row : rows) {
    Load(Valued("p", row.written));
    EXPECT_EQ(ask_.String("p"), "OK: " + Show(std::string(row.read))) << row.written;
  }
}

TEST_F(Scalar, EntitiesOfTheDocumentAreResolvedInValues) {
  ASSERT_EQ(Parse(parser_, "<!DOCTYPE PMML [<!ENTITY e 'M&#252;ller &#38;amp; Sons'>]>" + Settings(Valued("p", "&e;"))),
            Ok());
  EXPECT_EQ(ask_.String("p"), "OK: \"M\xC3\xBCller & Sons\"");
}

TEST_F(Scalar, ControlCharactersOfXml11Come) {
  ASSERT_EQ(Parse(parser_, "<?xml version='1.1'?>" + Settings(Valued("p", "a&#1;b&#x85;c&#x7F;"))), Ok());
  EXPECT_EQ(ask_.String("p"),
            "OK: \"a\x01"
            "b\xC2\x85"
            "c\x7F\"");
}

TEST_F(Scalar, LongTextsComeWholeAcrossTheBlocksOfTheTranscoder) {
  for (const std::size_t before : {0U, 998U, 999U, 1000U, 1001U, 1999U, 3998U, 3999U, 4000U, 4001U, 100000U}) {
    const std::string value = std::string(before, 'a') + "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80 end";
    Load(Valued("p", value));
    EXPECT_EQ(ask_.String("p"), "OK: " + Show(value)) << before;
  }
}

TEST_F(Scalar, TextOfTheElementIsNoValue) {
  Load(Parameter("p", "", "5<![CDATA[6]]>"));
  ExpectEveryGetterGives(Absent(120), "q");
  EXPECT_EQ(ask_.String("p"), "123 (flag): \"before\"");
}

// Integers

TEST_F(Scalar, IntegersOfZeroOrMoreAreRead) {
  const struct {
    const char* text;
    int value;
  } rows[] = {{"0", 0},      {"7", 7},
              {"+5", 5},     {"007", 7},
              {" 5 ", 5},    {"-0", 0},
              {"+0", 0},     {"000", 0},
              {"\n5\t", 5},  {"2147483647", 2147483647},
              {" +12 ", 12}, {"000000000000000000000000000001", 1}};
  for (const auto& row : rows) {
    Load(Valued("p", row.text));
    EXPECT_EQ(ask_.Int("p"), "OK: " + std::to_string(row.value)) << row.text;
  }
}

TEST_F(Scalar, NegativeIntegerIsRefusedAfterItWasStoredSoThatCallersSeeWhatStoodThere) {
  for (const char* const text : {"-1", "-2147483648", " -7 ", "-0001"}) {
    Load(Valued("p", text));
    EXPECT_EQ(ask_.Int("p"), "109: " + std::to_string(std::stol(text))) << text;
  }
}

TEST_F(Scalar, WhatIsNoIntegerIsRefusedAndTheOutputKept) {
  for (const char* const text :
       {"",    " ",   "-",  "+",   "x",   "3.5",  "5.0",      "5.",           "1e3",     "0x10", "1 2", "1,000",
        "--1", "+-1", "5-", "NaN", "INF", "true", "\xD9\xA3", "\xEF\xBC\x95", "1&#160;", "5;",   "- 1"}) {
    Load(Valued("p", text));
    EXPECT_EQ(ask_.Int("p"), "109: 47") << text;
  }
}

TEST_F(Scalar, IntegersBeyondTheRangeComeModuloTwoTo32AndAreRefusedWhenThatIsNegative) {
  const struct {
    const char* text;
    const char* outcome;
  } rows[] = {{"2147483648", "109: -2147483648"},
              {"4294967295", "109: -1"},
              {"4294967296", "OK: 0"},
              {"4294967297", "OK: 1"},
              {"99999999999999999999", "109: -1"},
              {"-2147483649", "OK: 2147483647"},
              {"-4294967295", "OK: 1"}};
  for (const auto& row : rows) {
    Load(Valued("p", row.text));
    EXPECT_EQ(ask_.Int("p"), row.outcome) << row.text;
  }
}

/// What the XML library's own integer says about a text.
std::optional<int> LibraryInteger(const std::string& text) {
  try {
    return xercesc::XMLBigInteger(RQXPrsUtil::ToUTF16(text.c_str()).data()).intValue();
  } catch (const xercesc::XMLException&) {
    return std::nullopt;
  }
}

TEST_F(Scalar, IntegersAreWhatTheLibrarysIntegerMakesOfThem) {
  const std::vector<std::string> texts = {"0",
                                          "-0",
                                          "+5",
                                          " 5",
                                          "5 ",
                                          " 5 ",
                                          "007",
                                          "-007",
                                          "3.5",
                                          "",
                                          " ",
                                          "2147483647",
                                          "2147483648",
                                          "-2147483648",
                                          "-2147483649",
                                          "4294967295",
                                          "4294967296",
                                          "4294967297",
                                          "9223372036854775807",
                                          "9223372036854775808",
                                          "18446744073709551615",
                                          "18446744073709551616",
                                          "99999999999999999999",
                                          "-99999999999999999999",
                                          "1e3",
                                          "+ 5"};
  LoadValues(texts);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const auto number = LibraryInteger(texts[i]);
    const std::string expected = !number ? "109: 47" : (*number < 0 ? "109: " : "OK: ") + std::to_string(*number);
    EXPECT_EQ(ask_.Int(std::to_string(i).c_str()), expected) << texts[i];
  }
}

// Doubles

TEST_F(Scalar, NumbersAreRead) {
  const struct {
    const char* text;
    const char* value;
  } rows[] = {{"0", "0"},
              {"-1", "-1"},
              {"+1.5", "1.5"},
              {" 2.25 ", "2.25"},
              {".5", "0.5"},
              {"5.", "5"},
              {"007", "7"},
              {"1e3", "1000"},
              {"1E-3", "0.001"},
              {"-2.5e+2", "-250"},
              {"1e-400", "0"},
              {"3.5", "3.5"},
              {"1\n", "1"},
              {"&#9;1", "1"},
              {"2147483648", "2147483648"},
              {"1.7976931348623157e308", "HIGHEST"},
              {"-1.7976931348623157e308", "LOWEST"}};
  for (const auto& row : rows) {
    Load(Valued("p", row.text));
    EXPECT_EQ(ask_.Double("p"), std::string("OK: ") + row.value) << row.text;
  }
}

TEST_F(Scalar, NotANumberIsTheMissingValue) {
  Load(Valued("p", "NaN"));
  EXPECT_EQ(ask_.Double("p"), "OK: LOWEST");
}

TEST_F(Scalar, InfinitiesAndWhatIsNoNumberAreRefusedAndTheOutputKept) {
  for (const char* const text :
       {"INF",      "-INF", "+INF", "1e400", "-1e400", "",    " ",    "x",     "nan", "-NaN",    "inf",
        "Infinity", "0x10", "1,5",  "1 2",   "1e",     "--1", "true", "1.2.3", "1d",  "\xD9\xA3"}) {
    Load(Valued("p", text));
    EXPECT_EQ(ask_.Double("p"), "109: 4.75") << text;
  }
}

// Flags

TEST_F(Scalar, OnlyTheWordsTrueAndFalseAreFlags) {
  Load(Valued("t", "true") + Valued("f", "false"));
  EXPECT_EQ(ask_.Bool("t"), "OK: true");
  EXPECT_EQ(ask_.Bool("f"), "OK: false");
  for (const char* const text : {"1", "0", "True", "TRUE", "False", "FALSE", "", " true", "true ", "yes", "no", "t",
                                 "f", "truefalse", "\xEF\xBD\x94rue"}) {
    Load(Valued("p", text));
    EXPECT_EQ(ask_.Bool("p"), "109: kept") << text;
  }
}

// Without a value

TEST_F(Scalar, ListIsRefusedAsAListAndAnythingElseWithoutValueAsWithoutValue) {
  const struct {
    std::string parameter;
    std::string status;
  } rows[] = {{Parameter("p", "", ListValue({"1"})), "121"},
              {Parameter("p", "", ListValue({})), "121"},
              {Parameter("p", "isList='false'", "text<!--c--><x/>" + ListValue({"1"})), "121"},
              {Parameter("p", ""), "123 (flag)"},
              {Parameter("p", "type='integer'"), "123 (flag)"},
              {Parameter("p", "", rqtest::Values({"1"})), "123 (flag)"},
              {Parameter("p", "", "<x>" + ListValue({"1"}) + "</x>"), "123 (flag)"},
              {Parameter("p", "", "<listValue/><p:ListValue/><ListValues/>"), "123 (flag)"},
              {Parameter("p", "", "<!--<ListValue/>--><![CDATA[<ListValue/>]]>"), "123 (flag)"},
              {Parameter("p", "Value='1' p:value='1' VALUE='1'"), "123 (flag)"}};
  for (const auto& row : rows) {
    Load(row.parameter);
    EXPECT_EQ(ask_.String("p"), row.status + ": \"before\"") << row.parameter;
    EXPECT_EQ(ask_.Int("p"), row.status + ": 47") << row.parameter;
    EXPECT_EQ(ask_.Double("p"), row.status + ": 4.75") << row.parameter;
    EXPECT_EQ(ask_.Bool("p"), row.status + ": kept") << row.parameter;
  }
}

TEST_F(Scalar, ListIsRecognisedByItsElementHereAndIsListDoesNotMatterThoughGetVariablesLooksAtIt) {
  Load(Parameter("said", "isList='true'") + Parameter("shown", "isList='false'", ListValue({"1"})));
  EXPECT_EQ(ask_.String("said"), "123 (flag): \"before\"");
  EXPECT_EQ(ask_.Variable("said"), "121: \"before\"");
  EXPECT_EQ(ask_.String("shown"), "121: \"before\"");
  EXPECT_EQ(ask_.Variable("shown"), "108: \"before\"");
}

TEST_F(Scalar, ValueCountsAlsoBesideAList) {
  Load(Parameter("p", "isList='true' value='1'", ListValue({"2", "3"})));
  EXPECT_EQ(ask_.String("p"), "OK: \"1\"");
  EXPECT_EQ(ask_.Int("p"), "OK: 1");
  EXPECT_EQ(ask_.Double("p"), "OK: 1");
}

TEST_F(Scalar, TypeIsNotConsultedByTheGetters) {
  Load(Parameter("s", "type='string' value='5'") + Parameter("i", "type='integer' value='true'") +
       Parameter("b", "type='boolean' value='1.5'") + Parameter("n", "type='nonsense' value='7'"));
  EXPECT_EQ(ask_.Int("s"), "OK: 5");
  EXPECT_EQ(ask_.Bool("i"), "OK: true");
  EXPECT_EQ(ask_.Double("b"), "OK: 1.5");
  EXPECT_EQ(ask_.String("n"), "OK: \"7\"");
}

// Types

TEST_F(Scalar, TypeWordsAreTold) {
  const struct {
    const char* attributes;
    RQSettingsParser::ParamType type;
  } rows[] = {
      {"type='string'", RQSettingsParser::ParamString},     {"type='double'", RQSettingsParser::ParamDouble},
      {"type='integer'", RQSettingsParser::ParamInteger},   {"type='boolean'", RQSettingsParser::ParamBoolean},
      {"type='enum'", RQSettingsParser::ParamEnum},         {"type='fieldName'", RQSettingsParser::ParamFieldName},
      {"type='&#101;num'", RQSettingsParser::ParamEnum},    {"type='int'", RQSettingsParser::ParamUnknown},
      {"type='Integer'", RQSettingsParser::ParamUnknown},   {"type='INTEGER'", RQSettingsParser::ParamUnknown},
      {"type='float'", RQSettingsParser::ParamUnknown},     {"type='bool'", RQSettingsParser::ParamUnknown},
      {"type='fieldname'", RQSettingsParser::ParamUnknown}, {"type=' string'", RQSettingsParser::ParamUnknown},
      {"type='string '", RQSettingsParser::ParamUnknown},   {"type='strings'", RQSettingsParser::ParamUnknown},
      {"type=''", RQSettingsParser::ParamUnknown},          {"Type='string'", RQSettingsParser::ParamUnknown},
      {"p:type='string'", RQSettingsParser::ParamUnknown},  {"", RQSettingsParser::ParamUnknown}};
  for (const auto& row : rows) {
    Load(Parameter("p", row.attributes));
    EXPECT_EQ(parser_.GetParameterType("p", nullptr), row.type) << row.attributes;
    Load(Parameter("p", row.attributes, ListValue({"x"})) + Parameter("p", "type='double'"));
    EXPECT_EQ(parser_.GetParameterType("p", nullptr), row.type) << row.attributes;
  }
}

TEST_F(Scalar, TypeOfWhatIsNoParameterIsUnknown) {
  Load(Complex("c", Parameter("q", "type='enum'")) + "<MatrixParmeter name='m' type='double'/>" +
       "<x name='x' type='string'/>");
  for (const char* const name : {"c", "m", "x", "q", "absent", ""}) {
    EXPECT_EQ(parser_.GetParameterType(name, nullptr), RQSettingsParser::ParamUnknown) << name;
  }
  EXPECT_EQ(parser_.GetParameterType("q", parser_.GetComplexParameter("c", nullptr)), RQSettingsParser::ParamEnum);
}

}  // namespace
