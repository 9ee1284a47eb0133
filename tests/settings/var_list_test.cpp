#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rqxml/common/RQMV.h"
#include "rqxml/settings/RQSettingsParser.h"
#include "tests/support/settings.h"

namespace {

using rqtest::BuildTask;
using rqtest::Calls;
using rqtest::Failure;
using rqtest::Field;
using rqtest::Filled;
using rqtest::FillSettings;
using rqtest::Ok;
using rqtest::Parse;
using rqtest::Pmml;
using rqtest::SettingsWithFields;
using rqtest::Valued;
using RQXPrsUtil::RQSettingsParser;

class SettingsVarList : public rqtest::WithPlatform {
 protected:
  /// What filling from one field comes to.
  static Filled OfField(const std::string& field, bool bins = false) {
    return FillSettings(SettingsWithFields(field), bins);
  }
  /// The calls for one field that is good.
  static Calls CallsFor(const std::string& optype, const std::string& type, const std::string& content = "") {
    const Filled filled = OfField(Field("v", optype, type, content));
    EXPECT_EQ(filled.status, Ok()) << content;
    return filled.calls;
  }
};

std::string Cont(const std::string& name, const std::string& range, int index = 0) {
  return "AddContVar(\"" + name + "\", \"\", " + range + ", role 4, false, -1) -> " + std::to_string(index);
}

std::string Storage(int code, int index = 0) {
  return "variable " + std::to_string(index) + ": SetStorageType(" + std::to_string(code) + ")";
}

const char* const kUnlimited = "LOWEST, HIGHEST";

// The walk

TEST_F(SettingsVarList, DictionaryWithoutFieldsAddsNothing) {
  for (const char* const content : {"", "text", "<!--<DataField/>-->", "<dataField/><x:DataField/><DerivedField/>",
                                    "<x><DataField/></x>", "<![CDATA[<DataField/>]]>"}) {
    for (const bool bins : {false, true}) {
      const Filled filled = FillSettings(SettingsWithFields(content), bins);
      EXPECT_EQ(filled.status, Ok()) << content;
      EXPECT_EQ(filled.calls, Calls()) << content;
    }
  }
}

TEST_F(SettingsVarList, FieldsComeInDocumentOrderBehindWhatTheListHolds) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser,
                  SettingsWithFields("text" + Field("b", "continuous", "double") + "<!--c--><x/>" +
                                     Field("a", "categorical", "string") + "<?p?>" + Field("c", "ordinal", "integer"))),
            Ok());
  rqtest::RecordingStorageList vars(41);
  EXPECT_EQ(parser.FillVarList(vars, false), Ok());
  EXPECT_EQ(vars.calls, (Calls{Cont("b", kUnlimited, 41), Storage(2, 41),
                               R"(AddCatVar("a", "", strings [], labels [], role 4) -> 42)", Storage(3, 42),
                               R"(AddCatVar("c", "", numbers [], labels [], role 4) -> 43)", Storage(1, 43)}));
}

TEST_F(SettingsVarList, SecondFillOffersTheSameAgain) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser, SettingsWithFields(Field("a", "continuous", "double", "<Value value='9' property='m'/>"))),
            Ok());
  rqtest::RecordingStorageList first;
  rqtest::RecordingStorageList second;
  EXPECT_EQ(parser.FillVarList(first, false), Ok());
  EXPECT_EQ(parser.FillVarList(second, false), Ok());
  EXPECT_EQ(first.calls, second.calls);
  EXPECT_EQ(first.calls.size(), 3U);
}

// What a field says of itself

TEST_F(SettingsVarList, EachStorageTypeHasItsCode) {
  const struct {
    const char* type;
    int code;
  } rows[] = {{"integer", 1}, {"double", 2}, {"float", 2}, {"string", 3}, {"date", 4}, {"time", 5}, {"dateTime", 6}};
  for (const auto& row : rows) {
    EXPECT_EQ(CallsFor("continuous", row.type), (Calls{Cont("v", kUnlimited), Storage(row.code)})) << row.type;
    const std::string values = row.code == 3 ? "strings [\"1\"]" : "numbers [1]";
    EXPECT_EQ(CallsFor("categorical", row.type, "<Value value='1'/>"),
              (Calls{"AddCatVar(\"v\", \"\", " + values + ", role 4) -> 0", Storage(row.code)}))
        << row.type;
  }
}

TEST_F(SettingsVarList, TypesThatOnlyModelsHaveAreRefusedThoughModelsAreReadByTheSameRules) {
  for (const char* const type : {"timeSeconds", "dateDaysSince[0]", "dateDaysSince[1960]", "dateDaysSince[1970]",
                                 "dateDaysSince[1980]", "dateTimeSecondsSince[0]", "dateTimeSecondsSince[1960]",
                                 "dateTimeSecondsSince[1970]", "dateTimeSecondsSince[1980]"}) {
    const Filled filled = OfField(Field("v", "continuous", type));
    EXPECT_EQ(filled.status, Failure(109)) << type;
    EXPECT_EQ(filled.calls, Calls()) << type;
    EXPECT_EQ(rqtest::Fill(SettingsWithFields(Field("v", "continuous", type))).status, Ok()) << type;
  }
}

