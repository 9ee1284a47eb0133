#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rqxml/common/RQMV.h"
#include "rqxml/pmml/RQPMMLParser.h"
#include "tests/support/platform.h"
#include "tests/support/pmml.h"

namespace {

using rqtest::Calls;
using rqtest::Failure;
using rqtest::Field;
using rqtest::Fill;
using rqtest::Filled;
using rqtest::Ok;
using rqtest::Parse;
using rqtest::Pmml;
using rqtest::PmmlWithFields;
using RQXPrsUtil::RQPMMLParser;

class VarList : public rqtest::WithPlatform {};

/// The calls for one field on its own, which must be good.
Calls CallsFor(const std::string& field) {
  const Filled filled = Fill(PmmlWithFields(field));
  EXPECT_EQ(filled.status, Ok()) << field;
  return filled.calls;
}

Calls ForContent(const std::string& optype, const std::string& dataType, const std::string& content) {
  return CallsFor(Field("v", optype, dataType, content));
}

// Walking the dictionary

TEST_F(VarList, EmptyDictionaryAddsNothing) {
  for (const char* const content :
       {"", "text", "<!--c-->", "<Taxonomy/>", "<datafield/>", "<p:DataField/>", "<Taxonomy><DataField/></Taxonomy>"}) {
    const Filled filled = Fill(PmmlWithFields(content));
    EXPECT_EQ(filled.status, Ok()) << content;
    EXPECT_EQ(filled.calls, Calls()) << content;
  }
}

TEST_F(VarList, FieldsAreAddedInTheOrderOfTheDocument) {
  const Filled filled =
      Fill(PmmlWithFields("text" + Field("c", "continuous", "double") + "<!--c--><Taxonomy/>" +
                          Field("a", "categorical", "string") + "<?p i?>" + Field("b", "ordinal", "integer") + "text"));
  EXPECT_EQ(filled.status, Ok());
  EXPECT_EQ(filled.calls,
            (Calls{R"(AddContVar("c", "", role 4) -> 0)", R"(AddCatVar("a", "", strings [], labels [], role 4) -> 1)",
                   R"(AddCatVar("b", "", numbers [], labels [], role 4) -> 2)"}));
}

TEST_F(VarList, FieldsBelowOtherElementsAndFromEntitiesAreNotSeen) {
  const Filled filled = Fill(
      "<!DOCTYPE PMML [<!ENTITY e '<DataField name=\"e\" optype=\"continuous\" dataType=\"double\"/>'>]><PMML>"
      "<DataDictionary>&e;<x>" +
      Field("x", "continuous", "double") + "</x>" + Field("a", "continuous", "double") + "</DataDictionary></PMML>");
  EXPECT_EQ(filled.calls, Calls{R"(AddContVar("a", "", role 4) -> 0)"});
}

TEST_F(VarList, MiningSchemaIsNotConsulted) {
  const Filled filled = Fill(Pmml("<DataDictionary>" + Field("y", "continuous", "double") +
                                  "</DataDictionary><TreeModel><MiningSchema><MiningField name='y' "
                                  "usageType='predicted'/></MiningSchema></TreeModel>"));
  EXPECT_EQ(filled.calls, Calls{R"(AddContVar("y", "", role 4) -> 0)"});
}

TEST_F(VarList, DisplayNameIsTheLabel) {
  EXPECT_EQ(CallsFor("<DataField name='v' displayName='The label \xC3\xA4' optype='continuous' dataType='double'/>"),
            Calls{"AddContVar(\"v\", \"The label \xC3\xA4\", role 4) -> 0"});
  EXPECT_EQ(CallsFor("<DataField name='v' displayName='' optype='continuous' dataType='double'/>"),
            Calls{R"(AddContVar("v", "", role 4) -> 0)"});
}

TEST_F(VarList, StateOfOneFieldDoesNotReachTheNext) {
  const Filled filled = Fill(PmmlWithFields(
      "<DataField name='a' displayName='A' optype='categorical' dataType='string'><Value value='x' displayValue='X'/>"
      "<Value value='m' property='missing' displayValue='M'/></DataField>"
      "<DataField name='b' optype='continuous' dataType='double'><Value value='9' property='missing'/>"
      "<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeUpper' value='2'/></DataField>" +
      Field("c", "categorical", "integer", "<Value value='8' property='missing'/>")));
  EXPECT_EQ(filled.calls, (Calls{R"(AddCatVar("a", "A", strings ["x"], labels ["X"], role 4) -> 0)",
                                 R"(encoder 0: AddStrMissingValue("m", "M"))", R"(AddContVar("b", "", role 4) -> 1)",
                                 R"(encoder 1: AddNumMissingValue(9, ""))", R"(encoder 1: SetInvalidRange(1, 2))",
                                 R"(AddCatVar("c", "", numbers [], labels [], role 4) -> 2)",
                                 R"(encoder 2: AddNumMissingValue(8, ""))"}));
}

TEST_F(VarList, FillingTwiceGivesTheSameCalls) {
  RQPMMLParser parser;
  ASSERT_EQ(Parse(parser, PmmlWithFields(Field("v", "continuous", "double"))), Ok());
  rqtest::RecordingVarList first;
  rqtest::RecordingVarList second;
  EXPECT_EQ(parser.FillVarList(first, {}, false), Ok());
  EXPECT_EQ(parser.FillVarList(second, {}, false), Ok());
  EXPECT_EQ(first.calls, second.calls);
  EXPECT_EQ(first.calls.size(), 1U);
}

TEST_F(VarList, TwoFieldsOfOneNameAreBothOffered) {
  const Filled filled = Fill(PmmlWithFields(Field("v", "continuous", "double") + Field("v", "categorical", "string")));
  EXPECT_EQ(filled.calls, (Calls{R"(AddContVar("v", "", role 4) -> 0)",
                                 R"(AddCatVar("v", "", strings [], labels [], role 4) -> 1)"}));
}

// Required attributes and accepted words

TEST_F(VarList, MissingAttributesAreRefusedAndAddNothing) {
  for (const char* const attributes :
       {"", "name='v'", "name='v' optype='continuous'", "name='v' dataType='double'",
        "optype='continuous' dataType='double'", "name='v' dataType='string'", "Name='v' optype='x' dataType='double'",
        "p:name='v' optype='continuous' dataType='double'"}) {
    const Filled filled = Fill(PmmlWithFields("<DataField " + std::string(attributes) + "/>"));
    EXPECT_EQ(filled.status, Failure(108)) << attributes;
    EXPECT_EQ(filled.calls, Calls()) << attributes;
  }
}

TEST_F(VarList, FirstFaultOfAFieldWins) {
  const struct {
    const char* attributes;
    long code;
  } rows[] = {{"dataType='bad'", 108},
              {"name='v' dataType='bad'", 109},
              {"name='v' optype='continuous' dataType='bad'", 109},
              {"name='v'", 108}};
  for (const auto& row : rows) {
    EXPECT_EQ(Fill(PmmlWithFields("<DataField " + std::string(row.attributes) + "/>")).status, Failure(row.code))
        << row.attributes;
  }
}

TEST_F(VarList, FirstFaultOfADocumentWinsAndEarlierVariablesStay) {
  const std::string good = Field("good", "continuous", "double");
  const std::string bad = Field("bad", "continuous", "boolean");
  const std::string nameless = "<DataField optype='continuous' dataType='double'/>";
  const Calls one = {R"(AddContVar("good", "", role 4) -> 0)"};
  Filled filled = Fill(PmmlWithFields(good + bad + nameless));
  EXPECT_EQ(filled.status, Failure(109));
  EXPECT_EQ(filled.calls, one);
  filled = Fill(PmmlWithFields(good + nameless + bad));
  EXPECT_EQ(filled.status, Failure(108));
  EXPECT_EQ(filled.calls, one);
  filled = Fill(PmmlWithFields(bad + good));
  EXPECT_EQ(filled.status, Failure(109));
  EXPECT_EQ(filled.calls, Calls());
}

TEST_F(VarList, SixteenDataTypesAreAccepted) {
  for (const char* const type :
       {"double", "float", "integer", "date", "time", "dateTime", "timeSeconds", "dateDaysSince[0]",
        "dateDaysSince[1960]", "dateDaysSince[1970]", "dateDaysSince[1980]", "dateTimeSecondsSince[0]",
        "dateTimeSecondsSince[1960]", "dateTimeSecondsSince[1970]", "dateTimeSecondsSince[1980]"}) {
    EXPECT_EQ(ForContent("categorical", type, "<Value value='1'/>"),
              Calls{R"(AddCatVar("v", "", numbers [1], role 4) -> 0)"})
        << type;
    EXPECT_EQ(ForContent("continuous", type, ""), Calls{R"(AddContVar("v", "", role 4) -> 0)"}) << type;
  }
  EXPECT_EQ(ForContent("categorical", "string", "<Value value='1'/>"),
            Calls{R"(AddCatVar("v", "", strings ["1"], role 4) -> 0)"});
}

TEST_F(VarList, OtherDataTypesAreRefused) {
  for (const char* const type : {"",
                                 "boolean",
                                 "Double",
                                 "DOUBLE",
                                 "String",
                                 " double",
                                 "double ",
                                 "int",
                                 "real",
                                 "number",
                                 "datetime",
                                 "dateDaysSince",
                                 "dateDaysSince[1990]",
                                 "dateDaysSince[2020]",
                                 "dateTimeSecondsSince",
                                 "timeseconds",
                                 "double\xC3\xA4",
                                 "dateDaysSince[0",
                                 "dateTimeSecondsSince[1961]",
                                 "strin",
                                 "strings"}) {
    for (const char* const optype : {"continuous", "categorical"}) {
      const Filled filled = Fill(PmmlWithFields(Field("v", optype, type)));
      EXPECT_EQ(filled.status, Failure(109)) << type;
      EXPECT_EQ(filled.calls, Calls()) << type;
    }
  }
}

TEST_F(VarList, EveryOptypeButContinuousIsCategorical) {
  EXPECT_EQ(ForContent("continuous", "double", ""), Calls{R"(AddContVar("v", "", role 4) -> 0)"});
  for (const char* const optype : {"categorical", "ordinal", "", "Continuous", "continuous ", "anything"}) {
    EXPECT_EQ(ForContent(optype, "double", "<Value value='1'/>"),
              Calls{R"(AddCatVar("v", "", numbers [1], role 4) -> 0)"})
        << optype;
  }
}

// Values

TEST_F(VarList, NumbersOfACategoricalFieldAreItsCategories) {
  EXPECT_EQ(
      ForContent("categorical", "double", "<Value value='2'/>text<Value value=' 1.5 '/><!--c--><Value value='-3e2'/>"),
      Calls{R"(AddCatVar("v", "", numbers [2, 1.5, -300], role 4) -> 0)"});
}

TEST_F(VarList, NotANumberIsTheSystemMissingValue) {
  EXPECT_EQ(
      ForContent("categorical", "double", "<Value value='NaN'/><Value value='NaN' property='missing'/>"),
      (Calls{R"(AddCatVar("v", "", numbers [LOWEST], role 4) -> 0)", R"(encoder 0: AddNumMissingValue(LOWEST, ""))"}));
}

TEST_F(VarList, WhatIsNoNumberAddsNoValue) {
  EXPECT_EQ(ForContent("categorical", "double",
                       "<Value value='INF'/><Value value='-INF'/><Value value='1e999'/><Value value=''/>"
                       "<Value value='x'/><Value value='1,5'/><Value property='valid'/><Value value='7'/>"
                       "<Value value='x' property='missing'/>"),
            Calls{R"(AddCatVar("v", "", numbers [7], role 4) -> 0)"});
}

TEST_F(VarList, TextsOfAStringFieldAreItsCategories) {
  EXPECT_EQ(ForContent("categorical", "string",
                       "<Value value='b'/><Value value=''/><Value value=' a '/><Value value='b'/><Value other='x'/>"
                       "<Value value='&lt;&#228;&#x1F600;'/>"),
            Calls{"AddCatVar(\"v\", \"\", strings [\"b\", \"\", \" a \", \"b\", \"<\xC3\xA4\xF0\x9F\x98\x80\"], role 4)"
                  " -> 0"});
}

TEST_F(VarList, ValuesOfAContinuousFieldAreNotCategories) {
  EXPECT_EQ(ForContent("continuous", "double", "<Value value='1' displayValue='one'/><Value value='2'/>"),
            Calls{R"(AddContVar("v", "", role 4) -> 0)"});
}

TEST_F(VarList, ElementsThatAreNoValuesAreIgnored) {
  EXPECT_EQ(ForContent("categorical", "integer",
                       "<value value='1'/><p:Value value='2'/><Interval closure='closedClosed' leftMargin='0' "
                       "rightMargin='9'/><x><Value value='3'/></x><Value value='4'/>"),
            Calls{R"(AddCatVar("v", "", numbers [4], role 4) -> 0)"});
}

TEST_F(VarList, ValuesFromEntitiesAreNotSeen) {
  const Filled filled = Fill("<!DOCTYPE PMML [<!ENTITY e '<Value value=\"1\"/>'>]>" +
                             PmmlWithFields(Field("v", "categorical", "integer", "&e;<Value value='2'/>")));
  EXPECT_EQ(filled.calls, Calls{R"(AddCatVar("v", "", numbers [2], role 4) -> 0)"});
}

TEST_F(VarList, IntervalsAreNotRead) {
  EXPECT_EQ(ForContent("continuous", "double", "<Interval closure='closedClosed' leftMargin='0' rightMargin='9'/>"),
            Calls{R"(AddContVar("v", "", role 4) -> 0)"});
}

TEST_F(VarList, PropertyTellsValidFromMissingValues) {
  const struct {
    const char* property;
    bool valid;
  } rows[] = {{"", true},
              {"property='valid'", true},
              {"property='missing'", false},
              {"property='invalid'", false},
              {"property='Valid'", false},
              {"property='valid '", false},
              {"property=''", false},
              {"property='anything'", false},
              {"p:property='missing'", true}};
  for (const auto& row : rows) {
    EXPECT_EQ(
        ForContent("categorical", "integer", "<Value value='1' displayValue='one' " + std::string(row.property) + "/>"),
        row.valid ? Calls{R"(AddCatVar("v", "", numbers [1], labels ["one"], role 4) -> 0)"}
                  : (Calls{R"(AddCatVar("v", "", numbers [], labels [], role 4) -> 0)",
                           R"(encoder 0: AddNumMissingValue(1, "one"))"}))
        << row.property;
    EXPECT_EQ(
        ForContent("categorical", "string", "<Value value='1' displayValue='one' " + std::string(row.property) + "/>"),
        row.valid ? Calls{R"(AddCatVar("v", "", strings ["1"], labels ["one"], role 4) -> 0)"}
                  : (Calls{R"(AddCatVar("v", "", strings [], labels [], role 4) -> 0)",
                           R"(encoder 0: AddStrMissingValue("1", "one"))"}))
        << row.property;
  }
}

TEST_F(VarList, ValueWithoutAttributesIsIgnored) {
  EXPECT_EQ(ForContent("categorical", "string", "<Value/><Value value='a' displayValue='A'/><Value>text</Value>"),
            Calls{R"(AddCatVar("v", "", strings ["a"], labels ["A"], role 4) -> 0)"});
}

// Labels

TEST_F(VarList, LabelsAreGivenWhenThereAreAsManyAsValues) {
  EXPECT_EQ(ForContent("categorical", "integer",
                       "<Value value='1' displayValue='one'/><Value value='2' displayValue='two'/>"
                       "<Value value='3' displayValue='three'/>"),
            Calls{R"(AddCatVar("v", "", numbers [1, 2, 3], labels ["one", "two", "three"], role 4) -> 0)"});
  EXPECT_EQ(ForContent("ordinal", "string", "<Value value='1' displayValue='one'/><Value value='2' displayValue=''/>"),
            Calls{R"(AddCatVar("v", "", strings ["1", "2"], labels ["one", ""], role 4) -> 0)"});
}

TEST_F(VarList, FewerOrMoreLabelsThanValuesAreDropped) {
  EXPECT_EQ(
      ForContent("categorical", "integer",
                 "<Value value='1' displayValue='one'/><Value value='2'/><Value value='3' displayValue='three'/>"),
      Calls{R"(AddCatVar("v", "", numbers [1, 2, 3], role 4) -> 0)"});
  EXPECT_EQ(ForContent("categorical", "string", "<Value value='1'/><Value value='2' displayValue='two'/>"),
            Calls{R"(AddCatVar("v", "", strings ["1", "2"], role 4) -> 0)"});
  EXPECT_EQ(ForContent("categorical", "integer",
                       "<Value value='1' displayValue='one'/><Value value='x' displayValue='no number'/>"),
            Calls{R"(AddCatVar("v", "", numbers [1], role 4) -> 0)"});
  EXPECT_EQ(ForContent("categorical", "string", "<Value displayValue='no value'/>"),
            Calls{R"(AddCatVar("v", "", strings [], role 4) -> 0)"});
}

TEST_F(VarList, LabelOfARefusedValueIsStillCollectedAndShiftsTheOthers) {
  EXPECT_EQ(
      ForContent("categorical", "integer",
                 "<Value value='x' displayValue='of x'/><Value value='1'/><Value value='2' displayValue='of 2'/>"),
      Calls{R"(AddCatVar("v", "", numbers [1, 2], labels ["of x", "of 2"], role 4) -> 0)"});
}

TEST_F(VarList, FieldWithoutValuesIsAddedWithAnEmptyListOfLabels) {
  EXPECT_EQ(ForContent("categorical", "integer", ""),
            Calls{R"(AddCatVar("v", "", numbers [], labels [], role 4) -> 0)"});
  EXPECT_EQ(ForContent("categorical", "string", ""),
            Calls{R"(AddCatVar("v", "", strings [], labels [], role 4) -> 0)"});
}

// Missing values

TEST_F(VarList, MissingValuesArePairedWithTheirLabelsByPosition) {
  EXPECT_EQ(
      ForContent("continuous", "double",
                 "<Value value='97' property='missing'/><Value value='98' property='missing' displayValue='A'/>"
                 "<Value value='99' property='invalid' displayValue='B'/><Value value='100' property='missing'/>"),
      (Calls{R"(AddContVar("v", "", role 4) -> 0)", R"(encoder 0: AddNumMissingValue(97, "A"))",
             R"(encoder 0: AddNumMissingValue(98, "B"))", R"(encoder 0: AddNumMissingValue(99, ""))",
             R"(encoder 0: AddNumMissingValue(100, ""))"}));
  EXPECT_EQ(ForContent("categorical", "string",
                       "<Value value='y' property='missing'/><Value value='z' property='missing' displayValue='Z'/>"),
            (Calls{R"(AddCatVar("v", "", strings [], labels [], role 4) -> 0)",
                   R"(encoder 0: AddStrMissingValue("y", "Z"))", R"(encoder 0: AddStrMissingValue("z", ""))"}));
}

TEST_F(VarList, LabelOfAMissingValueThatIsNoNumberShiftsOntoTheNext) {
  EXPECT_EQ(ForContent("continuous", "double",
                       "<Value value='x' property='missing' displayValue='of x'/>"
                       "<Value value='9' property='missing' displayValue='of 9'/>"),
            (Calls{R"(AddContVar("v", "", role 4) -> 0)", R"(encoder 0: AddNumMissingValue(9, "of x"))"}));
}

TEST_F(VarList, LabelsOfMissingValuesDoNotMixWithThoseOfValidOnes) {
  EXPECT_EQ(ForContent("categorical", "integer",
                       "<Value value='9' property='missing' displayValue='M'/><Value value='1' displayValue='V'/>"),
            (Calls{R"(AddCatVar("v", "", numbers [1], labels ["V"], role 4) -> 0)",
                   R"(encoder 0: AddNumMissingValue(9, "M"))"}));
}

TEST_F(VarList, ContinuousStringFieldGetsItsMissingTexts) {
  EXPECT_EQ(
      ForContent("continuous", "string", "<Value value='9' property='missing' displayValue='M'/><Value value='1'/>"),
      (Calls{R"(AddContVar("v", "", role 4) -> 0)", R"(encoder 0: AddStrMissingValue("9", "M"))"}));
}

// Invalid range

TEST_F(VarList, ExtensionsGiveTheInvalidRange) {
  const struct {
    const char* extensions;
    const char* range;
  } rows[] = {
      {"<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeUpper' value='2'/>", "1, 2"},
      {"<Extension name='invalidRangeUpper' value='2'/><Extension name='invalidRangeLower' value='1'/>", "1, 2"},
      {"<Extension name='invalidRangeLower' value='1'/>", "1, HIGHEST"},
      {"<Extension name='invalidRangeUpper' value='2'/>", "LOWEST, 2"},
      {"<Extension name='invalidRangeLower' value='5'/><Extension name='invalidRangeUpper' value='2'/>", "5, 2"},
      {"<Extension extender='anybody.example' name='invalidRangeLower' value='1'/>", "1, HIGHEST"},
      {"<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeLower' value='3'/>", "3, HIGHEST"},
      {"<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeLower' value='x'/>", "1, HIGHEST"},
      {"<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeLower'/>", "1, HIGHEST"},
      {"<Extension name='invalidRangeLower' value=' 1 '/>", "1, HIGHEST"},
      {"<Extension name='invalidRangeUpper' value='NaN'/>", "LOWEST, LOWEST"},
      {"<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeLower' value='NaN'/>"
       "<Extension name='invalidRangeUpper' value='2'/>",
       "LOWEST, 2"},
      {"<Extension name='invalidRangeLower' value='1.7976931348623157e308'/>", "HIGHEST, HIGHEST"},
  };
  for (const auto& row : rows) {
    const std::string range = "encoder 0: SetInvalidRange(" + std::string(row.range) + ")";
    EXPECT_EQ(ForContent("continuous", "double", row.extensions), (Calls{R"(AddContVar("v", "", role 4) -> 0)", range}))
        << row.extensions;
    EXPECT_EQ(ForContent("categorical", "integer", row.extensions),
              (Calls{R"(AddCatVar("v", "", numbers [], labels [], role 4) -> 0)", range}))
        << row.extensions;
  }
}

TEST_F(VarList, OtherExtensionsGiveNoInvalidRange) {
  for (const char* const extension :
       {"<Extension/>", "<Extension name='invalidRangeLower'/>", "<Extension value='1'/>",
        "<Extension name='invalidrangelower' value='1'/>", "<Extension name='invalidRangeLower' value=''/>",
        "<Extension name='invalidRangeLower' value='x'/>", "<Extension name='invalidRangeLower' value='INF'/>",
        "<Extension name='invalidRangeUpper' value='-INF'/>", "<Extension name='other' value='1'/>",
        "<extension name='invalidRangeLower' value='1'/>", "<p:Extension name='invalidRangeLower' value='1'/>",
        "<x><Extension name='invalidRangeLower' value='1'/></x>", "<Extension name='invalidRangeLower' value='NaN'/>",
        "<Extension name='invalidRangeLower' value='-1.7976931348623157e308'/>",
        "<Extension name='invalidRangeUpper' value='1.7976931348623157e308'/>",
        "<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeLower' value='NaN'/>"}) {
    EXPECT_EQ(ForContent("continuous", "double", extension), Calls{R"(AddContVar("v", "", role 4) -> 0)"}) << extension;
  }
}

TEST_F(VarList, StringFieldsHaveNoInvalidRange) {
  const std::string extensions =
      "<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeUpper' value='2'/>";
  EXPECT_EQ(ForContent("categorical", "string", extensions),
            Calls{R"(AddCatVar("v", "", strings [], labels [], role 4) -> 0)"});
  EXPECT_EQ(ForContent("continuous", "string", extensions), Calls{R"(AddContVar("v", "", role 4) -> 0)"});
}

TEST_F(VarList, MissingValuesComeBeforeTheInvalidRange) {
  EXPECT_EQ(ForContent("categorical", "integer",
                       "<Extension name='invalidRangeLower' value='1'/><Value value='9' property='missing'/>"
                       "<Value value='5'/>"),
            (Calls{R"(AddCatVar("v", "", numbers [5], role 4) -> 0)", R"(encoder 0: AddNumMissingValue(9, ""))",
                   R"(encoder 0: SetInvalidRange(1, HIGHEST))"}));
}

// Names asked for

std::string ThreeFields() {
  return PmmlWithFields(Field("a", "continuous", "double") + Field("b", "continuous", "double") +
                        Field("c", "continuous", "double"));
}

Calls Added(const std::vector<std::string>& names) {
  Calls calls;
  for (const std::string& name : names) {
    calls.push_back("AddContVar(\"" + name + "\", \"\", role 4) -> " + std::to_string(calls.size()));
  }
  return calls;
}

TEST_F(VarList, NamedFieldsAreAddedInTheOrderOfTheDocument) {
  const struct {
    std::vector<std::string> names;
    std::vector<std::string> added;
  } rows[] = {{{}, {"a", "b", "c"}},
              {{"b"}, {"b"}},
              {{"c", "a"}, {"a", "c"}},
              {{"a", "a", "a"}, {"a"}},
              {{"unknown"}, {}},
              {{"unknown", "c", "other"}, {"c"}},
              {{"A"}, {}},
              {{"a "}, {}},
              {{""}, {}},
              {{"c", "b", "a"}, {"a", "b", "c"}}};
  for (const auto& row : rows) {
    const Filled filled = Fill(ThreeFields(), row.names);
    EXPECT_EQ(filled.status, Ok()) << rqtest::Show(row.names);
    EXPECT_EQ(filled.calls, Added(row.added)) << rqtest::Show(row.names);
  }
}

TEST_F(VarList, NamesAreComparedAsCharacters) {
  const std::string document =
      "<?xml version='1.0' encoding='ISO-8859-1'?>" + PmmlWithFields(Field("gr\xF6\xDF"
                                                                           "e",
                                                                           "continuous", "double") +
                                                                     Field("&#x1F600;", "continuous", "double"));
  EXPECT_EQ(Fill(document, {"gr\xC3\xB6\xC3\x9F"
                            "e"})
                .calls,
            Added({"gr\xC3\xB6\xC3\x9F"
                   "e"}));
  EXPECT_EQ(Fill(document, {"\xF0\x9F\x98\x80"}).calls, Added({"\xF0\x9F\x98\x80"}));
  EXPECT_EQ(Fill(document, {"gr\xF6\xDF"
                            "e"})
                .calls,
            Calls());
}

TEST_F(VarList, EveryFieldOfANameThatIsAskedForIsAdded) {
  const std::string document = PmmlWithFields(Field("a", "continuous", "double") + Field("b", "continuous", "double") +
                                              Field("a", "continuous", "double"));
  EXPECT_EQ(Fill(document, {"a"}).calls, Added({"a", "a"}));
}

TEST_F(VarList, FaultsOfFieldsThatAreNotAskedForAreNotReported) {
  const std::string document =
      PmmlWithFields("<DataField name='bad1'/>" + Field("bad2", "continuous", "boolean") +
                     Field("good", "continuous", "double") + "<DataField name='bad3' dataType='double'/>");
  const Filled filled = Fill(document, {"good"});
  EXPECT_EQ(filled.status, Ok());
  EXPECT_EQ(filled.calls, Added({"good"}));
  EXPECT_EQ(Fill(document, {"good", "bad3"}).status, Failure(108));
  EXPECT_EQ(Fill(document, {"bad2", "good"}).status, Failure(109));
}

TEST_F(VarList, FieldWithoutNameIsRefusedAlsoWhenOthersAreAskedFor) {
  const Filled filled =
      Fill(PmmlWithFields(Field("a", "continuous", "double") + "<DataField optype='continuous' dataType='double'/>" +
                          Field("b", "continuous", "double")),
           {"a", "b"});
  EXPECT_EQ(filled.status, Failure(108));
  EXPECT_EQ(filled.calls, Added({"a"}));
}

TEST_F(VarList, MalformedNameAskedForMatchesOnlyAFieldWithEmptyName) {
  const std::string document = PmmlWithFields(Field("a", "continuous", "double") + Field("", "continuous", "double") +
                                              Field("\xEF\xBF\xBD", "continuous", "double"));
  for (const char* const malformed : {"\xFF", "\xC3", "a\xFF", "\xED\xA0\x80"}) {
    EXPECT_EQ(Fill(document, {malformed}).calls, Added({""}));
    EXPECT_EQ(Fill(document, {malformed, "a"}).calls, Added({"a", ""}));
  }
  EXPECT_EQ(Fill(document, {""}).calls, Added({""}));
}

TEST_F(VarList, NameAskedForIsReadUpToItsFirstZero) {
  EXPECT_EQ(Fill(ThreeFields(), {std::string("b\0c", 3)}).calls, Added({"b"}));
}

TEST_F(VarList, ManyNamesAmongManyFieldsAreFound) {
  std::string fields;
  std::vector<std::string> names;
  std::vector<std::string> expected;
  for (int i = 0; i < 5000; ++i) {
    fields += Field("field" + std::to_string(i), "continuous", "double");
    if (i % 2 == 0) expected.push_back("field" + std::to_string(i));
    if (i % 2 == 0) names.insert(names.begin(), "field" + std::to_string(i));
  }
  EXPECT_EQ(Fill(PmmlWithFields(fields), names).calls, Added(expected));
}

// What the list answers

TEST_F(VarList, RefusalStopsTheWalk) {
  RQPMMLParser parser;
  ASSERT_EQ(Parse(parser, PmmlWithFields(Field("a", "continuous", "double") +
                                         Field("b", "categorical", "integer",
                                               "<Value value='9' property='missing'/>"
                                               "<Extension name='invalidRangeLower' value='1'/>") +
                                         Field("c", "continuous", "boolean"))),
            Ok());
  for (const int refusal : {-1, -77}) {
    rqtest::RecordingVarList vars;
    vars.refused = {"b"};
    vars.refusal = refusal;
    EXPECT_EQ(parser.FillVarList(vars, {}, false), Failure(111));
    EXPECT_EQ(vars.calls,
              (Calls{R"(AddContVar("a", "", role 4) -> 0)",
                     R"(AddCatVar("b", "", numbers [], labels [], role 4) -> )" + std::to_string(refusal)}));
  }
  EXPECT_EQ(parser.GetStatus(), Ok());
}

TEST_F(VarList, EveryOverloadMayRefuse) {
  const std::string one = "<Value value='1'/>";
  const std::string labelled = "<Value value='1' displayValue='one'/>";
  for (const std::string& field :
       {Field("v", "continuous", "double"), Field("v", "continuous", "string"),
        Field("v", "categorical", "double", one), Field("v", "categorical", "double", labelled),
        Field("v", "categorical", "string", one), Field("v", "categorical", "string", labelled)}) {
    RQPMMLParser parser;
    ASSERT_EQ(Parse(parser, PmmlWithFields(field)), Ok());
    rqtest::RecordingVarList vars;
    vars.refused = {"v"};
    EXPECT_EQ(parser.FillVarList(vars, {}, false), Failure(111)) << field;
    EXPECT_EQ(vars.calls.size(), 1U) << field;
  }
}

TEST_F(VarList, EncoderIsThatOfTheIndexTheListGave) {
  RQPMMLParser parser;
  ASSERT_EQ(Parse(parser, PmmlWithFields(Field("a", "continuous", "double", "<Value value='9' property='missing'/>") +
                                         Field("b", "categorical", "string", "<Value value='m' property='missing'/>"))),
            Ok());
  rqtest::RecordingVarList vars(41);
  EXPECT_EQ(parser.FillVarList(vars, {}, false), Ok());
  EXPECT_EQ(vars.calls, (Calls{R"(AddContVar("a", "", role 4) -> 41)", R"(encoder 41: AddNumMissingValue(9, ""))",
                               R"(AddCatVar("b", "", strings [], labels [], role 4) -> 42)",
                               R"(encoder 42: AddStrMissingValue("m", ""))"}));
}

TEST_F(VarList, VariableWithoutEncoderIsLeftAsItIs) {
  RQPMMLParser parser;
  const std::string missing = "<Value value='9' property='missing'/><Extension name='invalidRangeLower' value='1'/>";
  ASSERT_EQ(Parse(parser, PmmlWithFields(Field("a", "continuous", "double", missing) +
                                         Field("b", "categorical", "string", missing) +
                                         Field("c", "continuous", "double", missing))),
            Ok());
  rqtest::RecordingVarList vars;
  vars.withoutEncoder = {"a", "b"};
  EXPECT_EQ(parser.FillVarList(vars, {}, false), Ok());
  EXPECT_EQ(vars.calls,
            (Calls{R"(AddContVar("a", "", role 4) -> 0)", R"(AddCatVar("b", "", strings [], labels [], role 4) -> 1)",
                   R"(AddContVar("c", "", role 4) -> 2)", R"(encoder 2: AddNumMissingValue(9, ""))",
                   R"(encoder 2: SetInvalidRange(1, HIGHEST))"}));
}

// The reference list

TEST_F(VarList, ReferenceListKeepsWhatTheDocumentSays) {
  RQPMMLParser parser;
  ASSERT_EQ(Parse(parser, PmmlWithFields(
                              "<DataField name='age' displayName='Age' optype='continuous' dataType='double'>"
                              "<Value value='-1' property='missing' displayValue='unknown'/>"
                              "<Extension name='invalidRangeUpper' value='0'/></DataField>" +
                              Field("sex", "categorical", "string",
                                    "<Value value='m' displayValue='male'/><Value value='f' displayValue='female'/>") +
                              Field("grade", "ordinal", "integer", "<Value value='1'/><Value value='2'/>"))),
            Ok());
  RQMTD_NAMESPACE::RQVarList vars;
  ASSERT_EQ(parser.FillVarList(vars, {}, false), Ok());
  ASSERT_EQ(vars.Size(), 3);
  const auto* const age = vars.GetVariable(0);
  EXPECT_EQ(age->GetTypeCode(), 1);
  EXPECT_EQ(age->GetName(), "age");
  EXPECT_EQ(age->GetLabel(), "Age");
  EXPECT_EQ(age->GetRole(), RQMTD_NAMESPACE::IRQVariable::RoleInput);
  EXPECT_FALSE(age->HasRange());
  ASSERT_EQ(age->GetEncoder().GetNumMissingValues().size(), 1U);
  EXPECT_EQ(age->GetEncoder().GetNumMissingValues()[0].first, -1);
  EXPECT_EQ(age->GetEncoder().GetNumMissingValues()[0].second, "unknown");
  EXPECT_TRUE(age->GetEncoder().HasInvalidRange());
  EXPECT_EQ(age->GetEncoder().GetInvalidLower(), RQMV::gMissingValue);
  EXPECT_EQ(age->GetEncoder().GetInvalidUpper(), 0);
  const auto* const sex = vars.GetVariable(1);
  EXPECT_EQ(sex->GetTypeCode(), 3);
  EXPECT_EQ(sex->GetStringValues(), (std::vector<std::string>{"m", "f"}));
  EXPECT_EQ(sex->GetLabels(), (std::vector<std::string>{"male", "female"}));
  const auto* const grade = vars.GetVariable(2);
  EXPECT_EQ(grade->GetTypeCode(), 2);
  EXPECT_EQ(grade->GetNumericValues(), (std::vector<double>{1, 2}));
  EXPECT_EQ(grade->GetLabels(), std::vector<std::string>());
}

TEST_F(VarList, ReferenceListRefusesEmptyAndRepeatedNamesAndKeepsTheOthers) {
  for (const char* const second : {"", "a"}) {
    RQPMMLParser parser;
    ASSERT_EQ(Parse(parser, PmmlWithFields(Field("a", "continuous", "double") + Field(second, "continuous", "double") +
                                           Field("c", "continuous", "double"))),
              Ok());
    RQMTD_NAMESPACE::RQVarList vars;
    EXPECT_EQ(parser.FillVarList(vars, {}, false), Failure(111));
    EXPECT_EQ(vars.Size(), 1);
    EXPECT_EQ(parser.FillVarList(vars, {"c"}, false), Ok());
    EXPECT_EQ(vars.Size(), 2);
    EXPECT_EQ(parser.FillVarList(vars, {"c"}, false), Failure(111));
    EXPECT_EQ(vars.Size(), 2);
  }
}

}  // namespace
