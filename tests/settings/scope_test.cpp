// Finding parameters by name, in the task's own parameters and in complex ones.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/settings.h"

namespace {

using rqtest::Absent;
using rqtest::Complex;
using rqtest::ListValue;
using rqtest::Matrix;
using rqtest::Ok;
using rqtest::Parameter;
using rqtest::Parse;
using rqtest::Pmml;
using rqtest::Row;
using rqtest::Settings;
using rqtest::Valued;
using RQXPrsUtil::RQSettingsParser;

class Lookup : public rqtest::WithSettings {};

TEST_F(Lookup, FirstOfSeveralParametersOfOneNameIsTheOne) {
  Load(Valued("other", "0") + Valued("p", "1") + Valued("p", "2") + Parameter("p", "type='enum'", ListValue({"3"})));
  EXPECT_EQ(ask_.Int("p"), "OK: 1");
  EXPECT_EQ(ask_.Strings("p"), "OK: [\"1\"]");
  EXPECT_EQ(ask_.Variables("p"), "OK: [\"1\"]");
  EXPECT_EQ(ask_.Variable("p"), "OK: \"1\"");
  EXPECT_EQ(parser_.GetParameterType("p", nullptr), RQSettingsParser::ParamUnknown);
  Load(Parameter("p", "") + Valued("p", "2"));
  EXPECT_EQ(ask_.Int("p"), "123 (flag): 47") << "the first counts although it has no value";
}

TEST_F(Lookup, OnlyElementsOfTheRightTagCountHoweverTheyAreNamed) {
  const std::string attributes = " name='p' value='1'/>";
  Load(
      "text<!-- <Parameter name='p' value='1'/> --><?p <Parameter name='p' value='1'/>?>"
      "<![CDATA[<Parameter name='p' value='1'/>]]><parameter" +
      attributes + "<PARAMETER" + attributes + "<Parameters" + attributes + "<x:Parameter" + attributes + "<Param" +
      attributes + "<ArrayParameter" + attributes + "<x><Parameter" + attributes + "</x>");
  ExpectEveryGetterGives(Absent(120));
}

TEST_F(Lookup, ParameterComplexParameterAndMatrixMayShareAName) {
  Load(Matrix("p", Row({"1"})) + Complex("p", Valued("q", "2")) + Valued("p", "3"));
  EXPECT_EQ(ask_.Int("p"), "OK: 3");
  EXPECT_EQ(ask_.IntRows("p"), "OK: [[1]]");
  EXPECT_EQ(ask_.Int("q", parser_.GetComplexParameter("p", nullptr)), "OK: 2");
}

TEST_F(Lookup, NamesAreComparedExactly) {
  const struct {
    const char* written;
    const char* asked;
    bool found;
  } rows[] = {{"p", "p", true},
              {"p", "P", false},
              {"p", "", false},
              {"p", "pp", false},
              {"pp", "p", false},
              {" p", "p", false},
              {"p", "p ", false},
              {"", "", true},
              {"", "p", false},
              {"a&amp;b", "a&b", true},
              {"a&amp;b", "a&amp;b", false},
              {"a\nb", "a b", true},
              {"a\nb", "a\nb", false},
              {"a\tb", "a b", true},
              {"a&#10;b", "a\nb", true},
              {"a&#10;b", "a b", false},
              {"a&#9;b", "a\tb", true},
              {"&#x41;", "A", true},
              {"gr\xC3\xB6\xC3\x9F", "gr\xC3\xB6\xC3\x9F", true},
              {"gr\xC3\xB6", "gro\xCC\x88", false},
              {"\xE5\x9B\x9E\xE5\xB8\xB0", "\xE5\x9B\x9E\xE5\xB8\xB0", true},
              {"\xE5\x9B\x9E\xE5\xB8\xB0", "\xE5\x9B\x9E", false},
              {"\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D", "\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D", true},
              {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80", true},
              {"&#x1F600;", "\xF0\x9F\x98\x80", true},
              {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x81", false},
              {"&#x10FFFD;", "\xF4\x8F\xBF\xBD", true},
              {"\xEF\xBB\xBFp", "p", false}};
  for (const auto& row : rows) {
    Load(Valued(row.written, "1") + Complex(row.written, Valued(row.written, "2")) + Matrix(row.written, Row({"3"})));
    EXPECT_EQ(ask_.Int(row.asked), row.found ? "OK: 1" : "120 (flag): 47") << row.written << " / " << row.asked;
    EXPECT_EQ(ask_.Ints(row.asked), row.found ? "OK: [1]" : "120 (flag): [47]") << row.written << " / " << row.asked;
    EXPECT_EQ(ask_.IntRows(row.asked), row.found ? "OK: [[3]]" : "120 (flag): [[47]]")
        << row.written << " / " << row.asked;
    void* const scope = parser_.GetComplexParameter(row.asked, nullptr);
    EXPECT_EQ(scope != nullptr, row.found) << row.written << " / " << row.asked;
    if (scope == nullptr) continue;
    EXPECT_EQ(ask_.Int(row.asked, scope), "OK: 2") << row.written << " / " << row.asked;
  }
}

TEST_F(Lookup, ParameterWithoutNameIsNeverFound) {
  Load(
      "<Parameter value='1' type='enum'/><ComplexParameter><Parameter name='p' value='2'/></ComplexParameter>"
      "<MatrixParmeter><ArrayParameter/></MatrixParmeter>");
  ExpectEveryGetterGives(Absent(120));
  ExpectEveryGetterGives(Absent(120), "");
  Load("<Parameter value='1'/>" + Valued("", "2"));
  EXPECT_EQ(ask_.Int(""), "OK: 2");
}

TEST_F(Lookup, MalformedNameAskedForMatchesOnlyAnEmptyName) {
  Load(Valued("a", "1") + Valued("\xEF\xBF\xBD", "2"));
  for (const char* const malformed : {"\xFF", "\xC3", "a\xFF", "\xED\xA0\x80", "\xC0\x80"}) {
    ExpectEveryGetterGives(Absent(120), malformed);
  }
  Load(Valued("a", "1") + Valued("", "3"));
  for (const char* const malformed : {"\xFF", "\xC3", "a\xFF", "\xED\xA0\x80", "\xC0\x80"}) {
    EXPECT_EQ(ask_.Int(malformed), "OK: 3");
  }
}

TEST_F(Lookup, NameThatUtf8CannotSayIsNotFoundByAnyName) {
  ASSERT_EQ(Parse(parser_, rqtest::AsUtf16(Settings(Valued("?", "1") + Valued("", "2")), u'\xD800')), Ok());
  EXPECT_EQ(ask_.Int(""), "OK: 2");
  EXPECT_EQ(ask_.Int("\xED\xA0\x80"), "OK: 2") << "malformed: as if it were empty";
  EXPECT_EQ(ask_.Int("\xEF\xBF\xBD"), "120 (flag): 47");
}

TEST_F(Lookup, ThousandthParameterIsFound) {
  std::string parameters;
  for (int i = 0; i < 3000; ++i) parameters += Valued("p" + std::to_string(i), std::to_string(i)) + "text<!--c-->";
  Load(parameters);
  for (const int i : {0, 1, 999, 2999}) {
    EXPECT_EQ(ask_.Int(("p" + std::to_string(i)).c_str()), "OK: " + std::to_string(i));
  }
  EXPECT_EQ(ask_.Int("p3000"), "120 (flag): 47");
}

// Complex parameters

TEST_F(Lookup, ParameterOfAComplexOneIsFoundOnlyInItsScope) {
  Load(Complex("c", Parameter("q", "value='1' type='integer'") + Matrix("m", Row({"2"}))));
  ExpectEveryGetterGives(Absent(120), "q");
  EXPECT_EQ(ask_.IntRows("m"), "120 (flag): [[47]]");
  void* const scope = parser_.GetComplexParameter("c", nullptr);
  ASSERT_NE(scope, nullptr);
  EXPECT_EQ(ask_.String("q", scope), "OK: \"1\"");
  EXPECT_EQ(ask_.Int("q", scope), "OK: 1");
  EXPECT_EQ(ask_.Double("q", scope), "OK: 1");
  EXPECT_EQ(ask_.Bool("q", scope), "109: kept");
  EXPECT_EQ(ask_.Strings("q", scope), "OK: [\"1\"]");
  EXPECT_EQ(ask_.Ints("q", scope), "OK: [1]");
  EXPECT_EQ(ask_.Doubles("q", scope), "OK: [1]");
  EXPECT_EQ(ask_.IntRows("m", scope), "OK: [[2]]");
  EXPECT_EQ(parser_.GetParameterType("q", scope), RQSettingsParser::ParamInteger);
}

TEST_F(Lookup, ParameterOfTheTaskIsNotFoundInAScope) {
  Load(Valued("p", "1") + Complex("c", Valued("q", "2")) + Matrix("p", Row({"1"})) + Complex("p", ""));
  void* const scope = parser_.GetComplexParameter("c", nullptr);
  ASSERT_NE(scope, nullptr);
  ExpectEveryGetterGives(Absent(120), "p", scope);
}

TEST_F(Lookup, OneNameMayStandInEveryScope) {
  Load(Complex("c", Valued("p", "2") + Complex("c", Valued("p", "3"))) + Valued("p", "1"));
  EXPECT_EQ(ask_.Int("p"), "OK: 1");
  void* const outer = parser_.GetComplexParameter("c", nullptr);
  EXPECT_EQ(ask_.Int("p", outer), "OK: 2");
  void* const inner = parser_.GetComplexParameter("c", outer);
  EXPECT_NE(inner, outer);
  EXPECT_EQ(ask_.Int("p", inner), "OK: 3");
  EXPECT_EQ(parser_.GetComplexParameter("c", inner), nullptr);
  EXPECT_EQ(ask_.Int("p", outer), "OK: 2") << "a handle can be used again";
  EXPECT_EQ(ask_.Int("p"), "OK: 1");
}

TEST_F(Lookup, ComplexParametersNest) {
  std::string parameters = Valued("p", "100");
  for (int depth = 99; depth >= 0; --depth) {
    parameters = Complex("c" + std::to_string(depth), Valued("p", std::to_string(depth)) + parameters);
  }
  Load(parameters);
  void* scope = nullptr;
  for (int depth = 0; depth < 100; ++depth) {
    scope = parser_.GetComplexParameter(("c" + std::to_string(depth)).c_str(), scope);
    ASSERT_NE(scope, nullptr) << depth;
    EXPECT_EQ(ask_.Int("p", scope), "OK: " + std::to_string(depth));
  }
}

TEST_F(Lookup, EmptyComplexParameterIsAScopeThatHoldsNothing) {
  for (const char* const content : {"", "text", "<!--c-->", "<x/>"}) {
    Load(Complex("c", content) + Valued("p", "1"));
    void* const scope = parser_.GetComplexParameter("c", nullptr);
    ASSERT_NE(scope, nullptr);
    ExpectEveryGetterGives(Absent(120), "p", scope);
  }
}

TEST_F(Lookup, FirstOfSeveralComplexParametersOfOneNameIsTheOne) {
  Load("<ComplexParameter/>" + Complex("c", "") + Complex("c", Valued("p", "2")));
  void* const scope = parser_.GetComplexParameter("c", nullptr);
  ASSERT_NE(scope, nullptr);
  ExpectEveryGetterGives(Absent(120), "p", scope);
}

TEST_F(Lookup, OnlyComplexParametersAreHandedOutAsScopes) {
  Load(Parameter("c", "", Valued("p", "1")) + Matrix("c", Valued("p", "1")) + "<complexParameter name='c'/>" +
       "<x:ComplexParameter name='c'/><Complex name='c'/><x><ComplexParameter name='c'/></x>" +
       "<ComplexParameter Name='c' x:name='c'/>");
  EXPECT_EQ(parser_.GetComplexParameter("c", nullptr), nullptr);
  EXPECT_EQ(parser_.GetComplexParameter("", nullptr), nullptr);
}

TEST_F(Lookup, HandleOfOneParserStaysGoodWhileAnotherParses) {
  Load(Complex("c", Valued("p", "1")));
  void* const scope = parser_.GetComplexParameter("c", nullptr);
  RQSettingsParser other;
  ASSERT_EQ(Parse(other, Settings(Complex("c", Valued("p", "2")))), Ok());
  EXPECT_EQ(rqtest::Asker(other).Int("p", other.GetComplexParameter("c", nullptr)), "OK: 2");
  EXPECT_EQ(ask_.Int("p", scope), "OK: 1");
}

TEST_F(Lookup, ScopeIsNotLookedAtWithoutADocument) {
  int notAnElement = 0;
  ExpectEveryGetterGives(rqtest::Failure(107), "p", &notAnElement);
  EXPECT_EQ(Parse(parser_, Pmml("<DataDictionary/>")), rqtest::Failure(119));
  ExpectEveryGetterGives(rqtest::Failure(119), "p", &notAnElement);
}

}  // namespace