TEST_F(SettingsVarList, UnknownTypesAreRefused) {
  for (const char* const type : {"boolean", "Integer", "INTEGER", "int", "", " integer", "integer ", "doubles", "real",
                                 "datetime", "String", "1"}) {
    for (const char* const optype : {"continuous", "categorical"}) {
      EXPECT_EQ(OfField(Field("v", optype, type)).status, Failure(109)) << type;
    }
  }
}

TEST_F(SettingsVarList, NameTypeAndMeasureAreRequiredAndAskedForInThisOrder) {
  const struct {
    const char* attributes;
    long code;
  } rows[] = {{"", 108},
              {"optype='continuous' dataType='double'", 108},
              {"name='v' optype='continuous'", 108},
              {"name='v' dataType='double'", 108},
              {"name='v'", 108},
              {"optype='continuous' dataType='boolean'", 108},
              {"name='v' dataType='boolean'", 109},
              {"name='v' dataType=''", 109},
              {"name='v' dataType='boolean' optype='continuous'", 109},
              {"Name='v' dataType='double' optype='continuous'", 108},
              {"name='v' DataType='double' optype='continuous'", 108},
              {"name='v' dataType='double' opType='continuous'", 108},
              {"x:name='v' dataType='double' optype='continuous'", 108}};
  for (const auto& row : rows) {
    const Filled filled = OfField("<DataField " + std::string(row.attributes) + "/>");
    EXPECT_EQ(filled.status, Failure(row.code)) << row.attributes;
    EXPECT_EQ(filled.calls, Calls()) << row.attributes;
  }
}

TEST_F(SettingsVarList, ChildrenAreNotReadWhenTheFieldItselfIsFaulty) {
  const std::string bad = "<Interval leftMargin='x'/></DataField>";
  EXPECT_EQ(OfField("<DataField name='v' optype='continuous'>" + bad).status, Failure(108));
  EXPECT_EQ(OfField("<DataField name='v' dataType='double'>" + bad).status, Failure(108));
  EXPECT_EQ(OfField("<DataField dataType='double' optype='continuous'>" + bad).status, Failure(108));
}

TEST_F(SettingsVarList, OnlyContinuousIsContinuous) {
  for (const char* const optype : {"categorical", "ordinal", "", "Continuous", " continuous", "continuous ", "x"}) {
    EXPECT_EQ(CallsFor(optype, "double"),
              (Calls{R"(AddCatVar("v", "", numbers [], labels [], role 4) -> 0)", Storage(2)}))
        << optype;
  }
}

TEST_F(SettingsVarList, LabelIsTheDisplayNameOrEmpty) {
  EXPECT_EQ(OfField("<DataField name='v' displayName='The &lt;label&gt;\nof v' optype='continuous' dataType='double'/>")
                .calls[0],
            R"(AddContVar("v", "The <label> of v", LOWEST, HIGHEST, role 4, false, -1) -> 0)");
  EXPECT_EQ(OfField("<DataField name='v' displayName='' optype='x' dataType='string'/>").calls[0],
            R"(AddCatVar("v", "", strings [], labels [], role 4) -> 0)");
  EXPECT_EQ(OfField("<DataField name='v' label='x' DisplayName='x' optype='x' dataType='string'/>").calls[0],
            R"(AddCatVar("v", "", strings [], labels [], role 4) -> 0)");
}

TEST_F(SettingsVarList, NamesValuesAndLabelsOfEveryScriptComeWhole) {
  const std::string text = std::string(999, 'a') + "\xF0\x9F\x98\x80\xE5\x9B\x9E\xD7\xA9 " + std::string(3000, 'b');
  const Filled filled =
      OfField("<DataField name='n" + text + "' displayName='l" + text + "' optype='categorical' dataType='string'>" +
              "<Value value='v" + text + "' displayValue='d" + text + "'/><Value value='m" + text +
              "' displayValue='e" + text + "' property='missing'/></DataField>");
  EXPECT_EQ(filled.calls, (Calls{"AddCatVar(\"n" + text + "\", \"l" + text + "\", strings [\"v" + text +
                                     "\"], labels [\"d" + text + "\"], role 4) -> 0",
                                 "encoder 0: AddStrMissingValue(\"m" + text + "\", \"e" + text + "\")", Storage(3)}));
}

TEST_F(SettingsVarList, EmptyNameIsOfferedToTheList) {
  EXPECT_EQ(OfField(Field("", "continuous", "double")).calls, (Calls{Cont("", kUnlimited), Storage(2)}));
}

// Values

TEST_F(SettingsVarList, NumericValuesAreCategories) {
  EXPECT_EQ(CallsFor("categorical", "integer",
                     "<Value value='1'/><Value value=' 2.5 '/><Value value='-1e2'/><Value value='NaN'/>"),
            (Calls{R"(AddCatVar("v", "", numbers [1, 2.5, -100, LOWEST], role 4) -> 0)", Storage(1)}));
}

TEST_F(SettingsVarList, ValueThatIsNoNumberIsDroppedWhileItsLabelStaysWhichCanDropAllLabels) {
  EXPECT_EQ(CallsFor("categorical", "double",
                     "<Value value='1' displayValue='a'/><Value value='x' displayValue='b'/>"
                     "<Value value='3' displayValue='c'/>"),
            (Calls{R"(AddCatVar("v", "", numbers [1, 3], role 4) -> 0)", Storage(2)}));
  for (const char* const bad : {"x", "", "INF", "-INF", "1e999", "1,5", "nan"}) {
    EXPECT_EQ(CallsFor("categorical", "double",
                       "<Value value='1'/><Value value='" + std::string(bad) + "' displayValue='b'/>"),
              (Calls{R"(AddCatVar("v", "", numbers [1], labels ["b"], role 4) -> 0)", Storage(2)}))
        << bad;
  }
}

