#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/settings.h"

namespace {

using rqtest::Complex;
using rqtest::ListValue;
using rqtest::Parameter;
using rqtest::Show;
using rqtest::Valued;
using rqtest::Values;

class Array : public rqtest::WithSettings {
 protected:
  void LoadParameter(const std::string& attributes, const std::string& content = "") {
    Load(Parameter("p", attributes, content));
  }
};

// Both forms

TEST_F(Array, ListGivesItsItemsInOrder) {
  LoadParameter("", ListValue({"3", "1", "2", "1"}));
  EXPECT_EQ(ask_.Strings("p"), R"(OK: ["3", "1", "2", "1"])");
  EXPECT_EQ(ask_.Ints("p"), "OK: [3, 1, 2, 1]");
  EXPECT_EQ(ask_.Doubles("p"), "OK: [3, 1, 2, 1]");
}

TEST_F(Array, SingleValueIsAnArrayOfOne) {
  LoadParameter("value='7'");
  EXPECT_EQ(ask_.Strings("p"), R"(OK: ["7"])");
  EXPECT_EQ(ask_.Ints("p"), "OK: [7]");
  EXPECT_EQ(ask_.Doubles("p"), "OK: [7]");
}

TEST_F(Array, ListIsRecognisedByItsElementAndIsListDoesNotMatterThoughGetVariablesLooksAtIt) {
  for (const char* const attributes : {"", "isList='true'", "isList='false'", "isList='nonsense'"}) {
    LoadParameter(attributes, ListValue({"1", "2"}));
    EXPECT_EQ(ask_.Ints("p"), "OK: [1, 2]") << attributes;
    LoadParameter(std::string(attributes) + " value='5'");
    EXPECT_EQ(ask_.Ints("p"), "OK: [5]") << attributes;
  }
}

TEST_F(Array, ListHidesTheParametersOwnValue) {
  LoadParameter("value='5'", ListValue({"1", "2"}));
  EXPECT_EQ(ask_.Strings("p"), R"(OK: ["1", "2"])");
  EXPECT_EQ(ask_.Ints("p"), "OK: [1, 2]");
  EXPECT_EQ(ask_.Doubles("p"), "OK: [1, 2]");
}

TEST_F(Array, EmptyListIsAParameterWithoutValueAlsoBesideAValueThoughGetVariablesTakesItAsEmpty) {
  for (const char* const attributes : {"", "isList='true'", "value='5'", "isList='true' value='5'"}) {
    for (const char* const list : {"<ListValue/>", "<ListValue>text<!--c--></ListValue>",
                                   "<ListValue><value value='1'/><x:Value value='2'/><x><Value value='3'/></x>"
                                   "</ListValue>"}) {
      LoadParameter(attributes, list);
      EXPECT_EQ(ask_.Strings("p"), "123 (flag): []") << attributes << list;
      EXPECT_EQ(ask_.Ints("p"), "123 (flag): []") << attributes << list;
      EXPECT_EQ(ask_.Doubles("p"), "123 (flag): []") << attributes << list;
    }
  }
}

TEST_F(Array, NeitherListNorValueIsAParameterWithoutValueThoughGetVariablesCallsItAMissingAttribute) {
  for (const char* const content : {"", "5", "<Value value='1'/>", "<x><ListValue/></x>", "<listValue/>"}) {
    LoadParameter("type='integer' Value='5'", content);
    EXPECT_EQ(ask_.Strings("p"), "123 (flag): []") << content;
    EXPECT_EQ(ask_.Ints("p"), "123 (flag): []") << content;
    EXPECT_EQ(ask_.Doubles("p"), "123 (flag): []") << content;
    EXPECT_EQ(ask_.Variables("p"), "108: []") << content;
  }
}

TEST_F(Array, ItemWithoutValueEndsTheArrayWithTheItemsBeforeIt) {
  for (const char* const item : {"<Value/>", "<Value>5</Value>", "<Value Value='5' x:value='5'/>"}) {
    LoadParameter("", "<ListValue>" + Values({"1", "2"}) + item + Values({"4"}) + "</ListValue>");
    EXPECT_EQ(ask_.Strings("p"), R"(123 (flag): ["1", "2"])") << item;
    EXPECT_EQ(ask_.Ints("p"), "123 (flag): [1, 2]") << item;
    EXPECT_EQ(ask_.Doubles("p"), "123 (flag): [1, 2]") << item;
    LoadParameter("", std::string("<ListValue>") + item + "</ListValue>");
    EXPECT_EQ(ask_.Strings("p"), "123 (flag): []") << item;
    EXPECT_EQ(ask_.Ints("p"), "123 (flag): []") << item;
    EXPECT_EQ(ask_.Doubles("p"), "123 (flag): []") << item;
  }
}

TEST_F(Array, FirstOfTwoFaultsDecides) {
  LoadParameter("", "<ListValue>" + Values({"1", "x"}) + "<Value/></ListValue>");
  EXPECT_EQ(ask_.Ints("p"), "109: [1]");
  EXPECT_EQ(ask_.Doubles("p"), "109: [1]");
  LoadParameter("", "<ListValue>" + Values({"1"}) + "<Value/>" + Values({"x"}) + "</ListValue>");
  EXPECT_EQ(ask_.Ints("p"), "123 (flag): [1]");
  EXPECT_EQ(ask_.Doubles("p"), "123 (flag): [1]");
}

TEST_F(Array, FirstListAndOnlyValuesDirectlyInItCount) {
  LoadParameter("", Values({"0"}) + "<x>" + ListValue({"0"}) + "</x><ListValue>text<Value value='1'>" + Values({"0"}) +
                        "</Value><!--" + Values({"0"}) + "--><value value='0'/><x>" + Values({"0"}) + "</x>" +
                        Values({"2"}) + "</ListValue>" + ListValue({"0"}));
  EXPECT_EQ(ask_.Ints("p"), "OK: [1, 2]");
}

TEST_F(Array, OutputIsKeptWhenThereIsNoSuchParameterAndEmptiedOnceThereIs) {
  LoadParameter("");
  EXPECT_EQ(ask_.Strings("absent"), R"(120 (flag): ["before"])");
  EXPECT_EQ(ask_.Ints("absent"), "120 (flag): [47]");
  EXPECT_EQ(ask_.Doubles("absent"), "120 (flag): [4.75]");
  EXPECT_EQ(ask_.Strings("p"), "123 (flag): []");
  EXPECT_EQ(ask_.Ints("p"), "123 (flag): []");
  EXPECT_EQ(ask_.Doubles("p"), "123 (flag): []");
}

TEST_F(Array, ScopeDecidesWhichParameterIsRead) {
  Load(Parameter("p", "", ListValue({"1"})) + Complex("c", Parameter("p", "", ListValue({"2"}))) + Complex("d", ""));
  void* const scope = parser_.GetComplexParameter("c", nullptr);
  EXPECT_EQ(ask_.Strings("p"), R"(OK: ["1"])");
  EXPECT_EQ(ask_.Strings("p", scope), R"(OK: ["2"])");
  EXPECT_EQ(ask_.Ints("p", scope), "OK: [2]");
  EXPECT_EQ(ask_.Doubles("p", scope), "OK: [2]");
  EXPECT_EQ(ask_.Ints("p", parser_.GetComplexParameter("d", nullptr)), "120 (flag): [47]");
}

TEST_F(Array, ComplexParametersAndMatricesAreNoArrays) {
  Load(Complex("p", ListValue({"1"})) + rqtest::Matrix("p", ListValue({"1"})));
  EXPECT_EQ(ask_.Ints("p"), "120 (flag): [47]");
}

// Texts

TEST_F(Array, EmptyTextsAreDroppedThoughMatricesKeepThem) {
  LoadParameter("", ListValue({"a", "", "c", " "}));
  EXPECT_EQ(ask_.Strings("p"), R"(OK: ["a", "c", " "])");
  LoadParameter("", ListValue({"", ""}));
  EXPECT_EQ(ask_.Strings("p"), "OK: []");
  LoadParameter("value=''");
  EXPECT_EQ(ask_.Strings("p"), "OK: []");
}

TEST_F(Array, TextsOfEveryScriptAndLengthComeWhole) {
  const std::vector<std::string> texts = {"\xE5\x9B\x9E\xE5\xB8\xB0", "\xF0\x9F\x98\x80",
                                          std::string(999, 'a') + "\xF0\x9F\x98\x80",
                                          std::string(3999, 'a') + "\xE2\x82\xAC"};
  LoadParameter("", ListValue({texts[0], texts[1], texts[2], texts[3]}));
  EXPECT_EQ(ask_.Strings("p"), "OK: " + Show(texts));
  LoadParameter("value='" + texts[3] + "'");
  EXPECT_EQ(ask_.Strings("p"), "OK: " + Show(std::vector<std::string>{texts[3]}));
  LoadParameter("", ListValue({"a\nb\t", "&#10;&amp;"}));
  EXPECT_EQ(ask_.Strings("p"), "OK: [\"a b \", \"\n&\"]");
}

TEST_F(Array, TextThatUtf8CannotSayIsEmptyAndDropped) {
  const std::string document = rqtest::Settings(Parameter("p", "", ListValue({"a", "?", "b"})) + Valued("q", "?"));
  for (const char16_t surrogate : {u'\xD800', u'\xDBFF'}) {
    ASSERT_EQ(rqtest::Parse(parser_, rqtest::AsUtf16(document, surrogate)), rqtest::Ok());
    EXPECT_EQ(ask_.String("q"), R"(OK: "")");
    EXPECT_EQ(ask_.Strings("p"), R"(OK: ["a", "b"])");
    EXPECT_EQ(ask_.Strings("q"), "OK: []");
    EXPECT_EQ(ask_.Variables("q"), "OK: []");
    EXPECT_EQ(ask_.Variable("q"), R"(OK: "")");
  }
}

// Numbers

TEST_F(Array, NegativeIntegerEndsTheArrayAndIsNotTakenUpThoughMatricesSkipIt) {
  LoadParameter("", ListValue({"1", "-2", "3"}));
  EXPECT_EQ(ask_.Ints("p"), "109: [1]");
  EXPECT_EQ(ask_.Doubles("p"), "OK: [1, -2, 3]");
  LoadParameter("value='-2'");
  EXPECT_EQ(ask_.Ints("p"), "109: []");
}

TEST_F(Array, WhatIsNoIntegerEndsTheArray) {
  for (const char* const text : {"", " ", "x", "3.5", "1e3", "-", "NaN", "true", "1 2"}) {
    LoadParameter("", ListValue({"1", "2", text, "4"}));
    EXPECT_EQ(ask_.Ints("p"), "109: [1, 2]") << text;
    LoadParameter("value='" + std::string(text) + "'");
    EXPECT_EQ(ask_.Ints("p"), "109: []") << text;
  }
}

TEST_F(Array, IntegersAreReadAsSingleOnesAre) {
  LoadParameter("", ListValue({"+5", " 7 ", "007", "-0", "4294967297", "2147483647", "2147483648", "1"}));
  EXPECT_EQ(ask_.Ints("p"), "109: [5, 7, 7, 0, 1, 2147483647]");
}

TEST_F(Array, WhatIsNoNumberOrInfiniteEndsTheArray) {
  for (const char* const text : {"", "x", "INF", "-INF", "1e999", "nan", "1,5", "1 2"}) {
    LoadParameter("", ListValue({"1", "2.5", text, "4"}));
    EXPECT_EQ(ask_.Doubles("p"), "109: [1, 2.5]") << text;
    LoadParameter("value='" + std::string(text) + "'");
    EXPECT_EQ(ask_.Doubles("p"), "109: []") << text;
  }
}

TEST_F(Array, NotANumberIsTheMissingValue) {
  LoadParameter("", ListValue({"1", "NaN", "-2.5e-1"}));
  EXPECT_EQ(ask_.Doubles("p"), "OK: [1, LOWEST, -0.25]");
}

TEST_F(Array, ManyItemsAreRead) {
  std::string values;
  std::vector<int> expected;
  for (int i = 0; i < 20000; ++i) {
    values += "<Value value='" + std::to_string(i) + "'/>";
    expected.push_back(i);
  }
  LoadParameter("", "<ListValue>" + values + "</ListValue>");
  std::vector<int> read;
  EXPECT_EQ(parser_.GetArray("p", read, nullptr), rqtest::Ok());
  EXPECT_EQ(read, expected);
}

}  // namespace