TEST_F(SettingsVarList, LabelsAreGivenOnlyWhenThereAreAsManyAsValues) {
  EXPECT_EQ(CallsFor("categorical", "double",
                     "<Value value='1' displayValue='a'/><Value value='2'/><Value value='3' displayValue='c'/>"),
            (Calls{R"(AddCatVar("v", "", numbers [1, 2, 3], role 4) -> 0)", Storage(2)}));
  EXPECT_EQ(CallsFor("categorical", "double", "<Value value='1' displayValue='a'/><Value value='2' displayValue=''/>"),
            (Calls{R"(AddCatVar("v", "", numbers [1, 2], labels ["a", ""], role 4) -> 0)", Storage(2)}));
  EXPECT_EQ(CallsFor("categorical", "string",
                     "<Value value='1' displayValue='a'/><Value value='2'/><Value displayValue='c'/>"),
            (Calls{R"(AddCatVar("v", "", strings ["1", "2"], labels ["a", "c"], role 4) -> 0)", Storage(3)}))
      << "labels are paired by their own position";
  EXPECT_EQ(CallsFor("categorical", "string", "<Value value='1'/><Value value='2' displayValue='b'/>"),
            (Calls{R"(AddCatVar("v", "", strings ["1", "2"], role 4) -> 0)", Storage(3)}));
}

TEST_F(SettingsVarList, TextValuesAreKeptAsTheyStand) {
  EXPECT_EQ(CallsFor("categorical", "string", "<Value value=''/><Value value=' a '/><Value value='1'/>"),
            (Calls{R"(AddCatVar("v", "", strings ["", " a ", "1"], role 4) -> 0)", Storage(3)}));
}

TEST_F(SettingsVarList, ValueWithoutAttributesIsNone) {
  EXPECT_EQ(CallsFor("categorical", "string", "<Value/><Value>a</Value><Value value='b'/>"),
            (Calls{R"(AddCatVar("v", "", strings ["b"], role 4) -> 0)", Storage(3)}));
}

TEST_F(SettingsVarList, PropertyOtherThanValidMakesAMissingValue) {
  for (const char* const property : {"missing", "invalid", "", "Valid", "VALID", " valid", "x"}) {
    EXPECT_EQ(CallsFor("categorical", "integer",
                       "<Value value='1' displayValue='a' property='valid'/><Value value='99' displayValue='m' "
                       "property='" +
                           std::string(property) + "'/>"),
              (Calls{R"(AddCatVar("v", "", numbers [1], labels ["a"], role 4) -> 0)",
                     R"(encoder 0: AddNumMissingValue(99, "m"))", Storage(1)}))
        << property;
  }
  EXPECT_EQ(CallsFor("categorical", "integer", "<Value value='1' Property='missing' x:property='missing'/>"),
            (Calls{R"(AddCatVar("v", "", numbers [1], role 4) -> 0)", Storage(1)}));
}

TEST_F(SettingsVarList, OnlyChildrenOfTheRightNameCount) {
  EXPECT_EQ(CallsFor("categorical", "integer",
                     "text<!--<Value value='0'/>--><value value='0'/><x:Value value='0'/><x><Value value='0'/></x>"
                     "<![CDATA[<Value value='0'/>]]><Value value='1'><Value value='0'/></Value><interval "
                     "leftMargin='x'/><x:Interval leftMargin='x'/><x:Extension name='invalidRangeLower' value='1'/>"
                     "<extension name='invalidRangeLower' value='1'/>"),
            (Calls{R"(AddCatVar("v", "", numbers [1], role 4) -> 0)", Storage(1)}));
}

// Missing values

TEST_F(SettingsVarList, MissingNumbersFollowTheVariableWithTheLabelsAtTheirPositions) {
  const std::string content =
      "<Value value='-1' property='missing'/><Value value='-2' property='missing' displayValue='a'/>"
      "<Value value='x' property='missing' displayValue='b'/><Value value='NaN' property='missing'/>";
  const Calls missing = {R"(encoder 0: AddNumMissingValue(-1, "a"))", R"(encoder 0: AddNumMissingValue(-2, "b"))",
                         R"(encoder 0: AddNumMissingValue(LOWEST, ""))"};
  EXPECT_EQ(CallsFor("continuous", "double", content),
            (Calls{Cont("v", kUnlimited), missing[0], missing[1], missing[2], Storage(2)}));
  EXPECT_EQ(CallsFor("categorical", "double", content),
            (Calls{R"(AddCatVar("v", "", numbers [], labels [], role 4) -> 0)", missing[0], missing[1], missing[2],
                   Storage(2)}));
}

TEST_F(SettingsVarList, MissingTextsFollowTheVariableWithTheLabelsAtTheirPositions) {
  EXPECT_EQ(
      CallsFor("categorical", "string",
               "<Value value='a'/><Value value='' property='missing'/><Value value='?' property='missing' "
               "displayValue='unknown'/>"),
      (Calls{R"(AddCatVar("v", "", strings ["a"], role 4) -> 0)", R"(encoder 0: AddStrMissingValue("", "unknown"))",
             R"(encoder 0: AddStrMissingValue("?", ""))", Storage(3)}));
}

TEST_F(SettingsVarList, MissingTextsOfAContinuousFieldAreDroppedThoughModelsKeepThem) {
  const std::string content = "<Value value='a'/><Value value='?' property='missing' displayValue='unknown'/>";
  EXPECT_EQ(CallsFor("continuous", "string", content), (Calls{Cont("v", kUnlimited), Storage(3)}));
  EXPECT_EQ(rqtest::Fill(SettingsWithFields(Field("v", "continuous", "string", content))).calls.size(), 2U);
}

TEST_F(SettingsVarList, ValidNumbersOfAContinuousFieldAreDropped) {
  EXPECT_EQ(CallsFor("continuous", "integer", "<Value value='1' displayValue='a'/><Value value='2'/>"),
            (Calls{Cont("v", kUnlimited), Storage(1)}));
}

// Ranges

TEST_F(SettingsVarList, IntervalIsTheRangeOfAContinuousField) {
  const struct {
    const char* interval;
    const char* range;
  } rows[] = {{"leftMargin='1' rightMargin='5'", "1, 5"},
              {"leftMargin='-2.5' rightMargin='-2.5'", "-2.5, -2.5"},
              {"leftMargin=' 1 ' rightMargin='1e1' closure='openOpen'", "1, 10"},
              {"leftMargin='1'", "1, HIGHEST"},
              {"leftMargin='-1.7976931348623157e308' rightMargin='1.7976931348623157e308'", "LOWEST, HIGHEST"},
              {"leftMargin='0' rightMargin='0'", "0, 0"},
              {"leftMargin='NaN' rightMargin='1'", "LOWEST, 1"},
              {"leftMargin='NaN' rightMargin='NaN'", "LOWEST, LOWEST"}};
  for (const auto& row : rows) {
    EXPECT_EQ(CallsFor("continuous", "double", "<Interval " + std::string(row.interval) + "/>"),
              (Calls{Cont("v", row.range), Storage(2)}))
        << row.interval;
  }
}

TEST_F(SettingsVarList, MissingLeftMarginIsTheSmallestPositiveNumberThoughTheLowestNumberLooksMeant) {
  for (const char* const interval : {"rightMargin='10'", "rightMargin='10' LeftMargin='1' x:leftMargin='1'"}) {
    EXPECT_EQ(CallsFor("continuous", "double", "<Interval " + std::string(interval) + "/>"),
              (Calls{Cont("v", "2.2250738585072014e-308, 10"), Storage(2)}));
  }
  EXPECT_EQ(CallsFor("continuous", "double", "<Interval/>"),
            (Calls{Cont("v", "2.2250738585072014e-308, HIGHEST"), Storage(2)}));
  for (const char* const belowIt : {"0", "-1", "-1e300", "NaN"}) {
    EXPECT_EQ(
        OfField(Field("v", "continuous", "double", "<Interval rightMargin='" + std::string(belowIt) + "'/>")).status,
        Failure(109))
        << belowIt;
  }
}

TEST_F(SettingsVarList, MarginsThatAreNoNumbersOrInTheWrongOrderAreRefused) {
  for (const char* const interval :
       {"leftMargin='5' rightMargin='1'", "leftMargin='x' rightMargin='1'", "leftMargin='1' rightMargin='x'",
        "leftMargin=''", "rightMargin=''", "leftMargin='-INF'", "rightMargin='INF'", "leftMargin='1e999'",
        "leftMargin='1' rightMargin='NaN'", "leftMargin='x' rightMargin='x'", "leftMargin='1,5'"}) {
    for (const char* const optype : {"continuous", "categorical"}) {
      const Filled filled = OfField(Field("v", optype, "double", "<Interval " + std::string(interval) + "/>"));
      EXPECT_EQ(filled.status, Failure(109)) << interval;
      EXPECT_EQ(filled.calls, Calls()) << interval;
    }
  }
}

TEST_F(SettingsVarList, LaterIntervalReplacesAnEarlierOneAltogether) {
  EXPECT_EQ(CallsFor("continuous", "double", "<Interval leftMargin='1' rightMargin='2'/><Interval leftMargin='3'/>"),
            (Calls{Cont("v", "3, HIGHEST"), Storage(2)}));
  EXPECT_EQ(CallsFor("continuous", "double", "<Interval leftMargin='1' rightMargin='2'/><Interval/>"),
            (Calls{Cont("v", "2.2250738585072014e-308, HIGHEST"), Storage(2)}));
  EXPECT_EQ(OfField(Field("v", "continuous", "double", "<Interval leftMargin='x'/><Interval leftMargin='3'/>")).status,
            Failure(109))
      << "also a replaced one has to be good";
}

TEST_F(SettingsVarList, RangeOfACategoricalFieldIsReadAndNotUsed) {
  EXPECT_EQ(CallsFor("categorical", "double", "<Interval leftMargin='1' rightMargin='2'/>"),
            (Calls{R"(AddCatVar("v", "", numbers [], labels [], role 4) -> 0)", Storage(2)}));
}

TEST_F(SettingsVarList, TextFieldsHaveNeitherRangeNorInvalidRange) {
  const std::string content =
      "<Interval leftMargin='x' rightMargin='y'/><Interval leftMargin='5' rightMargin='1'/>"
      "<Extension name='invalidRangeLower' value='1'/>";
  EXPECT_EQ(CallsFor("continuous", "string", content), (Calls{Cont("v", kUnlimited), Storage(3)}));
  EXPECT_EQ(CallsFor("categorical", "string", content),
            (Calls{R"(AddCatVar("v", "", strings [], labels [], role 4) -> 0)", Storage(3)}));
}

TEST_F(SettingsVarList, IntervalInsideAnExtensionIsNotTheRangeThoughItIsOneOfDerivedFields) {
  EXPECT_EQ(CallsFor("continuous", "double",
                     "<Extension name='x'><Interval leftMargin='1' rightMargin='2'/></Extension>"
                     "<Extension name='invalidRangeLower' value='7'><Interval leftMargin='x'/></Extension>"
                     "<x><Interval leftMargin='x'/></x>"),
            (Calls{Cont("v", kUnlimited), "encoder 0: SetInvalidRange(7, HIGHEST)", Storage(2)}));
}

TEST_F(SettingsVarList, InvalidRangeIsTold) {
  const struct {
    const char* content;
    const char* range;
  } rows[] = {
      {"<Extension name='invalidRangeLower' value='1'/>", "1, HIGHEST"},
      {"<Extension name='invalidRangeUpper' value='5'/>", "LOWEST, 5"},
      {"<Extension name='invalidRangeUpper' value='1'/><Extension name='invalidRangeLower' value='5'/>", "5, 1"},
      {"<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeLower' value=' 2e0 '/>",
       "2, HIGHEST"},
      {"<Extension name='invalidRangeLower' value='1'/><Extension name='invalidRangeLower' value='x'/>", "1, HIGHEST"},
      {"<Extension extender='anybody' name='invalidRangeUpper' value='-1'/>", "LOWEST, -1"},
      {"<Extension name='invalidRangeUpper' value='NaN'/>", "LOWEST, LOWEST"}};
  for (const auto& row : rows) {
    const std::string call = "encoder 0: SetInvalidRange(" + std::string(row.range) + ")";
    EXPECT_EQ(CallsFor("continuous", "double", row.content), (Calls{Cont("v", kUnlimited), call, Storage(2)}))
        << row.content;
    EXPECT_EQ(CallsFor("categorical", "double", row.content),
              (Calls{R"(AddCatVar("v", "", numbers [], labels [], role 4) -> 0)", call, Storage(2)}))
        << row.content;
  }
}

TEST_F(SettingsVarList, InvalidRangeThatSaysNothingIsNotTold) {
  for (const char* const content :
       {"<Extension name='invalidRangeLower'/>", "<Extension name='invalidRangeLower' value=''/>",
        "<Extension name='invalidRangeLower' value='x'/>", "<Extension name='invalidRangeLower' value='INF'/>",
        "<Extension name='InvalidRangeLower' value='1'/>", "<Extension name='invalidRange' value='1'/>",
        "<Extension name='' value='1'/>", "<Extension value='1'/>", "<Extension/>",
        "<x><Extension name='invalidRangeLower' value='1'/></x>", "<Extension name='invalidRangeLower' value='NaN'/>",
        "<Extension name='invalidRangeLower' value='-1.7976931348623157e308'/>"
        "<Extension name='invalidRangeUpper' value='1.7976931348623157e308'/>"}) {
    EXPECT_EQ(CallsFor("continuous", "double", content), (Calls{Cont("v", kUnlimited), Storage(2)})) << content;
  }
}

TEST_F(SettingsVarList, EverythingComesInItsOrderAndTheStorageTypeLast) {
  EXPECT_EQ(
      CallsFor("categorical", "date",
               "<Extension name='invalidRangeLower' value='100'/><Value value='9' property='missing' "
               "displayValue='none'/><Interval leftMargin='0' rightMargin='1'/><Value value='1' "
               "displayValue='one'/>"),
      (Calls{R"(AddCatVar("v", "", numbers [1], labels ["one"], role 4) -> 0)",
             R"(encoder 0: AddNumMissingValue(9, "none"))", "encoder 0: SetInvalidRange(100, HIGHEST)", Storage(4)}));
}

TEST_F(SettingsVarList, FieldsDoNotInheritFromTheFieldBefore) {
  const Filled filled = FillSettings(SettingsWithFields(
      "<DataField name='a' displayName='A' optype='continuous' dataType='double'><Interval leftMargin='1' "
      "rightMargin='2'/><Value value='9' property='missing' displayValue='m'/><Extension name='invalidRangeLower' "
      "value='7'/></DataField><DataField name='b' displayName='B' optype='categorical' dataType='string'><Value "
      "value='x' displayValue='X'/><Value value='?' property='missing'/></DataField>" +
      Field("c", "continuous", "integer") + Field("d", "categorical", "string") + Field("e", "categorical", "date")));
  EXPECT_EQ(filled.status, Ok());
  EXPECT_EQ(filled.calls,
            (Calls{R"(AddContVar("a", "A", 1, 2, role 4, false, -1) -> 0)", R"(encoder 0: AddNumMissingValue(9, "m"))",
                   "encoder 0: SetInvalidRange(7, HIGHEST)", Storage(2),
                   R"(AddCatVar("b", "B", strings ["x"], labels ["X"], role 4) -> 1)",
                   R"(encoder 1: AddStrMissingValue("?", ""))", Storage(3, 1), Cont("c", kUnlimited, 2), Storage(1, 2),
                   R"(AddCatVar("d", "", strings [], labels [], role 4) -> 3)", Storage(3, 3),
                   R"(AddCatVar("e", "", numbers [], labels [], role 4) -> 4)", Storage(4, 4)}));
}

// Bins

class SettingsBins : public SettingsVarList {
 protected:
  static std::string Bin(const std::string& label, const std::string& margins) {
    return "<DiscretizeBin binValue='" + label + "'><Interval " + margins + "/></DiscretizeBin>";
  }
  static std::string Discretized(const std::string& field, const std::string& bins) {
    return "<DerivedField name='d of " + field + "'><Discretize field='" + field + "'>" + bins +
           "</Discretize></DerivedField>";
  }
  static Filled WithBins(const std::string& bins, const std::string& content = "", const std::string& type = "double") {
    return FillSettings(SettingsWithFields(Field("v", "continuous", type, content), Discretized("v", bins)), true);
  }
  static std::string TwoBins(const std::string& first = "low", const std::string& second = "high") {
    return Bin(first, "leftMargin='0' rightMargin='10'") + Bin(second, "leftMargin='10' rightMargin='20'");
  }
};

const char* const kBinned = R"(AddContVar("v", "", 0, 20, cuts [10], true, role 4) -> 0)";

TEST_F(SettingsBins, BinsReplaceTheRangeAndTheirLabelsFollowTheVariable) {
  const Filled filled = WithBins(TwoBins(),
                                 "<Interval leftMargin='1' rightMargin='2'/><Value value='9' property='missing'/>"
                                 "<Extension name='invalidRangeLower' value='7'/>");
  EXPECT_EQ(filled.status, Ok());
  EXPECT_EQ(filled.calls,
            (Calls{kBinned, R"(encoder 0: SetBinLabels(["low", "high"]))", R"(encoder 0: AddNumMissingValue(9, ""))",
                   "encoder 0: SetInvalidRange(7, HIGHEST)", Storage(2)}));
}

TEST_F(SettingsBins, FewerThanThreeEdgesLeaveTheFieldItsRange) {
  for (const std::string& bins :
       {std::string(), std::string("<DiscretizeBin binValue='a'/>"), Bin("a", "leftMargin='3' rightMargin='4'")}) {
    const Filled filled = WithBins(bins, "<Interval leftMargin='1' rightMargin='2'/>");
    EXPECT_EQ(filled.status, Ok()) << bins;
    EXPECT_EQ(filled.calls, (Calls{Cont("v", "1, 2"), Storage(2)})) << bins;
  }
}

TEST_F(SettingsBins, LabelsAreGivenOnlyWhenThereIsOneForEachBin) {
  const std::string unlabelled = "<DiscretizeBin><Interval rightMargin='20'/></DiscretizeBin>";
  EXPECT_EQ(WithBins(Bin("a", "leftMargin='0' rightMargin='10'") + unlabelled).calls, (Calls{kBinned, Storage(2)}));
  EXPECT_EQ(WithBins(TwoBins() + "<DiscretizeBin binValue='c'/>").calls, (Calls{kBinned, Storage(2)}));
}

TEST_F(SettingsBins, LabelsAreDroppedWhenTheFirstIsZeroBecauseTheBinsWereOnlyNumbered) {
  EXPECT_EQ(WithBins(TwoBins("0", "1")).calls, (Calls{kBinned, Storage(2)}));
  EXPECT_EQ(WithBins(TwoBins("1", "0")).calls, (Calls{kBinned, R"(encoder 0: SetBinLabels(["1", "0"]))", Storage(2)}));
  EXPECT_EQ(WithBins(TwoBins("00", "01")).calls,
            (Calls{kBinned, R"(encoder 0: SetBinLabels(["00", "01"]))", Storage(2)}));
}

TEST_F(SettingsBins, ContinuousTextFieldIsBinnedAndLosesItsMissingTextsToo) {
  EXPECT_EQ(WithBins(TwoBins(), "<Value value='?' property='missing'/>", "string").calls,
            (Calls{kBinned, R"(encoder 0: SetBinLabels(["low", "high"]))", Storage(3)}));
}

TEST_F(SettingsBins, BinsAreNotLookedAtUnlessAskedFor) {
  const Filled filled =
      FillSettings(SettingsWithFields(Field("v", "continuous", "double"), Discretized("v", TwoBins())), false);
  EXPECT_EQ(filled.status, Ok());
  EXPECT_EQ(filled.calls, (Calls{Cont("v", kUnlimited), Storage(2)}));
}

TEST_F(SettingsBins, WithoutTransformationDictionaryTheFirstContinuousFieldFails) {
  const Filled filled =
      FillSettings(SettingsWithFields(Field("a", "categorical", "string") + Field("b", "ordinal", "integer") +
                                      Field("c", "continuous", "double") + Field("d", "categorical", "string")),
                   true);
  EXPECT_EQ(filled.status, Failure(110));
  EXPECT_EQ(filled.calls, (Calls{R"(AddCatVar("a", "", strings [], labels [], role 4) -> 0)", Storage(3),
                                 R"(AddCatVar("b", "", numbers [], labels [], role 4) -> 1)", Storage(1, 1)}));
}

TEST_F(SettingsBins, FieldThatNothingDiscretisesFails) {
  for (const std::string& transformations : {std::string(), Discretized("V", TwoBins()), Discretized("w", TwoBins()),
                                             std::string("<DerivedField name='v'/>")}) {
    const Filled filled = FillSettings(
        SettingsWithFields(Field("v", "continuous", "double", "<Interval leftMargin='1'/>"), transformations), true);
    EXPECT_EQ(filled.status, Failure(110)) << transformations;
    EXPECT_EQ(filled.calls, Calls()) << transformations;
  }
}

TEST_F(SettingsBins, CategoricalFieldsNeedNoBins) {
  const Filled filled = FillSettings(SettingsWithFields(Field("a", "categorical", "double")), true);
  EXPECT_EQ(filled.status, Ok());
  EXPECT_EQ(filled.calls.size(), 2U);
}

TEST_F(SettingsBins, FaultOfTheFieldIsReportedBeforeMissingBins) {
  EXPECT_EQ(FillSettings(SettingsWithFields(Field("v", "continuous", "boolean")), true).status, Failure(109));
  EXPECT_EQ(
      FillSettings(SettingsWithFields(Field("v", "continuous", "double", "<Interval leftMargin='x'/>")), true).status,
      Failure(109));
  EXPECT_EQ(FillSettings(SettingsWithFields("<DataField name='v' optype='continuous'/>"), true).status, Failure(108));
}

TEST_F(SettingsBins, EachFieldHasItsOwnBins) {
  const Filled filled =
      FillSettings(SettingsWithFields(Field("a", "continuous", "double") + Field("b", "continuous", "integer"),
                                      Discretized("b", TwoBins("x", "y")) + Discretized("a", TwoBins())),
                   true);
  EXPECT_EQ(filled.calls, (Calls{R"(AddContVar("a", "", 0, 20, cuts [10], true, role 4) -> 0)",
                                 R"(encoder 0: SetBinLabels(["low", "high"]))", Storage(2),
                                 R"(AddContVar("b", "", 0, 20, cuts [10], true, role 4) -> 1)",
                                 R"(encoder 1: SetBinLabels(["x", "y"]))", Storage(1, 1)}));
}

// Roles

TEST_F(SettingsVarList, FrequencyWeightOfTheTaskIsAddedAsAnInputAllTheSameBecauseNothingFillsTheTableOfRoles) {
  const Filled filled =
      FillSettings(Pmml("<DataDictionary>" + Field("w", "continuous", "double") + Field("t", "continuous", "double") +
                        "</DataDictionary>" + BuildTask(Valued("FrequencyWeightVar", "w") + Valued("target", "t"))));
  EXPECT_EQ(filled.status, Ok());
  EXPECT_EQ(filled.calls, (Calls{Cont("w", kUnlimited), Storage(2), Cont("t", kUnlimited, 1), Storage(2, 1)}));
}

// Failures

TEST_F(SettingsVarList, FirstFailureEndsTheWalkAndWhatWasAddedStays) {
  for (const std::string& bad : {Field("bad", "continuous", "boolean"), std::string("<DataField/>"),
                                 Field("bad", "continuous", "double", "<Interval leftMargin='x'/>")}) {
    RQSettingsParser parser;
    ASSERT_EQ(Parse(parser,
                    SettingsWithFields(Field("a", "continuous", "double") + bad + Field("b", "continuous", "double"))),
              Ok());
    rqtest::RecordingStorageList vars;
    EXPECT_FALSE(parser.FillVarList(vars, false).IsOK()) << bad;
    EXPECT_EQ(vars.calls, (Calls{Cont("a", kUnlimited), Storage(2)})) << bad;
    EXPECT_EQ(parser.GetStatus(), Ok()) << "the failure is not kept";
  }
}

TEST_F(SettingsVarList, RefusalOfEachAddOperationIsReportedAndNothingMoreToldOfTheVariable) {
  const std::string missing = "<Value value='9' property='missing'/>";
  for (const std::string& field :
       {Field("v", "continuous", "double", missing), Field("v", "categorical", "double", missing),
        Field("v", "categorical", "double", missing + "<Value value='1'/>"),
        Field("v", "categorical", "string", missing), Field("v", "categorical", "string", "<Value value='1'/>")}) {
    for (const int refusal : {-1, -77}) {
      RQSettingsParser parser;
      ASSERT_EQ(Parse(parser, SettingsWithFields(field + Field("w", "continuous", "double"))), Ok());
      rqtest::RecordingStorageList vars;
      vars.refused = {"v"};
      vars.refusal = refusal;
      EXPECT_EQ(parser.FillVarList(vars, false), Failure(111)) << field;
      EXPECT_EQ(vars.calls.size(), 1U) << field;
    }
  }
}

TEST_F(SettingsBins, RefusalOfABinnedVariableIsReportedAndItsLabelsAreNotGiven) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser, SettingsWithFields(Field("v", "continuous", "double"), Discretized("v", TwoBins()))), Ok());
  rqtest::RecordingStorageList vars;
  vars.refused = {"v"};
  EXPECT_EQ(parser.FillVarList(vars, true), Failure(111));
  EXPECT_EQ(vars.calls, Calls{R"(AddContVar("v", "", 0, 20, cuts [10], true, role 4) -> -1)"});
}

TEST_F(SettingsVarList, VariableThatTheListDoesNotHandOutIsARefusalAfterItsEncoderWasTold) {
  RQSettingsParser parser;
  const std::string missing = "<Value value='9' property='missing'/>";
  ASSERT_EQ(Parse(parser,
                  SettingsWithFields(Field("a", "continuous", "double") + Field("b", "continuous", "double", missing) +
                                     Field("c", "continuous", "double"))),
            Ok());
  rqtest::RecordingStorageList vars;
  vars.withoutVariable = {1};
  EXPECT_EQ(parser.FillVarList(vars, false), Failure(111));
  EXPECT_EQ(vars.calls, (Calls{Cont("a", kUnlimited), Storage(2), Cont("b", kUnlimited, 1),
                               R"(encoder 1: AddNumMissingValue(9, ""))"}));
}

TEST_F(SettingsVarList, VariableWithoutEncoderIsToldItsStorageTypeAllTheSame) {
  RQSettingsParser parser;
  const std::string missing = "<Value value='9' property='missing'/><Extension name='invalidRangeLower' value='1'/>";
  ASSERT_EQ(Parse(parser, SettingsWithFields(Field("v", "continuous", "double", missing))), Ok());
  rqtest::RecordingStorageList vars;
  vars.withoutEncoder = {"v"};
  EXPECT_EQ(parser.FillVarList(vars, false), Ok());
  EXPECT_EQ(vars.calls, (Calls{Cont("v", kUnlimited), Storage(2)}));
}

TEST_F(SettingsVarList, FaultOfAFieldIsFoundBeforeTheListIsAsked) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser, SettingsWithFields(Field("v", "continuous", "double", "<Interval rightMargin='x'/>"))), Ok());
  rqtest::RecordingStorageList vars;
  vars.refused = {"v"};
  EXPECT_EQ(parser.FillVarList(vars, false), Failure(109));
  EXPECT_EQ(vars.calls, Calls());
}

// The reference list

TEST_F(SettingsBins, ReferenceListKeepsWhatTheDocumentSays) {
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser,
                  SettingsWithFields("<DataField name='age' displayName='Age' optype='continuous' dataType='integer'>"
                                     "<Interval leftMargin='0' rightMargin='120'/><Value value='-1' property='missing' "
                                     "displayValue='unknown'/></DataField>" +
                                         Field("day", "categorical", "date", "<Value value='1' displayValue='first'/>"),
                                     Discretized("age", TwoBins()))),
            Ok());
  for (const bool bins : {false, true}) {
    RQMTD_NAMESPACE::RQVarList vars;
    ASSERT_EQ(parser.FillVarList(vars, bins), Ok());
    ASSERT_EQ(vars.Size(), 2);
    const auto* const age = vars.GetVariable(0);
    EXPECT_EQ(age->GetLabel(), "Age");
    EXPECT_EQ(age->GetStorageType(), 1);
    EXPECT_EQ(age->GetIntegerIndicator(), 1);
    EXPECT_EQ(age->GetRole(), RQMTD_NAMESPACE::IRQVariable::RoleInput);
    EXPECT_EQ(age->GetMinimum(), 0);
    EXPECT_EQ(age->GetMaximum(), bins ? 20 : 120);
    EXPECT_EQ(age->GetFlag(), bins);
    EXPECT_EQ(age->GetCount(), -1);
    EXPECT_EQ(age->GetCutPoints(), bins ? std::vector<double>{10} : std::vector<double>{});
    EXPECT_EQ(age->GetEncoder().GetBinLabels().size(), bins ? 2U : 0U);
    EXPECT_EQ(age->GetEncoder().GetNumMissingValues().at(0).second, "unknown");
    EXPECT_EQ(vars.GetVariable(1)->GetStorageType(), 4);
    EXPECT_EQ(vars.GetVariable(1)->GetLabels(), std::vector<std::string>{"first"});
  }
}

TEST_F(SettingsBins, ReferenceListRefusesUnsortedBinsAndRepeatedNames) {
  const Filled sorted = WithBins(Bin("a", "leftMargin='9' rightMargin='1'") + Bin("b", "rightMargin='5'"));
  EXPECT_EQ(sorted.status, Ok()) << "bins are offered as they stand";
  RQSettingsParser parser;
  ASSERT_EQ(Parse(parser, SettingsWithFields(Field("v", "continuous", "double"),
                                             Discretized("v", Bin("a", "leftMargin='9' rightMargin='1'") +
                                                                  Bin("b", "rightMargin='5'")))),
            Ok());
  RQMTD_NAMESPACE::RQVarList vars;
  EXPECT_EQ(parser.FillVarList(vars, true), Failure(111));
  EXPECT_EQ(vars.Size(), 0);
  EXPECT_EQ(parser.FillVarList(vars, false), Ok());
  EXPECT_EQ(parser.FillVarList(vars, false), Failure(111));
  EXPECT_EQ(vars.Size(), 1);
}

}  // namespace
